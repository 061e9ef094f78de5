// Razoring, futility, and history: what the search of a node leaves out.

#include <cstdint>
#include <string>

#include "gtest/gtest.h"
#include "search/node.h"
#include "support/node_support.h"

namespace zar {
namespace {

using test::board_of;
using test::move_of;
using test::NodeSearch;
using Result = test::NodeResult;

// Razoring: at beta - 300, and 39 less for every ply beyond the first.

class Razoring : public NodeSearch {
  protected:
    void SetUp() override {
        NodeSearch::SetUp();
        set("Null Move Pruning", "No");
        set("Futility Pruning", "false");
        set("History Pruning", "false");
        value_ = evaluate(board_of(kFen), -30000, 30000, 0);
    }

    // Two nodes: the node itself and the one that the quiescence search is.
    bool is_razored(Score target_above_value, int depth, NodeType type) {
        const Score target = value_ + target_above_value;
        const Score beta = target + 300 + 39 * (depth - 1);
        hash_clear(hash_table);
        const Result result = run(kFen, beta - 1, beta, depth, type);
        return result.nodes == 2 && result.score == value_ && result.pv.empty();
    }

    // Nothing to take, and no checks.
    static constexpr const char* kFen = "6k1/pppp4/8/8/8/8/PPPP4/6K1 w - - 0 1";
    Score value_ = 0;
};

TEST_F(Razoring, HappensBelowTheMarginOfTheDepth) {
    for (int depth = 1; depth <= 3; ++depth) {
        EXPECT_TRUE(is_razored(1, depth, kCutNode)) << depth;
        EXPECT_TRUE(is_razored(50, depth, kAllNode)) << depth;
        EXPECT_FALSE(is_razored(0, depth, kCutNode)) << depth;
    }
}

TEST_F(Razoring, IsNotTriedAtDepthFourOrAtPvNodes) {
    EXPECT_FALSE(is_razored(1, 4, kCutNode));
    EXPECT_FALSE(is_razored(100, 4, kCutNode));
    EXPECT_FALSE(is_razored(100, 2, kPvNode));
}

TEST_F(Razoring, IsNotTriedWithAStoredMove) {
    Board board = board_of(kFen);
    hash_store(hash_table, board.key, move_of("a2a3", board), 0, kBoundLower, -30000);
    const Score beta = value_ + 1000;
    EXPECT_GT(run(board, beta - 1, beta, 2, kCutNode).nodes, 2u);
    hash_clear(hash_table);
    hash_store(hash_table, board.key, kMoveNone, 0, kBoundLower, -30000);
    EXPECT_EQ(run(board, beta - 1, beta, 2, kCutNode).nodes, 2u);
}

TEST_F(Razoring, IsNotTriedInCheck) {
    constexpr const char* fen = "6k1/pppp4/8/8/8/8/PPP5/r5K1 w - - 0 1";
    EXPECT_GT(run(fen, 999, 1000, 1, kCutNode).nodes, 2u);
}

TEST_F(Razoring, GoesOnWhenACaptureReachesTheTarget) {
    // The queen hangs: the evaluation is hopeless, the captures are not.
    constexpr const char* fen = "6k1/pppp4/8/3q4/4P3/8/PPP5/6K1 w - - 0 1";
    const Score value = evaluate(board_of(fen), -30000, 30000, 0);
    const Score beta = value + 300 + 400;
    const Result result = run(fen, beta - 1, beta, 1, kCutNode);
    EXPECT_GE(result.score, beta) << fen;
    EXPECT_EQ(result.pv.substr(0, 4), "e4d5") << fen;
}

// Moves left out.

TEST_F(NodeSearch, WhenFutilitySkipsAllMovesItsValueIsReturned) {
    set("Null Move Pruning", "No");
    const Score value = evaluate(board_of(kStartFen), -30000, 30000, 0);
    const Score alpha = value + 100;
    const Result skipped = run_afresh(kStartFen, alpha, alpha + 1, 1, kCutNode);
    EXPECT_EQ(skipped.score, value + 100);
    EXPECT_EQ(skipped.nodes, 1u);
    EXPECT_EQ(skipped.pv, "");
    // One centipawn less, another margin, a PV node, futility off: all moves are searched.
    EXPECT_GT(run_afresh(kStartFen, alpha - 1, alpha, 1, kCutNode).nodes, 1u);
    EXPECT_GT(run_afresh(kStartFen, alpha, alpha + 1, 1, kPvNode).nodes, 1u);
    set("Futility Margin", "101");
    EXPECT_GT(run_afresh(kStartFen, alpha, alpha + 1, 1, kCutNode).nodes, 1u);
    set("Futility Margin", "100");
    set("Futility Pruning", "false");
    EXPECT_GT(run_afresh(kStartFen, alpha, alpha + 1, 1, kCutNode).nodes, 1u);
    set("Futility Pruning", "true");
    set("Difficulty Level", "8");
    EXPECT_GT(run_afresh(kStartFen, alpha, alpha + 1, 1, kCutNode).nodes, 1u);
}

TEST_F(NodeSearch, TheFutilityMarginDependsOnTheDepth) {
    set("Null Move Pruning", "No");
    const Score value = evaluate(board_of(kStartFen), -30000, 30000, 0);
    const int margins[] = {0, 100, 200, 300, 200, 300};
    for (int depth = 1; depth <= 5; ++depth) {
        const Score alpha = value + margins[depth];
        const Result skipped = run_afresh(kStartFen, alpha, alpha + 1, depth, kCutNode);
        EXPECT_EQ(skipped.nodes, 1u) << depth;
        EXPECT_EQ(skipped.score, alpha) << depth;
        EXPECT_GT(run_afresh(kStartFen, alpha - 1, alpha, depth, kCutNode).nodes, 1u) << depth;
    }
    // Razoring is not tried this deep, and neither is futility.
    const Score far = value + 2000;
    EXPECT_GT(run_afresh(kStartFen, far, far + 1, 6, kCutNode).nodes, 1u);
    set("Futility Extension", "250");
    EXPECT_EQ(run_afresh(kStartFen, value + 250, value + 251, 4, kCutNode).score, value + 250);
    EXPECT_EQ(run_afresh(kStartFen, value + 350, value + 351, 5, kCutNode).score, value + 350);
}

TEST_F(NodeSearch, FutilitySparesCapturesPromotionsChecksAndPassedPawns) {
    set("Null Move Pruning", "No");
    struct Row {
        const char* fen;
        std::uint64_t searched;  // moves, none with a capture behind it
    };
    for (const Row& row : {
             Row{"6k1/pppp4/8/8/8/8/PPPP4/6K1 w - - 0 1", 0},
             Row{"6k1/pppp4/8/8/8/8/PPPP3P/6K1 w - - 0 1", 2},  // h3 and h4
             Row{"6k1/pppp4/8/8/8/8/PPPP4/5RK1 w - - 0 1", 0},  // Rf8 check loses the rook
             Row{"6k1/pppp4/8/8/8/8/PPPP4/4R1K1 w - - 0 1", 1},
             Row{"6k1/pppp4/8/4p3/3P4/8/PPP5/6K1 w - - 0 1", 1},
         }) {
        const Score value = evaluate(board_of(row.fen), -30000, 30000, 0);
        const Score alpha = value + 100;
        Board board = board_of(row.fen);
        hash_clear(hash_table);
        // No razoring, which a stored move switches off.
        hash_store(hash_table, board.key, move_of("g1h1", board), 0, kBoundLower, -30000);
        const Result result = run(board, alpha, alpha + 1, 1, kCutNode);
        EXPECT_GE(result.nodes, 1 + row.searched) << row.fen;
        EXPECT_EQ(result.nodes == 1, row.searched == 0) << row.fen;
    }
}

// Nodes of a search in which all moves fail low, with bad records for all quiet moves.
class HistoryPruning : public NodeSearch {
  protected:
    void SetUp() override {
        NodeSearch::SetUp();
        set("Difficulty Level", "5");
    }

    static std::uint64_t nodes_with(int success, int tried, NodeType type = kCutNode) {
        hash_clear(hash_table);
        search_tables_clear(0);
        SearchThread& self = search_thread(0);
        self.history_success.fill(static_cast<std::uint16_t>(success));
        self.history_tried.fill(static_cast<std::uint16_t>(tried));
        return run(kStartFen, 200, 201, 1, type).nodes;
    }
};

TEST_F(HistoryPruning, SkipsLateMovesWithABadRecordAtEveryLevel) {
    // Moves are skipped once more than `depth` have been searched: two remain at depth 1.
    EXPECT_EQ(nodes_with(1, 1000), 1u + 2u);
    EXPECT_EQ(nodes_with(1, 1), 1u + 20u);
}

TEST_F(HistoryPruning, ComparesTheRatioWithTheThreshold) {
    // At depth 1 twice the threshold is divided by 2.
    search_parameters.history_threshold = 8192;
    EXPECT_EQ(nodes_with(1, 2), 1u + 20u);
    search_parameters.history_threshold = 8193;
    EXPECT_EQ(nodes_with(1, 2), 1u + 2u);
}

TEST_F(HistoryPruning, TheThresholdIsTheOneLastSet) {
    search_parameters = {};
    search_parameters_setup();  // level 5: 9830 of 16384, as if never set
    EXPECT_EQ(nodes_with(6, 10), 1u + 20u);
    EXPECT_EQ(nodes_with(599, 1000), 1u + 2u);
    set("Difficulty Level", "10");
    set("History Threshold", "0");
    set("Difficulty Level", "5");
    EXPECT_EQ(nodes_with(1, 1000), 1u + 20u);
}

TEST_F(HistoryPruning, IsNotTriedAtPvNodes) { EXPECT_EQ(nodes_with(1, 1000, kPvNode), 1u + 20u); }

TEST_F(NodeSearch, ACutOffByAQuietMoveTeachesTheHistory) {
    constexpr const char* fen = "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1";
    Board board = board_of(fen);
    set("Null Move Pruning", "No");
    const Move mate = move_of("d1d8", board);
    hash_store(hash_table, board.key, move_of("g1f1", board), 0, kBoundLower, -30000);
    const Result result = run(board, 29700, 29701, 1, kCutNode);
    EXPECT_EQ(result.pv, "d1d8");
    const SearchThread& self = search_thread(0);
    const auto index = history_index(mate, board);
    EXPECT_EQ(self.killers[1][0], mate);
    EXPECT_EQ(self.history[index], 1);
    EXPECT_EQ(self.history_success[index], 2);
    EXPECT_EQ(self.history_tried[index], 2);
}

}  // namespace
}  // namespace zar
