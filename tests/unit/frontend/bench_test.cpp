#include "frontend/bench.h"

#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "support/uci_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of;
using Lines = std::vector<std::string>;

class Bench : public test::UciTest {
  protected:
    static Lines bench(int depth) {
        eval_tables_free();
        hash_free(hash_table);
        return test::lines_of([depth] { bench_run(depth); });
    }
};

TEST_F(Bench, PositionsAreManyAndDifferent) {
    std::set<std::string> fens;
    std::set<int> men;
    for (const std::string_view fen : bench_positions()) {
        Board board = board_of(fen);
        MoveList legal;
        gen_legal_moves(legal, board);
        EXPECT_GT(legal.size, 1) << fen;
        fens.insert(fen_of(board));
        men.insert(board.total_count);
    }
    EXPECT_EQ(fens.size(), bench_positions().size());
    EXPECT_GE(fens.size(), 30u);
    EXPECT_GE(men.size(), 10u);
}

TEST_F(Bench, EndsWithTheTotalOfAllPositions) {
    const Lines lines = bench(2);
    const std::size_t count = bench_positions().size();
    ASSERT_EQ(lines.size(), count + 1);
    unsigned long total = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::vector<std::string> words = test::words_of(lines[i]);
        ASSERT_EQ(words.size(), 6u) << lines[i];
        EXPECT_EQ(lines[i], "position " + std::to_string(i + 1) + " of " + std::to_string(count) +
                                ": " + words[4] + " nodes");
        total += std::stoul(words[4]);
    }
    const std::vector<std::string> words = test::words_of(lines.back());
    ASSERT_EQ(words.size(), 4u) << lines.back();
    EXPECT_EQ(words[0], std::to_string(total));
    EXPECT_EQ(words[1], "nodes");
    EXPECT_GT(std::stoul(words[2]), 0u);
    EXPECT_EQ(words[3], "nps");
}

TEST_F(Bench, CountsTheSameNodesEveryTime) {
    const Lines first = bench(2);
    const Lines second = bench(2);
    EXPECT_EQ(Lines(first.begin(), first.end() - 1), Lines(second.begin(), second.end() - 1));
    EXPECT_NE(bench(1).front(), first.front());
}

}  // namespace
}  // namespace zar
