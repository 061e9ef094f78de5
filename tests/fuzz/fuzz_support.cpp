#include "fuzz_support.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "board/fen.h"
#include "board/make.h"
#include "board/movegen.h"
#include "frontend/option.h"
#include "frontend/startup.h"
#include "platform/fatal.h"

namespace zar::fuzz {

std::jmp_buf failure_return;

namespace {

struct FenText {
    char text[kFenSize];
};

void on_failure(Failure failure, const char*) {
    if (failure == Failure::fatal) {
        std::longjmp(failure_return, 1);
    }
}

FenText fen_of(const Board& board) {
    FenText fen{};
    require(board_to_fen(board, fen.text, kFenSize), "a FEN text is too long");
    return fen;
}

bool is_same(const FenText& left, const FenText& right) {
    return std::string_view(left.text) == right.text;
}

void check_fen(const Board& board) {
    static Board again;
    const FenText fen = fen_of(board);
    require(survives([&fen] { board_from_fen(again, fen.text); }), "the engine's FEN is refused");
    // A game may go on past the highest clock that is read.
    require(again.ply_nb == std::min(board.ply_nb, kMaxClock), "the clock is read as another one");
    again.ply_nb = board.ply_nb;
    require(is_same(fen_of(again), fen), "the engine's FEN is read as something else");
    require(again.key == board.key, "the engine's FEN gives another key");
}

void check_moves(Board& board) {
    MoveList legal;
    gen_legal_moves(legal, board);
    require(legal.size > 0 || board_is_mate(board) || board_is_stalemate(board),
            "no legal move, but neither mate nor stalemate");
    const FenText fen = fen_of(board);
    const std::uint64_t key = board.key;
    for (int i = 0; i < legal.size; ++i) {
        const Move move = legal.move[static_cast<std::size_t>(i)];
        UndoInfo undo;
        move_do(board, move, undo);
        require(board_consistent(board), "a move leaves an inconsistent board");
        require(board_is_legal(board), "a legal move leaves its king in check");
        move_undo(board, move, undo);
        require(board_consistent(board) && board.key == key && is_same(fen_of(board), fen),
                "a move is not taken back");
    }
}

}  // namespace

void start_engine() {
    startup_tables();
    option_set("Hash", "16");
    option_set("Own Book", "false");
    failure_set_handler(on_failure);
}

void require(bool claim, const char* message) {
    if (!claim) {
        std::fprintf(stderr, "==FUZZER== %s\n", message);
        std::abort();
    }
}

std::string_view text_of(const unsigned char* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

std::string_view take_line(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    return line.substr(0, line.find('\0'));
}

void check_position(Board& board) {
    require(board_consistent(board), "the board is inconsistent");
    check_fen(board);
    check_moves(board);
}

}  // namespace zar::fuzz
