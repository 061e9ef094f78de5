// FEN texts cut short and with bytes replaced: each is read to a sound board or is a known fault.

#include <array>
#include <string>
#include <string_view>

#include "board/fen.h"
#include "gtest/gtest.h"
#include "support/fatal_support.h"
#include "support/letter_board.h"
#include "support/move_support.h"
#include "twin.h"

namespace zar {
namespace {

using test::fen_of;

constexpr std::array<std::string_view, 5> kTexts = {
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 12 34",
    "rnbqkb1r/ppp1p1pp/5n2/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
    "4k3/8/8/8/Pp5p/8/8/R3K2R b KQ a3 0 1",
    "8/8/1p1k4/p1p2p1p/P1P2P1P/1P1K4/8/8 b - - 99 40",
    "3qk3/qqqqqqqq/8/8/8/8/QQQQQQQQ/3QK3 w - - 0 1",
};

// Twenty bytes: men, digits and letters out of place, separators, and what is no text.
constexpr std::string_view kNastyBytes("\0\n\r\t /-09p8KkPqwba\x80\xff", 20);

Board scratch;
std::string_view scratch_text;
int accepted = 0;
int refused = 0;

std::string fatal_of(std::string_view fen) {
    scratch_text = fen;
    return test::fatal_text_of([] { board_from_fen(scratch, scratch_text); });
}

// "X-Error 4EFN1BF1" to BF9 and "X-Error 2EB1IP2" to IP6, with a newline.
bool is_known_fault(const std::string& text) {
    const std::string_view codes = "X-Error 4EFN1BF";
    const std::string_view positions = "X-Error 2EB1IP";
    const auto has_digit = [&](std::string_view head, char first, char last) {
        return text.size() == head.size() + 2 && text.starts_with(head) &&
               text[head.size()] >= first && text[head.size()] <= last && text.back() == '\n';
    };
    return has_digit(codes, '1', '9') || has_digit(positions, '2', '6');
}

// A board that was accepted holds together, is legal by the twin's rules, and reads back.
void expect_sound_or_fault(const std::string& text) {
    const std::string fault = fatal_of(text);
    if (!fault.empty()) {
        ++refused;
        ASSERT_TRUE(is_known_fault(fault)) << '"' << text << "\": " << fault;
        return;
    }
    ++accepted;
    ASSERT_TRUE(board_consistent(scratch)) << text;
    const std::string fen = fen_of(scratch);
    const auto position = twin::position_from_fen(fen);
    ASSERT_TRUE(position.has_value()) << '"' << text << "\" was read as " << fen;
    ASSERT_EQ(twin::position_to_fen(*position), fen) << text;
    ASSERT_EQ(fatal_of(fen), "") << fen;
    ASSERT_EQ(fen_of(scratch), fen) << text;
}

class DamagedFen : public ::testing::Test {
  protected:
    void SetUp() override {
        accepted = 0;
        refused = 0;
    }
    // Ten white bishops only warn.
    void TearDown() override { static_cast<void>(test::take_warnings()); }
};

TEST_F(DamagedFen, TextsCutShortAreReadOrRefused) {
    for (const std::string_view whole : kTexts) {
        for (std::size_t size = 0; size <= whole.size(); ++size) {
            ASSERT_NO_FATAL_FAILURE(expect_sound_or_fault(std::string(whole.substr(0, size))));
        }
    }
    // Four fields are enough, and nothing shorter is.
    EXPECT_GE(accepted, 25);
    EXPECT_GE(refused, 200);
}

TEST_F(DamagedFen, TextsWithAByteReplacedAreReadOrRefused) {
    for (const std::string_view whole : kTexts) {
        for (std::size_t place = 0; place < whole.size(); ++place) {
            for (const char byte : kNastyBytes) {
                std::string text(whole);
                text[place] = byte;
                ASSERT_NO_FATAL_FAILURE(expect_sound_or_fault(text));
            }
        }
    }
    EXPECT_GE(accepted, 600);
    EXPECT_GE(refused, 4000);
}

TEST_F(DamagedFen, TextsWithAByteMissingOrTwiceAreReadOrRefused) {
    for (const std::string_view whole : kTexts) {
        for (std::size_t place = 0; place < whole.size(); ++place) {
            ASSERT_NO_FATAL_FAILURE(expect_sound_or_fault(std::string(whole).erase(place, 1)));
            ASSERT_NO_FATAL_FAILURE(
                expect_sound_or_fault(std::string(whole).insert(place, 1, whole[place])));
        }
    }
    EXPECT_GE(accepted, 50);
    EXPECT_GE(refused, 300);
}

TEST_F(DamagedFen, AClockBeyondAllNumbersIsTheHighest) {
    for (const char* const clock : {"1000000000000", "9223372036854775808", "4294967296"}) {
        const std::string text = "4k3/8/8/8/8/8/8/4K2R w K - " + std::string(clock) + " 1";
        ASSERT_EQ(fatal_of(text), "") << text;
        EXPECT_EQ(fen_of(scratch), "4k3/8/8/8/8/8/8/4K2R w K - 1000 1") << text;
    }
}

}  // namespace
}  // namespace zar
