// An entry of the transposition table: how a result is packed into two words, and how the entries
// of a cluster are looked through.
//
// Both words are read and written by relaxed atomic operations. Nothing orders the two, so a reader
// may see the key of one result with the data of another. That is accepted: every move taken from
// the table is tested before it is played, and a wrong score now and then does not hurt. What a
// reader may rely on is that each word is whole.
//
//   word 0  the full position key, 0 in an empty entry
//   word 1  bits 0-15 move, 32-47 value, 50-51 bound, 52-59 draft with its high bit flipped,
//           60-63 date of the search
//
// An empty entry has draft 128 and nothing else, so both of its words are 0 and fresh pages of
// memory are an empty table.
#pragma once

#include <cstdint>
#include <utility>

#include "board/types.h"
#include "platform/compiler.h"

namespace zar {

struct HashEntry {
    std::uint64_t key;
    std::uint64_t data;
};
static_assert(sizeof(HashEntry) == 16);

// A cluster is this many entries in a row; it may begin at any.
constexpr int kHashClusterSize = 4;

// The draft with its high bit flipped and the bound behind it: the rank of a result among others.
constexpr std::uint32_t kRankMask = 0x3FF;
constexpr std::uint32_t kFlippedBit = 0x80;

constexpr int kValueShift = 32;
constexpr int kRankShift = 50;
constexpr int kDraftShift = 52;
constexpr int kDateShift = 60;

// The second word. Of the draft the low 8 bits are kept, of the bound 2, of the value 16.
[[nodiscard]] constexpr std::uint64_t data_pack(Move move, int depth, int bound, std::uint32_t date,
                                                Score value) noexcept {
    const std::uint32_t draft = static_cast<std::uint8_t>(depth) ^ kFlippedBit;
    const std::uint32_t rank = draft << 2 | static_cast<std::uint32_t>(bound & 3);
    return std::uint64_t{move} | std::uint64_t{static_cast<std::uint16_t>(value)} << kValueShift |
           std::uint64_t{rank} << kRankShift | std::uint64_t{date} << kDateShift;
}

[[nodiscard]] constexpr Move data_move(std::uint64_t data) noexcept {
    return static_cast<Move>(data);
}

[[nodiscard]] constexpr int data_depth(std::uint64_t data) noexcept {
    return static_cast<int>((data >> kDraftShift & 255) ^ kFlippedBit);
}

[[nodiscard]] constexpr int data_bound(std::uint64_t data) noexcept {
    return static_cast<int>(data >> kRankShift & 3);
}

[[nodiscard]] constexpr std::uint32_t data_date(std::uint64_t data) noexcept {
    return static_cast<std::uint32_t>(data >> kDateShift);
}

[[nodiscard]] constexpr Score data_value(std::uint64_t data) noexcept {
    return static_cast<std::int16_t>(data >> kValueShift);
}

// Calls action(entry, place) for the entries of a cluster in turn, until one call gives true; true
// when one did. Spelt out, since GCC keeps it a loop otherwise: 20 instructions a node.
template <typename Action>
inline bool any_of_cluster(HashEntry* cluster, Action action) {
    return [&]<int... kPlace>(std::integer_sequence<int, kPlace...>) {
        return (action(cluster[kPlace], kPlace) || ...);
    }
    (std::make_integer_sequence<int, kHashClusterSize>());
}

// The entry that holds the position; null when there is none. Looks at one place after the other.
template <int kPlace = 0>
[[nodiscard]] inline HashEntry* cluster_find(HashEntry* cluster, std::uint64_t key) {
    if constexpr (kPlace == kHashClusterSize) {
        return nullptr;
    } else {
        return relaxed_load(cluster[kPlace].key) == key ? cluster + kPlace
                                                        : cluster_find<kPlace + 1>(cluster, key);
    }
}

}  // namespace zar
