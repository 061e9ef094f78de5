#include "eval/eval.h"

#include <algorithm>
#include <cstddef>

#include "board/geometry.h"
#include "eval/endings.h"
#include "eval/king.h"
#include "eval/material.h"
#include "eval/passers.h"
#include "eval/patterns.h"
#include "eval/pawns.h"
#include "eval/pieces.h"
#include "eval/psq.h"
#include "eval/weights.h"
#include "frontend/difficulty.h"

namespace zar {

namespace {

// For the side to move, by colour and in White's view.
constexpr std::array<ScorePair, kColorCount> kMoveBonus = {{{20, 10}, {-20, -10}}};

// A side with fewer pieces, king included, is never evaluated by estimate: there the terms left out
// may decide the game.
constexpr int kLeastPiecesForLazyExit = 4;

// Scale of a sound side when only bishops of opposite shades are left.
constexpr int kOppositeBishopsScale = 8;

ScorePair material_score(const MaterialRecord& material) {
    return {material.opening, material.endgame};
}

ScorePair pawn_score(const PawnRecord& pawns) { return {pawns.opening, pawns.endgame}; }

ScorePair psq_score(const Board& board) { return {board.pst_opening, board.pst_endgame}; }

// What the board's counts, sums and caches know, and the bonus for the move.
ScorePair base_score(const Board& board, const MaterialRecord& material, const PawnRecord& pawns) {
    const ScorePair score = material_score(material) + psq_score(board) + pawn_score(pawns);
    return score + kMoveBonus[static_cast<std::size_t>(board.turn)];
}

bool needs_shelter(const MaterialRecord& material, Color color) {
    return (material.side_flags[static_cast<std::size_t>(color)] & kNeedsShelter) != 0;
}

std::array<int, 2> shelter_penalties(const Board& board, const MaterialRecord& material) {
    const auto penalty = [&](Color color) {
        return needs_shelter(material, color) ? king_shelter_penalty(board, color) : 0;
    };
    return {penalty(kWhite), penalty(kBlack)};
}

ScorePair shelter_score(const std::array<int, 2>& penalties) {
    return {weigh(penalties[kBlack] - penalties[kWhite], eval_weights.king.scale), 0};
}

bool has_passers(const PawnRecord& pawns) {
    return (pawns.passed_files[kWhite] | pawns.passed_files[kBlack]) != 0;
}

// Not taken into evaluate and handed a copy: few positions have passed pawns, and without them the
// record need not lie in memory.
[[gnu::noinline]] std::array<ScorePair, 2> passer_scores(const Board& board, PawnRecord pawns) {
    return {evaluate_passers(board, kWhite, pawns), evaluate_passers(board, kBlack, pawns)};
}

std::array<PackedPair, 2> mobility_scores(const Board& board, const MaterialRecord& material,
                                          const PawnRecord& pawns) {
    return {evaluate_pieces(board, kWhite, pawns, needs_shelter(material, kBlack)),
            evaluate_pieces(board, kBlack, pawns, needs_shelter(material, kWhite))};
}

ScorePair mobility_difference(const std::array<PackedPair, 2>& scores) {
    return weigh(unpack(scores[kWhite] - scores[kBlack]), eval_weights.mobility.scale);
}

ScorePair passer_difference(const std::array<ScorePair, 2>& scores) {
    return weigh(scores[kWhite] - scores[kBlack], eval_weights.passers.scale);
}

Score side_to_move_view(const Board& board, Score score) {
    return board.turn == kWhite ? score : -score;
}

bool may_exit_early(const Board& board) {
    return eval_weights.lazy.enabled &&
           board_piece_count(board, kWhite) >= kLeastPiecesForLazyExit &&
           board_piece_count(board, kBlack) >= kLeastPiecesForLazyExit;
}

bool is_out_of_reach(Score estimate, int margin, Score alpha, Score beta) {
    return estimate - margin >= beta || estimate + margin <= alpha;
}

bool is_dead_draw(const Scales& scales) { return scales[kWhite] == 0 && scales[kBlack] == 0; }

bool bishops_differ_in_shade(const Board& board, const MaterialRecord& material) {
    return (material.ending_flags & kEndingSingleBishops) != 0 &&
           square_shade(*board_officers(board, kWhite).begin()) !=
               square_shade(*board_officers(board, kBlack).begin());
}

// Blends all terms and scales the result by what its winner can hope for.
Score finish(const Board& board, ScorePair total, const MaterialRecord& material, Scales scales) {
    Score score = blend(total, material.phase);
    if (bishops_differ_in_shade(board, material)) {
        std::replace(scales.begin(), scales.end(), kFullScale, kOppositeBishopsScale);
    }
    score = score * (score > 0 ? scales[kWhite] : scales[kBlack]) / kFullScale;
    return side_to_move_view(board, std::clamp(score, -kMaxEval, kMaxEval));
}

// Evaluates afresh. `estimates` are filled only at the end.
Score estimate(Estimates& estimates, const Board& board, Score alpha, Score beta, int thread) {
    const MaterialRecord material = material_probe(board, thread);
    PawnRecord pawns;
    evaluate_pawns(pawns, board, thread);
    const Scales scales = ending_scales(board, material, pawns);
    if (is_dead_draw(scales)) {
        return 0;
    }
    ScorePair total = base_score(board, material, pawns) + evaluate_patterns(board);

    const bool lazy = may_exit_early(board);
    Score first = 0;
    if (lazy) {
        first = side_to_move_view(board, blend(total, material.phase));
        if (is_out_of_reach(first, eval_weights.lazy.first_margin, alpha, beta)) {
            return first;
        }
    }
    total += shelter_score(shelter_penalties(board, material));
    if (has_passers(pawns)) {
        total += passer_difference(passer_scores(board, pawns));
    }
    Score second = 0;
    if (lazy) {
        second = side_to_move_view(board, blend(total, material.phase));
        if (is_out_of_reach(second, eval_weights.lazy.second_margin, alpha, beta)) {
            return second;
        }
    }
    total += mobility_difference(mobility_scores(board, material, pawns));
    const Score full = finish(board, total, material, scales);
    estimates = {true, lazy ? first : full, lazy ? second : full, full};
    return full;
}

}  // namespace

Score evaluate(const Board& board, Score alpha, Score beta, int thread) {
    Estimates unused;
    return estimate(unused, board, alpha, beta, thread);
}

Score evaluate_once(Estimates& estimates, const Board& board, Score alpha, Score beta, int thread) {
    if (!estimates.known) {
        return estimate(estimates, board, alpha, beta, thread);
    }
    if (is_out_of_reach(estimates.first, eval_weights.lazy.first_margin, alpha, beta)) {
        return estimates.first;
    }
    if (is_out_of_reach(estimates.second, eval_weights.lazy.second_margin, alpha, beta)) {
        return estimates.second;
    }
    return estimates.full;
}

EvalTerms evaluate_terms(const Board& board, int thread) {
    const MaterialRecord material = material_probe(board, thread);
    PawnRecord pawns;
    evaluate_pawns(pawns, board, thread);
    const Scales scales = ending_scales(board, material, pawns);

    EvalTerms terms{};
    terms.material = material_score(material);
    terms.phase = material.phase;
    terms.ending_class = static_cast<int>(material.ending);
    terms.ending_flags = material.ending_flags;
    for (std::size_t side = 0; side < 2; ++side) {
        terms.side_flags[side] = material.side_flags[side];
        terms.scale[side] = material.scale[side];
        terms.passed_files[side] = pawns.passed_files[side];
        terms.lone_pawn[side] = pawns.lone_pawn[side];
    }
    terms.working_scale = scales;
    terms.pawns = pawn_score(pawns);
    terms.psq = psq_score(board);
    terms.patterns = evaluate_patterns(board);
    terms.shelter = shelter_penalties(board, material);
    terms.passers = passer_scores(board, pawns);
    const auto mobility = mobility_scores(board, material, pawns);
    terms.mobility = {unpack(mobility[kWhite]), unpack(mobility[kBlack])};
    terms.total = base_score(board, material, pawns) + terms.patterns +
                  shelter_score(terms.shelter) + passer_difference(terms.passers) +
                  mobility_difference(mobility);
    terms.final_score = is_dead_draw(scales) ? 0 : finish(board, terms.total, material, scales);
    return terms;
}

void eval_apply_weights() {
    const int level = difficulty_level();
    weights_apply_pawns(level);
    pawn_tables_clear();
    weights_apply_material(level);
    material_tables_clear();
    psq_rebuild(level);
    weights_apply_pieces(level);
}

void eval_tables_allocate(int thread_count) {
    pawn_tables_allocate(thread_count);
    material_tables_allocate(thread_count);
}

void eval_tables_free() {
    pawn_tables_free();
    material_tables_free();
}

}  // namespace zar
