#include "search/endgame.h"

#include "board/attack.h"
#include "search/hash.h"

namespace zar {

namespace {

constexpr int kEndgameMen = 5;  // the most that the database holds

}  // namespace

bool probe_endgame(Board& board, int ply, Score& score, int thread) {
    if (search_shared.hooks.probe_endgame == nullptr || board.total_count > kEndgameMen) {
        return false;
    }
    const int reach = 2 * search_thread(thread).iteration_depth / 3;
    const bool irreversible = board.cap_sq != kNoSquare || piece_is_pawn(board.moved_piece);
    Score stored = 0;
    if ((ply > reach && board.total_count == kEndgameMen) || (ply < reach && !irreversible) ||
        !search_shared.hooks.probe_endgame(board, stored)) {
        return false;
    }
    const bool is_mated = stored < 0 && board_is_mate(board);
    score = is_mated ? ply - kMateScore : value_from_hash(stored, ply);
    return true;
}

}  // namespace zar
