#include "frontend/uci.h"

#include <algorithm>
#include <string>
#include <vector>

#include "frontend/startup.h"
#include "gtest/gtest.h"
#include "support/uci_support.h"

namespace zar {
namespace {

using test::captured_lines;
using test::fen_of;
using test::lines_of;
using test::type_line;
using Lines = std::vector<std::string>;
using Uci = test::UciTest;

std::string after(std::string_view moves) { return fen_of(test::board_after(kStartFen, moves)); }

std::string position() { return fen_of(uci_state.board); }

bool contains(const Lines& lines, std::string_view line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

TEST_F(Uci, UnknownLinesAreIgnored) {
    const std::string before = position();
    for (const char* const line : {"",
                                   "go",
                                   "Go infinite",
                                   "goinfinite",
                                   "debug on",
                                   "debug",
                                   "isready ",
                                   " isready",
                                   "ISREADY",
                                   "isready\r",
                                   "uci ",
                                   "position",
                                   "positions startpos moves e2e4",
                                   "setoption",
                                   "stop it",
                                   "ucinewgame now",
                                   "quit now",
                                   "register later",
                                   "ponderhit!",
                                   "xyzzy"}) {
        EXPECT_EQ(command(line), Lines{}) << line;
    }
    EXPECT_FALSE(uci_state.engine_initialised);
    EXPECT_EQ(position(), before);
}

TEST_F(Uci, IsReadyCreatesTheTablesOnce) {
    EXPECT_EQ(command("isready"), Lines{"readyok"});
    EXPECT_TRUE(uci_state.engine_initialised);
    EXPECT_EQ(hash_table.entry_count, 1'048'579u);
    EXPECT_EQ(search_shared.thread_count, 1);
    HashEntry* const entries = hash_table.entries;
    EXPECT_EQ(command("isready"), Lines{"readyok"});
    EXPECT_EQ(hash_table.entries, entries);
}

TEST_F(Uci, IsReadyDuringASearchCreatesNothing) {
    for (bool UciState::*const flag : {&UciState::searching, &UciState::bestmove_pending}) {
        uci_state.*flag = true;
        EXPECT_EQ(command("isready"), Lines{"readyok"});
        EXPECT_FALSE(uci_state.engine_initialised);
        uci_state.*flag = false;
    }
}

TEST_F(Uci, PositionAndGoCreateTheTablesToo) {
    EXPECT_EQ(command("position startpos"), Lines{});
    EXPECT_TRUE(uci_state.engine_initialised);
    hash_free(hash_table);
    uci_state.engine_initialised = false;
    EXPECT_TRUE(command("go depth 1").back().starts_with("bestmove "));
    EXPECT_TRUE(uci_state.engine_initialised);
}

TEST_F(Uci, UciListsNameAuthorAndVisibleOptions) {
    const Lines lines = command("uci");
    ASSERT_EQ(lines.size(), 13u);
    EXPECT_EQ(lines[0], "id name ZAR-X3 64Bit");
    EXPECT_EQ(lines[1], "id author the ZAR-X3 authors");
    EXPECT_EQ(lines[2], "option name Threads type spin default 1 min 1 max 4");
    EXPECT_EQ(lines[3], "option name Hash type spin default 16 min 16 max 1024");
    EXPECT_EQ(lines[11], "option name TLCV fix type check default true");
    EXPECT_EQ(lines[12], "uciok");
    uci_state.searching = true;
    EXPECT_EQ(command("uci"), lines);
}

TEST_F(Uci, PositionWithoutAFenIsTheStart) {
    for (const char* const line : {"position startpos", "position ", "position anything at all"}) {
        command("position fen 4k3/8/8/8/8/8/8/4K2R w K - 0 1");
        command(line);
        EXPECT_EQ(position(), kStartFen) << line;
    }
    for (const char* const line : {"position startpos moves e2e4 e7e5", "position moves e2e4 e7e5",
                                   "position moves   e2e4    e7e5   "}) {
        command(line);
        EXPECT_EQ(position(), after("e2e4 e7e5")) << line;
    }
}

TEST_F(Uci, PositionReadsAFenAndMoves) {
    constexpr const char* fen = "8/P6k/8/8/8/8/7p/K7 w - - 3 1";
    command(std::string("position fen ") + fen);
    EXPECT_EQ(position(), fen);
    command(std::string("position fen ") + fen + " moves a7a8q h2h1n");
    EXPECT_EQ(position(), fen_of(test::board_after(fen, "a7a8q h2h1n")));
}

TEST_F(Uci, TheFirstMoveThatCannotBePlayedEndsTheList) {
    for (const char* const line :
         {"position startpos moves e2e4 e7e4 g1f3", "position startpos moves e2e4 xyzz e7e5",
          "position startpos moves e2e4 e7", "position startpos moves e2e4 e7e5q",
          "position startpos moves e2e4 0000 e7e5", "position startpos moves e2e4"}) {
        command(line);
        EXPECT_EQ(position(), after("e2e4")) << line;
    }
    // A promotion wants its letter.
    constexpr const char* fen = "8/P6k/8/8/8/8/7p/K7 w - - 3 1";
    command(std::string("position fen ") + fen + " moves a7a8 h2h1q");
    EXPECT_EQ(position(), fen);
}

TEST_F(Uci, CastlingAndEnPassantArePlayed) {
    command("position startpos moves e2e4 a7a6 e4e5 d7d5 e5d6 a6a5 g1f3 a5a4 f1e2 a4a3 e1g1");
    EXPECT_EQ(position(), after("e2e4 a7a6 e4e5 d7d5 e5d6 a6a5 g1f3 a5a4 f1e2 a4a3 e1g1"));
}

TEST_F(Uci, AVeryLongGameKeepsItsLastMoves) {
    std::string line = "position startpos moves";
    for (int i = 0; i < 1000; ++i) {
        line += " b1c3 b8c6 c3b1 c6b8";
    }
    command(line);
    EXPECT_EQ(position().substr(0, 52), kStartFen.substr(0, 52));
    EXPECT_LT(uci_state.board.sp, 3200);
    EXPECT_GE(uci_state.board.sp, 200);
    EXPECT_TRUE(board_consistent(uci_state.board));
}

TEST_F(Uci, CommandsThatChangeThingsAreRefusedDuringASearchAndBeforeItsAnswer) {
    command("isready");
    const std::string before = position();
    hash_new_search(hash_table);
    hash_store(hash_table, 1234, 5, 3, kBoundExact, 7);
    for (bool UciState::*const flag : {&UciState::searching, &UciState::bestmove_pending}) {
        uci_state.*flag = true;
        EXPECT_EQ(command("position startpos moves e2e4"), Lines{});
        EXPECT_EQ(command("setoption name Hash value 32"), Lines{});
        EXPECT_EQ(command("setoption name ZARXLoadStructure value 32"), Lines{});
        EXPECT_EQ(command("ucinewgame"), Lines{});
        EXPECT_EQ(command("go depth 2"), Lines{});
        uci_state.*flag = false;
    }
    EXPECT_EQ(position(), before);
    EXPECT_EQ(option_get_int("Hash"), 16);
    HashHit hit;
    EXPECT_TRUE(hash_probe(hash_table, 1234, hit));
}

TEST_F(Uci, NewGameClearsTheTable) {
    EXPECT_EQ(command("ucinewgame"), Lines{});
    EXPECT_FALSE(uci_state.engine_initialised);
    command("isready");
    hash_new_search(hash_table);
    hash_store(hash_table, 1234, 5, 3, kBoundExact, 7);
    EXPECT_EQ(command("ucinewgame"), Lines{});
    HashHit hit;
    EXPECT_FALSE(hash_probe(hash_table, 1234, hit));
    EXPECT_EQ(hash_table.date, 0u);
}

TEST_F(Uci, SetoptionStoresAnyValue) {
    command("setoption name hash value 64");
    EXPECT_EQ(option_get_int("Hash"), 64);
    command("setoption name Foo value 1");
    command("setoption name Threads value abc");
    EXPECT_STREQ(option_get_string("Threads"), "abc");
    command("setoption name Own Book value yes");
    EXPECT_TRUE(option_get_bool("Own Book"));
    command("setoption name Own Book value off");
    EXPECT_FALSE(option_get_bool("Own Book"));
    command("setoption name Book File value my  own book.bin ");
    EXPECT_STREQ(option_get_string("Book File"), "my  own book.bin ");
}

TEST_F(Uci, AMalformedSetoptionSetsNothing) {
    for (const char* const line :
         {"setoption Hash 64", "setoption name Hash", "setoption value 64 name Hash",
          "setoption name Hash 64", "setoption name value 64", "setoption name Hash  value 64"}) {
        EXPECT_EQ(command(line), Lines{}) << line;
        EXPECT_EQ(option_get_int("Hash"), 16) << line;
    }
}

TEST_F(Uci, ANewHashSizeAllocatesAgainFromSixteenOn) {
    command("isready");
    command("setoption name Hash value 32");
    EXPECT_EQ(hash_table.entry_count, 2'097'155u);
    command("setoption name Hash value 8");
    EXPECT_EQ(option_get_int("Hash"), 8);
    EXPECT_EQ(hash_table.entry_count, 2'097'155u);
    command("setoption name HASH value 16");
    EXPECT_EQ(hash_table.entry_count, 1'048'579u);
    hash_store(hash_table, 1234, 5, 3, kBoundExact, 7);
    command("setoption name Hash value 16");
    HashHit hit;
    EXPECT_FALSE(hash_probe(hash_table, 1234, hit));
}

TEST_F(Uci, BeforeTheTablesExistAHashSizeIsOnlyKept) {
    command("setoption name Hash value 32");
    EXPECT_EQ(hash_table.entries, nullptr);
    command("isready");
    EXPECT_EQ(hash_table.entry_count, 2'097'155u);
}

TEST_F(Uci, OnlyTheFullLevelHasNoPonderLimit) {
    for (const char* const level : {"0", "9", "11", "x"}) {
        command(std::string("setoption name Difficulty Level value ") + level);
        EXPECT_TRUE(uci_state.ponder_limit) << level;
    }
    command("setoption name difficulty level value 10");
    EXPECT_FALSE(uci_state.ponder_limit);
}

TEST_F(Uci, ALevelChangesTheSumsOfTheCurrentPosition) {
    command("position fen 4k3/8/8/8/4P3/8/8/4K3 w - - 0 1");
    command("setoption name Difficulty Level value 5");
    EXPECT_TRUE(board_consistent(uci_state.board));
    EXPECT_EQ(uci_state.board.pst_opening, 0);
    EXPECT_EQ(uci_state.board.pst_endgame, 0);
    command("setoption name Difficulty Level value 10");
    EXPECT_TRUE(board_consistent(uci_state.board));
    EXPECT_NE(uci_state.board.pst_opening, 0);
}

TEST_F(Uci, TheStructureOptionsAnnounceTheEngine) {
    EXPECT_EQ(command("setoption name ZARXLoadStructureTest value d:/"), Lines{"Engine Ready"});
    EXPECT_EQ(command("setoption name zarxloadstructure value 20"), Lines{"Engine Ready"});
    EXPECT_STREQ(option_get_string("ZARXLoadStructureTest"), "d:/");
}

TEST_F(Uci, ExtraInfoTellsTheSettings) {
    EXPECT_EQ(command("setoption name Extra Info value true"),
              (Lines{"info string - - - ",
                     "info string 1 CPUs - Hash Size 16 - Level 10 - Ponder Limit 0 (1=true) - "
                     "MultiPV 1 - Use Book 0 (1=true) - Book is ZAR.ebk - Engine Ready"}));
    EXPECT_EQ(command("setoption name Difficulty Level value 3").back(),
              "info string 1 CPUs - Hash Size 16 - Level 3 - Ponder Limit 1 (1=true) - "
              "MultiPV 1 - Use Book 0 (1=true) - Book is ZAR.ebk - Engine Ready");
    // An unknown name too, but not a malformed line.
    EXPECT_EQ(command("setoption name Foo value 1").size(), 2u);
    EXPECT_EQ(command("setoption name Foo").size(), 0u);
}

TEST_F(Uci, StopAndPonderhitOutOfASearchDoNothing) {
    EXPECT_EQ(command("stop"), Lines{});
    EXPECT_EQ(command("ponderhit"), Lines{});
    EXPECT_FALSE(search_thread(0).stop);
}

TEST_F(Uci, StopDuringASearchStopsEveryThread) {
    search_shared.thread_count = 3;
    uci_state.searching = true;
    uci_state.wait_for_stop = true;
    EXPECT_EQ(command("stop"), Lines{});
    EXPECT_FALSE(uci_state.wait_for_stop);
    EXPECT_TRUE(search_thread(0).stop && search_thread(1).stop && search_thread(2).stop);
    EXPECT_FALSE(search_thread(3).stop);
}

TEST_F(Uci, PonderhitDuringASearchMakesTheLimitsApply) {
    uci_state.searching = true;
    uci_state.wait_for_stop = true;
    uci_state.go_ponder = true;
    search_shared.limits.limit_infinite = true;
    EXPECT_EQ(command("ponderhit"), Lines{});
    EXPECT_FALSE(uci_state.wait_for_stop);
    EXPECT_FALSE(uci_state.go_ponder);
    EXPECT_FALSE(search_shared.limits.limit_infinite);
    EXPECT_FALSE(search_thread(0).stop);
}

TEST_F(Uci, APendingAnswerIsReleasedOnce) {
    option_set("Difficulty Level", "0");
    for (const char* const release : {"stop", "ponderhit"}) {
        for (const std::string& line : command("go infinite")) {
            EXPECT_FALSE(line.starts_with("bestmove")) << line;
        }
        EXPECT_TRUE(uci_state.bestmove_pending);
        EXPECT_EQ(command("isready"), Lines{"readyok"});
        const Lines answer = command(release);
        EXPECT_TRUE(answer.back().starts_with("bestmove ")) << release;
        EXPECT_FALSE(uci_state.bestmove_pending);
        EXPECT_EQ(command(release), Lines{});
    }
}

TEST_F(Uci, PonderAndInfiniteTogetherAreNotAnsweredEvenByStop) {
    option_set("Difficulty Level", "0");
    command("go ponder infinite");
    EXPECT_EQ(command("stop").size(), 1u);
    EXPECT_FALSE(uci_state.bestmove_pending);
}

// The search finds the lines that wait when it polls, from its first node on.
TEST_F(Uci, CommandsAreServedDuringASearch) {
    command("isready");
    const Lines lines = lines_of([] {
        for (const char* const line : {"go infinite", "isready", "uci",
                                       "position startpos moves e2e4", "go depth 1", "stop"}) {
            type_line(line);
        }
        uci_command();
    });
    EXPECT_TRUE(contains(lines, "readyok"));
    EXPECT_TRUE(contains(lines, "uciok"));
    EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const std::string& line) { return line.starts_with("bestmove"); }),
              1);
    EXPECT_EQ(position(), kStartFen);
    EXPECT_FALSE(uci_state.searching);
}

TEST_F(Uci, PonderhitDuringASearchLetsItEndByItsLimits) {
    command("isready");
    const Lines lines = lines_of([] {
        type_line("go ponder depth 2");
        type_line("ponderhit");
        uci_command();
    });
    EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    EXPECT_EQ(search_thread(0).result[0].depth, 2);
}

TEST_F(Uci, LinesBehindStopWaitForTheEndOfTheSearch) {
    command("isready");
    const Lines lines = lines_of([] {
        for (const char* const line : {"go infinite", "stop", "position startpos moves e2e4"}) {
            type_line(line);
        }
        uci_command();
    });
    EXPECT_TRUE(lines.back().starts_with("bestmove ")) << lines.back();
    EXPECT_EQ(position(), kStartFen);
    uci_command();
    EXPECT_EQ(position(), after("e2e4"));
}

TEST_F(Uci, QuitEndsTheProcess) {
    EXPECT_EXIT(
        {
            type_line("quit");
            uci_command();
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(Uci, QuitEndsTheProcessDuringASearch) {
    EXPECT_EXIT(
        {
            type_line("go infinite");
            type_line("quit");
            uci_command();
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(Uci, ThreadsAreHeldToOneToFour) {
    struct Row {
        const char* value;
        int count;
    };
    command("isready");
    for (const Row& row : {Row{"9", 4}, Row{"2", 2}, Row{"0", 1}, Row{"3", 3}, Row{"abc", 1}}) {
        command(std::string("setoption name Threads value ") + row.value);
        EXPECT_EQ(search_shared.thread_count, row.count) << row.value;
        EXPECT_STREQ(option_get_string("Threads"), row.value);
    }
}

TEST(Startup, PrintsBannerAndReadiness) {
    const Lines lines = lines_of([] { startup_engine(false); });
    EXPECT_EQ(lines, (Lines{"ZAR-X3 64Bit", "", "Engine Ready"}));
    EXPECT_EQ(hash_table.entries, nullptr);
    EXPECT_EQ(option_get_int("Hash"), 256);
}

}  // namespace
}  // namespace zar
