#include "search/extend.h"

#include <algorithm>
#include <cstddef>

namespace zar {

bool pawn_move_makes_passed_pawn(Move move, const Board& board) {
    const Piece piece = board_piece(board, move_from(move));
    const Color color = piece_color(piece);
    const Square to = move_to(move);
    const auto column = static_cast<std::size_t>(square_column(to));
    const auto& own = board.pawn_file[static_cast<std::size_t>(color)];
    const auto& enemy = board.pawn_file[static_cast<std::size_t>(color_opposite(color))];
    // Each side counts ranks from its own first one: rank k for the pawn is rank 9 - k for the
    // enemy.
    const int rank = square_relative_row(to, color) - kFirstLine + 1;
    const int own_ahead = own[column] >> rank;
    const int enemy_ahead_mask = (1 << (8 - rank)) - 1;
    const int enemies = enemy[column - 1] | enemy[column] | enemy[column + 1];
    return own_ahead == 0 && (enemies & enemy_ahead_mask) == 0;
}

bool move_captures_into_ending(Move move, const Board& board) {
    const Piece captured = move_captured(move, board);
    if (captured == kEmpty || piece_is_pawn(captured)) {
        return false;
    }
    const auto [fewer, more] = std::minmax(board.piece_count[0], board.piece_count[1]);
    return (fewer == 1 && more == 2) || (fewer == 2 && more == 3);
}

}  // namespace zar
