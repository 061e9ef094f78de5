#pragma once

// A second, independent set of the rules of chess for tests to compare the engine with. It is
// written to be seen to be right, not to be fast: an 8x8 board of letters, every move tried on a
// copy, king safety found by looking outward from the king. It shares nothing with the engine.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace twin {

inline constexpr const char* kStartFen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

// A square of the board: file 0..7 is a..h, rank 0..7 is 1..8.
struct Square {
    int file;
    int rank;
};

// A move of a man. `promotion` is 'n', 'b', 'r' or 'q', or 0. Castling is the king's move of two
// files, an en-passant capture the pawn's diagonal move.
struct Move {
    Square from;
    Square to;
    char promotion;
};

// A position. `board[rank][file]` holds one of "PNBRQK" (White), "pnbrqk" (Black) or '.'.
struct Position {
    std::array<std::array<char, 8>, 8> board;
    bool white_to_move;
    std::array<bool, 4> castling;  // rights in the order K, Q, k, q
    int ep_file;                   // file of the en-passant square, -1 for none
    int half_moves;                // half-moves since the last capture or pawn move
};

// Reads a FEN of four to six fields; the full-move number is ignored. A castling right whose king
// or rook is not at home is dropped, and so is an en-passant square without a pawn that has just
// passed it or without an enemy pawn beside that pawn. A clock above 1000 is read as 1000.
// On a faulty text, or a position that cannot arise (number of kings or men, pawns on the first or
// last rank, the side not to move in check), returns nothing and says why in `error` if given.
std::optional<Position> position_from_fen(const std::string& fen, std::string* error = nullptr);

// The FEN of a position; its full-move number is always 1.
std::string position_to_fen(const Position& position);

// The square named by two characters like "e4", or nothing.
std::optional<Square> square_from_text(const std::string& text);

// UCI text of a move: "e2e4", "e7e8q", "e1g1".
std::string move_to_text(const Move& move);

// Does a man of the given side attack the square? What stands on the square does not matter.
bool is_attacked(const Position& position, Square square, bool by_white);

// Is the king of the side to move attacked?
bool is_check(const Position& position);

// In check without a legal move.
bool is_mate(const Position& position);

// Not in check without a legal move.
bool is_stalemate(const Position& position);

// Bare kings, a lone minor piece, or any number of bishops all on squares of one colour: no series
// of legal moves can mate.
bool is_material_draw(const Position& position);

// The position after a move, which must be one that a man can make there. Whether the mover's own
// king is left attacked is not looked at.
Position position_after(const Position& position, const Move& move);

// Every legal move, in no particular order.
std::vector<Move> generate_legal_moves(const Position& position);

// The texts of the legal moves, sorted.
std::vector<std::string> legal_moves(const Position& position);

// Number of legal move sequences of `depth` half-moves (1 for depth 0 or below).
std::uint64_t perft(const Position& position, int depth);

// How a game stands.
enum class Result { ongoing, mate, stalemate, fifty, repetition, material };

// A game: the position on the board, and for every position so far, this one included and oldest
// first, a text that is equal exactly for positions that count as the same for repetition.
struct Game {
    Position position;
    std::vector<std::string> history;
};

// A game that begins at the given position.
Game game_from_position(const Position& position);

// A game that begins at the start position.
Game game_start();

// Plays a move given as UCI text. False, with the game unchanged, if it is not legal.
bool game_play(Game& game, const std::string& move);

// The first of mate, stalemate, material, fifty (100 half-moves without capture or pawn move) and
// repetition (the third time) that holds, else ongoing. Draws count without a claim.
Result game_result(const Game& game);

// The enumerator's name, "ongoing" and so on.
std::string result_name(Result result);

}  // namespace twin
