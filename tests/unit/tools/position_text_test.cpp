#include "position_text.h"

#include <array>
#include <string>
#include <string_view>

#include "board/fen.h"
#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/move_support.h"

namespace zar::tools {

namespace {

constexpr std::string_view kFields = "4k3/8/8/8/8/8/4P3/4K3 w - -";

std::string with(std::string_view text) { return std::string(kFields) + std::string(text); }

TEST(PositionText, PartsOfAText) {
    struct Row {
        std::string text;
        std::string fen;
        std::string moves;
        std::string rest;
    };
    const std::string start(kStartFen);
    const std::array<Row, 12> rows = {{
        {"startpos", start, "", ""},
        {"startpos moves e2e4  e7e5 ", start, "e2e4 e7e5", ""},
        {"position startpos moves e2e4", start, "e2e4", ""},
        {"startpos e2e4", start + " e2e4", "", "e2e4"},
        {"fen " + with(" 3 4"), with(" 3 4"), "", ""},
        {with(" moves e2e4"), with(""), "e2e4", ""},
        {with(" 3 moves e2e4"), with(" 3"), "e2e4", ""},
        {with(" 3 4 moves"), with(" 3 4"), "", ""},
        {with(" bm e4; c0 all moves;"), with(" bm e4; c0 all moves;"), "", "bm e4; c0 all moves;"},
        {with(" 3 4 5"), with(" 3 4 5"), "", "5"},
        {" " + with(""), " " + with(""), "", ""},  // a fault of a FEN stays one
        {"", "", "", ""},
    }};
    for (const Row& row : rows) {
        const PositionText parts = position_split(row.text);
        EXPECT_EQ(row.fen, parts.fen) << row.text;
        EXPECT_EQ(row.moves, parts.moves) << row.text;
        EXPECT_EQ(row.rest, parts.rest) << row.text;
    }
}

TEST(PositionText, MovesArePlayedUpToTheFirstThatIsNotLegal) {
    Board board = test::board_of(kStartFen);
    EXPECT_EQ("", position_play(board, "e2e4 Nf6"));
    EXPECT_EQ("'e4e6' is no legal move", position_play(board, "e4e5 d5 e4e6 d7d6"));
    EXPECT_EQ("rnbqkb1r/ppp1pppp/5n2/3pP3/8/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 1",
              test::fen_of(board));
}

TEST(PositionText, MoreMovesThanTheHistoryHasRoomFor) {
    std::string moves;
    for (int round = 0; round < 2500; ++round) {
        moves += "g1f3 g8f6 f3g1 f6g8 ";
    }
    Board board = test::board_of(kStartFen);
    EXPECT_EQ("", position_play(board, moves));
    EXPECT_EQ("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 10000 1", test::fen_of(board));
}

TEST(PositionText, BlanksOfAnyKindAndNumberAreOne) {
    EXPECT_EQ("a b c", single_blanks(" a\t b\r\n  c "));
    Board board;
    EXPECT_EQ("", position_read(board, "  4k3/8/8/8/8/8/4P3/4K3\tw  - - "));
    EXPECT_EQ(with(" 0 1"), test::fen_of(board));
}

}  // namespace

}  // namespace zar::tools
