#include "search/history.h"

#include "search/types.h"

namespace zar {

namespace {

constexpr int kCreditLimit = 16384;
constexpr int kTriedLimit = 16383;

void halve(std::uint16_t& count) { count = static_cast<std::uint16_t>((count + 1) / 2); }

void count_tried(SearchThread& self, std::size_t index, int success) {
    std::uint16_t& succeeded = self.history_success[index];
    std::uint16_t& tried = self.history_tried[index];
    succeeded = static_cast<std::uint16_t>(succeeded + success);
    ++tried;
    if (tried > kTriedLimit) {
        halve(succeeded);
        halve(tried);
    }
}

}  // namespace

void search_tables_clear(int thread) {
    SearchThread& self = search_thread(thread);
    self.killers.fill({kMoveNone, kMoveNone});
    self.history.fill(0);
    self.history_success.fill(1);
    self.history_tried.fill(1);
}

void history_cutoff(Move move, const Board& board, int depth, int ply, int thread) {
    if (move_is_tactical(move, board)) {
        return;
    }
    SearchThread& self = search_thread(thread);
    auto& killers = self.killers[static_cast<std::size_t>(ply)];
    if (killers[0] != move) {
        killers[1] = killers[0];
        killers[0] = move;
    }
    std::uint16_t& credit = self.history[history_index(move, board)];
    credit = static_cast<std::uint16_t>(credit + depth * depth);
    if (credit >= kCreditLimit) {
        for (std::uint16_t& entry : self.history) {
            halve(entry);
        }
    }
}

void history_good(Move move, const Board& board, int thread) {
    if (!move_is_tactical(move, board)) {
        count_tried(search_thread(thread), history_index(move, board), 1);
    }
}

void history_bad(Move move, const Board& board, int thread) {
    if (!move_is_tactical(move, board)) {
        count_tried(search_thread(thread), history_index(move, board), 0);
    }
}

bool history_is_below(int threshold, Move move, const Board& board, int thread) {
    const SearchThread& self = search_thread(thread);
    const auto index = history_index(move, board);
    // Not divided, which would take longer than all the rest.
    return self.history_success[index] * kHistoryRatioOne < threshold * self.history_tried[index];
}

}  // namespace zar
