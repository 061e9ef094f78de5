// Records that the evaluation takes from its caches, against records computed for the position at
// hand.

#include <cstdint>
#include <set>
#include <utility>

#include "differential/positions.h"
#include "eval/eval.h"
#include "eval/material.h"
#include "eval/pawns.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::fen_of;
using DifferentialCaches = test::SearchTest;

// A SearchTest gives caches to the first thread only; all others compute every record.
constexpr int kCached = 0;
constexpr int kFresh = 1;

void expect_same_pawns(const Board& board) {
    PawnRecord cached;
    PawnRecord fresh;
    evaluate_pawns(cached, board, kCached);
    evaluate_pawns(fresh, board, kFresh);
    ASSERT_EQ(cached.lock, fresh.lock) << fen_of(board);
    ASSERT_EQ(cached.opening, fresh.opening) << fen_of(board);
    ASSERT_EQ(cached.endgame, fresh.endgame) << fen_of(board);
    ASSERT_EQ(cached.second_rank, fresh.second_rank) << fen_of(board);
    ASSERT_EQ(cached.passed_files, fresh.passed_files) << fen_of(board);
    ASSERT_EQ(cached.lone_pawn, fresh.lone_pawn) << fen_of(board);
}

void expect_same_material(const Board& board) {
    const MaterialRecord cached = material_probe(board, kCached);
    const MaterialRecord fresh = material_probe(board, kFresh);
    ASSERT_EQ(cached.lock, fresh.lock) << fen_of(board);
    ASSERT_EQ(cached.ending, fresh.ending) << fen_of(board);
    ASSERT_EQ(cached.ending_flags, fresh.ending_flags) << fen_of(board);
    ASSERT_EQ(cached.side_flags, fresh.side_flags) << fen_of(board);
    ASSERT_EQ(cached.scale, fresh.scale) << fen_of(board);
    ASSERT_EQ(cached.phase, fresh.phase) << fen_of(board);
    ASSERT_EQ(cached.opening, fresh.opening) << fen_of(board);
    ASSERT_EQ(cached.endgame, fresh.endgame) << fen_of(board);
}

// How often a key comes back with another position, which is when a cache answers.
struct Returns {
    std::set<std::uint64_t> keys;
    std::set<std::pair<std::uint64_t, std::uint64_t>> positions;
    int number = 0;
};

void count_return(Returns& returns, std::uint64_t key, const Board& board) {
    const bool new_position = returns.positions.insert({key, board.key}).second;
    const bool new_key = returns.keys.insert(key).second;
    returns.number += new_position && !new_key ? 1 : 0;
}

TEST_F(DifferentialCaches, PawnRecordsAreThoseOfThePawnsAtHand) {
    Returns returns;
    test::visit_all([&](const Board& board) {
        count_return(returns, board.pawn_key, board);
        expect_same_pawns(board);
        expect_same_pawns(board);
    });
    test::visit_all(expect_same_pawns);
    EXPECT_GT(returns.number, 2000);
}

TEST_F(DifferentialCaches, MaterialRecordsAreThoseOfTheMenAtHand) {
    Returns returns;
    test::visit_all([&](const Board& board) {
        count_return(returns, board.material_key, board);
        expect_same_material(board);
        expect_same_material(board);
    });
    test::visit_all(expect_same_material);
    EXPECT_GT(returns.number, 2000);
}

TEST_F(DifferentialCaches, AnEvaluationIsTheSameWithAndWithoutThem) {
    test::visit_all([&](const Board& board) {
        const EvalTerms cached = evaluate_terms(board, kCached);
        const EvalTerms fresh = evaluate_terms(board, kFresh);
        ASSERT_EQ(cached.material, fresh.material) << fen_of(board);
        ASSERT_EQ(cached.pawns, fresh.pawns) << fen_of(board);
        ASSERT_EQ(cached.working_scale, fresh.working_scale) << fen_of(board);
        ASSERT_EQ(cached.total, fresh.total) << fen_of(board);
        ASSERT_EQ(cached.final_score, fresh.final_score) << fen_of(board);
        ASSERT_EQ(evaluate(board, -kMaxEval, kMaxEval, kCached), fresh.final_score)
            << fen_of(board);
    });
}

TEST_F(DifferentialCaches, KnownEstimatesTellTheScoreForAnyWindow) {
    int first_exits = 0;
    int second_exits = 0;
    test::visit_all([&](const Board& board) {
        Estimates estimates;
        const Score full = evaluate_once(estimates, board, -kMaxEval, kMaxEval, kCached);
        ASSERT_EQ(full, evaluate(board, -kMaxEval, kMaxEval, kCached)) << fen_of(board);
        for (Score alpha = full - 400; alpha <= full + 400; alpha += 25) {
            const Score score = evaluate(board, alpha, alpha + 1, kCached);
            const Score again = evaluate_once(estimates, board, alpha, alpha + 1, kCached);
            ASSERT_EQ(again, score) << fen_of(board) << " alpha " << alpha;
            first_exits += estimates.known && score == estimates.first && score != full ? 1 : 0;
            second_exits += estimates.known && score == estimates.second && score != full ? 1 : 0;
        }
    });
    EXPECT_GT(first_exits, 10000);
    EXPECT_GT(second_exits, 10000);
}

}  // namespace
}  // namespace zar
