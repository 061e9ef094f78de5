#include "search/driver.h"

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "board/attack.h"
#include "gtest/gtest.h"
#include "support/driver_support.h"

namespace zar {
namespace {

using test::board_of;
using test::difference;
using test::Driver;
using test::Event;
using test::events;
using test::kTacticalFens;
using test::text_of;

int polls_before_stop = 0;

// Every move against every reply: plies to the mate that the side to move can force within so many
// plies (an odd number), 0 when there is none.
int plies_to_mate(Board& board, int most) {
    for (int plies = 1; plies <= most; plies += 2) {
        MoveList moves;
        gen_legal_moves(moves, board);
        for (int i = 0; i < moves.size; ++i) {
            const Move move = moves.move[static_cast<std::size_t>(i)];
            UndoInfo undo;
            move_do(board, move, undo);
            MoveList replies;
            gen_legal_moves(replies, board);
            bool forced = replies.size > 0 ? plies > 1 : board_is_check(board);
            for (int k = 0; forced && k < replies.size; ++k) {
                const Move reply = replies.move[static_cast<std::size_t>(k)];
                UndoInfo reply_undo;
                move_do(board, reply, reply_undo);
                forced = plies_to_mate(board, plies - 2) > 0;
                move_undo(board, reply, reply_undo);
            }
            move_undo(board, move, undo);
            if (forced) {
                return plies;
            }
        }
    }
    return 0;
}

struct MateRow {
    const char* fen;
    int plies;
    int depth;
};

TEST_F(Driver, FindsMatesInOneToThree) {
    for (const MateRow& row : {
             MateRow{"6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", 1, 2},
             MateRow{"r5k1/5ppp/8/8/8/8/5PPP/6K1 b - - 0 1", 1, 2},
             MateRow{"7k/8/5K2/6Q1/8/8/8/8 w - - 0 1", 1, 2},
             MateRow{"8/8/8/8/8/1k6/3r4/K7 b - - 0 1", 1, 2},
             MateRow{"7k/8/8/8/8/8/R7/1R4K1 w - - 0 1", 3, 4},
             MateRow{"k7/8/8/8/8/6R1/7R/4K3 w - - 0 1", 3, 4},
             MateRow{"r1bq2r1/b4pk1/p1pp1p2/1p2pP2/1P2P1PB/3P4/1PPQ2P1/R3K2R w KQ - 0 1", 3, 4},
             MateRow{"7k/P7/5K2/8/8/8/8/8 w - - 0 1", 3, 5},
             MateRow{"8/8/8/8/8/3k4/2q5/K7 b - - 0 1", 5, 6},
             MateRow{"8/8/8/8/8/2k5/7r/1K6 b - - 0 1", 5, 6},
         }) {
        Board board = board_of(row.fen);
        EXPECT_EQ(plies_to_mate(board, 5), row.plies) << row.fen;
        hash_clear(hash_table);
        const RootResult& result = search(board, row.depth);
        EXPECT_EQ(result.score, 30000 - row.plies) << row.fen << " " << text_of(result.pv);
        EXPECT_EQ(result.best_move, result.pv[0]) << row.fen;
    }
}

TEST_F(Driver, SeesThatItWillBeMated) {
    constexpr const char* fen = "7k/8/8/8/8/R7/1R6/6K1 b - - 0 1";
    Board board = board_of(fen);
    const RootResult result = search(board, 7);
    // The longest resistance: the opponent mates so many plies after the best move.
    UndoInfo undo;
    move_do(board, result.best_move, undo);
    EXPECT_EQ(result.score, plies_to_mate(board, 5) + 1 - 30000) << fen;
}

TEST_F(Driver, AMateLineEndsInMate) {
    constexpr const char* fen = "8/8/8/8/8/2k5/7r/1K6 b - - 0 1";
    Board board = board_of(fen);
    const RootResult result = search(board, 8);
    ASSERT_GT(result.score, 29980) << fen;
    const int plies = 30000 - result.score;
    int length = 0;
    while (result.pv[static_cast<std::size_t>(length)] != kMoveNone) {
        UndoInfo undo;
        move_do(board, result.pv[static_cast<std::size_t>(length++)], undo);
    }
    EXPECT_EQ(length, plies) << fen << text_of(result.pv);
    EXPECT_TRUE(board_is_mate(board)) << fen << text_of(result.pv);
}

TEST_F(Driver, TheDepthLimitIsTheLastIteration) {
    for (int depth = 1; depth <= 4; ++depth) {
        EXPECT_EQ(search(kStartFen, depth).depth, depth);
        EXPECT_EQ(search_thread(0).iteration_depth, depth);
    }
    // At least one iteration is run.
    search_reset();
    search_shared.limits.limit_depth_set = true;
    Board board = board_of(kStartFen);
    search_run(board);
    EXPECT_EQ(search_thread(0).result[0].depth, 1);
}

// Locked pawns and a king each: deep iterations take no time.
constexpr const char* kLockedFen = "k7/8/p1p1p1p1/P1P1P1P1/8/8/8/K7 w - - 0 1";

TEST_F(Driver, TheLevelCapsTheDepth) {
    for (int level = 0; level <= 9; ++level) {
        set("Difficulty Level", std::to_string(level));
        hash_clear(hash_table);
        const RootResult& result = search(kLockedFen, 0);
        EXPECT_EQ(result.depth, 2 * level + 1) << level;
        EXPECT_EQ(search_thread(0).iteration_depth, 2 * level + 1) << level;
    }
}

TEST_F(Driver, LevelZeroSearchesOnePly) {
    set("Difficulty Level", "0");
    EXPECT_EQ(search(kStartFen, 0).depth, 1);
    EXPECT_EQ(search_thread(0).iteration_depth, 1);
}

TEST_F(Driver, ASingleMoveIsSearchedToDepthFour) {
    constexpr const char* fen = "7k/6pp/8/8/8/8/8/K5RR b - - 0 1";
    constexpr const char* forced = "k7/8/1K6/8/8/8/8/2R5 b - - 0 1";
    for (const int asked : {0, 2, 9}) {
        EXPECT_EQ(search(forced, asked).depth, 4) << forced;
        EXPECT_TRUE(search_shared.limits.limit_depth_set);
        EXPECT_EQ(search_shared.limits.limit_depth, 4);
    }
    EXPECT_EQ(search(fen, 2).depth, 2) << fen;
}

TEST_F(Driver, WithoutALegalMoveThereIsNoResultButANewDate) {
    for (const char* const fen : {"R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1",  // mate
                                  "k7/8/1Q6/8/8/8/8/7K b - - 0 1"}) {   // stalemate
        const std::uint32_t date = hash_table.date;
        const RootResult& result = search(fen, 3);
        EXPECT_EQ(result.best_move, kMoveNone) << fen;
        EXPECT_EQ(result.pv[0], kMoveNone) << fen;
        EXPECT_EQ(result.depth, 0) << fen;
        EXPECT_EQ(search_thread(0).nodes, 0u) << fen;
        EXPECT_TRUE(events.empty()) << fen;
        EXPECT_EQ(hash_table.date, (date + 1) % 16) << fen;
    }
}

TEST_F(Driver, EverySearchHasANewDate) {
    const std::uint32_t date = hash_table.date;
    search(kStartFen, 1);
    EXPECT_EQ(hash_table.date, (date + 1) % 16);
}

TEST_F(Driver, LinesNeverShareTheirFirstMove) {
    for (const std::string_view fen :
         {kStartFen,
          std::string_view("r1b2rk1/pp1n1pp1/2p1p2p/q7/3PN3/P2B4/1P1Q1PPP/2KR3R w - - 0 16"),
          std::string_view("7k/8/8/8/8/1p6/1P6/K6r w - - 0 1"), std::string_view(kLockedFen)}) {
        for (const int lines : {2, 3, 4}) {
            set("MultiPV", std::to_string(lines));
            hash_clear(hash_table);
            search(fen, 3);
            MoveList legal;
            Board board = board_of(fen);
            gen_legal_moves(legal, board);
            const int shown = std::min(lines, legal.size);
            EXPECT_EQ(search_shared.last_pv_index, shown - 1) << fen;
            std::set<Move> first;
            for (int i = 0; i < shown; ++i) {
                first.insert(line(static_cast<std::size_t>(i)).best_move);
                EXPECT_EQ(line(static_cast<std::size_t>(i)).depth, 3) << fen;
            }
            EXPECT_EQ(static_cast<int>(first.size()), shown) << fen;
            EXPECT_FALSE(first.contains(kMoveNone)) << fen;
        }
    }
}

TEST_F(Driver, WithThreeMovesTheSecondLineIsNeverTheFirst) {
    constexpr const char* three = "k7/8/p1p1p1p1/P1P1P1P1/8/8/8/K7 w - - 0 1";
    set("MultiPV", "2");
    Board board = board_of(three);
    MoveList legal;
    gen_legal_moves(legal, board);
    ASSERT_EQ(legal.size, 3) << three;
    search(board, 6);
    for (std::size_t i = 0; i + 1 < events.size(); ++i) {
        if (events[i].is_report && events[i].line == 0 && events[i + 1].line == 1) {
            for (std::size_t k = i + 1; k < events.size() && events[k].line == 1; ++k) {
                if (events[k].is_report) {
                    EXPECT_NE(events[k].result.pv[0], events[i].result.pv[0]);
                }
            }
        }
    }
    EXPECT_NE(line(0).best_move, line(1).best_move);
}

TEST_F(Driver, MultiPvIsHeldToItsRange) {
    for (const char* const text : {"0", "-3", "abc"}) {
        set("MultiPV", text);
        search(kStartFen, 1);
        EXPECT_EQ(search_shared.last_pv_index, 0) << text;
    }
    set("MultiPV", "99");
    search(kStartFen, 1);
    EXPECT_EQ(search_shared.last_pv_index, 3);
}

TEST_F(Driver, EveryReportedLineIsLegal) {
    for (const char* const fen : kTacticalFens) {
        set("MultiPV", "2");
        hash_clear(hash_table);
        search(fen, 5);
        int reports = 0;
        for (const Event& event : events) {
            if (!event.is_report) {
                continue;
            }
            ++reports;
            Board board = board_of(fen);
            EXPECT_EQ(event.result.best_move, event.result.pv[0]) << fen;
            for (std::size_t i = 0; event.result.pv[i] != kMoveNone; ++i) {
                MoveList legal;
                gen_legal_moves(legal, board);
                ASSERT_TRUE(list_contains(legal, event.result.pv[i]))
                    << fen << " " << text_of(event.result.pv);
                UndoInfo undo;
                move_do(board, event.result.pv[i], undo);
            }
        }
        EXPECT_GE(reports, 20) << fen;
    }
}

TEST_F(Driver, AcceptedLinesAreExtendedFromTheTable) {
    int longer = 0;
    for (const char* const fen : kTacticalFens) {
        hash_clear(hash_table);
        Board board = board_of(fen);
        search(board, 4);
        // The table now knows what follows the best move of a shallow search.
        const RootResult result = search(board, 1);
        std::size_t length = 0;
        for (; result.pv[length] != kMoveNone; ++length) {
            UndoInfo undo;
            move_do(board, result.pv[length], undo);
        }
        longer += length > 2 ? 1 : 0;
        // It ends where the table does, or the game.
        HashHit hit{};
        const bool follows = !board_is_repetition(board) &&
                             hash_probe(hash_table, board.key, hit) && hit.move != kMoveNone;
        MoveList legal;
        gen_legal_moves(legal, board);
        EXPECT_FALSE(follows && list_contains(legal, hit.move))
            << fen << " " << text_of(result.pv) << " then " << text_of(hit.move);
    }
    EXPECT_GE(longer, 3);
}

TEST_F(Driver, TheTableRemembersTheLine) {
    Board board = board_of(kTacticalFens[0]);
    const RootResult result = search(board, 1);
    HashHit hit{};
    ASSERT_TRUE(hash_probe(hash_table, board.key, hit));
    EXPECT_EQ(hit.move, result.pv[0]);
    EXPECT_EQ(hit.depth, 0);
    EXPECT_EQ(hit.bound, kBoundLower);
    EXPECT_EQ(hit.value, -30000);
}

TEST_F(Driver, TheSameSearchTwiceIsTheSame) {
    for (const char* const fen : kTacticalFens) {
        hash_clear(hash_table);
        const RootResult first = search(fen, 4);
        const std::uint64_t nodes = search_thread(0).nodes;
        const std::size_t reports = events.size();
        search("8/8/8/3k4/3p4/8/8/R3K3 w - - 0 60", 5);
        hash_clear(hash_table);
        const RootResult second = search(fen, 4);
        EXPECT_EQ(search_thread(0).nodes, nodes) << fen;
        EXPECT_EQ(events.size(), reports) << fen;
        EXPECT_EQ(second.score, first.score) << fen;
        EXPECT_EQ(text_of(second.pv), text_of(first.pv)) << fen;
    }
}

TEST_F(Driver, TheBoardIsAsBefore) {
    for (const char* const fen : kTacticalFens) {
        Board board = board_of(fen);
        const Board before = board;
        search(board, 3);
        EXPECT_EQ(difference(board, before), "") << fen;
    }
}

TEST_F(Driver, StopKeepsTheResultAtHand) {
    for (const int polls : {1, 2, 3}) {
        polls_before_stop = polls;
        search_shared.hooks.poll_input = [] {
            if (--polls_before_stop <= 0) {
                search_thread(0).stop = true;
            }
            return search_thread(0).stop.load();
        };
        hash_clear(hash_table);
        Board board = board_of(kTacticalFens[1]);
        const Board before = board;
        const RootResult& result = search(board, 0);
        EXPECT_NE(result.best_move, kMoveNone);
        EXPECT_GE(result.depth, 1);
        EXPECT_LT(result.depth, 20);
        EXPECT_EQ(difference(board, before), "");
        EXPECT_FALSE(search_thread(0).stopwatch.running);
        const RootResult kept = events.back().is_report ? events.back().result : result;
        EXPECT_EQ(kept.best_move, result.best_move);
    }
}

TEST_F(Driver, StopBeforeTheFirstResultWaitsForIt) {
    search_shared.hooks.poll_input = [] {
        search_thread(0).stop = true;
        return true;
    };
    const RootResult& result = search(kStartFen, 0);
    EXPECT_EQ(result.depth, 1);
    EXPECT_EQ(search_thread(0).iteration_depth, 1);
}

// The first node polls, so no root move has been searched to its end.
TEST_F(Driver, ASearchLeftBeforeItsFirstResultPlaysTheFirstRootMove) {
    search_shared.hooks.poll_input = [] {
        SearchThread& self = search_thread(0);
        search_shared.stability.overdue_time = -1;  // the moment of grace is over
        self.stop = true;
        return true;
    };
    const RootResult& result = search("8/PPPPPPPP/8/2k5/8/2K5/pppppppp/8 w - - 0 1", 0);
    EXPECT_EQ(result.best_move, search_thread(0).root.move[0]);
    EXPECT_EQ(result.pv[0], result.best_move);
    EXPECT_EQ(result.pv[1], kMoveNone);
    EXPECT_EQ(result.depth, 1);
    EXPECT_EQ(result.score, 0);
    EXPECT_EQ(&search_result(0), &result);
}

TEST_F(Driver, TheResultIsTheBestLineOfTheNewestIteration) {
    auto& lines = search_thread(0).result;
    const auto set = [&](int index, int depth, Score score) {
        lines[static_cast<std::size_t>(index)].depth = depth;
        lines[static_cast<std::size_t>(index)].score = score;
    };
    set(0, 7, 10);
    set(1, 7, 30);
    set(2, 7, 30);
    set(3, 7, 20);
    EXPECT_EQ(&search_result(0), &lines[1]);  // of equals the earlier line
    set(0, 8, 15);
    EXPECT_EQ(&search_result(0), &lines[0]);  // the others are of the iteration before
    set(1, 8, 14);
    EXPECT_EQ(&search_result(0), &lines[0]);
    set(2, 8, 16);
    EXPECT_EQ(&search_result(0), &lines[2]);
}

TEST_F(Driver, TheFirstIterationReportsEveryBetterMoveWithAnOpenWindow) {
    search(kTacticalFens[1], 1);
    Score best = -32767;
    int better = 0;
    for (std::size_t i = 0; i + 1 < events.size(); ++i) {
        if (!events[i].is_report) {
            continue;
        }
        EXPECT_EQ(events[i].result.bound, kBoundExact);
        EXPECT_GT(events[i].result.score, best);
        best = events[i].result.score;
        ++better;
    }
    EXPECT_GE(better, 1);
    // Every root move is looked at once: there is no second search.
    std::set<int> indices;
    int begun = 0;
    for (const Event& event : events) {
        if (!event.is_report) {
            indices.insert(event.root_index);
            ++begun;
        }
    }
    EXPECT_EQ(begun, 48);
    EXPECT_EQ(indices.size(), 48u);
}

TEST_F(Driver, AnEasyMoveIsNoticed) {
    // The queen hangs; nothing else comes near.
    search("6k1/5ppp/8/3q4/4P3/8/5PPP/6K1 w - - 0 1", 1);
    EXPECT_TRUE(search_shared.stability.easy_move);
    search(kStartFen, 1);
    EXPECT_FALSE(search_shared.stability.easy_move);
}

TEST_F(Driver, NodesAreCountedWithoutTheRoot) {
    set("Difficulty Level", "0");
    // Three king moves to depth 0, each into a position without anything to take.
    constexpr const char* fen = "k7/8/p1p1p1p1/P1P1P1P1/8/8/8/K7 w - - 0 1";
    search(fen, 1);
    EXPECT_EQ(search_thread(0).nodes, 3u);
}

}  // namespace
}  // namespace zar
