// One node of the search, run as a test wants it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "gtest/gtest.h"
#include "search/node.h"
#include "support/search_support.h"

namespace zar::test {

struct NodeResult {
    Score score;
    std::uint64_t nodes;
    std::string pv;
};

class NodeSearch : public SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        search_thread(0).iteration_depth = 6;
    }

    static NodeResult run(Board& board, Score alpha, Score beta, int depth, NodeType type,
                          int ply = 1) {
        search_thread(0).nodes = 0;
        Line pv;
        pv[0] = kMoveNull;
        const Score score = search(board, alpha, beta, depth, ply, pv, type, false, 0);
        return {score, search_thread(0).nodes, text_of(pv)};
    }

    static NodeResult run(std::string_view fen, Score alpha, Score beta, int depth, NodeType type,
                          int ply = 1) {
        Board board = board_of(fen);
        return run(board, alpha, beta, depth, type, ply);
    }

    // The same with an empty table.
    static NodeResult run_afresh(std::string_view fen, Score alpha, Score beta, int depth,
                                 NodeType type) {
        hash_clear(hash_table);
        search_tables_clear(0);
        return run(fen, alpha, beta, depth, type);
    }

    static HashHit stored(const Board& board) {
        HashHit hit{};
        EXPECT_TRUE(hash_probe(hash_table, board.key, hit)) << fen_of(board);
        return hit;
    }

    static bool is_stored(const Board& board) {
        HashHit hit;
        return hash_probe(hash_table, board.key, hit);
    }
};

}  // namespace zar::test
