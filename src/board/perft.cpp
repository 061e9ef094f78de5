#include "board/perft.h"

#include "board/make.h"
#include "board/movegen.h"

namespace zar {

std::uint64_t perft(Board& board, int depth) {
    if (depth <= 0) {
        return 1;
    }
    MoveList list;
    gen_legal_moves(list, board);
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(list.size); ++i) {
        UndoInfo undo;
        move_do(board, list.move[i], undo);
        count += perft(board, depth - 1);
        move_undo(board, list.move[i], undo);
    }
    return count;
}

}  // namespace zar
