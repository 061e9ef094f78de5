#include "san.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "support/board_support.h"
#include "support/move_support.h"
#include "twin.h"

namespace zar::tools {

namespace {

using test::board_of;
using test::fen_of;
using test::moves_of;
using test::random_walks;
using test::text_of;

std::vector<Move> legal_moves_of(Board& board) {
    MoveList list;
    gen_legal_moves(list, board);
    return moves_of(list);
}

struct Row {
    std::string_view fen;
    std::string_view move;  // in coordinates
    std::string_view text;
};

constexpr std::string_view kCastles = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1";
constexpr std::string_view kKnights = "4k3/8/8/8/8/8/8/1N1K1N2 w - - 0 1";
constexpr std::string_view kRooks = "4k3/R7/8/8/8/8/8/R3K3 w - - 0 1";
constexpr std::string_view kQueens = "7k/8/8/8/Q1Q5/8/Q7/6K1 w - - 0 1";
constexpr std::string_view kPromotions = "1n5k/P7/8/8/8/8/8/K7 w - - 0 1";
constexpr std::string_view kPinned = "4k3/8/8/b7/8/2N5/8/4K1N1 w - - 0 1";

constexpr std::array<Row, 25> rows = {{
    {kStartFen, "e2e4", "e4"},
    {kStartFen, "g1f3", "Nf3"},
    {kCastles, "e1g1", "O-O"},
    {kCastles, "e1c1", "O-O-O"},
    {kCastles, "h1h8", "Rxh8+"},
    {kCastles, "e1e2", "Ke2"},
    {"5k2/8/8/8/8/8/8/4K2R w K - 0 1", "e1g1", "O-O+"},
    {kKnights, "b1d2", "Nbd2"},
    {kKnights, "f1d2", "Nfd2"},
    {kKnights, "b1c3", "Nc3"},
    {kRooks, "a1a4", "R1a4"},
    {kRooks, "a7a4", "R7a4"},
    {kRooks, "a1d1", "Rd1"},
    {kQueens, "a4b3", "Qa4b3"},
    {kQueens, "c4b3", "Qcb3"},
    {kQueens, "a2b3", "Q2b3"},
    {kPromotions, "a7a8q", "a8=Q"},
    {kPromotions, "a7b8q", "axb8=Q+"},
    {kPromotions, "a7b8n", "axb8=N"},
    {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", "exd6"},
    // A pinned knight cannot go there, so the other needs no more than its letter.
    {kPinned, "g1e2", "Ne2"},
    {"rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 1", "d8h4", "Qh4#"},
    {"6k1/5ppp/8/8/8/8/8/K2R4 w - - 0 1", "d1d8", "Rd8#"},
    {"k7/8/1K6/8/8/8/8/2Q5 w - - 0 1", "c1c7", "Qc7"},  // stalemate has no mark
    {"4k3/8/8/8/8/8/4N3/K3R3 w - - 0 1", "e2c3", "Nc3+"},
}};

TEST(San, IsWrittenAsPlayersWriteIt) {
    for (const Row& row : rows) {
        Board board = board_of(row.fen);
        const Move move = move_from_string(row.move, board);
        EXPECT_EQ(row.text, san_of(move, board)) << row.fen << " " << row.move;
        EXPECT_EQ(row.fen, fen_of(board));
    }
}

TEST(San, IsReadBack) {
    for (const Row& row : rows) {
        Board board = board_of(row.fen);
        const SanMove found = san_read(row.text, board);
        EXPECT_EQ(nullptr, found.fault) << row.fen << " " << row.text;
        EXPECT_EQ(row.move, text_of(found.move)) << row.fen << " " << row.text;
    }
}

TEST(San, IsReadInLooserForms) {
    constexpr std::array<Row, 16> loose = {{
        {kStartFen, "e2e4", "e2e4"},
        {kStartFen, "g1f3", "Ng1f3!?"},
        {kStartFen, "g1f3", "Ngf3"},
        {kStartFen, "g1f3", "N1f3"},
        {kStartFen, "g1f3", "Nf3+"},
        {kCastles, "e1g1", "0-0"},
        {kCastles, "e1c1", "0-0-0"},
        {kCastles, "e1c1", "O-O-O!"},
        {kCastles, "h1h8", "Rh8"},
        {kCastles, "h1h8", "Rhxh8+!!"},
        {kPromotions, "a7a8r", "a8R"},
        {kPromotions, "a7b8b", "ab8=B"},
        {kPromotions, "a7b8q", "a7xb8=Q#"},
        {kQueens, "a4b3", "Qa4b3"},
        {kQueens, "c4b3", "Qc4b3"},
        {"4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 1", "e5d6", "ed6"},
    }};
    for (const Row& row : loose) {
        Board board = board_of(row.fen);
        const SanMove found = san_read(row.text, board);
        EXPECT_EQ(nullptr, found.fault) << row.fen << " " << row.text;
        EXPECT_EQ(row.move, text_of(found.move)) << row.fen << " " << row.text;
    }
}

TEST(San, WrongTextsAreToldApart) {
    constexpr std::string_view no_move = "is no move in standard algebraic notation";
    constexpr std::string_view not_legal = "is no legal move";
    constexpr std::string_view ambiguous = "can be more than one move";
    const std::array<Row, 22> wrong = {{
        {kStartFen, "", no_move},       {kStartFen, "x", no_move},
        {kStartFen, "+", no_move},      {kStartFen, "e9", no_move},
        {kStartFen, "i4", no_move},     {kStartFen, "nf3", no_move},
        {kStartFen, "Nf", no_move},     {kStartFen, "Nf3 e5", no_move},
        {kStartFen, "NNf3", no_move},   {kStartFen, "O-O-O-O", no_move},
        {kStartFen, "e4=", no_move},    {kStartFen, "e5", not_legal},
        {kStartFen, "Nd2", not_legal},  {kStartFen, "Nhf3", not_legal},
        {kStartFen, "O-O", not_legal},  {kStartFen, "e4=Q", not_legal},
        {kPinned, "Nce2", not_legal},   {kPromotions, "a8", not_legal},
        {kPromotions, "a8=K", no_move}, {kKnights, "Nd2", ambiguous},
        {kRooks, "Ra4", ambiguous},     {kQueens, "Qab3", ambiguous},
    }};
    for (const Row& row : wrong) {
        Board board = board_of(row.fen);
        const SanMove found = san_read(row.move, board);
        EXPECT_EQ(kMoveNone, found.move) << row.fen << " " << row.move;
        ASSERT_NE(nullptr, found.fault) << row.fen << " " << row.move;
        EXPECT_EQ(row.text, found.fault) << row.fen << " " << row.move;
    }
}

TEST(San, TextsOfAPositionDifferAndReadBack) {
    random_walks(11, 4, 60, [](Board& board) {
        std::set<std::string> texts;
        for (const Move move : legal_moves_of(board)) {
            const std::string text = san_of(move, board);
            EXPECT_TRUE(texts.insert(text).second) << text << " twice in " << fen_of(board);
            const SanMove found = san_read(text, board);
            EXPECT_EQ(move, found.move) << text << " in " << fen_of(board);
        }
    });
}

char man_on(const twin::Position& position, twin::Square square) {
    return position
        .board[static_cast<std::size_t>(square.rank)][static_cast<std::size_t>(square.file)];
}

// How much of the from-square the text of a piece's move must have, counted from all legal moves.
std::string needed_origin(const twin::Position& position, const twin::Move& move,
                          const std::vector<twin::Move>& legal) {
    std::vector<twin::Square> rivals;
    for (const twin::Move& other : legal) {
        const bool same_place =
            other.from.file == move.from.file && other.from.rank == move.from.rank;
        if (!same_place && other.to.file == move.to.file && other.to.rank == move.to.rank &&
            man_on(position, other.from) == man_on(position, move.from)) {
            rivals.push_back(other.from);
        }
    }
    const std::string square = twin::move_to_text(move).substr(0, 2);
    if (rivals.empty()) {
        return "";
    }
    const auto count = [&](auto same) { return std::count_if(rivals.begin(), rivals.end(), same); };
    if (count([&](twin::Square rival) { return rival.file == move.from.file; }) == 0) {
        return square.substr(0, 1);
    }
    if (count([&](twin::Square rival) { return rival.rank == move.from.rank; }) == 0) {
        return square.substr(1, 1);
    }
    return square;
}

std::string expected_text(const twin::Position& position, const twin::Move& move,
                          const std::vector<twin::Move>& legal) {
    const std::string coordinates = twin::move_to_text(move);
    const char man = static_cast<char>(std::toupper(man_on(position, move.from)));
    const bool sideways = move.from.file != move.to.file;
    const bool capture = man_on(position, move.to) != '.' || (man == 'P' && sideways);
    std::string text;
    if (man == 'K' && std::abs(move.from.file - move.to.file) == 2) {
        text = move.to.file == 6 ? "O-O" : "O-O-O";
    } else {
        const std::string origin = man == 'P' ? (capture ? coordinates.substr(0, 1) : "")
                                              : man + needed_origin(position, move, legal);
        text = origin + (capture ? "x" : "") + coordinates.substr(2, 2);
        if (move.promotion != 0) {
            text += {'=', static_cast<char>(std::toupper(move.promotion))};
        }
    }
    const twin::Position after = twin::position_after(position, move);
    return text + (twin::is_mate(after) ? "#" : twin::is_check(after) ? "+" : "");
}

TEST(San, AgreesWithTheSecondSetOfRules) {
    random_walks(12, 2, 50, [](Board& board) {
        const std::string fen = fen_of(board);
        const auto position = twin::position_from_fen(fen);
        ASSERT_TRUE(position) << fen;
        const std::vector<twin::Move> legal = twin::generate_legal_moves(*position);
        ASSERT_EQ(legal.size(), legal_moves_of(board).size()) << fen;
        for (const twin::Move& move : legal) {
            const std::string coordinates = twin::move_to_text(move);
            EXPECT_EQ(expected_text(*position, move, legal),
                      san_of(move_from_string(coordinates, board), board))
                << coordinates << " in " << fen;
        }
    });
}

TEST(San, ALineIsWrittenUpToWhatIsNotLegal) {
    Board board = board_of(kStartFen);
    const auto move = [](std::string_view from, std::string_view to) {
        return move_make(square_from_string(from), square_from_string(to));
    };
    const std::array<Move, 6> good = {move("e2", "e4"), move("e7", "e5"), move("g1", "f3"),
                                      move("b8", "c6"), move("f1", "b5"), kMoveNone};
    EXPECT_EQ("e4 e5 Nf3 Nc6 Bb5", san_line(good.data(), 256, board));
    EXPECT_EQ("e4 e5", san_line(good.data(), 2, board));
    const std::array<Move, 5> bad = {move("e2", "e4"), move("e7", "e5"), move("e1", "e3"),
                                     move("b8", "c6"), kMoveNone};
    EXPECT_EQ("e4 e5", san_line(bad.data(), 256, board));
    EXPECT_EQ("", san_line(good.data() + 5, 256, board));
    EXPECT_EQ(std::string(kStartFen), fen_of(board));
}

}  // namespace

}  // namespace zar::tools
