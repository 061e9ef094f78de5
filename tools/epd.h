// Test positions in Extended Position Description: the first four fields of a FEN, then operations
// that end with ";". "bm" lists the moves to find, "am" those to avoid, "id" names the position;
// other operations are passed over.
#pragma once

#include <istream>
#include <string>
#include <vector>

#include "board/move.h"

namespace zar::tools {

struct EpdPosition {
    int line = 0;  // of the file, from 1
    std::string fen;
    std::vector<Move> best;   // "bm"
    std::vector<Move> avoid;  // "am"
    std::string id;
};

// Is this move among the best, where there are any, and not among those to avoid?
[[nodiscard]] bool epd_is_solution(const EpdPosition& position, Move move);

// Appends the positions of a text. Empty lines and those that begin with "#" are passed over; the
// two counters of a FEN may stand behind its four fields, and the last ";" of a line may be
// missing. Empty when all is well, else "LINE: what is wrong" for the first fault, or what is wrong
// when no line has a position.
[[nodiscard]] std::string epd_read(std::istream& text, std::vector<EpdPosition>& positions);

}  // namespace zar::tools
