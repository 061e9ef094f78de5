#include "epd.h"

#include <array>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/move_support.h"

namespace zar::tools {

namespace {

using Texts = std::vector<std::string>;

constexpr std::string_view kKings = "4k3/8/8/8/8/8/4P3/4K3 w - -";

// The fault of a text, and the positions that it has.
std::string read(const std::string& text, std::vector<EpdPosition>& positions) {
    std::istringstream stream(text);
    return epd_read(stream, positions);
}

std::string fault_of(const std::string& text) {
    std::vector<EpdPosition> positions;
    return read(text, positions);
}

EpdPosition single(const std::string& text) {
    std::vector<EpdPosition> positions;
    EXPECT_EQ("", read(text, positions)) << text;
    EXPECT_EQ(1U, positions.size()) << text;
    return positions.empty() ? EpdPosition{} : positions[0];
}

std::string with(std::string_view operations) {
    return std::string(kKings) + " " + std::string(operations);
}

TEST(Epd, OperationsAreRead) {
    const EpdPosition position =
        single(with("bm e4 Kd2; am Kf2; id \"a; b\"; c0 \"text\"; acd 5;"));
    EXPECT_EQ((Texts{"e2e4", "e1d2"}), test::texts_of(position.best));
    EXPECT_EQ((Texts{"e1f2"}), test::texts_of(position.avoid));
    EXPECT_EQ("a; b", position.id);
    EXPECT_EQ(std::string(kKings), position.fen);
}

TEST(Epd, FormsThatFilesHave) {
    for (const std::string& text :
         {with("bm e4;"), with("bm e4"), with("bm e4 ;"), with("0 1 bm e4;"), with("12 bm e4;"),
          with("bm e4;\r"), "  " + with("bm\te4;"), "# comment\n\n" + with("bm e4;") + "\n"}) {
        EXPECT_EQ((Texts{"e2e4"}), test::texts_of(single(text).best)) << text;
    }
}

TEST(Epd, LinesAreNumberedFromOne) {
    std::vector<EpdPosition> positions;
    ASSERT_EQ("", read("# head\n" + with("bm e4;") + "\n\n" + with("am e3;") + "\n", positions));
    ASSERT_EQ(2U, positions.size());
    EXPECT_EQ(2, positions[0].line);
    EXPECT_EQ(4, positions[1].line);
}

TEST(Epd, TheFirstFaultIsNamedWithItsLine) {
    const std::string good = with("bm e4;") + "\n";
    const std::array<std::pair<std::string, std::string>, 11> faults = {{
        {"", "no position in it"},
        {"# nothing\n", "no position in it"},
        {good + with("bm e5;"), "2: bm: 'e5' is no legal move"},
        {good + with("am x;"), "2: am: 'x' is no move in standard algebraic notation"},
        {"\n" + with("id \"x\";"), "2: neither bm nor am is there"},
        {std::string(kKings), "1: neither bm nor am is there"},
        {with("bm;"), "1: bm names no move"},
        {with("bm e4; id \"x;"), "1: a double quote is not closed"},
        {good + good + "nonsense",
         "3: a rank has a character that is neither a man nor a digit "
         "from 1 to 8"},
        {"8/8/8/8/8/8/8/8 w - - bm e4;", "1: a colour has no king or more than one"},
        {"4k3/8/8/8/8/8/4P3/4K3 w bm e4;",
         "1: the castling rights are neither '-' nor letters of 'KQkq' in this order"},
    }};
    for (const auto& [text, fault] : faults) {
        EXPECT_EQ(fault, fault_of(text)) << text;
    }
}

TEST(Epd, AnAmbiguousMoveIsAFault) {
    EXPECT_EQ("1: bm: 'Nd2' can be more than one move",
              fault_of("4k3/8/8/8/8/8/8/1N1K1N2 w - - bm Nd2;"));
}

TEST(Epd, ASolutionIsOneOfTheBestAndNoneToAvoid) {
    const auto judged = [](std::string_view operations, std::string_view text) {
        Board board = test::board_of(kKings);
        return epd_is_solution(single(with(operations)), move_from_string(text, board));
    };
    EXPECT_TRUE(judged("bm e4 e3;", "e2e4"));
    EXPECT_TRUE(judged("bm e4 e3;", "e2e3"));
    EXPECT_FALSE(judged("bm e4 e3;", "e1d2"));
    EXPECT_FALSE(judged("am e4;", "e2e4"));
    EXPECT_TRUE(judged("am e4;", "e2e3"));
    EXPECT_FALSE(judged("bm e4; am e4;", "e2e4"));
    EXPECT_FALSE(judged("bm e4; am e3;", "e1d2"));
}

}  // namespace

}  // namespace zar::tools
