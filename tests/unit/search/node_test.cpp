#include "search/node.h"

#include <cstdint>
#include <string>

#include "gtest/gtest.h"
#include "support/node_support.h"

namespace zar {
namespace {

using test::board_of;
using test::move_of;
using test::NodeSearch;
using test::play;
using test::text_of;
using Result = test::NodeResult;

TEST_F(NodeSearch, TheHorizonSetsHowManyPliesHaveQuietChecks) {
    for (int reduce = 0; reduce <= 2; ++reduce) {
        search_thread(0).reduce_one = reduce;
        for (const NodeType type : {kPvNode, kCutNode, kAllNode}) {
            hash_clear(hash_table);
            EXPECT_EQ(run(kStartFen, -100, 100, 0, type).nodes, 1u);
            EXPECT_EQ(search_thread(0).check_plies_limit, (type == kPvNode ? 0 : 1) - reduce);
        }
    }
}

TEST_F(NodeSearch, DrawsScoreZeroAtEveryDepth) {
    for (const char* const fen : {"4k3/8/8/8/8/8/8/R3K3 w - - 100 80",  // fifty moves
                                  "4k3/8/8/8/8/8/8/B3K3 w - - 0 1"}) {  // nobody can win
        for (const int depth : {0, 1, 5}) {
            const Result result = run(fen, -500, 500, depth, kPvNode);
            EXPECT_EQ(result.score, 0) << fen;
            EXPECT_EQ(result.nodes, 1u) << fen;
            EXPECT_EQ(result.pv, "") << fen;
        }
    }
    Board board = board_of("4k3/8/8/8/8/8/8/R3K3 w - - 0 1");
    play(board, "a1a2 e8d8 a2a1 d8e8");
    EXPECT_EQ(run(board, -500, 500, 4, kPvNode).score, 0);
    EXPECT_EQ(run(board, 500, 600, 0, kPvNode).score, 0);
}

TEST_F(NodeSearch, StalemateAndMateAreNotStored) {
    Board stalemate = board_of("5k2/5P2/5K2/8/8/8/8/6N1 b - - 0 1");
    EXPECT_EQ(run(stalemate, -5000, 5000, 4, kPvNode).score, 0);
    EXPECT_FALSE(is_stored(stalemate));
    Board mate = board_of("R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1");
    EXPECT_EQ(run(mate, -30000, 30000, 4, kPvNode, 7).score, 7 - 30000);
    EXPECT_FALSE(is_stored(mate));
}

TEST_F(NodeSearch, AtTheLastPlyTheStaticValueIsReturned) {
    const Board board = board_of(kStartFen);
    const Result result = run(kStartFen, -500, 500, 3, kPvNode, 255);
    EXPECT_EQ(result.score, evaluate(board, -500, 500, 0));
    EXPECT_EQ(result.nodes, 1u);
}

TEST_F(NodeSearch, NoMateCanBeFasterThanTheNodeAllows) {
    EXPECT_EQ(run(kStartFen, 29995, 29999, 5, kPvNode, 10).score, 29989);
    EXPECT_EQ(run(kStartFen, -29999, -29990, 5, kPvNode, 10).score, -29988);
    EXPECT_EQ(search_thread(0).nodes, 1u);
}

TEST_F(NodeSearch, FindsMatesAtEveryNodeType) {
    constexpr const char* fen = "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1";
    EXPECT_EQ(run_afresh(fen, -30000, 30000, 1, kPvNode).score, 30000 - 2);
    EXPECT_EQ(run_afresh(fen, -30000, 30000, 3, kPvNode).pv, "d1d8");
    EXPECT_EQ(run_afresh(fen, 29700, 29701, 3, kCutNode).score, 30000 - 2);
}

// Stored results.

struct ProbeRow {
    int draft;
    int bound;
    Score value;
    Score alpha;
    bool cuts;
};

TEST_F(NodeSearch, StoredResultsCutOffByDraftAndBound) {
    for (const ProbeRow& row : {
             ProbeRow{4, kBoundExact, 333, 0, true},
             ProbeRow{4, kBoundExact, 333, 400, true},
             ProbeRow{3, kBoundExact, 333, 0, false},
             ProbeRow{9, kBoundLower, 333, 332, true},
             ProbeRow{4, kBoundLower, 333, 333, false},
             ProbeRow{4, kBoundUpper, 333, 333, true},
             ProbeRow{4, kBoundUpper, 333, 332, false},
             // Mates hold whatever the draft; 29900 is one ply nearer from the root.
             ProbeRow{0, kBoundLower, 29900, 300, true},
             ProbeRow{0, kBoundExact, 29900, 300, true},
             ProbeRow{0, kBoundUpper, 29900, 300, false},
             ProbeRow{0, kBoundUpper, -29900, 300, true},
             ProbeRow{0, kBoundExact, -29900, 300, true},
             ProbeRow{0, kBoundLower, -29900, 300, false},
             ProbeRow{0, kBoundLower, 29744, 300, false},
         }) {
        hash_clear(hash_table);
        Board board = board_of(kStartFen);
        hash_store(hash_table, board.key, kMoveNone, row.draft, row.bound, row.value);
        const Result result = run(board, row.alpha, row.alpha + 1, 4, kCutNode);
        EXPECT_EQ(result.nodes == 1, row.cuts) << row.draft << " " << row.bound << " " << row.value;
        if (row.cuts) {
            EXPECT_EQ(result.score, value_from_hash(row.value, 1)) << row.value;
        }
    }
}

TEST_F(NodeSearch, StoredResultsNeverCutOffAtPvNodes) {
    Board board = board_of(kStartFen);
    hash_store(hash_table, board.key, kMoveNone, 50, kBoundExact, 333);
    EXPECT_GT(run(board, -30000, 30000, 2, kPvNode).nodes, 1u);
}

TEST_F(NodeSearch, TheStoredMoveIsSearchedFirst) {
    constexpr const char* fen = "4k3/8/8/8/8/8/PPP5/4K3 w - - 0 1";
    for (const char* const text : {"a2a3", "e1d1", "c2c4"}) {
        hash_clear(hash_table);
        Board board = board_of(fen);
        hash_store(hash_table, board.key, move_of(text, board), 0, kBoundLower, -30000);
        // Any move reaches this beta.
        set("Null Move Pruning", "No");
        EXPECT_EQ(run(board, -3000, -2999, 2, kCutNode).pv.substr(0, 4), text);
        EXPECT_EQ(text_of(stored(board).move), text);
        EXPECT_EQ(stored(board).bound, kBoundLower);
        EXPECT_EQ(stored(board).depth, 2);
    }
}

TEST_F(NodeSearch, ResultsAreStoredWithTheirBounds) {
    Board board = board_of(kStartFen);
    const Result exact = run(board, -30000, 30000, 2, kPvNode);
    EXPECT_EQ(stored(board).bound, kBoundExact);
    EXPECT_EQ(stored(board).value, exact.score);
    EXPECT_EQ(text_of(stored(board).move), exact.pv.substr(0, 4));
    hash_clear(hash_table);
    const Result upper = run(board, 500, 600, 2, kPvNode);
    EXPECT_LE(upper.score, 500);
    EXPECT_EQ(stored(board).bound, kBoundUpper);
}

// Null moves.

// White is far ahead and Black cannot do anything.
constexpr const char* kAheadFen = "6k1/5ppp/8/8/8/8/5PPP/1Q2R1K1 w - - 0 1";

TEST_F(NodeSearch, ANullMoveCutOffIsNeverAMateScore) {
    // Whatever Black plays, White mates; even when White passes first.
    constexpr const char* fen = "7k/R7/1R6/8/8/8/5PPP/6K1 w - - 0 1";
    set("Verify Search", "No");
    Board board = board_of(fen);
    const Result cut = run(board, 29743, 29744, 6, kCutNode);
    EXPECT_EQ(cut.score, 29744) << fen;
    EXPECT_EQ(cut.pv, "") << fen;
    EXPECT_EQ(stored(board).move, kMoveNone);
    EXPECT_EQ(stored(board).value, 29744);
    EXPECT_EQ(stored(board).depth, 6);
    EXPECT_EQ(stored(board).bound, kBoundLower);
    set("Null Move Pruning", "No");
    const Result full = run_afresh(fen, 29743, 29744, 6, kCutNode);
    EXPECT_GT(full.score, 29744) << fen;
}

// A null-move cut-off leaves no variation; one by a real move does.
bool cut_by_null_move(const Result& result, Score beta) {
    EXPECT_GE(result.score, beta);
    return result.pv.empty();
}

TEST_F(NodeSearch, NullMovesAreTriedFromDepthTwoOutsideThePv) {
    set("Verify Search", "No");
    EXPECT_FALSE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 1, kCutNode), 100));
    EXPECT_TRUE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 2, kCutNode), 100));
    EXPECT_TRUE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 6, kAllNode), 100));
    EXPECT_FALSE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 6, kPvNode), 100));
}

TEST_F(NodeSearch, NullMovesNeedAPieceAndNoCheckAndNoMateBound) {
    set("Verify Search", "No");
    // Pawns only: they may be in zugzwang.
    constexpr const char* pawns = "8/5k2/8/8/8/8/PPPP4/4K3 w - - 0 1";
    EXPECT_FALSE(cut_by_null_move(run_afresh(pawns, -1, 0, 4, kCutNode), 0));
    constexpr const char* check = "6k1/5ppp/8/8/8/8/1Q3PPP/r3R1K1 w - - 0 1";
    EXPECT_FALSE(cut_by_null_move(run_afresh(check, -1, 0, 4, kCutNode), 0));
    EXPECT_FALSE(cut_by_null_move(run_afresh(kAheadFen, -29800, -29799, 4, kCutNode), -29799));
    EXPECT_TRUE(cut_by_null_move(run_afresh(kAheadFen, -29745, -29744, 4, kCutNode), -29744));
}

TEST_F(NodeSearch, NullMovesAreOffByOptionAndLevel) {
    set("Null Move Pruning", "No");
    EXPECT_FALSE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 4, kCutNode), 100));
    set("Null Move Pruning", "Yes");
    set("Difficulty Level", "8");
    EXPECT_FALSE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 4, kCutNode), 100));
    set("Difficulty Level", "9");
    EXPECT_TRUE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 4, kCutNode), 100));
}

TEST_F(NodeSearch, AStoredUpperBoundBelowBetaForbidsTheNullMove) {
    set("Verify Search", "No");
    struct Row {
        int draft;
        int bound;
        Score value;
        bool tried;
    };
    // Depth 4 and reduction 3: the null move is searched to depth 0.
    for (const Row& row : {Row{0, kBoundUpper, 99, false}, Row{0, kBoundUpper, 100, true},
                           Row{0, kBoundLower, 99, true}, Row{0, kBoundExact, 99, false}}) {
        hash_clear(hash_table);
        Board board = board_of(kAheadFen);
        hash_store(hash_table, board.key, kMoveNone, row.draft, row.bound, row.value);
        const Result result = run(board, 99, 100, 4, kCutNode);
        EXPECT_EQ(cut_by_null_move(result, 100), row.tried) << row.bound << " " << row.value;
    }
    // Of too little draft for depth 6.
    hash_clear(hash_table);
    Board board = board_of(kAheadFen);
    hash_store(hash_table, board.key, kMoveNone, 1, kBoundUpper, 99);
    EXPECT_TRUE(cut_by_null_move(run(board, 99, 100, 6, kCutNode), 100));
}

TEST_F(NodeSearch, FailHighAsksTheEvaluationFirst) {
    set("Verify Search", "No");
    set("Null Move Pruning", "Fail High");
    const Score value = evaluate(board_of(kAheadFen), -30000, 30000, 0);
    EXPECT_TRUE(
        cut_by_null_move(run_afresh(kAheadFen, value - 51, value - 50, 6, kCutNode), value - 50));
    set("Null Move Reduction", "1");
    const Score beta = value + 20;
    const Result asked = run_afresh(kAheadFen, beta - 1, beta, 3, kCutNode);
    set("Null Move Pruning", "Yes");
    const Result tried = run_afresh(kAheadFen, beta - 1, beta, 3, kCutNode);
    EXPECT_NE(asked.nodes, tried.nodes);
    // Not asked when the reduced search goes straight to the quiescence search.
    set("Null Move Reduction", "4");
    const Result shallow = run_afresh(kAheadFen, beta - 1, beta, 5, kCutNode);
    set("Null Move Pruning", "Fail High");
    EXPECT_EQ(run_afresh(kAheadFen, beta - 1, beta, 5, kCutNode).nodes, shallow.nodes);
}

TEST_F(NodeSearch, VerificationLooksForARealMove) {
    set("Verify Reduction", "3");
    EXPECT_TRUE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 3, kCutNode), 100));
    EXPECT_FALSE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 4, kCutNode), 100));
    set("Verify Search", "No");
    EXPECT_TRUE(cut_by_null_move(run_afresh(kAheadFen, 99, 100, 4, kCutNode), 100));
}

TEST_F(NodeSearch, AVerifiedCutOffIsStoredWithItsMove) {
    set("Verify Reduction", "3");
    Board board = board_of(kAheadFen);
    const Result result = run(board, 99, 100, 5, kCutNode);
    const HashHit hit = stored(board);
    EXPECT_EQ(text_of(hit.move), result.pv.substr(0, 4));
    EXPECT_EQ(hit.depth, 5);
    EXPECT_EQ(hit.bound, kBoundLower);
    EXPECT_EQ(search_thread(0).killers[1][0], hit.move);
    const auto index = history_index(hit.move, board);
    EXPECT_EQ(search_thread(0).history_success[index], 2);
    EXPECT_EQ(search_thread(0).history[index], 25);
}

TEST_F(NodeSearch, EndGameVerifiesOnlyWithAtMostThreePieces) {
    set("Verify Reduction", "3");
    set("Verify Search", "EndGame");
    constexpr const char* three = "6k1/5ppp/8/8/8/8/5PPP/1Q2R1K1 w - - 0 1";
    constexpr const char* four = "6k1/5ppp/8/8/8/8/5PPP/1Q2RNK1 w - - 0 1";
    EXPECT_FALSE(cut_by_null_move(run_afresh(three, 99, 100, 4, kCutNode), 100));
    EXPECT_TRUE(cut_by_null_move(run_afresh(four, 99, 100, 4, kCutNode), 100));
    set("Verify Search", "Yes");
    EXPECT_FALSE(cut_by_null_move(run_afresh(four, 99, 100, 4, kCutNode), 100));
}

}  // namespace
}  // namespace zar
