// The hook for a database of endgames, and the nodes entered twice that it makes visible.

#include <cstdint>
#include <string>

#include "gtest/gtest.h"
#include "search/node.h"
#include "support/node_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of;
using test::move_of;
using test::NodeSearch;
using test::play;
using Result = test::NodeResult;

// What the endgame hook saw and answers.
int probes = 0;
std::uint64_t watched_key = 0;
int watched_probes = 0;
bool probe_answers = false;
Score probe_score = 0;

bool count_probe(const Board& board, Score& score) {
    ++probes;
    watched_probes += board.key == watched_key ? 1 : 0;
    score = probe_score;
    return probe_answers;
}

void forget_probes() {
    probes = 0;
    watched_probes = 0;
    probe_answers = false;
    probe_score = 0;
}

// Internal iterative deepening enters the node again, which the endgame hook sees.

class Deepening : public NodeSearch {
  protected:
    void SetUp() override {
        NodeSearch::SetUp();
        forget_probes();
        search_shared.hooks.probe_endgame = count_probe;
        search_thread(0).iteration_depth = 3;  // asked at ply 2 in any case
        watched_key = board_of(kFen).key;
    }

    int entries(Score alpha, Score beta, int depth, NodeType type, bool with_move = false) {
        hash_clear(hash_table);
        Board board = board_of(kFen);
        if (with_move) {
            hash_store(hash_table, board.key, move_of("e1d1", board), 0, kBoundLower, -30000);
        }
        watched_probes = 0;
        run(board, alpha, beta, depth, type, 2);
        return watched_probes;
    }

    static constexpr const char* kFen = "4k3/7p/8/8/8/8/7P/4K3 w - - 0 1";
};

TEST_F(Deepening, EntersPvNodesWithoutAMoveAgain) {
    EXPECT_EQ(entries(-30000, 30000, 2, kPvNode), 1);
    EXPECT_EQ(entries(-30000, 30000, 3, kPvNode), 2);
    EXPECT_EQ(entries(-30000, 30000, 5, kPvNode), 2);
    // Half of 6 is 3, which deepens once more.
    EXPECT_EQ(entries(-30000, 30000, 6, kPvNode), 3);
}

TEST_F(Deepening, TriesAWiderWindowWhenItFailsLow) {
    EXPECT_EQ(entries(2000, 3000, 3, kPvNode), 3);
}

TEST_F(Deepening, IsNotNeededWithAMoveOrOutsideThePv) {
    EXPECT_EQ(entries(-30000, 30000, 4, kPvNode, true), 1);
    EXPECT_EQ(entries(0, 1, 4, kCutNode), 1);
}

// The endgame database.

class EndgameProbe : public NodeSearch {
  protected:
    void SetUp() override {
        NodeSearch::SetUp();
        forget_probes();
        search_shared.hooks.probe_endgame = count_probe;
        search_thread(0).iteration_depth = 6;  // reach: ply 4
        probe_answers = true;
        probe_score = 123;
    }

    static bool is_asked(Board& board, int ply) {
        probes = 0;
        hash_clear(hash_table);
        const Result result = run(board, -30000, 30000, 1, kPvNode, ply);
        const bool answered = result.score == value_from_hash(probe_score, ply);
        EXPECT_EQ(answered && probes == 1 && result.nodes == 1, probes == 1) << fen_of(board);
        return answered && probes == 1;
    }

    static bool is_asked(const char* fen, int ply) {
        Board board = board_of(fen);
        return is_asked(board, ply);
    }
};

constexpr const char* kSixMen = "4k3/p6p/8/8/8/8/P6P/4K3 w - - 0 1";
constexpr const char* kFiveMen = "4k3/p6p/8/8/8/8/7P/4K3 w - - 0 1";
constexpr const char* kFourMen = "4k3/7p/8/8/8/8/7P/4K3 w - - 0 1";

TEST_F(EndgameProbe, OnlyWithAtMostFiveMen) {
    EXPECT_TRUE(is_asked(kFiveMen, 4));
    EXPECT_TRUE(is_asked(kFourMen, 4));
    search_shared.hooks.probe_endgame = nullptr;
    EXPECT_FALSE(is_asked(kFiveMen, 4));
    search_shared.hooks.probe_endgame = count_probe;
    probes = 0;
    run(kSixMen, -30000, 30000, 1, kPvNode, 4);
    EXPECT_EQ(probes, 0);
}

TEST_F(EndgameProbe, BeyondTheReachOnlyWithFewerThanFiveMen) {
    EXPECT_FALSE(is_asked(kFiveMen, 5));
    EXPECT_TRUE(is_asked(kFourMen, 5));
    search_thread(0).iteration_depth = 7;  // 14 / 3 = 4
    EXPECT_FALSE(is_asked(kFiveMen, 5));
    search_thread(0).iteration_depth = 8;
    EXPECT_TRUE(is_asked(kFiveMen, 5));
}

TEST_F(EndgameProbe, NearTheRootOnlyAfterACaptureOrAPawnMove) {
    EXPECT_FALSE(is_asked(kFourMen, 3));
    Board board = board_of(kFourMen);
    play(board, "e1d1 e8d8");
    EXPECT_FALSE(is_asked(board, 3));
    play(board, "h2h3");
    EXPECT_TRUE(is_asked(board, 3));
    board = board_of("4k3/8/8/8/8/8/3p3P/R3K3 w - - 0 1");
    play(board, "e1d2");
    EXPECT_TRUE(is_asked(board, 3));
}

TEST_F(EndgameProbe, ALossInAMatedPositionIsTheMate) {
    constexpr const char* mate = "R5k1/8/6K1/8/8/8/8/8 b - - 0 1";
    probe_score = -29990;
    EXPECT_EQ(run(mate, -30000, 30000, 3, kPvNode, 4).score, 4 - 30000);
    probe_score = 29990;
    EXPECT_EQ(run(mate, -30000, 30000, 3, kPvNode, 4).score, 29990 - 4);
}

TEST_F(EndgameProbe, ScoresAreSeenFromTheRoot) {
    for (const Score score : {29990, -29990, 5000, -5000, 0, 2999}) {
        probe_score = score;
        EXPECT_EQ(run(kFourMen, -30000, 30000, 3, kPvNode, 4).score, value_from_hash(score, 4));
    }
}

TEST_F(EndgameProbe, ComesAfterDrawsByRuleAndBeforeKnownDraws) {
    EXPECT_EQ(run("4k3/7p/8/8/8/8/7P/4K3 w - - 100 1", -500, 500, 3, kPvNode, 4).score, 0);
    EXPECT_EQ(probes, 0);
    EXPECT_EQ(run("4k3/8/8/8/8/8/8/4K2B w - - 0 1", -500, 500, 3, kPvNode, 4).score, 123);
}

TEST_F(EndgameProbe, AMissLeavesTheSearchAlone) {
    probe_answers = false;
    const Result asked = run_afresh(kFourMen, -500, 500, 3, kPvNode);
    search_shared.hooks.probe_endgame = nullptr;
    const Result alone = run_afresh(kFourMen, -500, 500, 3, kPvNode);
    EXPECT_EQ(asked.score, alone.score);
    EXPECT_EQ(asked.nodes, alone.nodes);
}

}  // namespace
}  // namespace zar
