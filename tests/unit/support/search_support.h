// What the tests of the search share: default options, empty tables, and positions to try.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "board/make.h"
#include "board/movegen.h"
#include "eval/eval.h"
#include "frontend/bench.h"
#include "frontend/option.h"
#include "gtest/gtest.h"
#include "search/budget.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/parameters.h"
#include "search/types.h"
#include "support/board_support.h"
#include "support/move_support.h"

namespace zar::test {

inline std::string text_of(const Line& pv) {
    std::string text;
    for (std::size_t i = 0; i < pv.size() && pv[i] != kMoveNone; ++i) {
        text += (i == 0 ? "" : " ") + text_of(pv[i]);
    }
    return text;
}

// The legal move of this text, kMoveNone when there is none.
inline Move move_of(std::string_view text, Board& board) {
    const Move move = move_from_string(text, board);
    MoveList legal;
    gen_legal_moves(legal, board);
    return list_contains(legal, move) ? move : kMoveNone;
}

// The same numbers on every machine.
class Dice {
  public:
    explicit Dice(std::uint64_t seed) : state_(seed) {}

    // 0 <= result < n.
    std::size_t below(std::size_t n) {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 7;
        state_ ^= state_ << 17;
        return static_cast<std::size_t>(state_ >> 33) % n;
    }

  private:
    std::uint64_t state_;
};

// Calls action(board) for the bench positions and for what random play makes of each.
template <typename Action>
void for_each_position(int plies, Action action) {
    Dice dice(20250711);
    for (const std::string_view fen : bench_positions()) {
        Board board = board_of(fen);
        action(board);
        for (int ply = 0; ply < plies && !::testing::Test::HasFatalFailure(); ++ply) {
            MoveList legal;
            gen_legal_moves(legal, board);
            if (legal.size == 0) {
                break;
            }
            UndoInfo undo;
            move_do(board, legal.move[dice.below(static_cast<std::size_t>(legal.size))], undo);
            action(board);
        }
    }
}

class SearchTest : public ::testing::Test {
  protected:
    void SetUp() override {
        option_defaults();
        reductions_init();
        hash_init(hash_table);
        hash_alloc(hash_table, 16);
        hash_new_search(hash_table);
        eval_tables_allocate(1);
        eval_apply_weights();
        search_shared.hooks = {};
        search_shared.thread_count = 1;
        search_reset();
        for (int thread = 0; thread < kMaxThreads; ++thread) {
            search_tables_clear(thread);
        }
        search_parameters = {};
        search_parameters_setup();
    }

    void TearDown() override {
        search_shared.hooks = {};
        search_shared.thread_count = 1;
        hash_free(hash_table);
        option_defaults();
        eval_apply_weights();
        eval_tables_free();
    }

    // Sets an option and what the search reads of it.
    static void set(std::string_view name, std::string_view value) {
        ASSERT_TRUE(option_set(name, value)) << name;
        eval_apply_weights();
        search_parameters_setup();
    }

    // As if the thread had searched for so many seconds.
    static void set_elapsed(double seconds, int thread = 0) {
        stopwatch_reset(search_thread(thread).stopwatch);
        search_thread(thread).stopwatch.accumulated = seconds;
    }
};

}  // namespace zar::test
