// What keeps a text or a set-up from being a position: the codes that a fatal error tells, and the
// same in words.
#pragma once

namespace zar {

struct PositionFault {
    const char* code;   // with the newline that belongs to it
    const char* words;  // a clause without a capital or a full stop
};

// In the FEN text.
inline constexpr PositionFault kFaultLongRank = {"X-Error 4EFN1BF1\n",
                                                 "a rank has more than eight squares"};
inline constexpr PositionFault kFaultPieceLetter = {
    "X-Error 4EFN1BF2\n", "a rank has a character that is neither a man nor a digit from 1 to 8"};
inline constexpr PositionFault kFaultNoSlash = {"X-Error 4EFN1BF3\n", "no '/' behind a rank"};
inline constexpr PositionFault kFaultNoBlankBehindRanks = {"X-Error 4EFN1BF4\n",
                                                           "no blank behind the last rank"};
inline constexpr PositionFault kFaultTurn = {"X-Error 4EFN1BF5\n",
                                             "the side to move is neither 'w' nor 'b'"};
inline constexpr PositionFault kFaultNoBlankBehindTurn = {"X-Error 4EFN1BF6\n",
                                                          "no blank behind the side to move"};
inline constexpr PositionFault kFaultCastling = {
    "X-Error 4EFN1BF7\n",
    "the castling rights are neither '-' nor letters of 'KQkq' in this order"};
inline constexpr PositionFault kFaultEnPassant = {
    "X-Error 4EFN1BF8\n", "the en-passant square is neither '-' nor a square"};
inline constexpr PositionFault kFaultEnPassantRank = {
    "X-Error 4EFN1BF9\n", "the en-passant square is on the wrong rank for the side to move"};

// In what stands on the board.
inline constexpr PositionFault kFaultPieceCode = {"X-Error 2EB1IP1\n",
                                                  "a square holds a code that is no man"};
inline constexpr PositionFault kFaultPieces = {"X-Error 2EB1IP2\n", "a colour has too many men"};
inline constexpr PositionFault kFaultKings = {"X-Error 2EB1IP3\n",
                                              "a colour has no king or more than one"};
inline constexpr PositionFault kFaultPawns = {
    "X-Error 2EB1IP4\n", "a colour has more than eight pawns, or a pawn on the first or last rank"};
inline constexpr PositionFault kFaultMen = {"X-Error 2EB1IP5\n", "a colour has too many men"};
inline constexpr PositionFault kFaultCheck = {"X-Error 2EB1IP6\n",
                                              "the side that is not to move is in check"};

}  // namespace zar
