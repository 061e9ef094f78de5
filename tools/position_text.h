// Positions as people and programs write them:
//
//     rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1        a FEN
//     startpos moves e2e4 e7e5                                          as behind "position"
//     fen 8/2P5/8/8/8/5k2/8/7K w - - 0 1 moves c7c8q                    of the engine
//
// "moves" may stand behind every form, and the moves are coordinates or standard notation. The
// words "position" in front, and operations of Extended Position Description behind a FEN, are
// passed over.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "board/board.h"

namespace zar::tools {

struct PositionText {
    std::string fen;
    std::string moves;  // behind "moves", separated by blanks
    std::string rest;   // behind the FEN's fields, when that is not "moves"
};

// The parts of a text. The FEN may be none, and is left as it is written; `rest` is a part of it.
[[nodiscard]] PositionText position_split(std::string_view text);

// Plays moves. Empty when all are legal, else what is wrong with the first that is not; the board
// is then behind the moves before it.
[[nodiscard]] std::string position_play(Board& board, const std::string& moves);

// Sets up the position of a text. Empty when it is one, else what is wrong with the text, which is
// named; the board is then not to be used.
[[nodiscard]] std::string position_read(Board& board, const std::string& text);

// The words with a single blank between them and none around them.
[[nodiscard]] std::string single_blanks(std::string_view text);

}  // namespace zar::tools
