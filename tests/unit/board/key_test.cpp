#include "board/key.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_after;
using test::board_of;

// The key as the book format defines it, from a board of letters.
std::uint64_t book_key(const twin::Position& position) {
    constexpr std::string_view kinds = "pPnNbBrRqQkK";
    std::uint64_t key = 0;
    for (std::size_t rank = 0; rank < 8; ++rank) {
        for (std::size_t file = 0; file < 8; ++file) {
            const std::size_t kind = kinds.find(position.board[rank][file]);
            if (kind != std::string_view::npos) {
                key ^= random64[64 * kind + 8 * rank + file];
            }
        }
    }
    for (std::size_t right = 0; right < 4; ++right) {
        key ^= position.castling[right] ? random64[768 + right] : 0;
    }
    key ^= position.ep_file >= 0 ? random64[772 + static_cast<std::size_t>(position.ep_file)] : 0;
    return key ^ (position.white_to_move ? random64[780] : 0);
}

std::uint64_t pawn_book_key(twin::Position position) {
    for (auto& rank : position.board) {
        for (char& letter : rank) {
            letter = letter == 'P' || letter == 'p' ? letter : '.';
        }
    }
    position.castling = {};
    position.ep_file = -1;
    position.white_to_move = false;
    return book_key(position);
}

std::uint64_t material_key(const twin::Position& position) {
    constexpr std::string_view kinds = "PpNnBbRrQqKk";
    std::uint64_t key = 0;
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        std::size_t count = 0;
        for (const auto& rank : position.board) {
            for (const char letter : rank) {
                key ^= letter == kinds[kind] ? random64[16 * kind + count++] : 0;
            }
        }
    }
    return key;
}

TEST(Key, TheNumbersAreThoseOfTheBookFormat) {
    ASSERT_EQ(random64.size(), 781U);
    EXPECT_EQ(random64[0], 0x9D39247E33776D41U);
    EXPECT_EQ(random64[767], 0xD20D8C88C8FFE65FU);
    EXPECT_EQ(random64[768], 0x31D71DCE64B2C310U);
    EXPECT_EQ(random64[780], 0xF8D626AAAF278509U);
    EXPECT_EQ(std::set<std::uint64_t>(random64.begin(), random64.end()).size(), 781U);
    // FNV-1a over the bytes, least significant first: one changed digit anywhere changes it.
    std::uint64_t checksum = 0xCBF29CE484222325U;
    for (const std::uint64_t number : random64) {
        for (int byte = 0; byte < 8; ++byte) {
            checksum = (checksum ^ (number >> 8 * byte & 0xFF)) * 0x100000001B3U;
        }
    }
    EXPECT_EQ(checksum, 0x6C25BE54E4F62B13U);
}

TEST(Key, PublishedBookKeysAreReached) {
    struct Row {
        std::string_view moves;
        std::uint64_t key;
    };
    const std::vector<Row> rows = {
        {"", 0x463B96181691FC9CU},
        {"e2e4", 0x823C9B50FD114196U},
        {"e2e4 d7d5", 0x0756B94461C50FB0U},
        {"e2e4 d7d5 e4e5", 0x662FAFB965DB29D4U},
        {"e2e4 d7d5 e4e5 f7f5", 0x22A48B5A8E47FF78U},
        {"e2e4 d7d5 e4e5 f7f5 e1e2", 0x652A607CA3F242C1U},
        {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00FDD303C946BDD9U},
        {"a2a4 b7b5 h2h4 b5b4 c2c4", 0x3C8123EA7B067637U},
        {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3", 0x5C3F9B829B279560U},
    };
    for (const Row& row : rows) {
        const Board board = board_after(kStartFen, row.moves);
        EXPECT_EQ(board.key, row.key) << row.moves;
        EXPECT_EQ(board_of(test::fen_of(board)).key, row.key) << row.moves;
    }
}

TEST(Key, TheEnPassantTermIsThereOnlyWhenAPawnCanTake) {
    EXPECT_EQ(board_after(kStartFen, "e2e4").ep_square, kNoSquare);
    const Board board = board_after(kStartFen, "e2e4 d7d5 e4e5 f7f5");
    EXPECT_EQ(board.ep_square, kF6);
    const Board without = board_of("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq - 0 3");
    EXPECT_EQ(board.key ^ without.key, random64[772 + 5]);
}

TEST(Key, CastlingTermsAreSumsOfTheirRights) {
    EXPECT_EQ(castle_key_of(0), 0U);
    for (int flags = 0; flags < 16; ++flags) {
        std::uint64_t key = 0;
        for (int bit = 0; bit < 4; ++bit) {
            key ^= (flags & 1 << bit) != 0 ? random64[768 + static_cast<std::size_t>(bit)] : 0;
        }
        EXPECT_EQ(castle_key_of(flags), key) << flags;
    }
}

TEST(Key, SingleTerms) {
    EXPECT_EQ(piece_key_of(kBlackPawn12, 0), random64[0]);
    EXPECT_EQ(piece_key_of(kWhitePawn12, 63), random64[127]);
    EXPECT_EQ(piece_key_of(kWhiteKing12, 4), random64[11 * 64 + 4]);
    EXPECT_EQ(piece_key_of(kBlackKing12, 60), random64[10 * 64 + 60]);
    EXPECT_EQ(ep_key_of(kA3), random64[772]);
    EXPECT_EQ(ep_key_of(kH6), random64[779]);
    EXPECT_EQ(turn_key_of(kWhite), random64[780]);
    EXPECT_EQ(turn_key_of(kBlack), 0U);
    EXPECT_EQ(material_key_of(kBlackKing12, 0), random64[176]);
    EXPECT_EQ(material_key_of(kBlackPawn12, 7), random64[23]);
}

TEST(Key, WithoutPawnsThePawnKeyIsZero) {
    EXPECT_EQ(board_of("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1").pawn_key, 0U);
    EXPECT_NE(board_of("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1").pawn_key, 0U);
}

TEST(Key, BareKingsHaveTheMaterialKeyOfTwoMen) {
    EXPECT_EQ(board_of("4k3/8/8/8/8/8/8/4K3 b - - 0 1").material_key,
              random64[160] ^ random64[176]);
}

TEST(Key, ThePawnKeyKnowsPawnsOnlyAndTheMaterialKeyCountsOnly) {
    const Board board = board_of("r3k2r/pp6/8/8/8/8/6PP/R3K2R w KQkq - 0 1");
    const Board moved = board_of("3rk3/pp5r/8/8/8/8/6PP/1R2K1R1 b - - 9 1");
    EXPECT_EQ(board.pawn_key, moved.pawn_key);
    EXPECT_EQ(board.material_key, moved.material_key);
    const Board pushed = board_of("r3k2r/pp6/8/8/8/7P/6P1/R3K2R w KQkq - 0 1");
    EXPECT_NE(board.pawn_key, pushed.pawn_key);
    EXPECT_EQ(board.material_key, pushed.material_key);
    const Board traded = board_of("r3k2r/p7/8/8/8/8/6PP/R3K2R w KQkq - 0 1");
    EXPECT_NE(board.material_key, traded.material_key);
}

TEST(Key, AllThreeKeysAgreeWithABoardOfLettersAlongRandomGames) {
    test::random_walks(2, 6, 80, [](const Board& board) {
        const twin::Position position = test::twin_of(board);
        ASSERT_EQ(board.key, book_key(position)) << test::fen_of(board);
        ASSERT_EQ(board.pawn_key, pawn_book_key(position)) << test::fen_of(board);
        ASSERT_EQ(board.material_key, material_key(position)) << test::fen_of(board);
        ASSERT_EQ(key_compute(board), board.key);
        ASSERT_EQ(pawn_key_compute(board), board.pawn_key);
        ASSERT_EQ(material_key_compute(board), board.material_key);
    });
}

}  // namespace
}  // namespace zar
