// Position keys: XOR sums over the 781 numbers of the Polyglot book format. `key` is exactly the
// book key of the position; `pawn_key` and `material_key` index the evaluation's caches.
#pragma once

#include <cstddef>
#include <cstdint>

#include "board/board.h"
#include "board/key_table.h"
#include "board/move.h"

namespace zar {

// From scratch, for set-up and for checking what make and unmake keep.
[[nodiscard]] std::uint64_t key_compute(const Board& board);
[[nodiscard]] std::uint64_t pawn_key_compute(const Board& board);
[[nodiscard]] std::uint64_t material_key_compute(const Board& board);

// Term of a man on a square.
[[nodiscard]] inline std::uint64_t piece_key_of(int piece12, Square64 square) noexcept {
    return piece_keys[static_cast<std::size_t>(piece12)][static_cast<std::size_t>(square)];
}

// Term of the (count + 1)th man of a kind in `material_key`.
[[nodiscard]] inline std::uint64_t material_key_of(int piece12, int count) noexcept {
    return random64[static_cast<std::size_t>(16 * piece12 + count)];
}

// Term of a set of castling rights, 0..15; the terms of two sets XOR to that of their difference.
[[nodiscard]] std::uint64_t castle_key_of(int flags) noexcept;

// Term of the file of a mailbox square.
[[nodiscard]] inline std::uint64_t ep_key_of(Square square) noexcept {
    return random64[static_cast<std::size_t>(768 + square_column(square))];
}

constexpr std::size_t kTurnKeyIndex = 780;

// The side term for White, 0 for Black.
[[nodiscard]] inline std::uint64_t turn_key_of(Color color) noexcept {
    return color == kWhite ? random64[kTurnKeyIndex] : 0;
}

// The key after a move that changes no rights, sets no en-passant square and promotes no pawn; for
// any other a wrong one. Good enough to fetch memory ahead of the move.
[[nodiscard]] inline std::uint64_t key_after(const Board& board, Move move) noexcept {
    const int mover = piece12_of(board_piece(board, move_from(move)));
    const Piece target = board_piece(board, move_to(move));
    std::uint64_t key = board.key ^ random64[kTurnKeyIndex] ^
                        piece_key_of(mover, move_from64(move)) ^
                        piece_key_of(mover, move_to64(move));
    if (target != kEmpty) {
        key ^= piece_key_of(piece12_of(target), move_to64(move));
    }
    return key;
}

}  // namespace zar
