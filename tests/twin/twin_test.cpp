// Tests of the twin itself: published perft counts, and the rules one by one.

#include "twin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "perft_rows.h"

namespace {

using twin::Game;
using twin::PerftRow;
using twin::Position;
using twin::read_perft_rows;
using twin::Result;
using Texts = std::vector<std::string>;

Position position_of(const std::string& fen) {
    std::string error;
    const std::optional<Position> position = twin::position_from_fen(fen, &error);
    EXPECT_TRUE(position.has_value()) << fen << ": " << error;
    return position.value_or(*twin::position_from_fen(twin::kStartFen));
}

Game game_of(const std::string& fen) { return twin::game_from_position(position_of(fen)); }

bool is_legal(const std::string& fen, const std::string& move) {
    const Texts moves = twin::legal_moves(position_of(fen));
    return std::find(moves.begin(), moves.end(), move) != moves.end();
}

// Only the legal moves that begin with the given text.
Texts moves_from(const std::string& fen, const std::string& beginning) {
    Texts moves;
    for (const std::string& move : twin::legal_moves(position_of(fen))) {
        if (move.starts_with(beginning)) moves.push_back(move);
    }
    return moves;
}

// The FEN after the given moves, or a text naming the first illegal one.
std::string fen_after(const std::string& fen, const Texts& moves) {
    Game game = game_of(fen);
    for (const std::string& move : moves) {
        if (!twin::game_play(game, move)) return "illegal " + move;
    }
    return twin::position_to_fen(game.position);
}

bool play_all(Game& game, const Texts& moves) {
    return std::all_of(moves.begin(), moves.end(),
                       [&](const std::string& move) { return twin::game_play(game, move); });
}

std::string with_case_swapped(std::string text) {
    for (char& letter : text) {
        if (letter >= 'a' && letter <= 'z') {
            letter = static_cast<char>(letter - 'a' + 'A');
        } else if (letter >= 'A' && letter <= 'Z') {
            letter = static_cast<char>(letter - 'A' + 'a');
        }
    }
    return text;
}

// The same position with the colours exchanged and the board turned upside down.
std::string mirrored(const std::string& fen) {
    std::istringstream fields(fen);
    std::string placement, turn, castling, ep, clocks;
    fields >> placement >> turn >> castling >> ep;
    std::getline(fields, clocks);
    std::istringstream ranks(placement);
    std::string rank, upside_down;
    while (std::getline(ranks, rank, '/')) upside_down.insert(0, rank + "/");
    upside_down.pop_back();
    if (ep != "-") ep[1] = ep[1] == '3' ? '6' : '3';
    return with_case_swapped(upside_down) + (turn == "w" ? " b " : " w ") +
           with_case_swapped(castling) + " " + ep + clocks;
}

// Perft

TEST(TwinPerft, MatchesPublishedCounts) {
    constexpr std::uint64_t kMostMoves = 500'000;
    const std::vector<PerftRow> rows = read_perft_rows("perft.epd");
    EXPECT_EQ(rows.size(), 6U);
    for (const PerftRow& row : rows) {
        const Position position = position_of(row.fen);
        EXPECT_GE(row.counts.size(), 5U) << row.fen;
        for (const auto& [depth, moves] : row.counts) {
            if (moves > kMostMoves) continue;
            EXPECT_EQ(twin::perft(position, depth), moves) << row.fen << " depth " << depth;
        }
    }
}

TEST(TwinPerft, RulesFileHoldsFiftyPositionsWithItsCounts) {
    constexpr std::uint64_t kMostMoves = 5'000;
    const std::vector<PerftRow> rows = read_perft_rows("rules.epd");
    EXPECT_EQ(rows.size(), 50U);
    std::set<std::string> ids;
    std::set<std::string> fens;
    for (const PerftRow& row : rows) {
        EXPECT_FALSE(row.id.empty()) << row.fen;
        EXPECT_TRUE(ids.insert(row.id).second) << row.id;
        EXPECT_TRUE(fens.insert(row.fen).second) << row.fen;
        EXPECT_GE(row.counts.size(), 2U) << row.fen;
        const Position position = position_of(row.fen);
        for (const auto& [depth, moves] : row.counts) {
            if (moves > kMostMoves) continue;
            EXPECT_EQ(twin::perft(position, depth), moves) << row.fen << " depth " << depth;
        }
    }
}

TEST(TwinPerft, IsTheSameWithColoursExchanged) {
    for (const char* name : {"perft.epd", "rules.epd"}) {
        for (const PerftRow& row : read_perft_rows(name)) {
            const std::string other = mirrored(row.fen);
            EXPECT_EQ(twin::perft(position_of(row.fen), 2), twin::perft(position_of(other), 2))
                << row.fen << " and " << other;
        }
    }
}

TEST(TwinPerft, DepthZeroIsOne) {
    EXPECT_EQ(twin::perft(position_of(twin::kStartFen), 0), 1U) << twin::kStartFen;
}

// FEN

TEST(TwinFen, WritesWhatItReads) {
    for (const char* fen :
         {twin::kStartFen, "r3k2r/p6p/8/8/8/8/P6P/R3K2R b Kq - 0 1",
          "4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1", "4k3/8/8/8/1pP5/8/8/4K3 b - c3 0 1",
          "8/8/8/8/8/5k2/8/r4K2 w - - 42 1"}) {
        EXPECT_EQ(twin::position_to_fen(position_of(fen)), fen) << fen;
    }
}

TEST(TwinFen, FullMoveNumberIsAlwaysWrittenAsOne) {
    EXPECT_EQ(twin::position_to_fen(position_of("4k3/8/8/8/8/8/8/4K2R b K - 7 31")),
              "4k3/8/8/8/8/8/8/4K2R b K - 7 1");
}

TEST(TwinFen, ClockMayBeMissingAndIsCapped) {
    EXPECT_EQ(position_of("4k3/8/8/8/8/8/8/4K2R w K -").half_moves, 0);
    EXPECT_EQ(position_of("4k3/8/8/8/8/8/8/4K2R w K - 99999999999 1").half_moves, 1000);
}

TEST(TwinFen, DropsCastlingRightsOfMenNotAtHome) {
    EXPECT_EQ(twin::position_to_fen(position_of("r3k3/8/8/8/8/8/8/R2K3R w KQkq - 0 1")),
              "r3k3/8/8/8/8/8/8/R2K3R w q - 0 1");
    // An enemy rook in the corner, and a man of another kind.
    EXPECT_EQ(twin::position_to_fen(position_of("r3k2R/7P/8/8/8/8/8/b3K2R b KQkq - 0 1")),
              "r3k2R/7P/8/8/8/8/8/b3K2R b Kq - 0 1");
}

TEST(TwinFen, KeepsAnEnPassantSquareOnlyBesideAnEnemyPawn) {
    const std::string after_e4 = "rnbqkbnr/pppp1ppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq ";
    EXPECT_EQ(twin::position_to_fen(position_of(after_e4 + "e3 0 1")), after_e4 + "- 0 1");
    // No pawn has passed the square, or a man stands on it.
    EXPECT_EQ(position_of("4k3/8/8/2P1P3/8/8/8/4K3 w - d6 0 1").ep_file, -1);
    EXPECT_EQ(position_of("4k3/8/3n4/2PpP3/8/8/8/4K3 w - d6 0 1").ep_file, -1);
    // A pawn at the other edge of the board is not beside.
    EXPECT_EQ(position_of("4k3/8/8/8/P6p/8/8/4K3 b - a3 0 1").ep_file, -1);
    EXPECT_EQ(position_of("4k3/8/8/8/Pp6/8/8/4K3 b - a3 0 1").ep_file, 0);
}

TEST(TwinFen, RefusesFaultyTexts) {
    for (const char* fen : {
             "",
             "8/8/8/8 w - -",
             "4k3/8/8/8/8/8/8/4K3 w -",
             "4k3/8/8/8/8/8/8/4K4 w - - 0 1",
             "4k3/8/8/8/8/8/8/4K2 w - - 0 1",
             "4k3/8/8/8/8/8/8/4K3/8 w - - 0 1",
             "4k3/8/8/8/8/8/4K3 w - - 0 1",
             "4k3/8/8/8/8/8/9/4K3 w - - 0 1",
             "4k3/8/8/8/8/8/7x/4K3 w - - 0 1",
             "4k3/8/8/8/8/8/8/4K3 x - - 0 1",
             "4k3/8/8/8/8/8/8/4K3 w A - 0 1",
             "4k3/8/8/8/8/8/8/4K2R w KK - 0 1",
             "4k3/8/8/8/8/8/8/4K3 w - i6 0 1",
             "4k3/8/8/8/8/8/8/4K3 w - e3 0 1",
             "4k3/8/8/8/8/8/8/4K3 b - e6 0 1",
             "4k3/8/8/8/8/8/8/4K3 w - - x 1",
         }) {
        std::string error;
        EXPECT_FALSE(twin::position_from_fen(fen, &error).has_value()) << fen;
        EXPECT_FALSE(error.empty()) << fen;
    }
}

TEST(TwinFen, RefusesImpossiblePositions) {
    for (const char* fen : {
             "8/8/8/8/8/8/8/8 w - - 0 1",
             "4k3/8/8/8/8/8/8/8 w - - 0 1",
             "4k3/8/8/8/8/8/8/K3K3 w - - 0 1",
             "4k3/8/8/8/8/8/8/4K2P w - - 0 1",
             "p3k3/8/8/8/8/8/8/4K3 w - - 0 1",
             "4k3/8/8/8/8/P7/PPPPPPPP/4K3 w - - 0 1",
             "4k3/8/8/8/8/NN6/PPPPPPPP/RNBQKBNR w - - 0 1",
             "4k3/8/8/8/8/8/8/4RK2 w - - 0 1",
             "8/8/8/8/8/8/4k3/4K3 b - - 0 1",
         }) {
        std::string error;
        EXPECT_FALSE(twin::position_from_fen(fen, &error).has_value()) << fen;
        EXPECT_FALSE(error.empty()) << fen;
    }
}

// Attacks

TEST(TwinAttack, SlidersSeeToTheFirstMan) {
    const Position open = position_of("k7/8/8/8/8/8/8/R6K b - - 0 1");
    const Position shut = position_of("k7/8/8/8/N7/8/8/R6K b - - 0 1");
    const twin::Square a8 = *twin::square_from_text("a8");
    EXPECT_TRUE(twin::is_attacked(open, a8, true));
    EXPECT_FALSE(twin::is_attacked(shut, a8, true));
    EXPECT_TRUE(twin::is_attacked(shut, *twin::square_from_text("a4"), true));
    EXPECT_FALSE(twin::is_attacked(shut, *twin::square_from_text("a5"), true));
}

TEST(TwinAttack, PawnsAttackForwardDiagonallyOnly) {
    const std::string fen = "4k3/8/8/p7/4P2p/8/8/4K3 w - - 0 1";
    const auto attacked = [&](const char* square, bool by_white) {
        return twin::is_attacked(position_of(fen), *twin::square_from_text(square), by_white);
    };
    EXPECT_TRUE(attacked("d5", true)) << fen;
    EXPECT_TRUE(attacked("f5", true)) << fen;
    EXPECT_FALSE(attacked("e5", true)) << fen;
    EXPECT_FALSE(attacked("d3", true)) << fen;
    EXPECT_TRUE(attacked("b4", false)) << fen;
    EXPECT_FALSE(attacked("b6", false)) << fen;
    EXPECT_FALSE(attacked("h5", false)) << fen;
    EXPECT_TRUE(attacked("g3", false)) << fen;
    EXPECT_FALSE(attacked("a3", false)) << fen;
}

TEST(TwinAttack, EachKindAttacksItsOwnSquares) {
    const std::string fen = "7k/8/8/8/3N4/8/6B1/K7 w - - 0 1";
    const Position position = position_of(fen);
    std::string attacked;
    for (int rank = 0; rank < 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            attacked += twin::is_attacked(position, {file, rank}, true) ? 'x' : '.';
        }
        attacked += '/';
    }
    // Rank 1 first.
    EXPECT_EQ(attacked, ".x...x.x/xxx.x.../.x...x.x/....x.../.x.x.x../..x.x.../.x....../x......./")
        << fen;
}

// Castling

TEST(TwinCastling, MovesKingAndRook) {
    const std::string fen = "r3k2r/p6p/8/8/8/8/P6P/R3K2R w KQkq - 0 1";
    EXPECT_EQ(fen_after(fen, {"e1g1"}), "r3k2r/p6p/8/8/8/8/P6P/R4RK1 b kq - 1 1");
    EXPECT_EQ(fen_after(fen, {"e1c1"}), "r3k2r/p6p/8/8/8/8/P6P/2KR3R b kq - 1 1");
    EXPECT_EQ(fen_after(fen, {"e1g1", "e8c8"}), "2kr3r/p6p/8/8/8/8/P6P/R4RK1 w - - 2 1");
    EXPECT_EQ(fen_after(fen, {"e1c1", "e8g8"}), "r4rk1/p6p/8/8/8/8/P6P/2KR3R w - - 2 1");
}

TEST(TwinCastling, RightsGoWithKingAndRookForGood) {
    const std::string fen = "r3k2r/p6p/8/8/8/8/P6P/R3K2R w KQkq - 0 1";
    EXPECT_EQ(fen_after(fen, {"e1e2", "h8g8", "e2e1", "g8h8"}),
              "r3k2r/p6p/8/8/8/8/P6P/R3K2R w q - 4 1");
    EXPECT_EQ(fen_after("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", {"h1h8"}),
              "r3k2R/8/8/8/8/8/8/R3K3 b Qq - 0 1");
}

TEST(TwinCastling, NotOutOfThroughOrIntoCheck) {
    struct Case {
        const char* fen;
        bool king_side;
        bool queen_side;
    };
    for (const Case& c : {
             Case{"4k3/8/8/8/8/8/7P/R3K2R w KQ - 0 1", true, true},
             Case{"4k3/8/8/8/8/8/7P/R3K2R w - - 0 1", false, false},
             Case{"4k3/8/8/8/8/8/4r2P/R3K2R w KQ - 0 1", false, false},  // out of check
             Case{"4k3/8/8/8/8/5r2/7P/R3K2R w KQ - 0 1", false, true},   // through f1
             Case{"4k3/8/8/8/8/6r1/7P/R3K2R w KQ - 0 1", false, true},   // into g1
             Case{"4k3/8/8/8/8/3r4/7P/R3K2R w KQ - 0 1", true, false},   // through d1
             Case{"4k3/8/8/8/8/2r5/7P/R3K2R w KQ - 0 1", true, false},   // into c1
             Case{"4k3/8/8/8/8/1r6/7P/R3K2R w KQ - 0 1", true, true},    // b1 alone is no matter
             Case{"4k3/8/8/8/8/8/r6r/R3K2R w KQ - 0 1", true, true},     // nor are the rooks
             Case{"4k3/8/8/8/8/8/7P/RN2K1NR w KQ - 0 1", false, false},  // men in the way
             Case{"4k3/8/8/8/8/8/7P/R2QKB1R w KQ - 0 1", false, false},  // men in the way
         }) {
        EXPECT_EQ(is_legal(c.fen, "e1g1"), c.king_side) << c.fen;
        EXPECT_EQ(is_legal(c.fen, "e1c1"), c.queen_side) << c.fen;
    }
}

// En passant

TEST(TwinEnPassant, SquareIsRecordedOnlyBesideAnEnemyPawn) {
    EXPECT_EQ(fen_after(twin::kStartFen, {"e2e4"}),
              "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
    EXPECT_EQ(fen_after(twin::kStartFen, {"e2e4", "a7a6", "e4e5", "d7d5"}),
              "rnbqkbnr/1pp1pppp/p7/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 1");
    EXPECT_EQ(fen_after(twin::kStartFen, {"e2e4", "a7a6", "e4e5", "d7d6", "h2h3", "d6d5"}),
              "rnbqkbnr/1pp1pppp/p7/3pP3/8/7P/PPPP1PP1/RNBQKBNR w KQkq - 0 1");
}

TEST(TwinEnPassant, TakesThePassedPawnAndLastsOneMove) {
    const std::string fen = "4k3/8/8/2PpP3/8/8/8/4K3 w - d6 0 1";
    EXPECT_EQ(fen_after(fen, {"c5d6"}), "4k3/8/3P4/4P3/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(fen_after(fen, {"e5d6"}), "4k3/8/3P4/2P5/8/8/8/4K3 b - - 0 1");
    EXPECT_EQ(fen_after(fen, {"e1e2", "e8e7", "e5d6"}), "illegal e5d6");
    EXPECT_EQ(fen_after("4k3/8/8/8/1pP5/8/8/4K3 b - c3 0 1", {"b4c3"}),
              "4k3/8/8/8/8/2p5/8/4K3 w - - 0 1");
}

TEST(TwinEnPassant, NotWhenItUncoversTheKing) {
    EXPECT_FALSE(is_legal("8/8/8/K1Pp3r/8/8/8/4k3 w - d6 0 1", "c5d6"));
    EXPECT_FALSE(is_legal("8/8/8/8/Q2Pp2k/8/8/3K4 b - d3 0 1", "e4d3"));
    EXPECT_FALSE(is_legal("4r1k1/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6"));
    EXPECT_FALSE(is_legal("6k1/6b1/8/3pP3/8/2K5/8/8 w - d6 0 1", "e5d6"));
    EXPECT_TRUE(is_legal("6k1/2b5/8/3pP3/8/6K1/8/8 w - d6 0 1", "e5d6"));
}

TEST(TwinEnPassant, AnswersTheCheckOfThePassedPawnOnly) {
    EXPECT_TRUE(is_legal("4k3/8/8/3pP3/2K5/8/8/8 w - d6 0 1", "e5d6"));
    EXPECT_FALSE(is_legal("4b1k1/8/8/3pP3/K7/8/8/8 w - d6 0 1", "e5d6"));
}

// Pawns and promotion

TEST(TwinPawn, DoubleStepNeedsBothSquaresFree) {
    EXPECT_EQ(moves_from("4k3/8/8/8/8/8/4P3/K7 w - - 0 1", "e2"), (Texts{"e2e3", "e2e4"}));
    EXPECT_EQ(moves_from("4k3/8/8/8/4n3/8/4P3/K7 w - - 0 1", "e2"), (Texts{"e2e3"}));
    EXPECT_EQ(moves_from("4k3/8/8/8/8/4n3/4P3/K7 w - - 0 1", "e2"), (Texts{}));
    EXPECT_EQ(moves_from("4k3/8/8/8/8/4P3/8/K7 w - - 0 1", "e3"), (Texts{"e3e4"}));
    EXPECT_EQ(moves_from("k7/4p3/8/8/8/8/8/K7 b - - 0 1", "e7"), (Texts{"e7e5", "e7e6"}));
}

TEST(TwinPawn, PromotesToFourPiecesAndMust) {
    const std::string fen = "n3k3/1P6/8/8/8/8/6p1/4K2N w - - 0 1";
    EXPECT_EQ(moves_from(fen, "b7"),
              (Texts{"b7a8b", "b7a8n", "b7a8q", "b7a8r", "b7b8b", "b7b8n", "b7b8q", "b7b8r"}));
    EXPECT_FALSE(is_legal(fen, "b7b8"));
    EXPECT_EQ(fen_after(fen, {"b7a8r", "e8e7", "h1g3", "g2g1n"}),
              "R7/4k3/8/8/8/6N1/8/4K1n1 w - - 0 1");
}

TEST(TwinPawn, PinnedPromotingPawnStaysOnItsLine) {
    EXPECT_EQ(moves_from("5b1k/4P3/3K4/8/8/8/8/8 w - - 0 1", "e7"),
              (Texts{"e7f8b", "e7f8n", "e7f8q", "e7f8r"}));
    EXPECT_EQ(moves_from("1n1n3k/K1P4r/8/8/8/8/8/8 w - - 0 1", "c7"), (Texts{}));
}

// Checks and pins

TEST(TwinCheck, DoubleCheckLeavesKingMovesOnly) {
    EXPECT_EQ(twin::legal_moves(position_of("4k3/8/8/8/4r3/Q2n4/8/R3K2R w KQ - 0 1")),
              (Texts{"e1d1", "e1d2", "e1f1"}));
}

TEST(TwinCheck, KingDoesNotFleeAlongTheLineOfCheck) {
    EXPECT_EQ(twin::legal_moves(position_of("4r2k/8/8/8/8/5p2/4K3/8 w - - 0 1")),
              (Texts{"e2d1", "e2d2", "e2d3", "e2f1", "e2f2", "e2f3"}));
}

TEST(TwinCheck, PinnedMenMoveAlongTheirLineOnly) {
    const std::string fen = "k3r3/8/8/q7/4R3/2B5/8/4K3 w - - 0 1";
    EXPECT_EQ(moves_from(fen, "e4"), (Texts{"e4e2", "e4e3", "e4e5", "e4e6", "e4e7", "e4e8"}));
    EXPECT_EQ(moves_from(fen, "c3"), (Texts{"c3a5", "c3b4", "c3d2"}));
}

// Results

TEST(TwinResult, Mate) {
    Game game = twin::game_start();
    ASSERT_TRUE(play_all(game, {"f2f3", "e7e5", "g2g4"}));
    EXPECT_EQ(twin::game_result(game), Result::ongoing);
    ASSERT_TRUE(twin::game_play(game, "d8h4"));
    EXPECT_TRUE(twin::is_check(game.position));
    EXPECT_TRUE(twin::is_mate(game.position));
    EXPECT_FALSE(twin::is_stalemate(game.position));
    EXPECT_EQ(twin::game_result(game), Result::mate);
}

TEST(TwinResult, Stalemate) {
    const Game game = game_of("7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
    EXPECT_FALSE(twin::is_check(game.position));
    EXPECT_FALSE(twin::is_mate(game.position));
    EXPECT_TRUE(twin::is_stalemate(game.position));
    EXPECT_EQ(twin::game_result(game), Result::stalemate);
}

TEST(TwinResult, FiftyMovesUnlessTheLastOneMates) {
    Game game = game_of("7k/8/8/8/8/8/8/RK6 w - - 98 1");
    ASSERT_TRUE(twin::game_play(game, "a1a2"));
    EXPECT_EQ(twin::game_result(game), Result::ongoing);
    ASSERT_TRUE(twin::game_play(game, "h8g8"));
    EXPECT_EQ(twin::game_result(game), Result::fifty);

    Game mate = game_of("7k/8/6K1/8/8/8/8/R7 w - - 99 1");
    ASSERT_TRUE(twin::game_play(mate, "a1a8"));
    EXPECT_EQ(twin::game_result(mate), Result::mate);
}

TEST(TwinResult, ClockStartsAgainWithPawnMoveOrCapture) {
    const std::string fen = "4k3/8/8/8/8/n7/P6R/4K3 w - - 40 1";
    EXPECT_EQ(fen_after(fen, {"h2g2"}), "4k3/8/8/8/8/n7/P5R1/4K3 b - - 41 1");
    EXPECT_EQ(fen_after(fen, {"h2g2", "a3c4", "a2a3"}), "4k3/8/8/8/2n5/P7/6R1/4K3 b - - 0 1");
    EXPECT_EQ(fen_after(fen, {"h2c2", "a3c2"}), "4k3/8/8/8/8/8/P1n5/4K3 w - - 0 1");
}

TEST(TwinResult, RepetitionAtTheThirdTime) {
    Game game = twin::game_start();
    const Texts round = {"g1f3", "g8f6", "f3g1", "f6g8"};
    ASSERT_TRUE(play_all(game, round));
    EXPECT_EQ(twin::game_result(game), Result::ongoing);
    ASSERT_TRUE(play_all(game, {"g1f3", "g8f6", "f3g1"}));
    EXPECT_EQ(twin::game_result(game), Result::ongoing);
    ASSERT_TRUE(twin::game_play(game, "f6g8"));
    EXPECT_EQ(twin::game_result(game), Result::repetition);
}

TEST(TwinResult, LostCastlingRightMakesAnotherPosition) {
    // The bishop keeps the castling move itself off the list, with the right and without.
    Game game = game_of("4k3/8/8/8/8/8/8/4KB1R w K - 0 1");
    const Texts round = {"e1e2", "e8e7", "e2e1", "e7e8"};
    ASSERT_TRUE(play_all(game, round));
    ASSERT_TRUE(play_all(game, round));
    EXPECT_EQ(twin::game_result(game), Result::ongoing);
    ASSERT_TRUE(twin::game_play(game, "e1e2"));
    EXPECT_EQ(twin::game_result(game), Result::repetition);
}

TEST(TwinResult, OnlyAPossibleEnPassantCaptureMakesAnotherPosition) {
    const Texts round = {"e1d1", "g8h8", "d1e1", "h8g8"};
    Game possible = game_of("6k1/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    ASSERT_TRUE(play_all(possible, round));
    ASSERT_TRUE(play_all(possible, round));
    EXPECT_EQ(twin::game_result(possible), Result::ongoing);

    Game pinned = game_of("4r1k1/8/8/3pP3/8/8/8/4K3 w - d6 0 1");
    ASSERT_TRUE(play_all(pinned, round));
    ASSERT_TRUE(play_all(pinned, round));
    EXPECT_EQ(twin::game_result(pinned), Result::repetition);
}

TEST(TwinResult, MaterialThatCannotMate) {
    struct Case {
        const char* fen;
        Result result;
    };
    for (const Case& c : {
             Case{"4k3/8/8/8/8/8/8/4K3 w - - 0 1", Result::material},
             Case{"4k3/8/8/8/8/8/8/4KN2 b - - 0 1", Result::material},
             Case{"4kb2/8/8/8/8/8/8/4K3 w - - 0 1", Result::material},
             Case{"4kb2/8/8/8/8/8/8/2B1K3 w - - 0 1", Result::material},  // both on dark squares
             Case{"4kb2/8/8/8/8/8/8/4KB2 w - - 0 1", Result::ongoing},    // one on each colour
             Case{"4kn2/8/8/8/8/8/8/4KN2 w - - 0 1", Result::ongoing},
             Case{"4k3/8/8/8/8/8/8/4KNN1 w - - 0 1", Result::ongoing},
             Case{"4kn2/8/8/8/8/8/8/4KB2 w - - 0 1", Result::ongoing},
             Case{"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", Result::ongoing},
             Case{"4k3/8/8/8/8/8/8/R3K3 w - - 0 1", Result::ongoing},
             Case{"4k3/8/8/8/8/8/8/Q3K3 w - - 0 1", Result::ongoing},
         }) {
        EXPECT_EQ(twin::game_result(game_of(c.fen)), c.result) << c.fen;
    }
}

TEST(TwinResult, NamesAreThoseOfTheStatusCommand) {
    EXPECT_EQ(twin::result_name(Result::ongoing), "ongoing");
    EXPECT_EQ(twin::result_name(Result::mate), "mate");
    EXPECT_EQ(twin::result_name(Result::stalemate), "stalemate");
    EXPECT_EQ(twin::result_name(Result::fifty), "fifty");
    EXPECT_EQ(twin::result_name(Result::repetition), "repetition");
    EXPECT_EQ(twin::result_name(Result::material), "material");
}

TEST(TwinGame, IllegalMoveLeavesTheGameAsItWas) {
    Game game = twin::game_start();
    for (const char* move : {"e2e5", "e7e5", "e2e4q", "e2", "", "e1e2", "0000", "E2E4"}) {
        EXPECT_FALSE(twin::game_play(game, move)) << move;
        EXPECT_EQ(twin::position_to_fen(game.position), twin::kStartFen) << move;
        EXPECT_EQ(game.history.size(), 1U) << move;
    }
}

TEST(TwinSquare, TextIsTwoCharactersOnTheBoard) {
    const std::optional<twin::Square> h8 = twin::square_from_text("h8");
    ASSERT_TRUE(h8.has_value());
    EXPECT_EQ(h8->file, 7);
    EXPECT_EQ(h8->rank, 7);
    for (const char* text : {"", "e", "e44", "i1", "a0", "a9", "A1", "4e"}) {
        EXPECT_FALSE(twin::square_from_text(text).has_value()) << text;
    }
}

}  // namespace
