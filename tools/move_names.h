// Moves and lists of moves as the tools print them.
#pragma once

#include <span>
#include <string>

#include "board/move.h"
#include "board/movegen.h"

namespace zar::tools {

// The moves that a list holds now.
[[nodiscard]] inline std::span<const Move> span_of(const MoveList& list) {
    return std::span(list.move).first(static_cast<std::size_t>(list.size));
}
// A loop over a list that is gone would compile.
void span_of(const MoveList&& list) = delete;

[[nodiscard]] inline std::string name_of(Move move) {
    char text[kMoveTextSize];
    move_to_string(move, text, kMoveTextSize);
    return text;
}

}  // namespace zar::tools
