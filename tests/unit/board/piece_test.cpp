#include "board/piece.h"

#include <cstddef>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"

namespace zar {
namespace {

struct Row {
    Piece code;
    int index;
    char letter;
    int type;
    int value;
};

const std::vector<Row> rows = {
    {5, 0, 'P', 0, 100},   {10, 1, 'p', 0, 100},     {17, 2, 'N', 1, 300},
    {18, 3, 'n', 1, 300},  {33, 4, 'B', 2, 325},     {34, 5, 'b', 2, 325},
    {65, 6, 'R', 3, 500},  {66, 7, 'r', 3, 500},     {97, 8, 'Q', 4, 1000},
    {98, 9, 'q', 4, 1000}, {129, 10, 'K', 5, 10000}, {130, 11, 'k', 5, 10000},
};

const Row* row_of(Piece code) {
    for (const Row& row : rows) {
        if (row.code == code) {
            return &row;
        }
    }
    return nullptr;
}

TEST(Piece, TheTwelveCodesHaveIndexLetterTypeAndValue) {
    for (const Row& row : rows) {
        EXPECT_EQ(piece_of_12(row.index), row.code);
        EXPECT_EQ(piece12_of(row.code), row.index);
        EXPECT_EQ(piece_type_of(row.code), row.type) << row.letter;
        EXPECT_EQ(piece_value_of(row.code), row.value) << row.letter;
        EXPECT_EQ(piece_from_char(row.letter), row.code);
        EXPECT_EQ(piece_to_char(row.code), row.letter);
    }
    EXPECT_EQ(piece_of_12(12), 5);
    EXPECT_EQ(piece_of_12(13), 10);
}

TEST(Piece, EveryOtherCodeIsNoPiece) {
    for (Piece code = 0; code < 256; ++code) {
        EXPECT_EQ(piece_is_ok(code), row_of(code) != nullptr) << code;
        if (row_of(code) == nullptr) {
            EXPECT_EQ(piece12_of(code), -1) << code;
            EXPECT_EQ(piece_type_of(code), -1) << code;
            EXPECT_EQ(piece_value_of(code), code == kEmpty || code == kEdge ? 0 : -1) << code;
            EXPECT_TRUE(piece_steps(code).empty()) << code;
        }
    }
    EXPECT_FALSE(piece_is_ok(-1));
    EXPECT_FALSE(piece_is_ok(256));
    EXPECT_FALSE(piece_is_ok(256 + 5));
}

TEST(Piece, EveryOtherCharacterIsNoLetter) {
    int letters = 0;
    for (int character = 0; character < 256; ++character) {
        letters += piece_from_char(static_cast<char>(character)) != kEmpty ? 1 : 0;
    }
    EXPECT_EQ(letters, 12);
    EXPECT_EQ(piece_from_char('\0'), kEmpty);
    EXPECT_EQ(piece_from_char('x'), kEmpty);
}

TEST(Piece, BitsTellColourAndKind) {
    for (const Row& row : rows) {
        const Color color = row.index % 2;
        EXPECT_EQ(piece_color(row.code), color) << row.letter;
        EXPECT_EQ(row.code & 3, color_bit(color)) << row.letter;
        EXPECT_EQ(piece_is_pawn(row.code), row.type == kPawn) << row.letter;
        EXPECT_EQ(piece_is_king(row.code), row.type == kKing) << row.letter;
        EXPECT_EQ(piece_is_slider(row.code), row.type >= kBishop && row.type <= kQueen)
            << row.letter;
        EXPECT_EQ((row.code & kBishopBit) != 0, row.type == kBishop || row.type == kQueen);
        EXPECT_EQ((row.code & kRookBit) != 0, row.type == kRook || row.type == kQueen);
        EXPECT_EQ(piece12_make(static_cast<PieceType>(row.type), color), row.index);
    }
    EXPECT_EQ(pawn_of(kWhite), 5);
    EXPECT_EQ(pawn_of(kBlack), 10);
    EXPECT_EQ(king_of(kWhite), 129);
    EXPECT_EQ(king_of(kBlack), 130);
}

TEST(Piece, AnEdgeCellIsNobodysMan) {
    EXPECT_EQ(kEdge, 16);
    EXPECT_EQ(kEdge & color_bit(kWhite), 0);
    EXPECT_EQ(kEdge & color_bit(kBlack), 0);
    EXPECT_NE(kEdge, kEmpty);
    EXPECT_FALSE(piece_is_slider(kEdge));
}

TEST(Piece, StepsStandInTheOrderOfGeneration) {
    const auto steps_of = [](Piece piece) {
        const auto steps = piece_steps(piece);
        return std::vector<int>(steps.begin(), steps.end());
    };
    const std::vector<int> knight = {-33, -31, -18, -14, 14, 18, 31, 33};
    const std::vector<int> bishop = {-17, -15, 15, 17};
    const std::vector<int> rook = {-16, -1, 1, 16};
    const std::vector<int> royal = {-17, -16, -15, -1, 1, 15, 16, 17};
    for (const Color color : {kWhite, kBlack}) {
        const int bit = color_bit(color);
        EXPECT_EQ(steps_of(kKnightBit | bit), knight);
        EXPECT_EQ(steps_of(kBishopBit | bit), bishop);
        EXPECT_EQ(steps_of(kRookBit | bit), rook);
        EXPECT_EQ(steps_of(kSliderBits | bit), royal);
        EXPECT_EQ(steps_of(kKingBit | bit), royal);
        EXPECT_TRUE(steps_of(pawn_of(color)).empty());
    }
}

}  // namespace
}  // namespace zar
