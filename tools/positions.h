// The positions that a command is about: the one of its command line, those of standard input, or
// the start position.
#pragma once

#include <string>
#include <vector>

#include "board/board.h"

namespace zar::tools {

struct PositionInput {
    std::string text;         // of the command line, or the start position
    bool from_lines = false;  // one position a line on standard input instead
    int line = 0;             // read last, from 1
    int count = 0;            // good positions so far
    int faults = 0;
};

// What the words of a command line ask for: the position that they are, or "-" for standard input.
// Without words it is standard input if that is a pipe or a file, since nobody should get an answer
// about the start position who has sent another one, and else the start position.
[[nodiscard]] PositionInput positions_of(const std::vector<std::string>& words);

// Sets up the next position; false when there is none. One that cannot be used is told on standard
// error and passed over, as are empty lines and those that begin with "#".
[[nodiscard]] bool positions_next(PositionInput& input, Board& board);

// Ends the program with status 2, by way of the command line parser, when a position could not be
// used or there was none.
void positions_end(const PositionInput& input);

// The option for all commands that take a position.
constexpr const char* kPositionHelp =
    "FEN or startpos, moves M... behind it; - reads lines of them from standard input, as when it "
    "is a pipe or a file (default: the start position)";

}  // namespace zar::tools
