// Positions as FEN text, both ways.
#pragma once

#include <string_view>

#include "board/board.h"

namespace zar {

constexpr std::string_view kStartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// Longest text that board_to_fen writes, and the least buffer it accepts.
constexpr int kFenSize = 92;

// Sets up a position; null when there is one, else what is wrong with the text, the board then
// being of no use. The first four fields are read strictly, character by character. Castling rights
// without king and rook at home, and an en-passant square that no pawn can use, are dropped
// silently; a half-move clock is capped at 1000; whatever follows it is never read.
[[nodiscard]] const PositionFault* board_read_fen(Board& board, std::string_view text);

// The same for callers that cannot go on: a fault ends the engine with its code.
void board_from_fen(Board& board, std::string_view text);

// Writes the position with full-move number 1 and a zero; false, with nothing written, when size is
// below 92 bytes.
bool board_to_fen(const Board& board, char* buffer, int size);

}  // namespace zar
