// Moves in standard algebraic notation, "Nbxd7+", both ways. All functions leave the board as it
// was.
#pragma once

#include <string>
#include <string_view>

#include "board/board.h"
#include "board/move.h"

namespace zar::tools {

// The text of a legal move, with "x" for captures, "=Q" for promotions, "O-O" for castling, "+" and
// "#", and no more of the from-square than it takes: nothing, else the file, else the rank, else
// both.
[[nodiscard]] std::string san_of(Move move, Board& board);

// What a text came to: a legal move and no fault, or kMoveNone and what is wrong in words.
struct SanMove {
    Move move;
    const char* fault;
};

// The move that a text names. Marks behind it ("+", "#", "!", "?") may be there or not, and are not
// compared with the move; more of the from-square than it takes, a missing "x" or "=", and zeros
// for castling are accepted.
[[nodiscard]] SanMove san_read(std::string_view text, Board& board);

// The same for a text that may be in coordinates too, "e2e4", written exactly as the engine does.
[[nodiscard]] SanMove move_read(std::string_view text, Board& board);

// The moves of a list that ends with kMoveNone, separated by blanks, up to the first that is not
// legal where it stands, and no more than `most` of them.
[[nodiscard]] std::string san_line(const Move* moves, int most, const Board& board);

}  // namespace zar::tools
