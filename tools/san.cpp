#include "san.h"

#include <memory>
#include <optional>

#include "board/attack.h"
#include "board/make.h"
#include "board/movegen.h"
#include "move_names.h"

namespace zar::tools {

namespace {

constexpr std::string_view kTypeLetters = "PNBRQK";  // by PieceType
constexpr std::string_view kMarks = "+#!?";
constexpr const char* kNoNotation = "is no move in standard algebraic notation";

char file_letter(Square64 square) { return static_cast<char>('a' + square % 8); }

char rank_digit(Square64 square) { return static_cast<char>('1' + square / 8); }

char type_letter(Piece piece) {
    return kTypeLetters[static_cast<std::size_t>(piece_type_of(piece))];
}

MoveList legal_moves(Board& board) {
    MoveList legal;
    gen_legal_moves(legal, board);
    return legal;
}

bool is_king_side(Move move) { return move_to64(move) > move_from64(move); }

// What of the from-square tells this man's move from those of others of its kind.
std::string origin(Move move, Board& board) {
    const Piece man = board_piece(board, move_from(move));
    const Square64 from = move_from64(move);
    bool others = false;
    bool file_taken = false;
    bool rank_taken = false;
    const MoveList legal = legal_moves(board);
    for (const Move other : span_of(legal)) {
        const Square64 square = move_from64(other);
        if (move_to64(other) == move_to64(move) && square != from &&
            board_piece(board, move_from(other)) == man) {
            others = true;
            file_taken = file_taken || square % 8 == from % 8;
            rank_taken = rank_taken || square / 8 == from / 8;
        }
    }
    if (!others) {
        return "";
    }
    if (!file_taken) {
        return {file_letter(from)};
    }
    if (!rank_taken) {
        return {rank_digit(from)};
    }
    return {file_letter(from), rank_digit(from)};
}

std::string mark(Move move, Board& board) {
    UndoInfo undo;
    move_do(board, move, undo);
    const char* text = board_is_mate(board) ? "#" : board_is_check(board) ? "+" : "";
    move_undo(board, move, undo);
    return text;
}

// The text without its mark.
std::string body(Move move, Board& board) {
    if (move_kind(move) == kKindCastling) {
        return is_king_side(move) ? "O-O" : "O-O-O";
    }
    const Piece man = board_piece(board, move_from(move));
    const bool capture = move_is_capture(move, board);
    std::string text;
    if (!piece_is_pawn(man)) {
        text = type_letter(man) + origin(move, board);
    } else if (capture) {
        text = file_letter(move_from64(move));
    }
    text += capture ? "x" : "";
    text += {file_letter(move_to64(move)), rank_digit(move_to64(move))};
    if (move_is_promotion(move)) {
        text += {'=', type_letter(move_promote(move))};
    }
    return text;
}

// What a text asks of a move; 0 where it does not say.
struct Wanted {
    char type = 'P';
    char from_file = 0;
    char from_rank = 0;
    char to_file = 0;
    char to_rank = 0;
    char promotion = 0;
    bool castling = false;
    bool king_side = false;
};

bool is_file(char letter) { return letter >= 'a' && letter <= 'h'; }

bool is_rank(char letter) { return letter >= '1' && letter <= '8'; }

// Takes the last character off the text if `accepts` does, else gives 0.
template <typename Accepts>
char take_last(std::string_view& text, Accepts accepts) {
    if (text.empty() || !accepts(text.back())) {
        return 0;
    }
    const char letter = text.back();
    text.remove_suffix(1);
    return letter;
}

std::optional<Wanted> castling(std::string_view text) {
    if (text == "O-O" || text == "0-0") {
        return Wanted{.castling = true, .king_side = true};
    }
    if (text == "O-O-O" || text == "0-0-0") {
        return Wanted{.castling = true, .king_side = false};
    }
    return std::nullopt;
}

// Reads from the end, where the parts that must be there are.
std::optional<Wanted> wanted_of(std::string_view text) {
    if (const std::optional<Wanted> found = castling(text)) {
        return found;
    }
    Wanted wanted;
    wanted.promotion = take_last(text, [](char letter) {
        return std::string_view("NBRQ").find(letter) != std::string_view::npos;
    });
    if (wanted.promotion != 0) {
        take_last(text, [](char letter) { return letter == '='; });
    }
    wanted.to_rank = take_last(text, is_rank);
    wanted.to_file = take_last(text, is_file);
    take_last(text, [](char letter) { return letter == 'x'; });
    wanted.from_rank = take_last(text, is_rank);
    wanted.from_file = take_last(text, is_file);
    if (const char type = take_last(
            text, [](char letter) { return kTypeLetters.find(letter) != std::string_view::npos; });
        type != 0) {
        wanted.type = type;
    }
    if (wanted.to_rank == 0 || wanted.to_file == 0 || !text.empty()) {
        return std::nullopt;
    }
    return wanted;
}

bool matches(Move move, const Wanted& wanted, const Board& board) {
    if (wanted.castling || move_kind(move) == kKindCastling) {
        return wanted.castling && move_kind(move) == kKindCastling &&
               is_king_side(move) == wanted.king_side;
    }
    const Square64 from = move_from64(move);
    const Square64 to = move_to64(move);
    const char promotion = move_is_promotion(move) ? type_letter(move_promote(move)) : '\0';
    return type_letter(board_piece(board, move_from(move))) == wanted.type &&
           file_letter(to) == wanted.to_file && rank_digit(to) == wanted.to_rank &&
           promotion == wanted.promotion &&
           (wanted.from_file == 0 || file_letter(from) == wanted.from_file) &&
           (wanted.from_rank == 0 || rank_digit(from) == wanted.from_rank);
}

}  // namespace

std::string san_of(Move move, Board& board) { return body(move, board) + mark(move, board); }

SanMove san_read(std::string_view text, Board& board) {
    while (!text.empty() && kMarks.find(text.back()) != std::string_view::npos) {
        text.remove_suffix(1);
    }
    const std::optional<Wanted> wanted = wanted_of(text);
    if (!wanted) {
        return {kMoveNone, kNoNotation};
    }
    Move found = kMoveNone;
    const MoveList legal = legal_moves(board);
    for (const Move move : span_of(legal)) {
        if (!matches(move, *wanted, board)) {
            continue;
        }
        if (found != kMoveNone) {
            return {kMoveNone, "can be more than one move"};
        }
        found = move;
    }
    return {found, found == kMoveNone ? "is no legal move" : nullptr};
}

SanMove move_read(std::string_view text, Board& board) {
    const MoveList legal = legal_moves(board);
    for (const Move move : span_of(legal)) {
        if (name_of(move) == text) {
            return {move, nullptr};
        }
    }
    const SanMove found = san_read(text, board);
    return found.fault == kNoNotation ? SanMove{kMoveNone, "is no move"} : found;
}

std::string san_line(const Move* moves, int most, const Board& board) {
    // Too large for the stack of every system, with its history.
    const auto copy = std::make_unique<Board>();
    board_copy(*copy, board);
    std::string text;
    for (int i = 0; i < most && moves[i] != kMoveNone; ++i) {
        if (!list_contains(legal_moves(*copy), moves[i])) {
            break;
        }
        text += text.empty() ? "" : " ";
        text += san_of(moves[i], *copy);
        UndoInfo undo;
        move_do(*copy, moves[i], undo);
    }
    return text;
}

}  // namespace zar::tools
