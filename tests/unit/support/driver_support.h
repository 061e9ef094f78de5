// Whole searches, with all that they report on the way.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "search/driver.h"
#include "support/search_support.h"

namespace zar::test {

// What the hooks have seen, in order: root moves begun and results reported.
struct Event {
    bool is_report;
    int depth;
    int line;
    int root_index;
    RootResult result;
    Score listed;  // root score of the move that the line reported last
};

inline std::vector<Event> events;

inline Score listed_score(const SearchThread& self) {
    const Move move = self.result[static_cast<std::size_t>(self.pv_index)].best_move;
    for (std::size_t i = 0; i < static_cast<std::size_t>(self.root.size); ++i) {
        if (self.root.move[i] == move) {
            return self.root.value[i];
        }
    }
    return kNoScore;
}

class Driver : public SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        events.clear();
        search_shared.hooks.report_currmove = [](int) {
            const SearchThread& self = search_thread(0);
            events.push_back({false,
                              self.iteration_depth,
                              self.pv_index,
                              self.root_index,
                              {},
                              listed_score(self)});
        };
        search_shared.hooks.report_pv = [](int) {
            const SearchThread& self = search_thread(0);
            const RootResult& result = self.result[static_cast<std::size_t>(self.pv_index)];
            events.push_back({true, self.iteration_depth, self.pv_index, self.root_index, result,
                              listed_score(self)});
        };
    }

    // Searches to this depth; 0 is no limit. The table keeps what it has.
    static const RootResult& search(Board& board, int depth) {
        search_reset();
        events.clear();
        search_shared.limits.limit_depth_set = depth > 0;
        search_shared.limits.limit_depth = depth;
        search_run(board);
        return search_thread(0).result[0];
    }

    static const RootResult& search(std::string_view fen, int depth) {
        Board board = board_of(fen);
        return search(board, depth);
    }

    static const RootResult& line(std::size_t index) { return search_thread(0).result[index]; }
};

inline constexpr std::array<const char*, 5> kTacticalFens = {
    "r1b2rk1/pp1n1pp1/2p1p2p/q7/3PN3/P2B4/1P1Q1PPP/2KR3R w - - 0 16",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r2q1rk1/1b2bppp/p1n1p3/1p1nP3/3P4/P1NB1N2/1P3PPP/R1BQ1RK1 w - - 2 13",
    "3r2k1/5ppp/p1q5/1p6/3Q4/1P4P1/P4P1P/3R2K1 b - - 0 28",
    "8/pp3pk1/4p1p1/3n3p/3P4/1B3P2/PP1K2PP/8 w - - 0 31",
};

}  // namespace zar::test
