#include "frontend/strict.h"

#include <algorithm>

#include "board/fen.h"
#include "frontend/console.h"
#include "frontend/option.h"
#include "frontend/uci.h"
#include "platform/text.h"

namespace zar {

namespace {

bool is_white(char character) {
    return character == ' ' || character == '\t' || character == '\r' || character == '\v' ||
           character == '\f';
}

int length_of(std::string_view text) { return static_cast<int>(text.size()); }

// Without the newline that ends some codes.
int code_length(const PositionFault& fault) {
    return length_of(
        std::string_view(fault.code).substr(0, std::string_view(fault.code).find('\n')));
}

// Where a blank and this word begin in the text; npos when it does not have the word.
std::size_t find_word(std::string_view text, std::string_view word) {
    std::size_t place = text.find(word);
    while (place != std::string_view::npos) {
        const std::size_t end = place + word.size();
        if (place > 0 && text[place - 1] == ' ' && (end == text.size() || text[end] == ' ')) {
            return place - 1;
        }
        place = text.find(word, place + 1);
    }
    return place;
}

// The FEN text at the front of `rest`, which is left with what follows it.
std::string_view take_fen(std::string_view& rest) {
    const std::string_view fen = rest.substr(0, find_word(rest, "moves"));
    rest.remove_prefix(fen.size());
    return fen.substr(std::min(fen.find_first_not_of(' '), fen.size()));
}

// False, with the error told, at the first move that is not legal.
bool play_all(Board& board, std::string_view moves) {
    for (std::string_view text = token_next(moves); !text.empty(); text = token_next(moves)) {
        const Move move = uci_move(board, text);
        if (move == kMoveNone) {
            send_error("position: %.*s is not a legal move", length_of(text), text.data());
            return false;
        }
        uci_play(board, move);
    }
    return true;
}

}  // namespace

void strict_tidy(char* line) {
    constexpr std::string_view kVerbatim = " value ";
    char* out = line;
    bool verbatim = false;
    for (const char* in = line; *in != '\0'; ++in) {
        const bool white = is_white(*in);
        if (white && !verbatim && (out == line || out[-1] == ' ')) {
            continue;
        }
        *out++ = white && !verbatim ? ' ' : *in;
        const auto written = static_cast<std::size_t>(out - line);
        verbatim = verbatim || std::string_view(line, written).ends_with(kVerbatim);
    }
    while (out > line && is_white(out[-1])) {
        --out;
    }
    *out = '\0';
}

bool strict_position(Board& board, std::string_view arguments) {
    static Board scratch;
    std::string_view rest = arguments;
    const std::string_view kind = token_next(rest);
    if (kind != "startpos" && kind != "fen") {
        send_error("position: neither startpos nor fen");
        return false;
    }
    const std::string_view fen = kind == "fen" ? take_fen(rest) : kStartFen;
    if (const PositionFault* const fault = board_read_fen(scratch, fen)) {
        send_error("position: %s (%.*s)", fault->words, code_length(*fault), fault->code);
        return false;
    }
    const std::string_view marker = token_next(rest);
    if (!marker.empty() && marker != "moves") {
        send_error("position: what is %.*s?", length_of(marker), marker.data());
        return false;
    }
    if (!play_all(scratch, rest)) {
        return false;
    }
    board_copy(board, scratch);
    return true;
}

bool strict_setoption(std::string_view arguments, std::string_view& name) {
    constexpr std::string_view kName = "name ";
    constexpr std::string_view kValue = " value";
    const std::size_t value_at = find_word(arguments, "value");
    if (!arguments.starts_with(kName) || value_at == std::string_view::npos) {
        send_error("setoption: not of the form \"setoption name NAME value VALUE\"");
        return false;
    }
    name = arguments.substr(kName.size(), value_at - kName.size());
    std::string_view value = arguments.substr(value_at + kValue.size());
    value.remove_prefix(value.empty() ? 0 : 1);
    if (value == "<empty>") {
        value = {};
    }
    if (const char* const fault = option_fault(name, value)) {
        send_error("setoption: \"%.*s\" %s", length_of(name), name.data(), fault);
        return false;
    }
    option_set(name, value);
    return true;
}

}  // namespace zar
