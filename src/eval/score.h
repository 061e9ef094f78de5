// The number that every evaluation term is kept in: a pair of an opening and an endgame score,
// which the phase of the game blends into one at the end.
#pragma once

#include <cassert>
#include <cstdint>

#include "board/types.h"

namespace zar {

// Centipawns. Whose point of view the pair takes is said where it is made; sums over both colours
// are White's view.
struct ScorePair {
    int opening = 0;
    int endgame = 0;

    friend constexpr bool operator==(const ScorePair&, const ScorePair&) = default;
};

[[nodiscard]] constexpr ScorePair operator+(ScorePair left, ScorePair right) noexcept {
    return {left.opening + right.opening, left.endgame + right.endgame};
}

[[nodiscard]] constexpr ScorePair operator-(ScorePair left, ScorePair right) noexcept {
    return {left.opening - right.opening, left.endgame - right.endgame};
}

[[nodiscard]] constexpr ScorePair operator*(ScorePair score, int factor) noexcept {
    return {score.opening * factor, score.endgame * factor};
}

constexpr ScorePair& operator+=(ScorePair& left, ScorePair right) noexcept {
    left = left + right;
    return left;
}

constexpr ScorePair& operator-=(ScorePair& left, ScorePair right) noexcept {
    left = left - right;
    return left;
}

// A pair in one word, so that long sums of pairs take one addition each and one register: the
// endgame score times 2^32, and the opening score added. Each of the two stays an int.
struct PackedPair {
    std::int64_t word = 0;

    friend constexpr bool operator==(const PackedPair&, const PackedPair&) = default;
};

[[nodiscard]] constexpr PackedPair pack(ScorePair score) noexcept {
    return {score.endgame * (std::int64_t{1} << 32) + score.opening};
}

[[nodiscard]] constexpr ScorePair unpack(PackedPair pair) noexcept {
    const auto opening = static_cast<std::int32_t>(pair.word);
    return {opening, static_cast<int>((pair.word - opening) >> 32)};
}

constexpr PackedPair& operator+=(PackedPair& left, PackedPair right) noexcept {
    left.word += right.word;
    return left;
}

[[nodiscard]] constexpr PackedPair operator-(PackedPair left, PackedPair right) noexcept {
    return {left.word - right.word};
}

// Group weights count in parts of 256: a weight of 256 leaves a score as it is.
constexpr int kWeightUnit = 256;

// The phase of a position without any piece but kings and pawns; 0 is that of the full board.
constexpr int kEndgamePhase = 256;

// Every division of the evaluation truncates toward zero, so that a score and its negation keep
// the same magnitude.
[[nodiscard]] constexpr int weigh(int score, int weight) noexcept {
    return score * weight / kWeightUnit;
}

[[nodiscard]] constexpr ScorePair weigh(ScorePair score, int weight) noexcept {
    return {weigh(score.opening, weight), weigh(score.endgame, weight)};
}

// The score of a position in this phase, 0..256.
[[nodiscard]] constexpr Score blend(ScorePair score, int phase) noexcept {
    assert(phase >= 0 && phase <= kEndgamePhase);
    return (score.opening * (kEndgamePhase - phase) + score.endgame * phase) / kEndgamePhase;
}

}  // namespace zar
