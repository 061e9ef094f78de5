#include "eval/pawns.h"

#include <cstddef>

#include "board/geometry.h"
#include "board/piece.h"
#include "eval/cache.h"
#include "eval/rank_mask.h"
#include "eval/weights.h"

namespace zar {

namespace {

constexpr std::size_t kPawnEntryCount = 0x80000;

// Every thread writes its own table only.
RecordCache<PawnRecord, kPawnEntryCount> pawn_cache;

// A pawn and the pawns on its file and the two beside it, all ranks as the pawn's own side counts
// them.
struct PawnView {
    int rank;
    int own_file;
    int enemy_file;
    int own_left;
    int own_right;
    int enemy_left;
    int enemy_right;

    [[nodiscard]] int own_beside() const { return own_left | own_right; }
    [[nodiscard]] int enemy_beside() const { return enemy_left | enemy_right; }
    [[nodiscard]] int any_on_file() const { return own_file | enemy_file; }
};

int pawns_on(const Board& board, Color color, int column) {
    return board.pawn_file[static_cast<std::size_t>(color)][static_cast<std::size_t>(column)];
}

// The columns beside the board hold no pawns.
PawnView view_pawn(const Board& board, Square square, Color color) {
    const int column = square_column(square);
    const Color enemy = color_opposite(color);
    return {
        .rank = relative_rank(square, color),
        .own_file = pawns_on(board, color, column),
        .enemy_file = ranks_reversed(pawns_on(board, enemy, column)),
        .own_left = pawns_on(board, color, column - 1),
        .own_right = pawns_on(board, color, column + 1),
        .enemy_left = ranks_reversed(pawns_on(board, enemy, column - 1)),
        .enemy_right = ranks_reversed(pawns_on(board, enemy, column + 1)),
    };
}

bool is_isolated(const PawnView& pawn) { return pawn.own_beside() == 0; }

// Of a pawn that is not isolated: can no neighbour protect it, nor it join its neighbours safely?
bool is_backward(const PawnView& pawn) {
    const int rank = pawn.rank;
    if ((pawn.own_beside() & ranks_up_to(rank)) != 0) {
        return false;
    }
    // All neighbours are ahead. A single step reaches one that is next, and from its second rank a
    // double step one that is two ranks on.
    const bool single = (pawn.own_beside() & ranks_next(rank, 1)) != 0;
    const bool twice = rank == 2 && (pawn.own_beside() & rank_bit(4)) != 0;
    if (!single && !twice) {
        return true;
    }
    const int steps = single ? 1 : 2;
    return (pawn.enemy_beside() & ranks_next(rank, steps + 1)) != 0 ||
           (pawn.any_on_file() & ranks_next(rank, steps)) != 0;
}

bool is_open_ahead(const PawnView& pawn) {
    return (pawn.any_on_file() & ranks_ahead(pawn.rank)) == 0;
}

// Of a pawn with an open file: does no enemy pawn guard its way?
bool is_passed(const PawnView& pawn) { return (pawn.enemy_beside() & ranks_ahead(pawn.rank)) == 0; }

// Of a pawn with an open file that is not passed: do its helpers match the pawns that guard its
// way, and its defenders those that attack its next square?
bool is_candidate(const PawnView& pawn) {
    const int behind = ranks_up_to(pawn.rank);
    const int helpers = rank_count(pawn.own_left & behind) + rank_count(pawn.own_right & behind);
    const int ahead = ranks_ahead(pawn.rank);
    const int guards = rank_count(pawn.enemy_left & ahead) + rank_count(pawn.enemy_right & ahead);
    if (helpers < guards) {
        return false;
    }
    const int last = rank_bit(pawn.rank - 1);
    const int defenders = rank_count(pawn.own_left & last) + rank_count(pawn.own_right & last);
    const int next = ranks_next(pawn.rank, 1);
    const int attackers = rank_count(pawn.enemy_left & next) + rank_count(pawn.enemy_right & next);
    return defenders >= attackers;
}

// Passed pawns are only found here, and scored with the terms that move by move depend on more.
ScorePair pawn_score(const PawnView& pawn) {
    const PawnWeights& weights = eval_weights.pawns;
    const bool open = is_open_ahead(pawn);
    ScorePair score;
    if ((pawn.own_file & ranks_behind(pawn.rank)) != 0) {
        score -= weights.doubled;
    }
    if (is_isolated(pawn)) {
        score -= open ? weights.isolated_open : weights.isolated_closed;
    } else if (is_backward(pawn)) {
        score -= open ? weights.backward_open : weights.backward_closed;
    }
    if (open && !is_passed(pawn) && is_candidate(pawn)) {
        score += interpolate(weights.candidate_min, weights.candidate_max, pawn.rank);
    }
    return score;
}

Square find_lone_pawn(const Board& board, Color color) {
    const int count = board_pawn_count(board, color);
    if (count == 0) {
        return kNoSquare;
    }
    const int column = square_column(*board_pawns(board, color).begin());
    const int own = pawns_on(board, color, column);
    if (rank_count(own) != count) {
        return kNoSquare;
    }
    const Color enemy = color_opposite(color);
    const int enemy_beside =
        ranks_reversed(pawns_on(board, enemy, column - 1) | pawns_on(board, enemy, column + 1));
    if ((enemy_beside & ranks_ahead(rank_lowest(own))) != 0) {
        return kNoSquare;
    }
    return most_advanced_pawn(board, color, column);
}

// Scores the pawns of one colour and notes what else there is to know about them.
template <Color kUs>
ScorePair evaluate_side(PawnRecord& record, const Board& board) {
    ScorePair score;
    int passed_files = 0;
    for (const Square square : board_pawns(board, kUs)) {
        const PawnView pawn = view_pawn(board, square, kUs);
        score += pawn_score(pawn);
        if (pawn.rank == 2) {
            record.second_rank[kUs] = 1;
        }
        if (is_open_ahead(pawn) && is_passed(pawn)) {
            passed_files |= 1 << (square_column(square) - kFirstLine);
        }
    }
    record.passed_files[kUs] = static_cast<std::uint8_t>(passed_files);
    record.lone_pawn[kUs] = static_cast<std::uint8_t>(find_lone_pawn(board, kUs));
    return score;
}

PawnRecord compute_record(const Board& board) {
    PawnRecord record{};
    record.lock = cache_lock(board.pawn_key);
    const ScorePair score =
        weigh(evaluate_side<kWhite>(record, board) - evaluate_side<kBlack>(record, board),
              eval_weights.pawns.scale);
    record.opening = static_cast<std::int16_t>(score.opening);
    record.endgame = static_cast<std::int16_t>(score.endgame);
    return record;
}

}  // namespace

void evaluate_pawns(PawnRecord& record, const Board& board, int thread) {
    PawnRecord* const entry = cache_entry(pawn_cache, board.pawn_key, thread);
    if (entry != nullptr && entry->lock == cache_lock(board.pawn_key)) {
        record = *entry;
        return;
    }
    record = compute_record(board);
    if (entry != nullptr) {
        *entry = record;
    }
}

void pawns_prefetch(const Board& board, int thread) {
    __builtin_prefetch(cache_entry(pawn_cache, board.pawn_key, thread));
    asm volatile("");  // or GCC 12 drops the call, see search/hash.h
}

Square most_advanced_pawn(const Board& board, Color color, int column) {
    const int rank = rank_highest(pawns_on(board, color, column));
    const Square square = square_make(kFirstLine + rank - 1, column);
    return color == kWhite ? square : square_flip_rows(square);
}

void pawn_tables_allocate(int thread_count) { cache_allocate(pawn_cache, thread_count); }

void pawn_tables_clear() { cache_clear(pawn_cache); }

void pawn_tables_free() { cache_free(pawn_cache); }

}  // namespace zar
