#include "position.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <string_view>

#include "board/fen.h"
#include "platform/fatal.h"

namespace zar::tools {

namespace {

// Where set-up comes back to when it meets a fatal error, and what the error said. The jump leaves
// only frames of the engine, which hold nothing to destroy.
std::jmp_buf failure_return;
char failure_text[256];

void on_failure(Failure failure, const char* text) {
    if (failure == Failure::fatal) {
        std::snprintf(failure_text, sizeof failure_text, "%s", text);
        std::longjmp(failure_return, 1);
    }
}

// False when the text is no position; failure_text then tells why.
bool set_up(Board& board, const char* fen) {
    if (setjmp(failure_return) != 0) {
        return false;
    }
    board_from_fen(board, fen);
    return true;
}

struct Fault {
    std::string_view code;
    const char* words;
};

constexpr std::array<Fault, 14> faults = {{
    {"X-Error 4EFN1BF1", "a rank has more than eight squares"},
    {"X-Error 4EFN1BF2", "a rank has a character that is neither a man nor a digit from 1 to 8"},
    {"X-Error 4EFN1BF3", "no '/' behind a rank"},
    {"X-Error 4EFN1BF4", "no blank behind the last rank"},
    {"X-Error 4EFN1BF5", "the side to move is neither 'w' nor 'b'"},
    {"X-Error 4EFN1BF6", "no blank behind the side to move"},
    {"X-Error 4EFN1BF7", "the castling rights are neither '-' nor letters of 'KQkq' in this order"},
    {"X-Error 4EFN1BF8", "the en-passant square is neither '-' nor a square"},
    {"X-Error 4EFN1BF9", "the en-passant square is on the wrong rank for the side to move"},
    {"X-Error 2EB1IP2", "a colour has too many men"},
    {"X-Error 2EB1IP3", "a colour has no king or more than one"},
    {"X-Error 2EB1IP4", "a colour has more than eight pawns, or a pawn on the first or last rank"},
    {"X-Error 2EB1IP5", "a colour has too many men"},
    {"X-Error 2EB1IP6", "the side that is not to move is in check"},
}};

}  // namespace

std::string position_error(Board& board, const std::string& fen) {
    failure_set_handler(on_failure);
    const bool good = set_up(board, fen.c_str());
    failure_set_handler(nullptr);
    std::string text = good ? "" : failure_text;
    std::erase(text, '\n');
    return text;
}

std::string position_fault(Board& board, const std::string& fen) {
    const std::string code = position_error(board, fen);
    const auto fault = std::find_if(faults.begin(), faults.end(),
                                    [&](const Fault& known) { return known.code == code; });
    return fault == faults.end() ? code : fault->words;
}

}  // namespace zar::tools
