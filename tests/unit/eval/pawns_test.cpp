#include "eval/pawns.h"

#include <string>
#include <vector>

#include "board/geometry.h"
#include "eval/weights.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using Pawns = test::EvalTest;

// Scores are White's minus Black's raw scores times 333 / 256.
struct ScoreRow {
    const char* what;
    const char* fen;
    ScorePair score;
};

void expect_scores(const std::vector<ScoreRow>& rows) {
    for (const ScoreRow& row : rows) {
        for (const bool swapped : {false, true}) {
            const std::string fen = swapped ? test::fen_swap_colors(row.fen) : row.fen;
            PawnRecord record;
            evaluate_pawns(record, board_of(fen), 0);
            const ScorePair expected = swapped ? ScorePair{} - row.score : row.score;
            EXPECT_EQ((ScorePair{record.opening, record.endgame}), expected) << row.what << "\n"
                                                                             << fen;
        }
    }
}

TEST_F(Pawns, InterpolationRisesFromRankFourToSeven) {
    EXPECT_EQ(interpolate(5, 55, 2), 5);
    EXPECT_EQ(interpolate(5, 55, 3), 5);
    EXPECT_EQ(interpolate(5, 55, 4), 10);
    EXPECT_EQ(interpolate(5, 55, 5), 20);
    EXPECT_EQ(interpolate(5, 55, 6), 35);
    EXPECT_EQ(interpolate(5, 55, 7), 55);
    EXPECT_EQ(interpolate(10, 110, 4), 20);
    EXPECT_EQ(interpolate(10, 110, 5), 40);
    EXPECT_EQ(interpolate(10, 110, 6), 70);
    EXPECT_EQ(interpolate(10, 110, 7), 110);
}

TEST_F(Pawns, InterpolationTruncatesTowardZero) {
    EXPECT_EQ(interpolate(0, 100, 5), 30);
    EXPECT_EQ(interpolate(0, -100, 5), -29);
}

TEST_F(Pawns, WithoutPawnsTheRecordIsZero) {
    const std::string fen = "4k3/8/8/3n4/8/8/8/Q3K3 w - - 0 1";
    const Board board = board_of(fen);
    ASSERT_EQ(board.pawn_key, 0U);
    for (int pass = 0; pass < 2; ++pass) {
        const PawnRecord record = pawns_of(board);
        EXPECT_EQ(record.lock, 0U);
        EXPECT_EQ(record.opening, 0);
        EXPECT_EQ(record.endgame, 0);
        for (std::size_t side = 0; side < 2; ++side) {
            EXPECT_EQ(record.second_rank[side], 0) << fen;
            EXPECT_EQ(record.passed_files[side], 0) << fen;
            EXPECT_EQ(record.lone_pawn[side], 0) << fen;
        }
    }
}

TEST_F(Pawns, TheStartPositionIsBalanced) {
    expect_scores({{"start", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1", {0, 0}}});
}

TEST_F(Pawns, OnlyTheFrontPawnOfAPairIsDoubled) {
    // 10 / 20 for e3 doubled, 10 / 20 for e2 isolated and closed, 20 / 20 for e3 isolated and open.
    expect_scores({{"pair", "4k3/8/8/8/8/4P3/4P3/4K3 w - - 0 1", {-52, -78}}});
}

TEST_F(Pawns, IsolatedPawnsCostMoreOnAnOpenFile) {
    expect_scores({
        {"open", "4k3/8/8/8/4P3/8/8/4K3 w - - 0 1", {-26, -26}},
        {"open on the edge", "4k3/8/8/8/P7/8/8/4K3 w - - 0 1", {-26, -26}},
        // Black's d7 and e6 protect each other.
        {"closed", "4k3/3p4/4p3/8/4P3/8/8/4K3 w - - 0 1", {-13, -26}},
    });
}

TEST_F(Pawns, APawnLeftBehindByItsNeighboursIsBackward) {
    expect_scores({
        {"neighbour two ranks ahead", "4k3/8/8/3P4/8/4P3/8/4K3 w - - 0 1", {-20, -13}},
        // e3 -8 / -10; Black's e6 -10 / -20.
        {"neighbour beyond a double step", "4k3/8/8/3P4/8/8/4P3/4K3 w - - 0 1", {-20, -13}},
        {"one such pawn, closed", "4k3/8/4p3/3P4/8/4P3/8/4K3 w - - 0 1", {2, 13}},
    });
}

TEST_F(Pawns, APawnThatCanReachItsNeighbourIsNotBackward) {
    expect_scores({
        {"one step", "4k3/8/8/8/3P4/4P3/8/4K3 w - - 0 1", {0, 0}},
        {"double step", "4k3/8/8/8/3P4/8/4P3/4K3 w - - 0 1", {0, 0}},
        {"neighbours level", "4k3/8/8/8/3PP3/8/8/4K3 w - - 0 1", {0, 0}},
    });
}

TEST_F(Pawns, AGuardedOrBlockedStepMakesAPawnBackward) {
    expect_scores({
        // Black's lone pawn is isolated: 20 / 20 where its file is open, 10 / 20 where not.
        {"one step, attacked", "4k3/8/8/5p2/3P4/4P3/8/4K3 w - - 0 1", {5, 13}},
        {"one step, enemy too far", "4k3/8/5p2/8/3P4/4P3/8/4K3 w - - 0 1", {26, 26}},
        {"one step, blocked", "4k3/8/8/8/3Pp3/4P3/8/4K3 w - - 0 1", {2, 13}},
        {"double step, attacked", "4k3/8/8/5p2/3P4/8/4P3/4K3 w - - 0 1", {5, 13}},
        {"double step, enemy too far", "4k3/8/5p2/8/3P4/8/4P3/4K3 w - - 0 1", {26, 26}},
        {"double step, blocked", "4k3/8/8/8/3Pp3/8/4P3/4K3 w - - 0 1", {2, 13}},
        {"double step, block too far", "4k3/8/8/4p3/3P4/8/4P3/4K3 w - - 0 1", {13, 26}},
    });
}

TEST_F(Pawns, ACandidateIsHelpedAgainstTheGuardsOfItsWay) {
    expect_scores({
        // e5 with f4 against d6: 20 / 40, and d6 is isolated.
        {"candidate", "4k3/8/3p4/4P3/5P2/8/8/4K3 w - - 0 1", {52, 78}},
        // e4 beside d4 against f6, which does not attack e5: 10 / 20, and f6 is isolated.
        {"guarded further on", "4k3/8/5p2/8/3PP3/8/8/4K3 w - - 0 1", {39, 52}},
        // d5 has a helper on e3 but no defender against e6 (the case of the closed backward pawn).
        {"attacked, not defended", "4k3/8/4p3/3P4/8/4P3/8/4K3 w - - 0 1", {2, 13}},
        // Guards on both sides count twice: d6 -20 / -20 and f6 -10 / -20, no candidate.
        {"two guards, one helper", "4k3/8/3p1p2/4P3/5P2/8/8/4K3 w - - 0 1", {39, 52}},
    });
}

TEST_F(Pawns, APassedPawnIsNotACandidateToo) {
    const Board board = board_of("4k3/8/8/8/3PP3/8/8/4K3 w - - 0 1");
    const PawnRecord record = pawns_of(board);
    EXPECT_EQ(record.passed_files[kWhite], 0b00011000);
    EXPECT_EQ(record.opening, 0);
    EXPECT_EQ(record.endgame, 0);
}

TEST_F(Pawns, PassedPawnsAreFoundByFile) {
    struct Row {
        const char* fen;
        int white;
        int black;
    };
    const std::vector<Row> rows = {
        {"4k3/8/8/8/4P3/8/8/4K3 w - - 0 1", 0b00010000, 0},
        {"4k3/8/4p3/8/4P3/8/8/4K3 w - - 0 1", 0, 0},
        {"4k3/8/3p4/8/4P3/8/8/4K3 w - - 0 1", 0, 0},
        {"4k3/8/8/8/3pP3/8/8/4K3 w - - 0 1", 0b00010000, 0b00001000},
        {"4k3/8/8/3P4/4p3/8/8/4K3 w - - 0 1", 0b00001000, 0b00010000},
        {"4k3/8/8/P7/P6p/7p/8/4K3 w - - 0 1", 0b00000001, 0b10000000},
        {"4k3/1p6/8/P7/8/8/8/4K3 w - - 0 1", 0, 0},
    };
    for (const Row& row : rows) {
        const PawnRecord record = pawns_of(board_of(row.fen));
        EXPECT_EQ(record.passed_files[kWhite], row.white) << row.fen;
        EXPECT_EQ(record.passed_files[kBlack], row.black) << row.fen;
    }
}

TEST_F(Pawns, SecondRankFlagsAreSetFromTheOwnSide) {
    struct Row {
        const char* fen;
        int white;
        int black;
    };
    const std::vector<Row> rows = {
        {"4k3/8/8/8/8/8/P7/4K3 w - - 0 1", 1, 0},
        {"4k3/7p/8/8/8/8/8/4K3 w - - 0 1", 0, 1},
        {"4k3/P7/8/8/8/8/7p/4K3 w - - 0 1", 0, 0},
        {"4k3/p7/8/8/8/8/7P/4K3 w - - 0 1", 1, 1},
    };
    for (const Row& row : rows) {
        const PawnRecord record = pawns_of(board_of(row.fen));
        EXPECT_EQ(record.second_rank[kWhite], row.white) << row.fen;
        EXPECT_EQ(record.second_rank[kBlack], row.black) << row.fen;
    }
}

TEST_F(Pawns, LonePawnIsTheMostAdvancedOfASingleFileWithoutGuardsAhead) {
    struct Row {
        const char* fen;
        Square white;
        Square black;
    };
    const std::vector<Row> rows = {
        {"4k3/8/8/8/4P3/8/4P3/4K3 w - - 0 1", kE4, kNoSquare},
        {"4k3/8/8/8/4P3/3p4/4P3/4K3 w - - 0 1", kNoSquare, kNoSquare},
        // Level with the rearmost is not ahead of it. e4 is behind d2 in Black's eyes, so is e2.
        {"4k3/8/8/8/4P3/8/3pP3/4K3 w - - 0 1", kE4, kD2},
        {"4k3/8/4p3/8/4P3/8/4P3/4K3 w - - 0 1", kE4, kE6},
        {"4k3/7p/8/7p/8/8/8/4K3 w - - 0 1", kNoSquare, kH5},
        {"4k3/7p/6P1/7p/8/8/8/4K3 w - - 0 1", kNoSquare, kNoSquare},
        {"4k3/6Pp/8/7p/8/8/8/4K3 w - - 0 1", kG7, kH5},
        {"4k3/8/8/8/4P3/8/3P4/4K3 w - - 0 1", kNoSquare, kNoSquare},
        {"4k3/8/8/8/P7/8/8/4K3 w - - 0 1", kA4, kNoSquare},
    };
    for (const Row& row : rows) {
        const PawnRecord record = pawns_of(board_of(row.fen));
        EXPECT_EQ(record.lone_pawn[kWhite], row.white) << row.fen;
        EXPECT_EQ(record.lone_pawn[kBlack], row.black) << row.fen;
    }
}

TEST_F(Pawns, MostAdvancedPawnOfAFile) {
    const Board board = board_of("4k3/4p3/4p3/8/8/4P3/4P3/4K3 w - - 0 1");
    EXPECT_EQ(most_advanced_pawn(board, kWhite, square_column(kE1)), kE3);
    EXPECT_EQ(most_advanced_pawn(board, kBlack, square_column(kE1)), kE6);
}

TEST_F(Pawns, BelowLevelSevenOnlyTheScoresVanish) {
    set_level(6);
    const PawnRecord record = pawns_of(board_of("4k3/8/8/8/8/4P3/4P3/4K3 w - - 0 1"));
    EXPECT_EQ(record.opening, 0);
    EXPECT_EQ(record.endgame, 0);
    EXPECT_EQ(record.passed_files[kWhite], 0b00010000);
    EXPECT_EQ(record.second_rank[kWhite], 1);
    EXPECT_EQ(record.lone_pawn[kWhite], kE3);
}

TEST_F(Pawns, LowerLevelsScaleTheTermsDown) {
    set_level(8);
    // 8 / 16 doubled, 8 / 16 isolated and closed, 16 / 16 isolated and open: -32 / -48.
    expect_scores({{"pair", "4k3/8/8/8/8/4P3/4P3/4K3 w - - 0 1", {-41, -62}}});
}

TEST_F(Pawns, RecordsAreCachedUntilTheTablesAreCleared) {
    const Board board = board_of("4k3/8/8/8/4P3/8/8/4K3 w - - 0 1");
    EXPECT_EQ(pawns_of(board).opening, -26);
    eval_weights.pawns.isolated_open = {40, 40};
    EXPECT_EQ(pawns_of(board).opening, -26);
    EXPECT_EQ(pawns_of(board).passed_files[kWhite], 0b00010000);
    EXPECT_EQ(pawns_of(board).lone_pawn[kWhite], kE4);
    pawn_tables_clear();
    EXPECT_EQ(pawns_of(board).opening, -52);
}

TEST_F(Pawns, EveryThreadHasItsOwnTable) {
    pawn_tables_allocate(2);
    const Board board = board_of("4k3/8/8/8/4P3/8/8/4K3 w - - 0 1");
    PawnRecord record;
    evaluate_pawns(record, board, 0);
    eval_weights.pawns.isolated_open = {40, 40};
    evaluate_pawns(record, board, 1);
    EXPECT_EQ(record.opening, -52);
    evaluate_pawns(record, board, 0);
    EXPECT_EQ(record.opening, -26);
}

TEST_F(Pawns, WithoutTablesRecordsAreComputed) {
    pawn_tables_free();
    const Board board = board_of("4k3/8/8/8/4P3/8/8/4K3 w - - 0 1");
    EXPECT_EQ(pawns_of(board).opening, -26);
    eval_weights.pawns.isolated_open = {40, 40};
    EXPECT_EQ(pawns_of(board).opening, -52);
}

}  // namespace
}  // namespace zar
