// The "go" command, frontend/uci_go.cpp.

#include <string>
#include <vector>

#include "frontend/uci.h"
#include "gtest/gtest.h"
#include "support/fatal_support.h"
#include "support/uci_support.h"

namespace zar {
namespace {

using test::fatal_text_of;
using Lines = std::vector<std::string>;

int polls_before_stop = 0;

// Searches end after the first iteration, or later where a test says so.
class Go : public test::UciTest {
  protected:
    void SetUp() override {
        UciTest::SetUp();
        stop_after_polls(1);
    }

    static void stop_after_polls(int count) {
        polls_before_stop = count;
        search_shared.hooks.poll_input = [] {
            if (--polls_before_stop <= 0) {
                search_thread(0).stop = true;
                uci_state.wait_for_stop = false;
            }
            return search_thread(0).stop.load();
        };
    }

    static const SearchLimits& limits_of(std::string_view arguments) {
        static_cast<void>(go(arguments));
        return search_shared.limits;
    }

    static void set_up(std::string_view fen) { board_from_fen(uci_state.board, fen); }
};

constexpr const char* kBlackToMove = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1";

void expect_times(const SearchLimits& limits, double target, double limit) {
    EXPECT_TRUE(limits.limit_time_set);
    EXPECT_DOUBLE_EQ(limits.time_target, target);
    EXPECT_DOUBLE_EQ(limits.time_limit, limit);
}

TEST_F(Go, WithoutArgumentsNothingIsLimited) {
    for (const char* const arguments : {"", "   ", "nonsense", "searchmoves e2e4 d2d4"}) {
        const SearchLimits& limits = limits_of(arguments);
        EXPECT_FALSE(limits.limit_depth_set) << arguments;
        EXPECT_FALSE(limits.limit_time_set) << arguments;
        EXPECT_FALSE(limits.limit_infinite) << arguments;
    }
}

TEST_F(Go, MoveTimeIsTheHardLimit) {
    expect_times(limits_of("movetime 200"), 1.0, 0.2);
    expect_times(limits_of("movetime 0"), 0, 0);
    expect_times(limits_of("movetime abc"), 0, 0);
    expect_times(limits_of("movetime 300 wtime 60000 btime 60000"), 1.5, 0.3);
    EXPECT_FALSE(limits_of("movetime -5").limit_time_set);
}

TEST_F(Go, TheClockIsSharedOverThirtyMoves) {
    // 60 s: 57 less a second of reserve; a quarter more when pondering.
    const double usable = 60.0 * 0.95 - 1.0;
    for (const char* const arguments :
         {"wtime 60000", "movestogo 0 wtime 60000", "movestogo 45 wtime 60000",
          "wtime 60000 movestogo -3", "wtime 60000 movestogo 30", "wtime 60000 winc -500"}) {
        expect_times(limits_of(arguments), 1.25 * usable / 30, 0.5 * usable);
    }
    option_set("Ponder", "false");
    expect_times(limits_of("wtime 60000"), usable / 30, 0.5 * usable);
}

TEST_F(Go, TheLastMoveBeforeTheControlMayTakeAll) {
    expect_times(limits_of("movestogo 1 wtime 10000 winc 0"), 8.5, 8.5);
    expect_times(limits_of("movestogo 2 wtime 10000"), 1.25 * 8.5 / 2, 1.25 * 8.5 / 2);
}

TEST_F(Go, IncrementsCountForAllButOneMove) {
    const double usable = 60.0 * 0.95 - 1.0;
    const double total = 29 * 2.0 + usable;
    expect_times(limits_of("wtime 60000 winc 2000"), 1.25 * total / 30, usable);
    const double ten = 9 * 0.5 + usable;
    expect_times(limits_of("wtime 60000 winc 500 movestogo 10"), 1.25 * ten / 10, 0.5 * ten);
}

TEST_F(Go, WithLittleTimeLeftNothingIsUsable) {
    expect_times(limits_of("wtime 1000"), 0, 0);
    expect_times(limits_of("wtime 0 winc 5000"), 0, 0);
}

TEST_F(Go, TheOwnClockCounts) {
    EXPECT_FALSE(limits_of("btime 60000 binc 1000").limit_time_set);
    expect_times(limits_of("wtime 10000 btime 60000 movestogo 1"), 8.5, 8.5);
    set_up(kBlackToMove);
    expect_times(limits_of("wtime 60000 btime 10000 movestogo 1"), 8.5, 8.5);
    expect_times(limits_of("wtime 100000 btime 100000"), 1.25 * 94 / 30, 47);
    EXPECT_FALSE(limits_of("wtime 100000").limit_time_set);
    EXPECT_FALSE(limits_of("wtime 100000 winc 1000").limit_time_set);
    const double usable = 60.0 * 0.95 - 1.0;
    expect_times(limits_of("btime 60000 binc 1000 winc 9000"), 1.25 * (29 + usable) / 30,
                 0.5 * (29 + usable));
}

TEST_F(Go, NegativeClocksMeanNoLimit) {
    EXPECT_FALSE(limits_of("wtime -1 btime -1").limit_time_set);
}

TEST_F(Go, DepthAndMateLimitTheDepth) {
    struct Row {
        const char* arguments;
        int depth;
    };
    for (const Row& row :
         {Row{"depth 0", 0}, Row{"depth 1", 1}, Row{"depth 7", 7}, Row{"depth abc", 0},
          Row{"depth 5x", 5}, Row{"mate 3", 5}, Row{"mate 1", 1}, Row{"mate 0", -1},
          Row{"mate 3 depth 8", 8}, Row{"depth 8 mate 3", 8}, Row{"depth -4 mate 2", 3},
          Row{"mate 2000000000", 2147483645}, Row{"depth 99999999999", 2147483647}}) {
        const SearchLimits& limits = limits_of(row.arguments);
        EXPECT_TRUE(limits.limit_depth_set) << row.arguments;
        EXPECT_EQ(limits.limit_depth, row.depth) << row.arguments;
        EXPECT_FALSE(limits.limit_time_set) << row.arguments;
    }
    EXPECT_FALSE(limits_of("depth -1").limit_depth_set);
    EXPECT_FALSE(limits_of("mate -2").limit_depth_set);
}

TEST_F(Go, NodesAreIgnored) {
    const SearchLimits& limits = limits_of("nodes 5 depth 2");
    EXPECT_EQ(limits.limit_depth, 2);
    EXPECT_FALSE(limits_of("nodes 99999999999999999999").limit_depth_set);
}

TEST_F(Go, TheFixedDepthOverridesAll) {
    option_set("ZARXSD", "3");
    for (const char* const arguments : {"", "depth 7", "mate 9", "infinite"}) {
        const SearchLimits& limits = limits_of(arguments);
        EXPECT_TRUE(limits.limit_depth_set) << arguments;
        EXPECT_EQ(limits.limit_depth, 3) << arguments;
    }
    expect_times(limits_of("wtime 10000 movestogo 1"), 8.5, 8.5);
    option_set("ZARXSD", "-3");
    EXPECT_FALSE(limits_of("").limit_depth_set);
}

TEST_F(Go, TheFixedTimeOverridesMoveTimeAndClock) {
    option_set("ZARXST", "2");
    for (const char* const arguments : {"", "movetime 100", "wtime 60000", "depth 3"}) {
        expect_times(limits_of(arguments), 10, 2);
    }
    option_set("ZARXST", "-2");
    EXPECT_FALSE(limits_of("").limit_time_set);
}

TEST_F(Go, InfiniteAndPonderLiftTheLimits) {
    for (const char* const arguments :
         {"infinite", "ponder wtime 60000", "depth 5 infinite", "ponder infinite"}) {
        EXPECT_TRUE(limits_of(arguments).limit_infinite) << arguments;
        uci_state.bestmove_pending = false;
    }
    // The time limits are there for "ponderhit".
    expect_times(limits_of("ponder wtime 10000 movestogo 1"), 8.5, 8.5);
}

TEST_F(Go, TheFlagsAreThoseOfTheLastGo) {
    static_cast<void>(go("infinite"));
    EXPECT_TRUE(uci_state.go_infinite);
    EXPECT_FALSE(uci_state.go_ponder);
    static_cast<void>(go("ponder"));
    EXPECT_FALSE(uci_state.go_infinite);
    EXPECT_TRUE(uci_state.go_ponder);
    static_cast<void>(go("depth 1"));
    EXPECT_FALSE(uci_state.go_infinite);
    EXPECT_FALSE(uci_state.go_ponder);
}

TEST_F(Go, WordsAreSeparatedByAnyNumberOfBlanks) {
    EXPECT_EQ(limits_of("   depth    4   ").limit_depth, 4);
    EXPECT_FALSE(limits_of("Depth 4").limit_depth_set);
    EXPECT_FALSE(limits_of("depth4").limit_depth_set);
}

TEST_F(Go, AKeywordAsAValueIsAMalformedNumber) {
    const SearchLimits& limits = limits_of("depth infinite");
    EXPECT_EQ(limits.limit_depth, 0);
    EXPECT_FALSE(limits.limit_infinite);
}

TEST_F(Go, AMissingValueIsFatal) {
    struct Row {
        const char* arguments;
        const char* text;
    };
    for (const Row& row : {
             Row{"binc", "X-Error 1EE1BIPTC//"},
             Row{"btime", "X-Error 1EE1BtPTC//"},
             Row{"depth", "X-Error 1EE1DEPTC//"},
             Row{"mate", "X-Error 1ES1MAPTC//"},
             Row{"movestogo", "X-Error 1ES1MTGPTC//"},
             Row{"movetime", "X-Error 1ES1MTPTC//"},
             Row{"nodes", "X-Error 1ES1NOPTC"},
             Row{"winc", "X-Error 1EE1WIPTC//"},
             Row{"wtime", "X-Error 1EE1WTPTC//"},
             Row{"infinite wtime 5 depth   ", "X-Error 1EE1DEPTC//"},
         }) {
        EXPECT_EQ(fatal_text_of([](const char* arguments) { uci_go(arguments); }, row.arguments),
                  row.text)
            << row.arguments;
    }
}

TEST_F(Go, AFinishedSearchAnswersAtOnce) {
    search_shared.hooks.poll_input = [] { return false; };
    const Lines lines = go("depth 3");
    EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    EXPECT_FALSE(uci_state.searching);
    EXPECT_FALSE(uci_state.bestmove_pending);
    EXPECT_EQ(search_thread(0).result[0].depth, 3);
}

// Whatever kept the engine from reading the line is a part of the move's time.
TEST_F(Go, TimeCountsFromWhenTheLineCanHaveCome) {
    search_shared.hooks.poll_input = [] { return false; };
    const Lines lines = test::lines_of([] { uci_go("movetime 1000", clock_wall_seconds() - 5); });
    EXPECT_EQ(search_thread(0).result[0].depth, 1);
    EXPECT_GE(search_thread(0).elapsed, 5);
    EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
}

TEST_F(Go, AnInfiniteSearchThatEndsHoldsItsAnswerBack) {
    search_shared.hooks.poll_input = [] { return false; };
    option_set("Difficulty Level", "0");
    for (const char* const arguments : {"infinite", "ponder", "infinite depth 1"}) {
        for (const std::string& line : go(arguments)) {
            EXPECT_TRUE(line.starts_with("info multipv ") || line[0] == '1') << line;
        }
        EXPECT_TRUE(uci_state.bestmove_pending) << arguments;
        EXPECT_FALSE(uci_state.searching) << arguments;
        // Nothing else is begun before the answer.
        EXPECT_EQ(go("depth 2"), Lines{});
        EXPECT_TRUE(uci_state.bestmove_pending);
        uci_state.bestmove_pending = false;
    }
}

TEST_F(Go, IsIgnoredDuringASearch) {
    uci_state.searching = true;
    EXPECT_EQ(go("depth 2"), Lines{});
    EXPECT_FALSE(uci_state.engine_initialised);
}

TEST_F(Go, WithoutALegalMoveTheAnswerIsNone) {
    set_up("k7/8/1Q6/8/8/8/8/7K b - - 0 1");
    EXPECT_EQ(go("depth 4"), (Lines{"info hashfull 0", "bestmove (none)"}));
    EXPECT_EQ(go("infinite"), Lines{});
    EXPECT_TRUE(uci_state.bestmove_pending);
}

TEST_F(Go, ASingleMoveNeedsNoLongSearch) {
    search_shared.hooks.poll_input = [] { return false; };
    set_up("k7/8/1K6/8/8/8/8/2R5 b - - 0 1");
    const Lines lines = go("wtime 60000 btime 60000");
    EXPECT_EQ(lines.back(), "bestmove a8b8 ponder " + lines.back().substr(21));
    EXPECT_EQ(search_thread(0).result[0].depth, 4);
}

}  // namespace
}  // namespace zar
