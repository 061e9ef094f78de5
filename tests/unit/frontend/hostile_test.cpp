// What no sensible program sends: absurd values of options and parameters, positions at the limits.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/console.h"
#include "frontend/uci.h"
#include "gtest/gtest.h"
#include "platform/text.h"
#include "support/letter_board.h"
#include "support/move_support.h"
#include "support/uci_support.h"
#include "twin.h"

namespace zar {
namespace {

using test::fen_of;
using test::lines_of;
using test::Texts;
using test::type_line;

const std::array<std::string, 17> kAbsurdValues = {"",
                                                   " ",
                                                   "-1",
                                                   "0",
                                                   "2147483647",
                                                   "2147483648",
                                                   "-2147483648",
                                                   "99999999999999999999",
                                                   "-99999999999999999999",
                                                   "1e9",
                                                   "0x10",
                                                   "true",
                                                   "FAIL HIGH",
                                                   "name Hash value 7",
                                                   "%s%n%d%s",
                                                   "\xff\x80\x01",
                                                   std::string(5000, '9')};

const std::array<std::string_view, 9> kNumberedKeywords = {
    "wtime", "btime", "winc", "binc", "movestogo", "depth", "mate", "movetime", "nodes"};

// A gibibyte is asked for once, not by every large number.
bool takes_long(std::string_view name, const std::string& value) {
    return name == "Hash" && value != "2147483647" && text_to_int(value) > 1024;
}

class Hostile : public test::UciTest {
  protected:
    static Texts legal_moves() { return twin::legal_moves(test::twin_of(uci_state.board)); }

    static void expect_legal(const std::string& move, const std::string& what) {
        const Texts legal = legal_moves();
        EXPECT_TRUE(std::find(legal.begin(), legal.end(), move) != legal.end())
            << move << ", " << what << ", " << fen_of(uci_state.board);
    }

    // The last line answers with a legal move.
    static void expect_answer(const Texts& lines, const std::string& what) {
        ASSERT_FALSE(lines.empty()) << what;
        const Texts words = test::words_of(lines.back());
        ASSERT_GE(words.size(), 2u) << what << ": " << lines.back();
        ASSERT_EQ(words[0], "bestmove") << what;
        expect_legal(words[1], what);
    }

    // A search that is told to stop at once.
    static Texts stopped_search(const std::string& arguments) {
        return lines_of([&] {
            type_line("go " + arguments);
            type_line("stop");
            uci_command();
            while (input_available()) {
                uci_command();  // the search has ended before it looked
            }
        });
    }
};

TEST_F(Hostile, AbsurdOptionValuesAreKeptAndSearchesGoOn) {
    command("isready");
    for (const Option& option : option_table()) {
        const std::string before = option.value;
        // These two set the limits of every search.
        const bool limits = std::string_view(option.name).starts_with("ZARXS") &&
                            std::string_view(option.name).size() == 6;
        for (const std::string& value : kAbsurdValues) {
            if (takes_long(option.name, value)) {
                continue;
            }
            const std::string what = option.name + std::string(" = ") + value;
            command(std::string("setoption name ") + option.name + " value " + value);
            ASSERT_EQ(option.value, value) << what;
            ASSERT_TRUE(board_consistent(uci_state.board)) << what;
            ASSERT_NO_FATAL_FAILURE(
                expect_answer(limits ? stopped_search("") : command("go depth 3"), what));
        }
        command(std::string("setoption name ") + option.name + " value " + before);
    }
}

TEST_F(Hostile, OptionsSetDuringASearchAreRefused) {
    command("isready");
    Texts before;
    for (const Option& option : option_table()) {
        before.push_back(option.value);
    }
    const Texts lines = lines_of([] {
        type_line("go infinite");
        for (const Option& option : option_table()) {
            for (const std::string& value : kAbsurdValues) {
                if (value.size() < 1000) {
                    type_line(std::string("setoption name ") + option.name + " value " + value);
                }
            }
        }
        type_line("stop");
        uci_command();
    });
    expect_answer(lines, "options during a search");
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(option_table()[i].value, before[i]) << option_table()[i].name;
    }
}

TEST_F(Hostile, AbsurdSearchParametersAreAnswered) {
    for (const std::string_view keyword : kNumberedKeywords) {
        for (const std::string& value : kAbsurdValues) {
            // Empty texts would leave the keyword without its value, a fatal error.
            if (value.find_first_not_of(' ') == std::string::npos) {
                continue;
            }
            for (const char* const head : {"", "infinite ", "ponder "}) {
                const std::string arguments = head + std::string(keyword) + " " + value;
                ASSERT_NO_FATAL_FAILURE(expect_answer(stopped_search(arguments), arguments));
            }
        }
    }
}

TEST_F(Hostile, AllParametersAtOnceAreAnswered) {
    for (const std::string value : {"2147483647", "-2147483648", "0", "x"}) {
        std::string arguments;
        for (const std::string_view keyword : kNumberedKeywords) {
            arguments += std::string(keyword) + " " + value + " ";
        }
        expect_answer(stopped_search(arguments), arguments);
    }
}

TEST_F(Hostile, PositionsAtTheLimitsAreSearched) {
    for (const std::string fen : {
             // The most moves that a position reached from the start can have, and fifteen queens.
             "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1",
             "Q3QQ2/2Q4Q/4Q3/1Q4Q1/3Q4/Q4Q2/ppQ4Q/krK1QQ2 w - - 0 1",
             // Fifteen rooks or knights, fourteen bishops (ten white ones would warn).
             "6nk/6pp/8/R7/RRRRRRR1/RRRRRRR1/8/K7 w - - 0 1",
             "6nk/6pp/8/8/NNNNNNN1/NNNNNNN1/N7/K7 w - - 0 1",
             "k7/n7/bbbbbbb1/bbbbbbb1/8/8/PP6/KN6 b - - 1000 1",
             // Sixteen pawns that cannot move.
             "4k3/8/p1p1p1p1/PpPpPpPp/1P1P1P1P/8/8/4K3 w - - 0 1",
         }) {
        command("position fen " + fen);
        const Texts lines = command("go depth 1");
        expect_answer(lines, fen);
        for (const std::string& line : lines) {
            const std::size_t pv = line.find(" pv ");
            if (pv == std::string::npos) {
                continue;
            }
            twin::Game game = twin::game_from_position(test::twin_of(fen));
            for (const std::string& move : test::words_of(line.substr(pv + 4))) {
                EXPECT_TRUE(move.empty() || twin::game_play(game, move)) << fen << ": " << line;
            }
        }
    }
}

// Too many exchanges to search here: the first iteration takes a million nodes and more.
TEST_F(Hostile, NineQueensASideHaveTheirMoves) {
    for (const std::string fen : {"qqqqk3/qqqqq3/8/8/8/8/3QQQQQ/3KQQQQ w - - 0 1",
                                  "qqqqk3/qqqqq3/8/8/8/8/3QQQQQ/3KQQQQ b - - 0 1",
                                  "k1q1q1q1/qq4q1/4q1q1/3q4/2Q3Q1/Q7/1Q4QQ/Q3K1Q1 w - - 0 1"}) {
        command("position fen " + fen);
        MoveList list;
        gen_legal_moves(list, uci_state.board);
        Texts texts = test::texts_of(list);
        std::sort(texts.begin(), texts.end());
        EXPECT_EQ(texts, legal_moves()) << fen;
    }
}

TEST_F(Hostile, AMoveListOfManyThousandMovesIsPlayedAndSearched) {
    std::string line = "position startpos moves";
    while (line.size() + 20 < 65'000) {
        line += " g1f3 g8f6 f3g1 f6g8";
    }
    line += " e2e4";
    uci_execute(line);
    EXPECT_TRUE(board_consistent(uci_state.board));
    EXPECT_EQ(fen_of(uci_state.board), fen_of(test::board_after(kStartFen, "e2e4")));
    expect_answer(command("go depth 4"), "13,000 moves");
}

}  // namespace
}  // namespace zar
