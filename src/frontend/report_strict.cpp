#include "frontend/report_strict.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "frontend/console.h"
#include "frontend/option.h"
#include "frontend/report.h"
#include "search/budget.h"
#include "search/hash.h"

namespace zar {

namespace {

struct Row {
    int depth;
    int selective_depth;
    Score score;
    Bound bound;
    Move move;  // the first
    std::array<char, kPvTextSize> pv;
};

// Best first.
struct Rows {
    std::array<Row, kMaxMultiPv> row;
    std::size_t size;
};

// What the lines of the search have found in the iteration at hand, in the order of the lines, and
// what was shown at the end of the one before. Main thread only.
struct Lines {
    std::array<Row, kMaxMultiPv> newest;
    std::size_t size;
    Rows before;
};

Lines lines{};

// Places of a full record keep what they have.
void insert(Rows& rows, std::size_t place, const Row& row) {
    if (rows.size == rows.row.size()) {
        return;
    }
    const auto at = rows.row.begin() + static_cast<std::ptrdiff_t>(place);
    const auto end = rows.row.begin() + static_cast<std::ptrdiff_t>(rows.size);
    std::move_backward(at, end, end + 1);
    *at = row;
    ++rows.size;
}

bool begins_with(const Rows& rows, Move move) {
    return std::any_of(rows.row.begin(), rows.row.begin() + static_cast<std::ptrdiff_t>(rows.size),
                       [&](const Row& row) { return row.move == move; });
}

// The lines of the iteration at hand, best first, of equals the earlier one; the places of those
// that it has not searched yet are filled with what the iteration before found of other moves.
void arrange(Rows& shown) {
    shown.size = 0;
    for (std::size_t i = 0; i < lines.size; ++i) {
        std::size_t place = 0;
        while (place < i && shown.row[place].score >= lines.newest[i].score) {
            ++place;
        }
        insert(shown, place, lines.newest[i]);
    }
    for (std::size_t i = 0; i < lines.before.size; ++i) {
        if (!begins_with(shown, lines.before.row[i].move)) {
            insert(shown, shown.size, lines.before.row[i]);
        }
    }
}

void store(const Row& row, std::size_t line) {
    if (lines.size > 0 && lines.newest[0].depth < row.depth) {
        Rows shown{};
        arrange(shown);
        lines.before = shown;
        lines.size = 0;
    }
    lines.newest[line] = row;
    lines.size = line + 1;
}

void print(const Row& row, int number, const SearchThread& self) {
    const double elapsed = self.elapsed;
    const std::uint64_t nodes = nodes_of_all_threads(self);
    constexpr double kLeastSeconds = 0.001;
    const int mate = score_to_mate(row.score);
    send_line(
        "info depth %d seldepth %d multipv %d score %s %d%s nodes %lld nps %.0f hashfull %.0f time "
        "%.0f pv %s",
        row.depth, row.selective_depth, number, mate != 0 ? "mate" : "cp",
        mate != 0 ? mate : row.score, bound_word(row.bound), static_cast<long long>(nodes),
        static_cast<double>(nodes) / std::max(elapsed, kLeastSeconds), hash_full(hash_table),
        elapsed * 1000, row.pv.data());
}

}  // namespace

void report_strict_reset() { lines = {}; }

void report_strict_pv(const SearchThread& self) {
    const auto line = static_cast<std::size_t>(self.pv_index);
    const RootResult& result = self.result[line];
    Row row{.depth = result.depth,
            .selective_depth = std::max(self.selective_depth, result.depth),
            .score = result.score,
            .bound = result.bound,
            .move = result.best_move,
            .pv = {}};
    pv_to_text(result.pv, row.pv.data(), kPvTextSize);
    store(row, line);
    if (!option_get_bool("Search Info")) {
        return;
    }
    Rows shown{};
    arrange(shown);
    const auto count = static_cast<std::size_t>(search_shared.last_pv_index) + 1;
    for (std::size_t i = 0; i < std::min(count, shown.size); ++i) {
        print(shown.row[i], static_cast<int>(i) + 1, self);
    }
}

}  // namespace zar
