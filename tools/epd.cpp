#include "epd.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "board/board.h"
#include "position.h"
#include "san.h"
#include "text_line.h"

namespace zar::tools {

namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr int kFenFields = 4;

bool is_blank(char letter) { return kBlanks.find(letter) != std::string_view::npos; }

std::string_view without_blanks(std::string_view text) {
    while (!text.empty() && is_blank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && is_blank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// Takes the next word off the text; empty when there is none. A text in double quotes is one word,
// given with its quotes; the second is missing when the text has none.
std::string_view take_word(std::string_view& text) {
    text = without_blanks(text);
    std::size_t end = 0;
    if (text.starts_with('"')) {
        end = std::min(text.find('"', 1), text.size() - 1) + 1;
    } else {
        end = std::min(text.find_first_of(kBlanks), text.size());
    }
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

bool is_number(std::string_view word) {
    return !word.empty() && std::all_of(word.begin(), word.end(),
                                        [](char letter) { return letter >= '0' && letter <= '9'; });
}

// Takes what is before the next ";" that is not in quotes.
std::string_view take_operation(std::string_view& text) {
    bool quoted = false;
    std::size_t end = 0;
    while (end < text.size() && (quoted || text[end] != ';')) {
        quoted = quoted != (text[end] == '"');
        ++end;
    }
    const std::string_view operation = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return operation;
}

// The four fields, with the half-move clock if there is one.
std::string take_fen(std::string_view& text) {
    std::string fen;
    for (int field = 0; field < kFenFields; ++field) {
        fen += fen.empty() ? "" : " ";
        fen += take_word(text);
    }
    std::string_view rest = text;
    if (const std::string_view clock = take_word(rest); is_number(clock)) {
        fen += ' ';
        fen += clock;
        text = rest;
        if (is_number(take_word(rest))) {
            text = rest;
        }
    }
    return fen;
}

// What is wrong with a list of moves, if anything is.
std::string read_moves(std::string_view text, const char* opcode, Board& board,
                       std::vector<Move>& moves) {
    for (std::string_view word = take_word(text); !word.empty(); word = take_word(text)) {
        const SanMove found = san_read(word, board);
        if (found.fault != nullptr) {
            return std::string(opcode) + ": " + in_quotes(word) + " " + found.fault;
        }
        moves.push_back(found.move);
    }
    return moves.empty() ? std::string(opcode) + " names no move" : "";
}

std::string read_operation(std::string_view text, Board& board, EpdPosition& position) {
    if (std::count(text.begin(), text.end(), '"') % 2 != 0) {
        return "a double quote is not closed";
    }
    const std::string_view opcode = take_word(text);
    if (opcode == "bm") {
        return read_moves(text, "bm", board, position.best);
    }
    if (opcode == "am") {
        return read_moves(text, "am", board, position.avoid);
    }
    if (opcode == "id") {
        position.id = without_blanks(text);
        std::erase(position.id, '"');
    }
    return "";
}

std::string read_line(std::string_view text, Board& board, EpdPosition& position) {
    position.fen = take_fen(text);
    if (std::string fault = position_fault(board, position.fen); !fault.empty()) {
        return fault;
    }
    while (!without_blanks(text).empty()) {
        const std::string_view operation = take_operation(text);
        if (std::string fault = read_operation(operation, board, position); !fault.empty()) {
            return fault;
        }
    }
    return position.best.empty() && position.avoid.empty() ? "neither bm nor am is there" : "";
}

bool contains(const std::vector<Move>& moves, Move move) {
    return std::find(moves.begin(), moves.end(), move) != moves.end();
}

}  // namespace

bool epd_is_solution(const EpdPosition& position, Move move) {
    return (position.best.empty() || contains(position.best, move)) &&
           !contains(position.avoid, move);
}

std::string epd_read(std::istream& text, std::vector<EpdPosition>& positions) {
    const auto board = std::make_unique<Board>();
    int number = 0;
    for (std::string line; next_line(text, line, number);) {
        const std::string_view content = without_blanks(line);
        if (content.empty() || content.starts_with('#')) {
            continue;
        }
        EpdPosition position;
        position.line = number;
        if (const std::string fault = read_line(content, *board, position); !fault.empty()) {
            return std::to_string(number) + ": " + fault;
        }
        positions.push_back(position);
    }
    return positions.empty() ? "no position in it" : "";
}

}  // namespace zar::tools
