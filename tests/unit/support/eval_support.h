// What the tests of the evaluation share: default options, full-strength weights and one thread's
// caches before each test.
#pragma once

#include <ostream>
#include <string>

#include "eval/eval.h"
#include "eval/pawns.h"
#include "eval/score.h"
#include "frontend/option.h"
#include "gtest/gtest.h"
#include "support/board_support.h"

namespace zar {

inline void PrintTo(const ScorePair& score, std::ostream* out) {
    *out << "(" << score.opening << ", " << score.endgame << ")";
}

}  // namespace zar

namespace zar::test {

class EvalTest : public ::testing::Test {
  protected:
    void SetUp() override {
        option_defaults();
        eval_tables_allocate(1);
        eval_apply_weights();
    }

    void TearDown() override {
        option_defaults();
        eval_apply_weights();
        eval_tables_free();
    }

    // Boards set up before keep the piece-square sums of the old level.
    static void set_level(int level) {
        ASSERT_TRUE(option_set("Difficulty Level", std::to_string(level)));
        eval_apply_weights();
    }

    static EvalTerms terms_of(const std::string& fen) { return evaluate_terms(board_of(fen), 0); }

    static PawnRecord pawns_of(const Board& board) {
        PawnRecord record;
        evaluate_pawns(record, board, 0);
        return record;
    }

    // With a window that no estimate can leave.
    static Score full_score(const Board& board) { return evaluate(board, -30000, 30000, 0); }
    static Score full_score(const std::string& fen) { return full_score(board_of(fen)); }
};

}  // namespace zar::test
