#include "eval/pawns.h"

#include <cstddef>

#include "board/geometry.h"
#include "board/set.h"
#include "eval/cache.h"
#include "eval/rank_mask.h"
#include "eval/weights.h"
#include "platform/compiler.h"

namespace zar {

namespace {

constexpr std::size_t kPawnEntryCount = 0x80000;

constexpr SquareSet kSecondRank = kFirstRank << 8;

// Every thread writes its own table only.
RecordCache<PawnRecord, kPawnEntryCount> pawn_cache;

// The pawns of both sides as one of them sees the board, moving up, and what follows from all of
// them together: a side at a time instead of a pawn at a time saves 35 instructions a node at
// depth 5.
struct PawnSets {
    SquareSet own;
    SquareSet enemy;
    SquareSet open;      // own pawns with no pawn ahead on their file
    SquareSet passed;    // of those the ones without an enemy pawn ahead on a neighbouring file
    SquareSet doubled;   // own pawns with another behind
    SquareSet isolated;  // own pawns with none on the neighbouring files
};

// The squares behind these, down to the first rank.
SquareSet all_behind(SquareSet set) { return set_down(set_fill_down(set)); }

template <Color kUs>
PawnSets view_pawns(const Board& board) {
    const auto seen = [](SquareSet pawns) { return kUs == kWhite ? pawns : set_flip_ranks(pawns); };
    const SquareSet own = seen(board.pawns[kUs]);
    const SquareSet enemy = seen(board.pawns[color_opposite(kUs)]);
    const SquareSet open = own & ~all_behind(own | enemy);
    return {
        .own = own,
        .enemy = enemy,
        .open = open,
        .passed = open & ~all_behind(set_beside(enemy)),
        .doubled = own & set_up(set_fill_up(own)),
        .isolated = own & ~set_beside(set_fill_up(set_fill_down(own))),
    };
}

// Of the pawns that are not isolated: those that no neighbour can protect and that cannot join
// their neighbours safely.
SquareSet backward_pawns(const PawnSets& pawns) {
    const SquareSet beside = set_beside(pawns.own);
    const SquareSet alone = pawns.own & ~pawns.isolated & ~set_fill_up(beside);
    // All neighbours are ahead. A single step reaches one that is next, and from its second rank a
    // double step one that is two ranks on.
    const SquareSet single = alone & set_down(beside);
    const SquareSet twice = alone & kSecondRank & set_down(beside, 2);
    const SquareSet enemy_beside = set_beside(pawns.enemy);
    const SquareSet any = pawns.own | pawns.enemy;
    const SquareSet single_stopped = set_down(any | enemy_beside) | set_down(enemy_beside, 2);
    const SquareSet twice_stopped = single_stopped | set_down(any, 2) | set_down(enemy_beside, 3);
    return alone & ~((single & ~single_stopped) | (twice & ~twice_stopped));
}

// Of a pawn with an open file that is not passed: do its helpers match the pawns that guard its
// way, and its defenders those that attack its next square?
bool is_candidate(const PawnSets& pawns, Square64 square) {
    const SquareSet beside = set_beside(set_of(square));
    const SquareSet up_to = set_fill_down(beside);
    const SquareSet ahead = set_fill_up(set_up(beside));
    if (set_count(pawns.own & up_to) < set_count(pawns.enemy & ahead)) {
        return false;
    }
    const int defenders = set_count(pawns.own & set_down(beside));
    const int attackers = set_count(pawns.enemy & set_up(beside));
    return defenders >= attackers;
}

ScorePair candidate_score(const PawnSets& pawns) {
    const PawnWeights& weights = eval_weights.pawns;
    ScorePair score;
    for (SquareSet rest = pawns.open & ~pawns.passed; rest != 0; rest = set_rest(rest)) {
        const Square64 square = set_first(rest);
        if (is_candidate(pawns, square)) {
            const int rank = static_cast<int>(square >> 3) + 1;
            score += interpolate(weights.candidate_min, weights.candidate_max, rank);
        }
    }
    return score;
}

// Passed pawns are only found here, and scored with the terms that move by move depend on more.
ScorePair pawn_score(const PawnSets& pawns) {
    const PawnWeights& weights = eval_weights.pawns;
    const SquareSet backward = backward_pawns(pawns);
    const auto penalty = [](ScorePair weight, SquareSet set) { return weight * set_count(set); };
    return candidate_score(pawns) - penalty(weights.doubled, pawns.doubled) -
           penalty(weights.isolated_open, pawns.isolated & pawns.open) -
           penalty(weights.isolated_closed, pawns.isolated & ~pawns.open) -
           penalty(weights.backward_open, backward & pawns.open) -
           penalty(weights.backward_closed, backward & ~pawns.open);
}

int pawns_on(const Board& board, Color color, int column) {
    return board.pawn_file[static_cast<std::size_t>(color)][static_cast<std::size_t>(column)];
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
    const PawnSets pawns = view_pawns<kUs>(board);
    record.second_rank[kUs] = (pawns.own & kSecondRank) != 0 ? 1 : 0;
    record.passed_files[kUs] = static_cast<std::uint8_t>(set_fill_down(pawns.passed));
    record.lone_pawn[kUs] = static_cast<std::uint8_t>(find_lone_pawn(board, kUs));
    return pawn_score(pawns);
}

// Kept out of the way of the many positions whose pawns are in the cache.
[[gnu::noinline]] PawnRecord compute_record(const Board& board) {
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
    prefetch(cache_entry(pawn_cache, board.pawn_key, thread));
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
