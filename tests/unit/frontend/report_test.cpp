#include "frontend/report.h"

#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "support/uci_support.h"

namespace zar {
namespace {

using test::board_of;
using test::lines_of;
using Lines = std::vector<std::string>;

Move move(const char* from, const char* to) {
    return move_make(square_from_string(from), square_from_string(to));
}

// Results are written into the main thread's record as the search would.
class Report : public test::UciTest {
  protected:
    void SetUp() override {
        UciTest::SetUp();
        engine_init();
        search_shared.last_pv_index = 0;
        for (SearchThread& each : search_threads) {
            each.pv_index = 0;
            each.nodes = 0;
            each.root_move = kMoveNone;
            each.elapsed = 0;
            stopwatch_reset(each.stopwatch);
            for (RootResult& result : each.result) {
                result = {};
            }
        }
        set_elapsed(1.5);
        self.nodes = 1000;
        option_set("TLCV fix", "false");
    }

    void set_elapsed(double seconds) {
        stopwatch_reset(self.stopwatch);
        self.stopwatch.accumulated = seconds;
    }

    // A result of the main thread, and what is printed of it.
    Lines report(int line, int depth, Score score, Bound bound, Move first,
                 Move second = kMoveNone) {
        self.pv_index = line;
        RootResult& result = self.result[static_cast<std::size_t>(line)];
        result = {first, score, bound, depth, {}};
        result.pv[0] = first;
        result.pv[1] = second;
        return lines_of([] { report_pv(0); });
    }

    static Lines answer() {
        return lines_of([] { report_bestmove(); });
    }

    void set_result(int thread, int depth, Score score, Move first, Move second = kMoveNone) {
        RootResult& result = search_thread(thread).result[0];
        result = {first, score, kBoundExact, depth, {}};
        result.pv[0] = first;
        result.pv[1] = second;
    }

    SearchThread& self = search_thread(0);
    const Move e2e4 = move("e2", "e4");
    const Move d2d4 = move("d2", "d4");
    const Move g1f3 = move("g1", "f3");
    const Move e7e5 = move("e7", "e5");
};

TEST(MateDistance, FollowsFromTheScore) {
    for (Score score = -32768; score <= 32767; ++score) {
        int expected = 0;
        if (score <= -29745) {
            expected = -((score + 30000) / 2);
        } else if (score >= 29745) {
            expected = (30001 - score) / 2;
        }
        ASSERT_EQ(score_to_mate(score), expected) << score;
    }
}

TEST(MateDistance, SomeByHand) {
    EXPECT_EQ(score_to_mate(29999), 1);
    EXPECT_EQ(score_to_mate(29998), 1);
    EXPECT_EQ(score_to_mate(29997), 2);
    EXPECT_EQ(score_to_mate(29745), 128);
    EXPECT_EQ(score_to_mate(29744), 0);
    EXPECT_EQ(score_to_mate(30000), 0);
    EXPECT_EQ(score_to_mate(-29998), -1);
    EXPECT_EQ(score_to_mate(-29996), -2);
    EXPECT_EQ(score_to_mate(-29745), -127);
    EXPECT_EQ(score_to_mate(-29744), 0);
    EXPECT_EQ(score_to_mate(-30000), 0);
}

TEST(LineText, HasSingleBlanks) {
    Line pv{};
    char buffer[kPvTextSize];
    ASSERT_TRUE(pv_to_text(pv, buffer, kPvTextSize));
    EXPECT_STREQ(buffer, "");
    pv[0] = move("e2", "e4");
    ASSERT_TRUE(pv_to_text(pv, buffer, kPvTextSize));
    EXPECT_STREQ(buffer, "e2e4");
    pv[1] = static_cast<Move>(move("a7", "a8") | kPromoteQueen);
    pv[2] = move("e1", "g1") | kKindCastling;
    ASSERT_TRUE(pv_to_text(pv, buffer, kPvTextSize));
    EXPECT_STREQ(buffer, "e2e4 a7a8q e1g1");
}

TEST(LineText, IsRefusedInASmallBuffer) {
    Line pv{};
    pv[0] = move("e2", "e4");
    char buffer[kPvTextSize] = "unchanged";
    EXPECT_FALSE(pv_to_text(pv, buffer, 511));
    EXPECT_FALSE(pv_to_text(pv, buffer, 0));
    EXPECT_STREQ(buffer, "unchanged");
}

TEST(LineText, StopsBeforeTheFirstMoveThatDoesNotFit) {
    Line pv{};
    for (std::size_t i = 0; i < 255; ++i) {
        pv[i] = move("e2", "e4");
    }
    char buffer[kPvTextSize];
    ASSERT_TRUE(pv_to_text(pv, buffer, kPvTextSize));
    // 102 moves need 102 * 5 - 1 = 509 characters, and two more are not enough for another.
    EXPECT_EQ(std::string_view(buffer).size(), 509u);
    // One promotion more takes one more character, three take it to the end.
    pv[0] = pv[1] = static_cast<Move>(move("a7", "a8") | kPromoteQueen);
    ASSERT_TRUE(pv_to_text(pv, buffer, kPvTextSize));
    EXPECT_EQ(std::string_view(buffer).size(), 511u);
    pv[2] = pv[0];
    ASSERT_TRUE(pv_to_text(pv, buffer, kPvTextSize));
    EXPECT_EQ(std::string_view(buffer).size(), 507u);
}

TEST_F(Report, ALineHasOneOfSixForms) {
    struct Row {
        Score score;
        Bound bound;
        const char* text;
    };
    for (const Row& row :
         {Row{35, kBoundExact, "cp 35"}, Row{-35, kBoundLower, "cp -35 lowerbound"},
          Row{0, kBoundUpper, "cp 0 upperbound"}, Row{29997, kBoundExact, "mate 2"},
          Row{-29998, kBoundLower, "mate -1 lowerbound"},
          Row{29999, kBoundUpper, "mate 1 upperbound"}, Row{30000, kBoundExact, "cp 30000"},
          Row{29744, kBoundExact, "cp 29744"}}) {
        EXPECT_EQ(report(0, 7, row.score, row.bound, e2e4, e7e5),
                  Lines{std::string("info multipv 1 depth 7 score ") + row.text +
                        " time 1500 nodes 1000 pv e2e4 e7e5"});
    }
}

TEST_F(Report, TheViewerLineIsBareNumbers) {
    option_set("TLCV fix", "true");
    EXPECT_EQ(report(0, 7, 35, kBoundExact, e2e4, e7e5),
              (Lines{"info multipv 1 depth 7 score cp 35 time 1500 nodes 1000 pv e2e4 e7e5",
                     "7 35 1500 1000 e2e4 e7e5"}));
    option_set("Search Info", "false");
    EXPECT_EQ(report(0, 8, -29996, kBoundLower, e2e4), Lines{"8 -2 1500 1000 e2e4"});
    option_set("TLCV fix", "false");
    EXPECT_EQ(report(0, 9, 5, kBoundExact, e2e4), Lines{});
}

TEST_F(Report, WithoutABoundNothingIsPrinted) {
    option_set("TLCV fix", "true");
    EXPECT_EQ(report(0, 7, 35, kBoundNone, e2e4), Lines{});
}

TEST_F(Report, TheNodesAreAnEstimateFromOneThread) {
    search_shared.thread_count = 3;
    search_thread(1).nodes = 77;
    EXPECT_EQ(report(0, 7, 35, kBoundExact, e2e4),
              Lines{"info multipv 1 depth 7 score cp 35 time 1500 nodes 3000 pv e2e4"});
}

TEST_F(Report, AWorkerOnlyReadsItsStopwatch) {
    SearchThread& worker = search_thread(2);
    worker.stopwatch.accumulated = 2;
    worker.nodes = 500;
    worker.result[0] = {e2e4, 5, kBoundExact, 9, {}};
    EXPECT_EQ(lines_of([] { report_pv(2); }), Lines{});
    EXPECT_EQ(worker.elapsed, 2);
}

TEST_F(Report, AReportReadsTheStopwatch) {
    set_elapsed(4);
    report(0, 7, 35, kBoundExact, e2e4);
    EXPECT_EQ(self.elapsed, 4);
}

TEST_F(Report, AtDepthOneTheLinesWaitForTheLast) {
    search_shared.last_pv_index = 1;
    EXPECT_EQ(report(0, 1, 20, kBoundExact, e2e4), Lines{});
    EXPECT_EQ(report(1, 1, 10, kBoundExact, d2d4),
              (Lines{"info multipv 1 depth 1 score cp 20 time 1500 nodes 1000 pv e2e4",
                     "info multipv 2 depth 1 score cp 10 time 1500 nodes 1000 pv d2d4"}));
    EXPECT_EQ(report(0, 2, 21, kBoundExact, e2e4).size(), 2u);
}

// Number, depth, score and first move of the lines printed.
Lines shorten(const Lines& lines) {
    Lines shortened;
    for (const std::string& line : lines) {
        const std::vector<std::string> words = test::words_of(line);
        shortened.push_back(words[2] + " " + words[4] + " " + words[7] + " " + words.back());
    }
    return shortened;
}

TEST_F(Report, ABetterSecondLineBecomesTheFirst) {
    search_shared.last_pv_index = 2;
    report(0, 1, 20, kBoundExact, e2e4);
    report(1, 1, 10, kBoundExact, d2d4);
    EXPECT_EQ(shorten(report(2, 1, 5, kBoundExact, g1f3)),
              (Lines{"1 1 20 e2e4", "2 1 10 d2d4", "3 1 5 g1f3"}));
    EXPECT_EQ(shorten(report(0, 2, 15, kBoundExact, e2e4)),
              (Lines{"1 2 15 e2e4", "2 1 10 d2d4", "3 1 5 g1f3"}));
    EXPECT_EQ(shorten(report(1, 2, 30, kBoundExact, d2d4)),
              (Lines{"1 2 30 d2d4", "2 2 15 e2e4", "3 1 5 g1f3"}));
}

TEST_F(Report, EqualScoresKeepTheEarlierRow) {
    search_shared.last_pv_index = 2;
    report(0, 2, 20, kBoundExact, e2e4);
    report(1, 2, 20, kBoundExact, d2d4);
    EXPECT_EQ(shorten(report(2, 2, 20, kBoundExact, g1f3)),
              (Lines{"1 2 20 e2e4", "2 2 20 d2d4", "3 2 20 g1f3"}));
}

TEST_F(Report, AThirdLineFindsItsPlace) {
    search_shared.last_pv_index = 2;
    report(0, 2, 20, kBoundExact, e2e4);
    report(1, 2, 10, kBoundExact, d2d4);
    EXPECT_EQ(shorten(report(2, 2, 15, kBoundExact, g1f3)),
              (Lines{"1 2 20 e2e4", "2 2 15 g1f3", "3 2 10 d2d4"}));
}

TEST_F(Report, ALineThatReportsAgainGivesUpItsRow) {
    search_shared.last_pv_index = 2;
    report(0, 2, 20, kBoundExact, e2e4);
    report(1, 2, 10, kBoundExact, d2d4);
    report(2, 2, 5, kBoundExact, g1f3);
    const Move c2c4 = move("c2", "c4");
    EXPECT_EQ(shorten(report(2, 2, 15, kBoundExact, c2c4)),
              (Lines{"1 2 20 e2e4", "2 2 15 c2c4", "3 2 10 d2d4"}));
    // The same once more, as after every accepted score.
    EXPECT_EQ(shorten(report(2, 2, 15, kBoundExact, c2c4)),
              (Lines{"1 2 20 e2e4", "2 2 15 c2c4", "3 2 10 d2d4"}));
    EXPECT_EQ(shorten(report(2, 2, 25, kBoundExact, c2c4)),
              (Lines{"1 2 25 c2c4", "2 2 20 e2e4", "3 2 10 d2d4"}));
}

TEST_F(Report, TheFirstLineAlwaysReplacesTheFirstRow) {
    search_shared.last_pv_index = 1;
    report(0, 2, 20, kBoundExact, e2e4);
    report(1, 2, 10, kBoundExact, d2d4);
    EXPECT_EQ(shorten(report(0, 3, -50, kBoundExact, e2e4)),
              (Lines{"1 3 -50 e2e4", "2 2 10 d2d4"}));
}

TEST_F(Report, TheBoundWordIsThatOfTheNewestResult) {
    search_shared.last_pv_index = 1;
    report(0, 2, 20, kBoundExact, e2e4);
    EXPECT_EQ(
        report(1, 2, 10, kBoundUpper, d2d4),
        (Lines{"info multipv 1 depth 2 score cp 20 upperbound time 1500 nodes 1000 pv e2e4",
               "info multipv 2 depth 2 score cp 10 upperbound time 1500 nodes 1000 pv d2d4"}));
}

TEST_F(Report, EveryRowKeepsItsTimeButTheNodesAreThoseOfNow) {
    search_shared.last_pv_index = 1;
    report(0, 2, 20, kBoundExact, e2e4);
    set_elapsed(2.25);
    self.nodes = 5000;
    EXPECT_EQ(report(1, 2, 10, kBoundExact, d2d4),
              (Lines{"info multipv 1 depth 2 score cp 20 time 1500 nodes 5000 pv e2e4",
                     "info multipv 2 depth 2 score cp 10 time 2250 nodes 5000 pv d2d4"}));
}

TEST_F(Report, TheCurrentMoveIsToldAfterTheFirstSecond) {
    self.root_move = g1f3;
    self.root_index = 4;
    set_elapsed(0.999);
    EXPECT_EQ(lines_of([] { report_currmove(0); }), Lines{});
    EXPECT_EQ(self.elapsed, 0.999);
    set_elapsed(1.0);
    EXPECT_EQ(lines_of([] { report_currmove(0); }), Lines{"info currmove g1f3 currmovenumber 5"});
}

TEST_F(Report, TheHashFillIsInThousandths) {
    hash_new_search(hash_table);
    EXPECT_EQ(lines_of([] { report_hashfull(); }), Lines{"info hashfull 0"});
    hash_table.used = 1'048'579;
    EXPECT_EQ(lines_of([] { report_hashfull(); }), Lines{"info hashfull 1000"});
    hash_table.used = 262'144;
    EXPECT_EQ(lines_of([] { report_hashfull(); }), Lines{"info hashfull 250"});
}

TEST_F(Report, TheAnswerWithAMoveToPonderOn) {
    set_result(0, 9, 41, e2e4, e7e5);
    self.elapsed = 3.4;
    EXPECT_EQ(answer(), (Lines{"info hashfull 0", "info depth 9 score cp 41 pv e2e4 e7e5",
                               "bestmove e2e4 ponder e7e5"}));
    option_set("TLCV fix", "true");
    EXPECT_EQ(answer(), (Lines{"info hashfull 0", "info depth 9 score cp 41 pv e2e4 e7e5",
                               "9 41 3 51000 e2e4 e7e5", "bestmove e2e4 ponder e7e5"}));
    option_set("Search Info", "false");
    EXPECT_EQ(answer(),
              (Lines{"info hashfull 0", "9 41 3 51000 e2e4 e7e5", "bestmove e2e4 ponder e7e5"}));
}

TEST_F(Report, TheAnswerTellsMateScoresInCentipawns) {
    set_result(0, 9, 29997, e2e4, e7e5);
    EXPECT_EQ(answer()[1], "info depth 9 score cp 29997 pv e2e4 e7e5");
}

TEST_F(Report, TheAnswerWithoutAMoveToPonderOnStandsTwice) {
    set_result(0, 9, 41, e2e4);
    option_set("TLCV fix", "true");
    EXPECT_EQ(answer(),
              (Lines{"info hashfull 0", "info depth 9 score cp 41 pv e2e4 ", "9 41 0 51000 e2e4 ",
                     "info depth 9 score cp 41 pv e2e4", "9 41 0 51000 e2e4", "bestmove e2e4"}));
}

TEST_F(Report, TheMoveToPonderOnMustFollowTheBestMove) {
    set_result(0, 9, 41, e2e4, e7e5);
    self.result[0].pv[0] = d2d4;
    EXPECT_EQ(answer().back(), "bestmove e2e4");
    set_result(0, 9, 41, e2e4, kMoveNull);
    EXPECT_EQ(answer().back(), "bestmove e2e4");
}

TEST_F(Report, ExtraInfoTellsThreadAndSettings) {
    option_set("Extra Info", "true");
    option_set("Search Info", "false");
    option_set("Threads", "4");
    option_set("Difficulty Level", "9");
    option_set("MultiPV", "2");
    uci_state.ponder_limit = true;
    set_result(0, 9, 41, e2e4, e7e5);
    constexpr const char* limited =
        "Info String (Ponder, Analize Mode or Infinite Mode is Limited at level < 10)";
    EXPECT_EQ(answer(),
              (Lines{"info hashfull 0", "info string - - -", limited,
                     "info string e2e4 (e7e5) [Thread# 1/4, Depth 9, Value 41, Current Level is 9, "
                     "Ponder Limit 1 (1=true), Current Hash Size is 16, MultiPV set to 2]",
                     "bestmove e2e4 ponder e7e5"}));
    set_result(0, 9, -41, e2e4);
    EXPECT_EQ(answer(),
              (Lines{"info hashfull 0", "info string - - -", limited,
                     "info string e2e4 [Thread# 1/4, Depth 9, Value -41, Current Level is 9, "
                     "Ponder Limit 1 (1=true), Current Hash Size is 16, MultiPV set to 2]",
                     "bestmove e2e4"}));
}

TEST_F(Report, ABookMoveNamesItsFile) {
    option_set("Extra Info", "true");
    set_result(0, 0, 0, e2e4);
    EXPECT_EQ(answer(),
              (Lines{"info hashfull 0", "info depth 0 score cp 0 pv e2e4 ", "info string - - -",
                     "info string BookMove e2e4 (Current Book File is ZAR.ebk)", "bestmove e2e4"}));
    option_set("Extra Info", "false");
    EXPECT_EQ(answer(),
              (Lines{"info hashfull 0", "info depth 0 score cp 0 pv e2e4 ", "bestmove e2e4"}));
}

TEST_F(Report, WithoutALegalMoveTheAnswerIsNone) {
    EXPECT_EQ(answer(), (Lines{"info hashfull 0", "bestmove (none)"}));
}

TEST_F(Report, PonderAndInfiniteTogetherAreNeverAnswered) {
    set_result(0, 9, 41, e2e4, e7e5);
    uci_state.go_ponder = true;
    uci_state.go_infinite = true;
    EXPECT_EQ(answer(), Lines{"info hashfull 0"});
    uci_state.go_infinite = false;
    EXPECT_EQ(answer().back(), "bestmove e2e4 ponder e7e5");
}

TEST_F(Report, TheDeepestThenBestThenFirstThreadAnswers) {
    struct Row {
        int depth[4];
        Score score[4];
        int threads;
        const char* best;
    };
    constexpr const char* names[] = {"e2e4", "d2d4", "g1f3", "c2c4"};
    for (const Row& row : {Row{{9, 9, 9, 9}, {5, 5, 5, 5}, 4, names[0]},
                           Row{{9, 10, 9, 9}, {50, 5, 5, 5}, 4, names[1]},
                           Row{{9, 9, 9, 9}, {5, 6, 7, 7}, 4, names[2]},
                           Row{{9, 8, 9, 10}, {5, 60, 70, -90}, 4, names[3]},
                           Row{{9, 8, 9, 10}, {5, 60, 70, -90}, 3, names[2]},
                           Row{{9, 10, 11, 12}, {5, 5, 5, 5}, 1, names[0]}}) {
        for (int thread = 0; thread < 4; ++thread) {
            const std::string_view name = names[thread];
            set_result(thread, row.depth[thread], row.score[thread],
                       move_make(square_from_string(name.substr(0, 2)),
                                 square_from_string(name.substr(2))));
        }
        search_shared.thread_count = row.threads;
        EXPECT_EQ(answer().back(), std::string("bestmove ") + row.best);
    }
}

TEST_F(Report, TheAnswerAddsTheNodesOfAllThreads) {
    option_set("TLCV fix", "true");
    option_set("Search Info", "false");
    set_result(0, 9, 41, e2e4, e7e5);
    search_thread(1).nodes = 200;
    search_thread(2).nodes = 30;
    search_thread(3).nodes = 4;
    search_shared.thread_count = 3;
    EXPECT_EQ(answer()[1], "9 41 0 51230 e2e4 e7e5");
}

}  // namespace
}  // namespace zar
