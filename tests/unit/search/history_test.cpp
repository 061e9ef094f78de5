#include "search/history.h"

#include <cstdint>
#include <string>

#include "gtest/gtest.h"
#include "search/types.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;
using test::move_of;
using History = test::SearchTest;

std::uint16_t& cell(std::array<std::uint16_t, kHistorySize>& table, int index) {
    return table[static_cast<std::size_t>(index)];
}

// A quiet move of White's knight on b1, and the cells of a white knight going to c3.
struct KnightMove {
    Board board = board_of(kStartFen);
    Move move = move_of("b1c3", board);
    int index = kWhiteKnight12 * 64 + 18;
    SearchThread& self = search_thread(0);
};

TEST_F(History, ClearedTablesHoldOnes) {
    for (int thread = 0; thread < kMaxThreads; ++thread) {
        SearchThread& self = search_thread(thread);
        self.killers[3] = {5, 6};
        self.history.fill(7);
        self.history_success.fill(7);
        self.history_tried.fill(7);
        search_tables_clear(thread);
        for (const auto& killers : self.killers) {
            EXPECT_EQ(killers[0], kMoveNone);
            EXPECT_EQ(killers[1], kMoveNone);
        }
        for (int index = 0; index < kHistorySize; ++index) {
            EXPECT_EQ(cell(self.history, index), 0);
            EXPECT_EQ(cell(self.history_success, index), 1);
            EXPECT_EQ(cell(self.history_tried, index), 1);
        }
    }
}

TEST_F(History, TheIndexIsKindOfManAndTarget) {
    Board board = board_of("4k3/8/8/8/8/8/p2N1N2/4K3 b - - 0 1");
    EXPECT_EQ(history_index(move_of("a2a1q", board), board), kBlackPawn12 * 64U + 0);
    EXPECT_EQ(history_index(move_of("e8d8", board), board), kBlackKing12 * 64U + 59);
    board = board_of("4k3/8/8/8/8/8/p2N1N2/4K3 w - - 0 1");
    EXPECT_EQ(history_index(move_of("d2e4", board), board), kWhiteKnight12 * 64U + 28);
    EXPECT_EQ(history_index(move_of("f2e4", board), board), kWhiteKnight12 * 64U + 28);
}

TEST_F(History, ACutOffMakesAKiller) {
    KnightMove knight;
    const Move other = move_of("g1f3", knight.board);
    auto& killers = knight.self.killers;
    history_cutoff(knight.move, knight.board, 2, 9, 0);
    EXPECT_EQ(killers[9][0], knight.move);
    EXPECT_EQ(killers[9][1], kMoveNone);
    history_cutoff(knight.move, knight.board, 2, 9, 0);
    EXPECT_EQ(killers[9][1], kMoveNone);
    history_cutoff(other, knight.board, 2, 9, 0);
    EXPECT_EQ(killers[9][0], other);
    EXPECT_EQ(killers[9][1], knight.move);
    // The second killer comes back to the front.
    history_cutoff(knight.move, knight.board, 2, 9, 0);
    EXPECT_EQ(killers[9][0], knight.move);
    EXPECT_EQ(killers[9][1], other);
    EXPECT_EQ(killers[8][0], kMoveNone);
    EXPECT_EQ(killers[10][0], kMoveNone);
}

TEST_F(History, EveryThreadHasItsOwnTables) {
    KnightMove knight;
    history_cutoff(knight.move, knight.board, 3, 1, 2);
    history_good(knight.move, knight.board, 2);
    history_bad(knight.move, knight.board, 3);
    EXPECT_EQ(search_thread(2).killers[1][0], knight.move);
    EXPECT_EQ(cell(search_thread(2).history, knight.index), 9);
    EXPECT_EQ(cell(search_thread(2).history_success, knight.index), 2);
    EXPECT_EQ(cell(search_thread(3).history_tried, knight.index), 2);
    EXPECT_EQ(knight.self.killers[1][0], kMoveNone);
    EXPECT_EQ(cell(knight.self.history, knight.index), 0);
    EXPECT_EQ(cell(knight.self.history_tried, knight.index), 1);
}

TEST_F(History, ACutOffEarnsTheSquareOfTheDepth) {
    KnightMove knight;
    history_cutoff(knight.move, knight.board, 3, 0, 0);
    EXPECT_EQ(cell(knight.self.history, knight.index), 9);
    history_cutoff(knight.move, knight.board, 10, 0, 0);
    EXPECT_EQ(cell(knight.self.history, knight.index), 109);
    EXPECT_EQ(cell(knight.self.history, knight.index + 1), 0);
}

TEST_F(History, CreditIsHalvedFrom16384On) {
    KnightMove knight;
    auto& history = knight.self.history;
    for (int index = 0; index < 12; ++index) {
        cell(history, index) = static_cast<std::uint16_t>(index);
    }
    cell(history, knight.index) = 16374;
    history_cutoff(knight.move, knight.board, 3, 0, 0);
    EXPECT_EQ(cell(history, knight.index), 16383);
    EXPECT_EQ(cell(history, 11), 11);
    history_cutoff(knight.move, knight.board, 1, 0, 0);
    EXPECT_EQ(cell(history, knight.index), 8192);
    for (int index = 0; index < 12; ++index) {
        EXPECT_EQ(cell(history, index), (index + 1) / 2);
    }
    cell(history, knight.index) = 16383;
    history_cutoff(knight.move, knight.board, 2, 0, 0);
    EXPECT_EQ(cell(history, knight.index), (16387 + 1) / 2);
}

TEST_F(History, SuccessesAndTrialsAreCounted) {
    KnightMove knight;
    history_good(knight.move, knight.board, 0);
    EXPECT_EQ(cell(knight.self.history_success, knight.index), 2);
    EXPECT_EQ(cell(knight.self.history_tried, knight.index), 2);
    history_bad(knight.move, knight.board, 0);
    EXPECT_EQ(cell(knight.self.history_success, knight.index), 2);
    EXPECT_EQ(cell(knight.self.history_tried, knight.index), 3);
    EXPECT_TRUE(history_is_below(2 * 16384 / 3 + 1, knight.move, knight.board, 0));
    EXPECT_FALSE(history_is_below(2 * 16384 / 3, knight.move, knight.board, 0));
}

TEST_F(History, CountsAreHalvedBeyond16383Trials) {
    KnightMove knight;
    auto& success = knight.self.history_success;
    auto& tried = knight.self.history_tried;
    cell(success, knight.index) = 100;
    cell(tried, knight.index) = 16382;
    cell(tried, 5) = 9;
    history_bad(knight.move, knight.board, 0);
    EXPECT_EQ(cell(success, knight.index), 100);
    EXPECT_EQ(cell(tried, knight.index), 16383);
    history_good(knight.move, knight.board, 0);
    EXPECT_EQ(cell(success, knight.index), 51);  // 101, rounded up
    EXPECT_EQ(cell(tried, knight.index), 8192);
    EXPECT_EQ(cell(tried, 5), 9);
    cell(success, knight.index) = 7;
    cell(tried, knight.index) = 16383;
    history_bad(knight.move, knight.board, 0);
    EXPECT_EQ(cell(success, knight.index), 4);
    EXPECT_EQ(cell(tried, knight.index), 8192);
}

TEST_F(History, AMoveNeverSearchedHasTheFullRatio) {
    KnightMove knight;
    EXPECT_FALSE(history_is_below(16384, knight.move, knight.board, 0));
    EXPECT_TRUE(history_is_below(16385, knight.move, knight.board, 0));
    EXPECT_EQ(kHistoryRatioOne, 16384);
}

TEST_F(History, CapturesAndPromotionsArePassedOver) {
    struct Row {
        const char* fen;
        const char* move;
    };
    for (const Row& row : {Row{"4k3/8/8/3p4/4P3/8/8/4K3 w - - 0 1", "e4d5"},
                           Row{"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6"},
                           Row{"8/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7a8q"},
                           Row{"8/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7a8n"},
                           Row{"1r6/P3k3/8/8/8/8/8/4K3 w - - 0 1", "a7b8q"}}) {
        Board board = board_of(row.fen);
        const Move move = move_of(row.move, board);
        ASSERT_NE(move, kMoveNone) << row.fen;
        const SearchThread& self = search_thread(0);
        history_cutoff(move, board, 5, 0, 0);
        history_good(move, board, 0);
        history_bad(move, board, 0);
        const auto index = history_index(move, board);
        EXPECT_EQ(self.killers[0][0], kMoveNone) << row.fen << " " << row.move;
        EXPECT_EQ(self.history[index], 0) << row.fen << " " << row.move;
        EXPECT_EQ(self.history_success[index], 1) << row.fen << " " << row.move;
        EXPECT_EQ(self.history_tried[index], 1) << row.fen << " " << row.move;
    }
}

TEST_F(History, CastlingIsAQuietMoveOfTheKing) {
    Board board = board_of("4k3/8/8/8/8/8/8/4K2R w K - 0 1");
    const Move castling = move_of("e1g1", board);
    history_cutoff(castling, board, 4, 2, 0);
    EXPECT_EQ(search_thread(0).killers[2][0], castling);
    EXPECT_EQ(search_thread(0).history[kWhiteKing12 * 64 + 6], 16);
}

}  // namespace
}  // namespace zar
