#include "board/exchange.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "board/movegen.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of;
using test::text_of;

Score see_of(std::string_view fen, std::string_view move) {
    const Board board = board_of(fen);
    return see(move_from_string(move, board), board);
}

struct Row {
    std::string_view fen;
    std::string_view move;
    Score value;
};

void expect_values(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        EXPECT_EQ(see_of(row.fen, row.move), row.value) << row.move << " in " << row.fen;
    }
}

TEST(Exchange, ACaptureNobodyAnswersWinsTheMan) {
    expect_values({
        {"4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5", 100},
        {"4k3/8/8/3n4/8/8/8/3RK3 w - - 0 1", "d1d5", 300},
        {"4k3/8/8/3b4/8/8/8/3RK3 w - - 0 1", "d1d5", 325},
        {"4k3/8/8/3r4/8/8/8/3QK3 w - - 0 1", "d1d5", 500},
        {"4k3/8/8/3q4/4K3/8/8/8 w - - 0 1", "e4d5", 1000},
        {"4k3/8/8/8/8/8/8/3RK3 w - - 0 1", "d1d5", 0},
    });
}

TEST(Exchange, AManMovedIntoAnAttackIsLost) {
    expect_values({
        {"4k3/8/2p5/8/8/8/8/3QK3 w - - 0 1", "d1d5", -1000},
        {"4k3/8/2p5/8/8/8/8/3RK3 w - - 0 1", "d1d5", -500},
        {"4k3/8/2p5/8/8/8/6B1/4K3 w - - 0 1", "g2d5", -325},
        {"4k3/8/2p5/8/8/2N5/8/4K3 w - - 0 1", "c3d5", -300},
        {"4k3/8/2p5/8/3P4/8/8/4K3 w - - 0 1", "d4d5", -100},
    });
}

TEST(Exchange, ADefendedManIsTradedForItsTaker) {
    expect_values({
        {"4k3/8/2p5/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5", 0},
        {"4k3/8/2p5/3p4/8/2N5/8/4K3 w - - 0 1", "c3d5", 100 - 300},
        {"4k3/8/2p5/3n4/8/8/6B1/4K3 w - - 0 1", "g2d5", 300 - 325},
        {"4k3/8/2p5/3r4/8/8/8/3QK3 w - - 0 1", "d1d5", 500 - 1000},
        {"4k3/8/2p5/3q4/8/8/8/3RK3 w - - 0 1", "d1d5", 1000 - 500},
    });
}

TEST(Exchange, ASideStopsWhenGoingOnDoesNotPay) {
    expect_values({
        // Pawn takes knight; the queen does not take back, a rook guards d5.
        {"3qk3/8/8/3n4/4P3/8/8/3RK3 w - - 0 1", "e4d5", 300},
        // Rook takes pawn, queen takes rook, rook takes queen: Black does better to stop.
        {"3qk3/8/8/3p4/8/8/3R4/3RK3 w - - 0 1", "d2d5", 100},
        // A knight takes the rook instead, and then the second rook the knight.
        {"4k3/2n5/8/3p4/8/8/3R4/3RK3 w - - 0 1", "d2d5", 100 - 500 + 300},
    });
}

TEST(Exchange, TheLeastValuableManTakesBackFirst) {
    expect_values({
        // Black answers with the pawn, not with the queen: the bishop takes the pawn, and the rook
        // behind the lines guards the bishop.
        {"3qk3/8/2p5/3p4/8/2N5/6B1/3RK3 w - - 0 1", "c3d5", 100 - 300 + 100},
        {"3qk3/8/2p5/3p4/8/2N1N3/8/4K3 w - - 0 1", "c3d5", 100 - 300},
        // White's pawn recaptures before its queen does.
        {"3rk3/8/8/3p4/2P5/4N3/3Q4/4K3 w - - 0 1", "e3d5", 100},
        {"3rk3/5n2/4p3/3p4/2P5/4N3/8/3QK3 w - - 0 1", "e3d5", 100 - 300 + 100},
    });
}

TEST(Exchange, ManBehindTheMoverJoinsIn) {
    expect_values({
        // The rook behind the rook: rook takes, rook takes, rook takes.
        {"3rk3/8/8/3p4/8/8/3R4/3RK3 w - - 0 1", "d2d5", 100},
        {"3rk3/3r4/8/3p4/8/8/3R4/3RK3 w - - 0 1", "d2d5", 100 - 500},
        // A bishop behind the capturing pawn.
        {"4k3/8/2p5/3p4/4P3/5B2/8/4K3 w - - 0 1", "e4d5", 100},
        // A rook on the diagonal does not join.
        {"4k3/8/2p5/3p4/4P3/5R2/8/4K3 w - - 0 1", "e4d5", 0},
        // An enemy man behind the mover joins too: the bishop on f3 takes what takes on d5.
        {"4k3/8/8/3n4/4P3/5b2/8/4K3 w - - 0 1", "e4d5", 300 - 100},
    });
}

TEST(Exchange, MenBehindTheTakersJoinIn) {
    expect_values({
        // Queen behind rook behind the target's defender: each is uncovered by the one before.
        {"3qk3/3r4/8/3p4/8/3R4/3Q4/4K3 w - - 0 1", "d3d5", 100 - 500},
        {"3qk3/3r4/8/3p4/8/3R4/3R4/3QK3 w - - 0 1", "d3d5", 100},
        // A man that does not move along the line blocks what is behind it.
        {"3qk3/3n4/8/3p4/8/8/3R4/4K3 w - - 0 1", "d2d5", 100},
        // Two pawns, each with a bishop behind it.
        {"4k3/1b6/2p5/3p4/4P3/5B2/8/4K3 w - - 0 1", "e4d5", 0},
    });
}

TEST(Exchange, KingsTakePartButNeverIntoADefence) {
    expect_values({
        {"8/8/3k4/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5", 0},
        {"8/8/3k4/3p4/4P3/5B2/8/4K3 w - - 0 1", "e4d5", 100},
        {"4k3/8/2p5/3p4/4K3/8/8/8 w - - 0 1", "e4d5", 100 - 10000},
        {"8/8/2k5/3r4/2K1B3/8/8/8 w - - 0 1", "e4d5", 500},
        // Rook takes, and the king may take back, for nothing else of White's is there.
        {"8/8/3k4/3p4/8/8/8/3RK3 w - - 0 1", "d1d5", 100 - 500},
    });
}

TEST(Exchange, EnPassantTakesAPawnAndUncoversItsFile) {
    expect_values({
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", 100},
        {"4k3/2p5/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", 0},
        {"4k3/2p5/8/3pP3/8/8/8/3RK3 w - d6 0 1", "e5d6", 100},
        {"4k3/2p5/8/3pP3/8/B7/8/4K3 w - d6 0 1", "e5d6", 100},
        // The rook behind the captured pawn is Black's own.
        {"4k3/8/8/3pP3/8/8/3r4/6K1 w - d6 0 1", "e5d6", 0},
        {"6k1/8/8/8/3pP3/2P5/8/4RK2 b - e3 0 1", "d4e3", 0},
        // Here it is Black's rook that guards the pawn once White's is gone.
        {"4r1k1/8/8/8/3pP3/8/8/4RK2 b - e3 0 1", "d4e3", 100},
    });
}

TEST(Exchange, APromotionGainsThePieceAndRisksIt) {
    expect_values({
        {"8/P7/8/8/8/8/8/K6k w - - 0 1", "a7a8q", 900},
        {"8/P7/8/8/8/8/8/K6k w - - 0 1", "a7a8n", 200},
        {"8/P7/8/8/8/8/8/K6k w - - 0 1", "a7a8b", 225},
        {"8/P7/8/8/8/8/8/K6k w - - 0 1", "a7a8r", 400},
        {"7r/P7/8/8/8/8/8/K6k w - - 0 1", "a7a8q", 900 - 1000},
        {"7r/P7/8/8/8/8/8/K6k w - - 0 1", "a7a8n", 200 - 300},
        {"1r6/P7/8/8/8/8/8/K6k w - - 0 1", "a7b8q", 500 + 900},
        {"1r5r/P7/8/8/8/8/8/K6k w - - 0 1", "a7b8q", 500 + 900 - 1000},
        // The rook behind the pawn protects the new queen.
        {"1r6/P7/8/8/8/8/8/R3K2k w - - 0 1", "a7a8q", 900 - 1000 + 500},
    });
}

TEST(Exchange, NoPromotionIsSeenInsideTheExchange) {
    // The pawn takes back on e1 as a pawn worth 100, and a pawn is what the second rook wins.
    expect_values({{"4r2k/8/8/8/8/8/3p4/K3R1RR b - - 0 1", "e8e1", 500 - (500 - (500 - 100))}});
    expect_values({{"7k/8/8/8/8/8/3p4/K3n1R1 w - - 0 1", "g1e1", 300 - 500}});
}

TEST(Exchange, PinsAreNotLookedAt) {
    // The knight on d7 is pinned to its king and still counts as a defender of e5.
    expect_values({{"3k4/3n4/8/4p3/8/8/8/3RR1K1 w - - 0 1", "e1e5", 100 - 500}});
}

TEST(Exchange, TheMoverIsTheManOnTheOriginWhoeverIsToMove) {
    for (const std::string side : {" w", " b"}) {
        const std::string defended = "4k3/8/2p5/3p4/4P3/8/8/4K3" + side + " - - 0 1";
        EXPECT_EQ(see_of(defended, "e4d5"), 0) << defended;
        EXPECT_EQ(see_of(defended, "d5e4"), 100) << defended;
        const std::string knights = "4k3/8/2p5/3p4/5N2/8/8/4K3" + side + " - - 0 1";
        EXPECT_EQ(see_of(knights, "f4d5"), -200) << knights;
    }
}

TEST(Exchange, CastlingIsAKingsStepWithoutGain) {
    expect_values({{"4k3/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", 0}});
}

TEST(Exchange, OfEqualMenTheOneListedFirstTakesFirst) {
    expect_values({
        // The queen on f5 is listed before the one on d8; taking would let the rook behind it in.
        {"k2q4/8/8/3p1q1R/8/2N5/8/6K1 w - - 0 1", "c3d5", 100},
        // The queen on d2 is listed before the one on f5 and takes the knight for nothing.
        {"k7/8/8/3p1q1R/8/2N5/3q4/6K1 w - - 0 1", "c3d5", 100 - 300},
    });
}

// The values that swapping off can give when equal men may take in any order.
std::set<int> swap_values(const test::Letters& letters, twin::Square to, bool white, int prey) {
    const auto value_of = [&](twin::Square square) {
        const char letter = test::letter_at(letters, square);
        return static_cast<int>(piece_value_of(piece_from_char(letter)));
    };
    const std::vector<twin::Square> takers = test::attackers_of(letters, to, white);
    if (takers.empty()) {
        return {0};
    }
    int least = value_of(takers[0]);
    for (const twin::Square taker : takers) {
        least = std::min(least, value_of(taker));
    }
    std::set<int> values;
    for (const twin::Square taker : takers) {
        if (value_of(taker) != least) {
            continue;
        }
        test::Letters after = letters;
        test::letter_at(after, taker) = '.';
        for (const int answer : swap_values(after, to, !white, least)) {
            values.insert(std::max(0, prey - answer));
        }
    }
    return values;
}

std::set<int> exchange_values(const twin::Position& position, Move code) {
    const twin::Move move = test::twin_move(code);
    test::Letters letters = position.board;
    const char man = test::letter_at(letters, move.from);
    const bool white = test::is_white_letter(man);
    int gain = piece_value_of(piece_from_char(test::letter_at(letters, move.to)));
    int prey = piece_value_of(piece_from_char(man));
    test::letter_at(letters, move.from) = '.';
    if (move_is_promotion(code)) {
        prey = piece_value_of(piece_from_char(move.promotion));
        gain += prey - 100;
    } else if (move_is_en_passant(code)) {
        gain = 100;
        test::letter_at(letters, {move.to.file, move.from.rank}) = '.';
    }
    std::set<int> values;
    for (const int answer : swap_values(letters, move.to, !white, prey)) {
        values.insert(gain - answer);
    }
    return values;
}

TEST(Exchange, RandomPositionsAgreeWithSwappingOffOnABoardOfLetters) {
    int losing = 0;
    test::random_walks(13, 4, 60, [&losing](const Board& seen) {
        Board board = seen;
        const twin::Position position = test::twin_of(board);
        MoveList list;
        gen_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            if (move_kind(move) == kKindCastling) {
                continue;
            }
            const std::set<int> values = exchange_values(position, move);
            const Score value = see(move, board);
            ASSERT_TRUE(values.contains(value))
                << value << " for " << text_of(move) << " in " << fen_of(seen);
            losing += value < 0 ? 1 : 0;
        }
    });
    EXPECT_GT(losing, 1000);
}

TEST(Exchange, TheShortQuestionAgreesWithTheValue) {
    int losing = 0;
    test::random_walks(17, 4, 60, [&losing](const Board& seen) {
        Board board = seen;
        MoveList list;
        gen_moves(list, board);
        for (const Move move : test::moves_of(list)) {
            const Score value = see(move, board);
            for (const Score threshold : {value - 1, value, value + 1, -100, 0}) {
                ASSERT_EQ(see_at_least(move, board, threshold), value >= threshold)
                    << threshold << " for " << text_of(move) << " in " << fen_of(seen);
            }
            losing += value < 0 ? 1 : 0;
        }
    });
    EXPECT_GT(losing, 1000);
}

TEST(Exchange, ThresholdsOfAManUncoveredByTheMoverComeBeforeItsEqualInPlainView) {
    // The queen on d2, uncovered, captures before the one on a5, and only it uncovers the rook. The
    // other way round White would have nothing to capture with.
    const char* const fen = "7k/8/8/q2r4/8/3Q4/3q4/3R3K w - - 0 1";
    const Board board = board_of(fen);
    const Move move = move_make(kD3, kD5);
    EXPECT_EQ(see(move, board), 0) << fen;
    EXPECT_TRUE(see_at_least(move, board, 0)) << fen;
    EXPECT_FALSE(see_at_least(move, board, 1)) << fen;
}

}  // namespace
}  // namespace zar
