// The lists of all moves, of captures, of quiet moves and of legal moves.

#include "board/movegen.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "board/captures.h"
#include "board/fen.h"
#include "board/quiets.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::difference;
using test::fen_of;
using test::Texts;
using test::texts_of;
using test::words_of;

// Fifteen queens, which only a set-up can bring about.
constexpr const char* kFifteenQueens = "Q3QQ2/2Q4Q/4Q3/1Q4Q1/3Q4/Q4Q2/ppQ4Q/krK1QQ2 w - - 0 1";
// The most moves that a position reached from the start can have.
constexpr const char* kMostMoves = "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1";

Texts moves_in(std::string_view fen) {
    Board board = board_of(fen);
    MoveList list;
    gen_moves(list, board);
    return texts_of(list);
}

Texts captures_in(std::string_view fen) {
    const Board board = board_of(fen);
    MoveList list;
    gen_captures(list, board);
    return texts_of(list);
}

Texts quiets_in(std::string_view fen) {
    const Board board = board_of(fen);
    MoveList list;
    gen_quiets(list, board);
    return texts_of(list);
}

Texts legal_in(std::string_view fen) {
    Board board = board_of(fen);
    MoveList list;
    gen_legal_moves(list, board);
    return texts_of(list);
}

bool has(const Texts& texts, const std::string& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

TEST(Movegen, TheStartPositionHasTwentyMovesKnightsFirst) {
    EXPECT_EQ(moves_in(kStartFen),
              words_of("b1a3 b1c3 g1f3 g1h3 a2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 "
                       "f2f4 g2g3 g2g4 h2h3 h2h4"));
    EXPECT_EQ(quiets_in(kStartFen), moves_in(kStartFen));
    EXPECT_TRUE(captures_in(kStartFen).empty());
}

TEST(Movegen, PiecesGoInListOrderStepByStepByDistance) {
    constexpr const char* fen = "k7/8/8/1p6/4n3/2B4R/3K4/N7 w - - 0 1";
    EXPECT_EQ(moves_in(fen), words_of("d2c1 d2d1 d2e1 d2c2 d2e2 d2d3 d2e3 "
                                      "h3h2 h3h1 h3g3 h3f3 h3e3 h3d3 h3h4 h3h5 h3h6 h3h7 h3h8 "
                                      "c3b2 c3b4 c3a5 c3d4 c3e5 c3f6 c3g7 c3h8 "
                                      "a1c2 a1b3"));
}

TEST(Movegen, QueensStepLikeKings) {
    EXPECT_EQ(moves_in("7k/8/8/8/8/2p5/PP6/KQ6 w - - 0 1"),
              words_of("b1c1 b1d1 b1e1 b1f1 b1g1 b1h1 b1c2 b1d3 b1e4 b1f5 b1g6 b1h7 "
                       "a2a3 a2a4 b2c3 b2b3 b2b4"));
}

TEST(Movegen, PawnsCaptureTowardTheAFileFirstThenPush) {
    constexpr const char* white = "4k3/8/8/8/8/p1p5/1P6/4K3 w - - 0 1";
    EXPECT_EQ(moves_in(white), words_of("e1d1 e1f1 e1d2 e1e2 e1f2 b2a3 b2c3 b2b3 b2b4"));
    constexpr const char* black = "4k3/1p6/P1P5/8/8/8/8/4K3 b - - 0 1";
    EXPECT_EQ(moves_in(black), words_of("e8d7 e8e7 e8f7 e8d8 e8f8 b7a6 b7c6 b7b6 b7b5"));
    EXPECT_EQ(captures_in(black), words_of("b7a6 b7c6"));
    EXPECT_EQ(quiets_in(black), words_of("e8d7 e8e7 e8f7 e8d8 e8f8 b7b6 b7b5"));
}

TEST(Movegen, APawnStepsTwiceOnlyFromHomeOverAnEmptySquare) {
    EXPECT_EQ(quiets_in("4k3/8/8/8/n7/1P1n4/P2P3P/7K w - - 0 1"),
              words_of("h1g1 h1g2 a2a3 h2h3 h2h4 b3b4"));
}

TEST(Movegen, APromotionIsFourCodesInEachGroup) {
    constexpr const char* fen = "n1n4k/1P6/8/8/8/8/8/K7 w - - 0 1";
    const Texts promotions =
        words_of("b7a8q b7a8n b7a8r b7a8b b7c8q b7c8n b7c8r b7c8b b7b8q b7b8n b7b8r b7b8b");
    EXPECT_EQ(captures_in(fen), promotions);
    EXPECT_EQ(quiets_in(fen), words_of("a1b1 a1a2 a1b2"));
    Texts all = words_of("a1b1 a1a2 a1b2");
    all.insert(all.end(), promotions.begin(), promotions.end());
    EXPECT_EQ(moves_in(fen), all);
    EXPECT_EQ(captures_in("k7/8/8/8/8/8/1p6/N1N4K b - - 0 1"),
              words_of("b2a1q b2a1n b2a1r b2a1b b2c1q b2c1n b2c1r b2c1b b2b1q b2b1n b2b1r b2b1b"));
    EXPECT_TRUE(captures_in("1n5k/1P6/8/8/8/8/8/K7 w - - 0 1").empty());
}

TEST(Movegen, EnPassantComesAfterTheOtherPawnMoves) {
    EXPECT_EQ(moves_in("7k/8/8/2PpP3/8/8/8/K7 w - d6 0 1"),
              words_of("a1b1 a1a2 a1b2 c5c6 e5e6 e5d6 c5d6"));
    EXPECT_EQ(captures_in("7k/8/8/2PpP3/8/8/8/K7 w - d6 0 1"), words_of("e5d6 c5d6"));
    EXPECT_EQ(captures_in("7k/8/8/8/2pPp3/8/8/K7 b - d3 0 1"), words_of("e4d3 c4d3"));
    EXPECT_EQ(captures_in("7k/8/8/8/Pp5p/8/8/K7 b - a3 0 1"), words_of("b4a3"));
    const Board board = board_of("7k/8/8/8/Pp5p/8/8/K7 b - a3 0 1");
    MoveList list;
    gen_captures(list, board);
    EXPECT_EQ(move_kind(list.move[0]), kKindEnPassant);
}

TEST(Movegen, CastlingComesLastKingSideFirst) {
    const Texts white = quiets_in("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
    EXPECT_EQ(Texts(white.end() - 2, white.end()), words_of("e1g1 e1c1"));
    const Texts black = quiets_in("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1");
    EXPECT_EQ(Texts(black.end() - 2, black.end()), words_of("e8g8 e8c8"));
    EXPECT_TRUE(captures_in("4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1").empty());
}

TEST(Movegen, CastlingNeedsItsRightEmptySquaresAndASafeCrossing) {
    struct Row {
        const char* fen;
        const char* king_side;
        bool expected;
    };
    const std::vector<Row> rows = {
        {"4k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", true},
        {"4k3/8/8/8/8/8/8/R3K2R w Q - 0 1", "e1g1", false},
        {"4k3/8/8/8/8/8/8/R3K2R w K - 0 1", "e1c1", false},
        {"4k3/8/8/8/8/8/8/R3K2R w K - 0 1", "e1g1", true},
        {"4k3/8/8/8/8/8/8/R3K2R w Q - 0 1", "e1c1", true},
        {"r3k2r/8/8/8/8/8/8/4K3 b k - 0 1", "e8g8", true},
        {"r3k2r/8/8/8/8/8/8/4K3 b q - 0 1", "e8c8", true},
        {"4k3/8/8/8/8/8/8/R3KB1R w KQ - 0 1", "e1g1", false},
        {"4k3/8/8/8/8/8/8/R3K1nR w KQ - 0 1", "e1g1", false},
        {"4k3/8/8/8/8/8/8/RN2K2R w KQ - 0 1", "e1c1", false},
        {"4k3/8/8/8/8/8/8/R1N1K2R w KQ - 0 1", "e1c1", false},
        {"4k3/8/8/8/8/8/8/R2NK2R w KQ - 0 1", "e1c1", false},
        {"4kr2/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1g1", false},
        {"3rk3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1", false},
        {"1r2k3/8/8/8/8/8/8/R3K2R w KQ - 0 1", "e1c1", true},
        // The destination is left to the test of legality.
        {"4k3/8/8/8/3b4/8/8/4K2R w K - 0 1", "e1g1", true},
        {"r3k2r/8/8/8/8/8/8/R3KR2 b kq - 0 1", "e8g8", false},
        {"r3k2r/8/8/8/8/8/8/R3KR2 b kq - 0 1", "e8c8", true},
        {"rn2k2r/8/8/8/8/8/8/4K3 b kq - 0 1", "e8c8", false},
        {"r3kn1r/8/8/8/8/8/8/4K3 b kq - 0 1", "e8g8", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(has(moves_in(row.fen), row.king_side), row.expected)
            << row.king_side << " in " << row.fen;
    }
}

TEST(Movegen, CastlingIntoCheckIsGeneratedButNotLegal) {
    constexpr const char* fen = "4k3/8/8/8/3b4/8/8/4K2R w K - 0 1";
    EXPECT_TRUE(has(moves_in(fen), "e1g1"));
    EXPECT_FALSE(has(legal_in(fen), "e1g1"));
}

TEST(Movegen, CapturesAndQuietsAreTheMovesInTheSameOrder) {
    test::random_walks(14, 6, 60, [](const Board& seen) {
        Board board = seen;
        MoveList all;
        MoveList captures;
        MoveList quiets;
        gen_moves(all, board);
        gen_captures(captures, board);
        gen_quiets(quiets, board);
        std::vector<Move> tactical;
        std::vector<Move> quiet;
        for (const Move move : test::moves_of(all)) {
            const bool takes = board_piece(seen, move_to(move)) != kEmpty;
            (takes || (move & 0x8000) != 0 ? tactical : quiet).push_back(move);
        }
        ASSERT_EQ(texts_of(captures), texts_of(tactical)) << fen_of(seen);
        ASSERT_EQ(texts_of(quiets), texts_of(quiet)) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "");
    });
}

TEST(Movegen, EveryCaptureIsHandedOutWithTheTypeOfItsMan) {
    int seen_captures = 0;
    test::random_walks(21, 6, 60, [&](const Board& seen) {
        for_each_capture(seen, [&](Move move, PieceType type) {
            ASSERT_EQ(piece_type_of(board_piece(seen, move_from(move))), type) << fen_of(seen);
            ++seen_captures;
        });
    });
    EXPECT_GT(seen_captures, 100);
}

TEST(Movegen, EveryQuietMoveIsHandedOutWithTheTypeOfItsMan) {
    int seen_quiets = 0;
    test::random_walks(22, 6, 60, [&](const Board& seen) {
        for_each_quiet(seen, [&](Move move, PieceType type) {
            ASSERT_EQ(piece_type_of(board_piece(seen, move_from(move))), type) << fen_of(seen);
            ++seen_quiets;
        });
    });
    EXPECT_GT(seen_quiets, 1000);
}

TEST(Movegen, LegalMovesAreTheMovesThatPassKeepingTheirOrder) {
    test::random_walks(15, 4, 60, [](const Board& seen) {
        if (board_is_check(seen)) {
            return;
        }
        Board board = seen;
        MoveList list;
        gen_moves(list, board);
        std::vector<Move> legal;
        for (const Move move : test::moves_of(list)) {
            if (move_is_legal(move, board)) {
                legal.push_back(move);
            }
        }
        gen_legal_moves(list, board);
        ASSERT_EQ(texts_of(list), texts_of(legal)) << fen_of(seen);
    });
}

TEST(Movegen, NoMoveStandsTwice) {
    test::random_walks(16, 3, 60, [](const Board& seen) {
        Board board = seen;
        MoveList list;
        gen_moves(list, board);
        const std::vector<Move> moves = test::moves_of(list);
        ASSERT_EQ(std::set<Move>(moves.begin(), moves.end()).size(), moves.size()) << fen_of(seen);
    });
}

TEST(Movegen, APositionMayHave218Moves) {
    EXPECT_EQ(moves_in(kMostMoves).size(), 218U);
    EXPECT_EQ(legal_in(kMostMoves).size(), 218U);
}

TEST(Movegen, ASetUpMayHave242Moves) {
    EXPECT_EQ(moves_in(kFifteenQueens).size(), 242U);
    EXPECT_EQ(captures_in(kFifteenQueens).size(), 9U);
    EXPECT_EQ(quiets_in(kFifteenQueens).size(), 233U);
}

TEST(Movegen, AListNeverHoldsMoreThan256Moves) {
    struct Guarded {
        MoveList list;
        std::uint64_t guard;
    };
    Guarded guarded{};
    guarded.guard = 0x0123456789ABCDEFU;
    for (int i = 0; i < 300; ++i) {
        list_add(guarded.list, static_cast<Move>(i + 1));
    }
    EXPECT_EQ(guarded.list.size, 256);
    EXPECT_EQ(guarded.list.move[255], 256);
    EXPECT_EQ(guarded.list.value[0], 0);
    EXPECT_EQ(guarded.guard, 0x0123456789ABCDEFU);
}

TEST(Movegen, EveryGeneratorEmptiesTheListFirst) {
    Board board = board_of(kStartFen);
    MoveList list;
    list.size = 17;
    gen_moves(list, board);
    EXPECT_EQ(list.size, 20);
    gen_quiets(list, board);
    EXPECT_EQ(list.size, 20);
    gen_captures(list, board);
    EXPECT_EQ(list.size, 0);
    list.size = 5;
    gen_quiet_checks(list, board);
    EXPECT_EQ(list.size, 0);
    list.size = 5;
    gen_legal_moves(list, board);
    EXPECT_EQ(list.size, 20);
    Board check = board_of("7k/8/8/8/8/8/8/r6K w - - 0 1");
    Attack attack;
    attack_set(attack, check);
    for (const auto generate : {gen_evasions, gen_evasions_pseudo}) {
        list.size = 5;
        generate(list, check, attack);
        EXPECT_EQ(list.move[0], move_make(kH1, generate == gen_evasions ? kG2 : kG1));
        EXPECT_EQ(list.size, generate == gen_evasions ? 2 : 3);
    }
}

TEST(Movegen, AListIsSearchedWithinItsSize) {
    MoveList list{};
    list.size = 0;
    EXPECT_FALSE(list_contains(list, 0));
    list_add(list, 77);
    list_add(list, 88);
    EXPECT_TRUE(list_contains(list, 77));
    EXPECT_TRUE(list_contains(list, 88));
    list.size = 1;
    EXPECT_FALSE(list_contains(list, 88));
}

TEST(Movegen, SortingIsDescendingAndStable) {
    MoveList list{};
    const std::vector<std::int16_t> values = {3, -32768, 7, 3, 32767, 7, -1, 3};
    for (std::size_t i = 0; i < values.size(); ++i) {
        list.value[i] = values[i];
        list_add(list, static_cast<Move>(100 + i));
    }
    list_sort(list);
    EXPECT_EQ(test::moves_of(list), (std::vector<Move>{104, 102, 105, 100, 103, 107, 106, 101}));
    EXPECT_EQ(std::vector<std::int16_t>(list.value.begin(), list.value.begin() + list.size),
              (std::vector<std::int16_t>{32767, 7, 7, 3, 3, 3, -1, -32768}));
    list.size = 0;
    list_sort(list);
    EXPECT_EQ(list.size, 0);
}

}  // namespace
}  // namespace zar
