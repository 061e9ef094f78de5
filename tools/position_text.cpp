#include "position_text.h"

#include <algorithm>
#include <sstream>

#include "board/fen.h"
#include "board/make.h"
#include "position.h"
#include "san.h"
#include "text_line.h"

namespace zar::tools {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr int kLeastFields = 4;  // of a FEN; the two counters may be missing
constexpr int kMostFields = 6;

// Takes the next word off the front of a text; empty when there is none.
std::string_view take_word(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

bool take_keyword(std::string_view& text, std::string_view keyword) {
    std::string_view rest = text;
    if (take_word(rest) != keyword) {
        return false;
    }
    text = rest;
    return true;
}

bool is_number(std::string_view word) {
    return !word.empty() && std::all_of(word.begin(), word.end(),
                                        [](char letter) { return letter >= '0' && letter <= '9'; });
}

// What stands behind the four fields of a FEN and its counters, which are numbers.
std::string_view behind_fields(std::string_view fen) {
    for (int field = 0; field < kMostFields; ++field) {
        std::string_view behind = fen;
        const std::string_view word = take_word(behind);
        if (field >= kLeastFields && !is_number(word)) {
            break;
        }
        fen = behind;
    }
    return fen;
}

// Operations have an end that tells them from words that are there by mistake.
bool is_operations(const std::string& rest) { return rest.find(';') != std::string::npos; }

}  // namespace

PositionText position_split(std::string_view text) {
    PositionText parts;
    take_keyword(text, "position");
    if (take_keyword(text, "startpos")) {
        parts.fen = std::string(kStartFen) + std::string(text);
    } else {
        if (take_keyword(text, "fen")) {
            text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        }
        parts.fen = text;
    }
    const std::string_view behind = behind_fields(parts.fen);
    std::string_view moves = behind;
    if (take_keyword(moves, "moves")) {
        parts.moves = single_blanks(moves);
        parts.fen.resize(parts.fen.size() - behind.size());
    } else {
        parts.rest = single_blanks(behind);
    }
    return parts;
}

std::string position_play(Board& board, const std::string& moves) {
    // A search needs room for its own moves in the history, of which only those since the last
    // capture or pawn move count.
    constexpr int kLongHistory = 3000;
    constexpr int kKeptHistory = 200;
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
        const SanMove found = move_read(word, board);
        if (found.fault != nullptr) {
            return in_quotes(word) + " " + found.fault;
        }
        if (board.sp > kLongHistory) {
            board_trim_history(board, kKeptHistory);
        }
        UndoInfo undo;
        move_do(board, found.move, undo);
    }
    return "";
}

std::string position_read(Board& board, const std::string& text) {
    const PositionText parts = position_split(single_blanks(text));
    std::string fault = position_fault(board, parts.fen);
    if (fault.empty() && !parts.rest.empty() && !is_operations(parts.rest)) {
        fault =
            in_quotes(parts.rest) + " behind it is neither moves nor operations that end with ';'";
    }
    if (fault.empty()) {
        fault = position_play(board, parts.moves);
    }
    if (fault.empty()) {
        return "";
    }
    const bool is_fen = parts.moves.empty() && !text.starts_with("startpos");
    return (is_fen ? "FEN " : "position ") + in_quotes(text) + ": " + fault;
}

std::string single_blanks(std::string_view text) {
    std::string joined;
    for (std::string_view word = take_word(text); !word.empty(); word = take_word(text)) {
        joined += joined.empty() ? "" : " ";
        joined += word;
    }
    return joined;
}

}  // namespace zar::tools
