// The static evaluation: material, piece-square sums, pawns, fixed patterns, king shelter, passed
// pawns and mobility, blended by the phase of the game and scaled down where a side can hardly win.
#pragma once

#include <array>

#include "board/board.h"
#include "eval/score.h"

namespace zar {

// No evaluation goes beyond this, mates are above it.
constexpr Score kMaxEval = 29744;

// Centipawns for the side to move. May stop early, with an unscaled estimate, where the terms left
// out can hardly bring the score back into the window (alpha, beta). `thread` (0..3) chooses the
// caches.
[[nodiscard]] Score evaluate(const Board& board, Score alpha, Score beta, int thread);

// What is known of a position once an evaluation of it has come to its end: enough to tell the
// score for any window. Where an evaluation may not stop early the estimates are the score itself.
struct Estimates {
    bool known = false;  // else the others mean nothing
    Score first;         // at the first and at the second exit
    Score second;
    Score full;
};

// The same, from estimates of this very position if they are known. If not, it evaluates, and fills
// them when it comes to the end.
[[nodiscard]] Score evaluate_once(Estimates& estimates, const Board& board, Score alpha, Score beta,
                                  int thread);

// Everything that an evaluation is made of, for tools and tests; arrays are indexed by colour.
// Pairs not indexed by colour are White's view; those that are, the colour's own.
struct EvalTerms {
    ScorePair material;
    int phase;
    int ending_class;
    int ending_flags;
    std::array<int, 2> side_flags;
    std::array<int, 2> scale;
    // As the tests for drawn endings leave them.
    std::array<int, 2> working_scale;
    ScorePair pawns;
    std::array<int, 2> passed_files;
    std::array<int, 2> lone_pawn;
    ScorePair psq;
    ScorePair patterns;
    // The next three before their scales; shelter is a penalty, 0 where it is not charged.
    std::array<int, 2> shelter;
    std::array<ScorePair, 2> passers;
    std::array<ScorePair, 2> mobility;
    // The sum of all, the bonus for the move included, before the blend.
    ScorePair total;
    // What evaluate returns when it does not stop early: side to move's view.
    Score final_score;
};

// All terms, whatever the evaluation itself could do without.
[[nodiscard]] EvalTerms evaluate_terms(const Board& board, int thread);

// Computes all weights for the present options and clears the caches of scores weighted before. The
// piece-square sums of existing boards must be renewed with board_sum_psq.
void eval_apply_weights();

// Cleared caches for 1..4 threads, in place of the old ones. Evaluation works without them, slowly.
void eval_tables_allocate(int thread_count);
void eval_tables_free();

}  // namespace zar
