// Positions for tests: from FEN, from a short list of men, and turned round.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "board/board.h"
#include "board/fen.h"
#include "board/geometry.h"
#include "board/key.h"
#include "board/piece.h"

namespace zar::test {

inline Board board_of(std::string_view fen) {
    Board board;
    board_from_fen(board, fen);
    return board;
}

// The FEN of a side to move and men by letter and square, "w Kb7 Pa7 kf3 qd1"; no rights.
inline std::string fen_of_men(std::string_view text) {
    std::string cells(64, ' ');
    for (std::size_t at = 2; at + 2 < text.size(); at += 4) {
        const Square square = square_from_string(text.substr(at + 1, 2));
        cells[static_cast<std::size_t>(square64_of(square))] = text[at];
    }
    std::string fen;
    for (std::size_t rank = 8; rank-- > 0;) {
        int empty = 0;
        for (std::size_t file = 0; file < 8; ++file) {
            const char man = cells[8 * rank + file];
            if (man == ' ') {
                ++empty;
                continue;
            }
            fen += empty > 0 ? std::to_string(empty) : "";
            fen += man;
            empty = 0;
        }
        fen += empty > 0 ? std::to_string(empty) : "";
        fen += rank > 0 ? "/" : " ";
    }
    return fen + text[0] + " - - 0 1";
}

// Splits the placement of a FEN into its eight ranks, rank 8 first; `rest` is what follows.
inline std::vector<std::string> fen_ranks(const std::string& fen, std::string& rest) {
    const std::size_t end = fen.find(' ');
    rest = fen.substr(end);
    std::vector<std::string> ranks(1);
    for (const char letter : fen.substr(0, end)) {
        if (letter == '/') {
            ranks.emplace_back();
        } else {
            ranks.back() += letter;
        }
    }
    return ranks;
}

inline std::string fen_join(const std::vector<std::string>& ranks, const std::string& rest) {
    std::string fen;
    for (const std::string& rank : ranks) {
        fen += (fen.empty() ? "" : "/") + rank;
    }
    return fen + rest;
}

// The same position with the a-file as h-file. For FENs without rights and en passant.
inline std::string fen_flip_files(const std::string& fen) {
    std::string rest;
    std::vector<std::string> ranks = fen_ranks(fen, rest);
    for (std::string& rank : ranks) {
        std::reverse(rank.begin(), rank.end());
    }
    return fen_join(ranks, rest);
}

// The same position with White and Black exchanged. For FENs without rights and en passant.
inline std::string fen_swap_colors(const std::string& fen) {
    std::string rest;
    std::vector<std::string> ranks = fen_ranks(fen, rest);
    std::reverse(ranks.begin(), ranks.end());
    for (std::string& rank : ranks) {
        for (char& letter : rank) {
            const auto code = static_cast<unsigned char>(letter);
            letter = static_cast<char>(std::islower(code) != 0 ? std::toupper(code)
                                                               : std::tolower(code));
        }
    }
    rest[1] = rest[1] == 'w' ? 'b' : 'w';
    return fen_join(ranks, rest);
}

// The board with White and Black exchanged, every list in the order of the original's, so that
// nothing but the colours differs. The key history is left as it is.
inline Board board_swap_colors(const Board& board) {
    Board swapped = board;
    const auto flip_list = [](auto& list, int count) {
        for (int index = 0; index < count; ++index) {
            auto& square = list[static_cast<std::size_t>(index)];
            square = packed(square_flip_rows(square));
        }
    };
    for (const Square square : square_from_64) {
        const auto from = static_cast<std::size_t>(square);
        const auto to = static_cast<std::size_t>(square_flip_rows(square));
        const Piece piece = board.square[from];
        swapped.square[to] = packed(piece == kEmpty ? kEmpty : piece_of_12(piece12_of(piece) ^ 1));
        swapped.list_index[to] = board.list_index[from];
    }
    board_fill_sets(swapped);
    for (std::size_t color = 0; color < 2; ++color) {
        const std::size_t other = color ^ 1;
        swapped.piece_list[color] = board.piece_list[other];
        swapped.piece_count[color] = board.piece_count[other];
        swapped.pawn_list[color] = board.pawn_list[other];
        swapped.pawn_count[color] = board.pawn_count[other];
        swapped.pawn_file[color] = board.pawn_file[other];
        flip_list(swapped.piece_list[color], swapped.piece_count[color]);
        flip_list(swapped.pawn_list[color], swapped.pawn_count[color]);
    }
    for (std::size_t kind = 0; kind < kPieceKindCount; ++kind) {
        swapped.kind_count[kind] = board.kind_count[kind ^ 1];
    }
    swapped.turn = color_opposite(board.turn);
    swapped.castle_flags = (board.castle_flags >> 2 | board.castle_flags << 2) & kAllCastling;
    if (board.ep_square != kNoSquare) {
        swapped.ep_square = square_flip_rows(board.ep_square);
    }
    board_sum_psq(swapped);
    swapped.key = key_compute(swapped);
    swapped.pawn_key = pawn_key_compute(swapped);
    swapped.material_key = material_key_compute(swapped);
    return swapped;
}

}  // namespace zar::test
