// What the tests ask of the twin's board of letters: who attacks a square, and how it is reached
// from the engine's board. Slow and obvious.
#pragma once

#include <array>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "support/move_support.h"
#include "twin.h"

namespace zar::test {

inline twin::Position twin_of(const std::string& fen) {
    std::string error;
    const std::optional<twin::Position> position = twin::position_from_fen(fen, &error);
    EXPECT_TRUE(position.has_value()) << fen << ": " << error;
    return position.value_or(*twin::position_from_fen(twin::kStartFen));
}

inline twin::Position twin_of(const Board& board) { return twin_of(fen_of(board)); }

inline twin::Square twin_square(Square64 square) {
    return {static_cast<int>(square % 8), static_cast<int>(square / 8)};
}

inline twin::Move twin_move(Move move) {
    const char promotion = move_is_promotion(move) ? "nbrq"[move >> 12 & 3] : '\0';
    return {twin_square(move_from64(move)), twin_square(move_to64(move)), promotion};
}

using Letters = std::array<std::array<char, 8>, 8>;

inline char& letter_at(Letters& letters, twin::Square square) {
    return letters[static_cast<std::size_t>(square.rank)][static_cast<std::size_t>(square.file)];
}

inline char letter_at(const Letters& letters, twin::Square square) {
    return letters[static_cast<std::size_t>(square.rank)][static_cast<std::size_t>(square.file)];
}

inline bool is_white_letter(char letter) {
    return std::isupper(static_cast<unsigned char>(letter)) != 0;
}

inline bool way_is_clear(const Letters& letters, twin::Square from, twin::Square to) {
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    const int file_step = sign(to.file - from.file);
    const int rank_step = sign(to.rank - from.rank);
    twin::Square square{from.file + file_step, from.rank + rank_step};
    while (square.file != to.file || square.rank != to.rank) {
        if (letter_at(letters, square) != '.') {
            return false;
        }
        square.file += file_step;
        square.rank += rank_step;
    }
    return true;
}

inline bool letter_attacks(const Letters& letters, twin::Square from, twin::Square to) {
    const char letter = letter_at(letters, from);
    const int files = std::abs(to.file - from.file);
    const int ranks = std::abs(to.rank - from.rank);
    const bool diagonal = files == ranks && files > 0;
    const bool straight = (files == 0) != (ranks == 0);
    switch (std::tolower(static_cast<unsigned char>(letter))) {
        case 'p':
            return files == 1 && to.rank - from.rank == (is_white_letter(letter) ? 1 : -1);
        case 'n':
            return files * ranks == 2;
        case 'b':
            return diagonal && way_is_clear(letters, from, to);
        case 'r':
            return straight && way_is_clear(letters, from, to);
        case 'q':
            return (diagonal || straight) && way_is_clear(letters, from, to);
        case 'k':
            return files <= 1 && ranks <= 1 && files + ranks > 0;
        default:
            return false;
    }
}

// The squares of the men of one side that attack a square, a1 first.
inline std::vector<twin::Square> attackers_of(const Letters& letters, twin::Square to, bool white) {
    std::vector<twin::Square> attackers;
    for (int index = 0; index < 64; ++index) {
        const twin::Square from = twin_square(index);
        if (is_white_letter(letter_at(letters, from)) == white &&
            letter_attacks(letters, from, to)) {
            attackers.push_back(from);
        }
    }
    return attackers;
}

}  // namespace zar::test
