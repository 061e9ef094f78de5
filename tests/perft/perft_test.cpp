// Leaves of the legal move tree: published counts, counts of the rules alone, and the lists of
// legal moves along random games.

#include "board/perft.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "board/fen.h"
#include "board/movegen.h"
#include "gtest/gtest.h"
#include "perft_rows.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of;
using test::Texts;

// What a build with all its assertions can count in a few seconds a position.
constexpr std::uint64_t kMostLeaves = 450'000;

void expect_counts(const std::string& file, std::size_t positions) {
    const std::vector<twin::PerftRow> rows = twin::read_perft_rows(file);
    ASSERT_EQ(rows.size(), positions);
    for (const twin::PerftRow& row : rows) {
        const Board start = board_of(row.fen);
        Board board = start;
        for (const twin::PerftCount& count : row.counts) {
            if (count.moves > kMostLeaves) {
                continue;
            }
            EXPECT_EQ(perft(board, count.depth), count.moves)
                << "depth " << count.depth << " of " << row.fen << " " << row.id;
            ASSERT_EQ(test::difference(board, start), "") << row.fen;
        }
    }
}

TEST(Perft, DepthZeroIsOneLeaf) {
    Board board = board_of(kStartFen);
    EXPECT_EQ(perft(board, 0), 1U);
    EXPECT_EQ(perft(board, -1), 1U);
}

TEST(Perft, MateAndStalemateHaveNoLeaves) {
    for (const char* fen : {"k7/2Q5/8/8/8/8/8/1K6 b - - 0 1",
                            "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"}) {
        Board board = board_of(fen);
        EXPECT_EQ(perft(board, 1), 0U) << fen;
        EXPECT_EQ(perft(board, 3), 0U) << fen;
    }
}

TEST(Perft, TheClassicPositionsHaveTheirPublishedCounts) { expect_counts("perft.epd", 6); }

TEST(Perft, CastlingEnPassantPromotionPinsAndDoubleChecksAreCounted) {
    expect_counts("rules.epd", 50);
}

TEST(Perft, TheRulesAloneGiveTheSameCounts) {
    for (const twin::PerftRow& row : twin::read_perft_rows("rules.epd")) {
        Board board = board_of(row.fen);
        const twin::Position position = test::twin_of(row.fen);
        for (const int depth : {1, 2}) {
            EXPECT_EQ(perft(board, depth), twin::perft(position, depth)) << depth << " " << row.fen;
        }
    }
}

TEST(Perft, LegalMovesAreThoseOfTheRulesAlongRandomGames) {
    int positions = 0;
    test::random_walks(20, 8, 100, [&positions](const Board& seen) {
        Board board = seen;
        MoveList list;
        gen_legal_moves(list, board);
        Texts texts = test::texts_of(list);
        std::sort(texts.begin(), texts.end());
        ASSERT_EQ(texts, twin::legal_moves(test::twin_of(seen))) << fen_of(seen);
        ASSERT_EQ(test::difference(board, seen), "") << fen_of(seen);
        ++positions;
    });
    EXPECT_GT(positions, 3000);
}

}  // namespace
}  // namespace zar
