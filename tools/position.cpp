#include "position.h"

#include "board/fen.h"
#include "platform/fatal.h"

namespace zar::tools {

namespace {

// Null for a position. The engine's warning of many bishops is no fault, and nobody asked for it.
const PositionFault* set_up(Board& board, const std::string& fen) {
    failure_set_handler([](Failure, const char*) {});
    const PositionFault* const fault = board_read_fen(board, fen);
    failure_set_handler(nullptr);
    return fault;
}

}  // namespace

std::string position_error(Board& board, const std::string& fen) {
    const PositionFault* const fault = set_up(board, fen);
    std::string text = fault == nullptr ? "" : fault->code;
    std::erase(text, '\n');
    return text;
}

std::string position_fault(Board& board, const std::string& fen) {
    const PositionFault* const fault = set_up(board, fen);
    return fault == nullptr ? "" : fault->words;
}

}  // namespace zar::tools
