#include "book_pgn.h"

#include <algorithm>
#include <string>

#include "board/fen.h"
#include "position.h"

namespace zar::tools {

namespace {

constexpr std::string_view kBlanks = " \t\v\f";
constexpr std::string_view kEnds = " \t\v\f{}();$";  // of a word

void new_game(PgnGame& game) {
    board_from_fen(game.board, kStartFen);
    game.plies = 0;
    game.in_tags = false;
    game.is_dropped = false;
    game.variations = 0;
}

// Reports what a game has left open, which would hide the games behind it.
void close_variations(PgnGame& game, BookText& text) {
    if (game.variations > 0) {
        book_fault(text, "a variation of the game before is not closed");
        game.variations = 0;
    }
}

void add_tag(PgnGame& game, BookText& text, std::string_view tag) {
    constexpr std::string_view fen_tag = "[FEN \"";
    close_variations(game, text);
    if (!game.in_tags) {
        new_game(game);
        game.in_tags = true;
    }
    if (!tag.starts_with(fen_tag)) {
        return;
    }
    tag.remove_prefix(fen_tag.size());
    const std::string fen(tag.substr(0, tag.find('"')));
    if (const std::string fault = position_fault(game.board, fen); !fault.empty()) {
        book_fault(text, "FEN: " + fault + ", the game is dropped");
        game.is_dropped = true;
    }
}

void add_word(PgnGame& game, BookText& text, std::string_view word) {
    constexpr int weight = 1;
    if (book_is_result(word)) {
        new_game(game);
        return;
    }
    const std::string_view move = book_word(word);
    if (move.empty()) {
        return;
    }
    if (game.is_dropped || game.plies >= text.most_plies) {
        return;
    }
    if (const std::string fault = book_add_move(text, move, weight, game.board); !fault.empty()) {
        book_fault(text, fault + ", the rest of the game is dropped");
        game.is_dropped = true;
    }
    ++game.plies;
}

// Takes one word, mark or stretch of a comment off the front of a line.
void take_part(PgnGame& game, BookText& text, std::string_view& line) {
    const char first = line.front();
    std::size_t size = 1;
    if (game.comment_line > 0) {
        size = std::min(line.find('}'), line.size() - 1) + 1;
        game.comment_line = line[size - 1] == '}' ? 0 : game.comment_line;
    } else if (first == '{') {
        game.comment_line = text.number;
    } else if (first == ';') {
        size = line.size();
    } else if (first == '(') {
        ++game.variations;
    } else if (first == ')' && game.variations > 0) {
        --game.variations;
    } else if (first == '$') {
        size = std::min(line.find_first_not_of("0123456789", 1), line.size());
    } else if (kBlanks.find(first) == std::string_view::npos) {
        size = std::min(line.find_first_of(kEnds, 1), line.size());
        if (game.variations == 0) {
            add_word(game, text, line.substr(0, size));
        }
    }
    line.remove_prefix(size);
}

std::string_view without_indent(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    return line;
}

}  // namespace

bool pgn_begins(std::string_view line, std::string_view name) {
    constexpr std::string_view first_letters = "[{;%";
    line = without_indent(line);
    return name.ends_with(".pgn") ||
           (!line.empty() && first_letters.find(line.front()) != std::string_view::npos);
}

void pgn_start(PgnGame& game) { new_game(game); }

void pgn_add_line(PgnGame& game, BookText& text, std::string_view line) {
    if (game.comment_line == 0) {
        if (line.starts_with('%')) {
            return;
        }
        if (const std::string_view tag = without_indent(line); tag.starts_with('[')) {
            add_tag(game, text, tag);
            return;
        }
        // Whatever follows them, be it an empty line, a game need have no moves and no result.
        game.in_tags = false;
    }
    while (!line.empty()) {
        take_part(game, text, line);
    }
}

void pgn_end(PgnGame& game, BookText& text) {
    if (game.comment_line > 0) {
        text.number = game.comment_line;
        book_fault(text, "a comment is not closed, what is behind it is dropped");
    }
    close_variations(game, text);
}

}  // namespace zar::tools
