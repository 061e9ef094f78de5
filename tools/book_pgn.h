// Games in Portable Game Notation as opening lines: the moves that were played, each with weight 1.
// Variations and comments are passed over, and of the tags only "FEN" is looked at.
#pragma once

#include <string_view>

#include "board/board.h"
#include "book_moves.h"

namespace zar::tools {

// The game that is being read.
struct PgnGame {
    Board board;
    int plies = 0;         // taken so far
    bool in_tags = false;  // the next tag is one of this game
    bool is_dropped = false;
    int variations = 0;    // that are open
    int comment_line = 0;  // where the open comment begins, 0 when there is none
};

// Does a text whose first line that is not blank is this one have games, or else plain lines? A
// name that ends in ".pgn" says so too.
[[nodiscard]] bool pgn_begins(std::string_view line, std::string_view name);

// Sets up the first game of a text.
void pgn_start(PgnGame& game);

// Adds the moves of one line. What cannot be played is reported and costs the rest of its game.
void pgn_add_line(PgnGame& game, BookText& text, std::string_view line);

// Reports what the text has left open.
void pgn_end(PgnGame& game, BookText& text);

}  // namespace zar::tools
