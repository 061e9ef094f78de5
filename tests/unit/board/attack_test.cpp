#include "board/attack.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "board/fen.h"
#include "board/make.h"
#include "board/movegen.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::difference;
using test::fen_of;

Move code_of(std::string_view text, const Board& board) { return move_from_string(text, board); }

bool is_legal(std::string_view fen, std::string_view text) {
    Board board = board_of(fen);
    return move_is_legal(code_of(text, board), board);
}

bool is_check(std::string_view fen, std::string_view text) {
    Board board = board_of(fen);
    return move_is_check(code_of(text, board), board);
}

Attack attack_of(std::string_view fen) {
    Attack attack;
    attack_set(attack, board_of(fen));
    return attack;
}

TEST(Attack, ALineIsAttackedUpToTheFirstMan) {
    EXPECT_TRUE(is_attacked(board_of("k7/8/8/8/8/8/8/RK6 b - - 0 1"), kA8, kWhite));
    EXPECT_FALSE(is_attacked(board_of("k7/8/8/8/N7/8/8/RK6 b - - 0 1"), kA8, kWhite));
    EXPECT_FALSE(is_attacked(board_of("k7/8/8/8/n7/8/8/RK6 b - - 0 1"), kA8, kWhite));
    EXPECT_TRUE(is_attacked(board_of("k7/8/8/8/n7/8/8/RK6 b - - 0 1"), kA4, kWhite));
}

TEST(Attack, PawnsAttackDiagonallyForward) {
    const Board board = board_of("4k3/8/8/8/4P3/8/8/4K3 w - - 0 1");
    EXPECT_TRUE(is_attacked(board, kD5, kWhite));
    EXPECT_TRUE(is_attacked(board, kF5, kWhite));
    EXPECT_FALSE(is_attacked(board, kE5, kWhite));
    EXPECT_FALSE(is_attacked(board, kD3, kWhite));
    EXPECT_FALSE(is_attacked(board, kD5, kBlack));
    const Board black = board_of("4k3/8/8/4p3/8/8/8/4K3 w - - 0 1");
    EXPECT_TRUE(is_attacked(black, kD4, kBlack));
    EXPECT_TRUE(is_attacked(black, kF4, kBlack));
    EXPECT_FALSE(is_attacked(black, kE4, kBlack));
    EXPECT_FALSE(is_attacked(black, kD6, kBlack));
}

TEST(Attack, EverySquareAgreesWithABoardOfLetters) {
    test::random_walks(8, 2, 60, [](const Board& board) {
        const twin::Position position = test::twin_of(board);
        for (Square64 index = 0; index < 64; ++index) {
            for (const Color color : {kWhite, kBlack}) {
                ASSERT_EQ(is_attacked(board, square_of_64(index), color),
                          twin::is_attacked(position, test::twin_square(index), color == kWhite))
                    << index << " by " << color << " in " << fen_of(board);
            }
        }
        ASSERT_EQ(board_is_check(board), twin::is_check(position)) << fen_of(board);
        ASSERT_TRUE(board_is_legal(board)) << fen_of(board);
    });
}

TEST(Attack, LinesAreEmptyStrictlyBetweenTheirEnds) {
    const Board board = board_of("4k3/8/8/8/8/8/1P6/R2QK3 w Q - 0 1");
    EXPECT_TRUE(line_is_empty(board, kA1, kD1));
    EXPECT_FALSE(line_is_empty(board, kA1, kE1));
    EXPECT_TRUE(line_is_empty(board, kA1, kA8));
    EXPECT_TRUE(line_is_empty(board, kA8, kA1));
    EXPECT_FALSE(line_is_empty(board, kA1, kH8));
    EXPECT_FALSE(line_is_empty(board, kH8, kA1));
    EXPECT_TRUE(line_is_empty(board, kA1, kB1));
    EXPECT_TRUE(line_is_empty(board, kA1, kB3));
}

TEST(Attack, ManIsPinnedExactlyWhenItsLeavingOpensALine) {
    int pinned = 0;
    test::random_walks(9, 4, 60, [&pinned](const Board& board) {
        const twin::Position position = test::twin_of(board);
        for (const Color color : {kWhite, kBlack}) {
            const twin::Square king = test::twin_square(square64_of(board_king(board, color)));
            const std::size_t attackers =
                test::attackers_of(position.board, king, color != kWhite).size();
            for (Square64 index = 0; index < 64; ++index) {
                const twin::Square square = test::twin_square(index);
                // A man of either colour may stand there; its own attack on the king is gone too.
                if (test::letter_at(position.board, square) == '.' ||
                    square_of_64(index) == board_king(board, color)) {
                    continue;
                }
                test::Letters letters = position.board;
                const bool attacked_itself =
                    test::is_white_letter(test::letter_at(letters, square)) != (color == kWhite) &&
                    test::letter_attacks(letters, square, king);
                test::letter_at(letters, square) = '.';
                const std::size_t then = test::attackers_of(letters, king, color != kWhite).size();
                const bool opens = then + (attacked_itself ? 1 : 0) > attackers;
                ASSERT_EQ(is_pinned(board, square_of_64(index), color), opens)
                    << index << " for " << color << " in " << fen_of(board);
                pinned += opens ? 1 : 0;
            }
        }
    });
    EXPECT_GT(pinned, 100);
}

TEST(Attack, APinNeedsTheRightSliderInLine) {
    EXPECT_TRUE(is_pinned(board_of("k3r3/8/8/8/8/8/4B3/4K3 w - - 0 1"), kE2, kWhite));
    EXPECT_FALSE(is_pinned(board_of("k3b3/8/8/8/8/8/4B3/4K3 w - - 0 1"), kE2, kWhite));
    EXPECT_FALSE(is_pinned(board_of("k3R3/8/8/8/8/8/4B3/4K3 b - - 0 1"), kE2, kWhite));
    EXPECT_FALSE(is_pinned(board_of("k3r3/8/8/8/4N3/8/4B3/4K3 w - - 0 1"), kE2, kWhite));
    EXPECT_TRUE(is_pinned(board_of("k7/8/8/b7/8/8/3P4/4K3 w - - 0 1"), kD2, kWhite));
    EXPECT_FALSE(is_pinned(board_of("k7/8/8/r7/8/8/3P4/4K3 w - - 0 1"), kD2, kWhite));
    EXPECT_FALSE(is_pinned(board_of("k7/8/8/8/8/8/3P4/4K3 w - - 0 1"), kD2, kWhite));
}

TEST(Attack, NoCheckersWithoutCheck) {
    const Attack attack = attack_of(kStartFen);
    EXPECT_EQ(attack.count, 0);
    EXPECT_EQ(attack.square[0], 0);
    EXPECT_EQ(attack.inc[0], 0);
}

TEST(Attack, ASliderCheckerComesWithTheStepTowardIt) {
    struct Row {
        std::string_view fen;
        Square square;
        int inc;
    };
    const std::vector<Row> rows = {
        {"k3r3/8/8/8/8/8/8/4K3 w - - 0 1", kE8, 16},  {"k7/8/8/8/8/8/8/r3K3 w - - 0 1", kA1, -1},
        {"k7/8/8/b7/8/8/8/4K3 w - - 0 1", kA5, 15},   {"k7/8/8/8/7q/8/8/4K3 w - - 0 1", kH4, 17},
        {"4K3/8/8/8/8/8/k7/4q3 w - - 0 1", kE1, -16}, {"k7/8/8/8/8/3n4/8/4K3 w - - 0 1", kD3, 0},
        {"k7/8/8/8/8/8/3p4/4K3 w - - 0 1", kD2, 0},   {"k7/8/8/8/8/8/5p2/4K3 w - - 0 1", kF2, 0},
        {"4k3/3P4/8/8/8/8/8/4K3 b - - 0 1", kD7, 0},  {"k7/8/8/8/8/8/4r3/4K3 w - - 0 1", kE2, 16},
    };
    for (const Row& row : rows) {
        const Attack attack = attack_of(row.fen);
        EXPECT_EQ(attack.count, 1) << row.fen;
        EXPECT_EQ(attack.square[0], row.square) << row.fen;
        EXPECT_EQ(attack.inc[0], row.inc) << row.fen;
        EXPECT_EQ(attack.square[1], 0) << row.fen;
        EXPECT_EQ(attack.inc[1], 0) << row.fen;
    }
}

TEST(Attack, PawnsAreFoundBeforePiecesAndPiecesInListOrder) {
    const Attack attack = attack_of("k3q3/8/8/b7/8/3n1n2/3p1p2/r3K2r w - - 0 1");
    const std::vector<std::pair<Square, int>> expected = {{kF2, 0}, {kD2, 0}, {kE8, 16}, {kA1, -1},
                                                          {kH1, 1}, {kD3, 0}, {kF3, 0}};
    ASSERT_EQ(attack.count, static_cast<int>(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(attack.square[i], expected[i].first) << i;
        EXPECT_EQ(attack.inc[i], expected[i].second) << i;
    }
}

TEST(Attack, BlackKingIsCheckedFromWhitesPawnsHigherFileFirst) {
    const Attack attack = attack_of("4k3/3P1P2/8/8/8/8/8/4K3 b - - 0 1");
    ASSERT_EQ(attack.count, 2);
    EXPECT_EQ(attack.square[0], kF7);
    EXPECT_EQ(attack.square[1], kD7);
}

TEST(Attack, APinnedManMayMoveAlongItsLineOnly) {
    constexpr std::string_view bishop = "k3r3/8/8/8/8/8/4B3/4K3 w - - 0 1";
    EXPECT_FALSE(is_legal(bishop, "e2d3"));
    EXPECT_FALSE(is_legal(bishop, "e2f1"));
    constexpr std::string_view rook = "k3r3/8/8/8/8/8/4R3/4K3 w - - 0 1";
    EXPECT_TRUE(is_legal(rook, "e2e5"));
    EXPECT_TRUE(is_legal(rook, "e2e8"));
    EXPECT_FALSE(is_legal(rook, "e2d2"));
}

TEST(Attack, EnPassantThatOpensTheRankIsNotLegal) {
    EXPECT_FALSE(is_legal("7k/8/8/KPp4r/8/8/8/8 w - c6 0 1", "b5c6"));
    EXPECT_TRUE(is_legal("7k/8/8/KPp5/7r/8/8/8 w - c6 0 1", "b5c6"));
}

TEST(Attack, AKingMayNotStepOntoAnAttackedSquare) {
    constexpr std::string_view fen = "r3k3/8/8/8/8/8/1r6/4K2R w K - 0 1";
    EXPECT_FALSE(is_legal(fen, "e1d2"));
    EXPECT_TRUE(is_legal(fen, "e1d1"));
    EXPECT_TRUE(is_legal(fen, "e1g1"));
    EXPECT_FALSE(is_legal("4k3/8/8/8/3b4/8/8/4K2R w K - 0 1", "e1g1"));
}

TEST(Attack, LegalityAgreesWithPlayingTheMove) {
    int illegal = 0;
    test::random_walks(10, 6, 60, [&illegal](const Board& seen) {
        Board board = seen;
        MoveList list;
        Attack attack;
        attack_set(attack, board);
        if (attack.count > 0) {
            gen_evasions_pseudo(list, board, attack);
        } else {
            gen_moves(list, board);
        }
        for (const Move move : test::moves_of(list)) {
            const bool legal = move_is_legal(move, board);
            ASSERT_EQ(difference(board, seen), "");
            UndoInfo undo;
            move_do(board, move, undo);
            ASSERT_EQ(legal, board_is_legal(board))
                << test::text_of(move) << " in " << fen_of(seen);
            move_undo(board, move, undo);
            illegal += legal ? 0 : 1;
        }
    });
    EXPECT_GT(illegal, 100);
}

TEST(Attack, ChecksOfEveryKindAreSeen) {
    EXPECT_TRUE(is_check("4k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "a1a8"));
    EXPECT_FALSE(is_check("4k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "a1a7"));
    EXPECT_FALSE(is_check("1n2k3/8/8/8/8/8/8/R3K3 w Q - 0 1", "a1a8")) << "blocked by b8";
    EXPECT_TRUE(is_check("4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1", "e4c5")) << "discovered";
    EXPECT_FALSE(is_check("4k3/4p3/8/8/4N3/8/8/K3R3 w - - 0 1", "e4c5"));
    EXPECT_FALSE(is_check("4k3/8/8/8/4P3/8/8/K3R3 w - - 0 1", "e4e5")) << "stays on the line";
    EXPECT_TRUE(is_check("4k3/8/5P2/8/8/8/8/4K3 w - - 0 1", "f6f7"));
    EXPECT_TRUE(is_check("5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1")) << "castling";
    EXPECT_TRUE(is_check("8/P6k/8/8/8/8/8/1K6 w - - 0 1", "a7a8q") == false);
    EXPECT_TRUE(is_check("7k/P7/8/8/8/8/8/1K6 w - - 0 1", "a7a8q")) << "promotion";
    EXPECT_FALSE(is_check("7k/P7/8/8/8/8/8/1K6 w - - 0 1", "a7a8n"));
    EXPECT_TRUE(is_check("8/1k6/8/3pP3/8/8/6B1/4K3 w - d6 0 1", "e5d6")) << "en passant";
    EXPECT_TRUE(is_check("4k3/8/8/8/8/8/4K3/4R3 w - - 0 1", "e2d2")) << "the king uncovers";
}

TEST(Attack, ChecksAgreeWithABoardOfLetters) {
    int checks = 0;
    test::random_walks(11, 6, 60, [&checks](const Board& seen) {
        Board board = seen;
        const twin::Position position = test::twin_of(board);
        MoveList list;
        gen_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            const bool check = move_is_check(move, board);
            ASSERT_EQ(difference(board, seen), "");
            ASSERT_EQ(check, twin::is_check(twin::position_after(position, test::twin_move(move))))
                << test::text_of(move) << " in " << fen_of(seen);
            checks += check ? 1 : 0;
        }
    });
    EXPECT_GT(checks, 100);
}

TEST(Attack, MateAndStalemate) {
    Board mate = board_of("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3");
    EXPECT_TRUE(board_is_mate(mate));
    EXPECT_FALSE(board_is_stalemate(mate));
    Board stalemate = board_of("k7/2Q5/8/8/8/8/8/1K6 b - - 0 1");
    EXPECT_FALSE(board_is_mate(stalemate));
    EXPECT_TRUE(board_is_stalemate(stalemate));
    Board helpless = board_of("k2Q4/1p6/1K6/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(board_is_mate(helpless));
    Board start = board_of(kStartFen);
    EXPECT_FALSE(board_is_mate(start));
    EXPECT_FALSE(board_is_stalemate(start));
    // Every move of the only man that has one would uncover the king.
    Board stuck = board_of("kb5R/8/1K6/8/8/8/8/8 b - - 0 1");
    EXPECT_TRUE(board_is_stalemate(stuck));
}

TEST(Attack, MateAndStalemateAgreeWithTheRulesInRandomEndgames) {
    int ends = 0;
    test::random_walks(12, 8, 200, [&ends](const Board& seen) {
        Board board = seen;
        const twin::Position position = test::twin_of(board);
        const bool mate = board_is_mate(board);
        const bool stalemate = board_is_stalemate(board);
        if (mate || stalemate || board.total_count < 6) {
            ASSERT_EQ(mate, twin::is_mate(position)) << fen_of(seen);
            ASSERT_EQ(stalemate, twin::is_stalemate(position)) << fen_of(seen);
        }
        ends += mate || stalemate ? 1 : 0;
    });
    EXPECT_GT(ends, 5);
}

TEST(Attack, FiftyMovesAreADrawUnlessTheLastOneMated) {
    const auto is_draw = [](const std::string& fen) {
        Board board = board_of(fen);
        return board_is_repetition(board);
    };
    EXPECT_FALSE(is_draw("k7/8/8/8/8/8/8/1R2K3 w - - 99 1"));
    EXPECT_TRUE(is_draw("k7/8/8/8/8/8/8/R3K3 b - - 100 1")) << "in check, but not mated";
    EXPECT_TRUE(is_draw("k7/8/8/8/8/8/8/1R2K3 b - - 100 1"));
    EXPECT_FALSE(is_draw("k6R/8/1K6/8/8/8/8/8 b - - 100 1")) << "mate";
    EXPECT_TRUE(is_draw("k6R/8/1K6/8/8/8/8/8 b - - 101 1")) << "mate, but too late";
    EXPECT_TRUE(is_draw("k7/8/8/8/8/8/8/1R2K3 w - - 1000 1"));
}

TEST(Attack, OneEarlierOccurrenceIsARepetition) {
    Board board = board_of(kStartFen);
    test::play(board, "g1f3 g8f6 f3g1");
    EXPECT_FALSE(board_is_repetition(board));
    test::play(board, "f6g8");
    EXPECT_TRUE(board_is_repetition(board));
    test::play(board, "e2e4");
    EXPECT_FALSE(board_is_repetition(board));
}

TEST(Attack, LostRightsMakeAnotherPosition) {
    Board board = board_of("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    test::play(board, "h1h2 h8h7 h2h1 h7h8");
    EXPECT_FALSE(board_is_repetition(board));
    test::play(board, "h1h2 h8h7 h2h1 h7h8");
    EXPECT_TRUE(board_is_repetition(board));
}

TEST(Attack, RepetitionsAreLookedForAtEvenDistancesUpToTheClock) {
    Board board = board_of("4k3/8/8/8/8/8/8/R3K3 w - - 20 1");
    ASSERT_FALSE(board_is_repetition(board));
    const auto with_key_at = [&board](int back, int clock) {
        Board changed = board;
        changed.key_history[static_cast<std::size_t>(changed.sp - back)] = changed.key;
        changed.ply_nb = clock;
        return board_is_repetition(changed);
    };
    EXPECT_FALSE(with_key_at(2, 20));
    EXPECT_FALSE(with_key_at(5, 20));
    EXPECT_TRUE(with_key_at(4, 20));
    EXPECT_TRUE(with_key_at(4, 4));
    EXPECT_FALSE(with_key_at(4, 3)) << "fewer than four half-moves cannot repeat";
    EXPECT_TRUE(with_key_at(20, 20));
    EXPECT_FALSE(with_key_at(20, 19));
    EXPECT_FALSE(with_key_at(20, 18));
    EXPECT_TRUE(with_key_at(18, 19));
}

TEST(Attack, NoRepetitionIsFoundAcrossANullMove) {
    Board board = board_of(kStartFen);
    test::play(board, "g1f3 g8f6 f3g1 f6g8");
    UndoInfo first;
    UndoInfo second;
    move_do_null(board, first);
    move_do_null(board, second);
    EXPECT_FALSE(board_is_repetition(board));
    move_undo_null(board, second);
    move_undo_null(board, first);
    EXPECT_TRUE(board_is_repetition(board));
}

}  // namespace
}  // namespace zar
