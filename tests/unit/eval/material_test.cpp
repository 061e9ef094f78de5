#include "eval/material.h"

#include <string>
#include <vector>

#include "eval/weights.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of_men;
using Material = test::EvalTest;

// A position with the men of two lists such as "QRPP", kings left out. Pieces stand side by side so
// that Black's king in the corner is not attacked.
std::string fen_of_material(const std::string& white, const std::string& black) {
    std::string text = "w Ka1 ka8";
    const auto place = [&](const std::string& men, bool is_white) {
        char pawn_file = 'b';
        char piece_file = 'b';
        for (const char man : men) {
            text += ' ';
            text += is_white ? man : static_cast<char>(man - 'A' + 'a');
            if (man == 'P') {
                text += pawn_file++;
                text += is_white ? '3' : '6';
            } else {
                text += piece_file++;
                text += is_white ? '2' : '7';
            }
        }
    };
    place(white, true);
    place(black, false);
    return fen_of_men(text);
}

MaterialRecord record_of(const std::string& fen) { return material_probe(board_of(fen), 0); }

struct BalanceRow {
    const char* white;
    const char* black;
    ScorePair score;
};

void expect_balances(const std::vector<BalanceRow>& rows) {
    for (const BalanceRow& row : rows) {
        const std::string fen = fen_of_material(row.white, row.black);
        const MaterialRecord record = record_of(fen);
        EXPECT_EQ((ScorePair{record.opening, record.endgame}), row.score) << fen;
        const std::string swapped_fen = fen_of_material(row.black, row.white);
        const MaterialRecord swapped = record_of(swapped_fen);
        EXPECT_EQ((ScorePair{swapped.opening, swapped.endgame}), ScorePair{} - row.score)
            << swapped_fen;
    }
}

TEST_F(Material, TheStartPositionIsBalanced) {
    const MaterialRecord record = record_of(std::string(kStartFen));
    EXPECT_EQ(record.phase, 0);
    EXPECT_EQ(record.scale[kWhite], 16);
    EXPECT_EQ(record.scale[kBlack], 16);
    EXPECT_EQ(record.ending, EndingClass::none);
    EXPECT_EQ(record.ending_flags, 0);
    EXPECT_EQ(record.opening, 0);
    EXPECT_EQ(record.endgame, 0);
}

TEST_F(Material, MenHaveOpeningAndEndgameValues) {
    // Values times 205 / 256.
    expect_balances({
        {"QRN", "QR", {240, 240}},
        {"QRB", "QR", {260, 264}},
        {"QRR", "QR", {400, 420}},
        {"QQR", "QR", {720, 800}},
        {"QRPP", "QRP", {80, 80}},
        {"Q", "R", {320, 380}},
    });
}

TEST_F(Material, PiecesForPawnsGainALittle) {
    expect_balances({
        {"NP", "PPPP", {24, 24}},   // 300 - 300 + 30
        {"NP", "P", {240, 240}},    // equal pawns: no bonus
        {"NPP", "P", {320, 320}},   // more of both: none
        {"QRP", "QBPPP", {4, 20}},  // 500 - 325 - 200 + 30 = 5, 525 - 330 - 200 + 30 = 25
    });
}

TEST_F(Material, TwoBishopsAreAPair) {
    expect_balances({
        {"BB", "NN", {48, 64}},  // 650 - 600 + 10, 660 - 600 + 20
        {"BBR", "BBR", {0, 0}},
        {"BBB", "", {788, 808}},  // 975 + 10, 990 + 20: three bishops are one pair
    });
}

TEST_F(Material, ExtraPawnsCountMoreInAPawnEnding) {
    expect_balances({
        {"PP", "P", {80, 96}},      // 100, 120
        {"PPP", "P", {160, 192}},   // 200, 240
        {"PPPP", "P", {240, 272}},  // 300, 340: no more than for two
        {"PP", "PP", {0, 0}},
        {"PPN", "PN", {80, 80}},
    });
}

TEST_F(Material, AKnightGoesBetterWithTheQueenThanABishop) {
    expect_balances({
        {"QN", "QB", {-20, -16}},    // -25, -30 + 10
        {"QNP", "QB", {36, 40}},     // 75 - 30, 70 - 30 + 10
        {"QNR", "QBR", {-20, -24}},  // a piece more: nothing
        {"QN", "QN", {0, 0}},
        {"RN", "RB", {-20, -24}},
    });
}

TEST_F(Material, QueenWithKnightDoesNotFollowTheLevel) {
    set_level(5);
    expect_balances({{"QN", "QB", {-9, -4}}});  // 150 - 162, 150 - 165 + 10
}

TEST_F(Material, AnExtraPawnIsWorthLessInARookEnding) {
    expect_balances({
        {"RPP", "RP", {80, 76}},     // 100, 95
        {"RPPP", "RP", {160, 156}},  // 200, 195: the same for more
        {"RPP", "RPP", {0, 0}},
        {"RNPP", "RNP", {80, 80}},
        {"RRPP", "RRP", {80, 80}},
        {"RPP", "NP", {240, 260}},
    });
}

TEST_F(Material, LowerLevelsKnowLessOfAllValues) {
    set_level(4);
    expect_balances({{"P", "", {20, 24}}});  // 40, 48; times 130 / 256
    set_level(0);
    expect_balances({{"QQRPP", "N", {0, 0}}});
}

TEST_F(Material, ScoresKeepTheirLowSixteenBits) {
    set_level(100);
    const MaterialRecord record = record_of("7k/6pp/8/8/8/QQQQQQQQ/QQQQQQQ1/K7 w - - 0 1");
    // 15 queens against two pawns with the imbalance of 300: 133300 and 148300 times 205 / 256.
    EXPECT_EQ(record.opening, 106744 - 2 * 65536);
    EXPECT_EQ(record.endgame, 118755 - 2 * 65536);
}

TEST_F(Material, PhaseRunsFromTheFullBoardToBareKings) {
    struct Row {
        const char* white;
        const char* black;
        int phase;
    };
    const std::vector<Row> rows = {
        {"", "", 256},
        {"PPP", "PP", 256},
        {"N", "", 245},          // 23 x 256 + 12 = 5900
        {"R", "", 235},          // 22 x 256 + 12 = 5644
        {"Q", "R", 192},         // 18 x 256 + 12 = 4620
        {"QRRBN", "QRRBN", 43},  // 4 x 256 + 12 = 1036
        {"QRRBBNN", "QRRBBNN", 0},
        {"QRRBBNN", "RRBBNN", 43},
        {"QQQQQQ", "QQ", 0},
    };
    for (const Row& row : rows) {
        const std::string fen = fen_of_material(row.white, row.black);
        EXPECT_EQ(record_of(fen).phase, row.phase) << fen;
    }
}

TEST_F(Material, EndingClassesAreToldByTheMen) {
    struct Row {
        int ending;
        const char* white;
        const char* black;
    };
    const std::vector<Row> rows = {
        {1, "", ""},     {2, "B", ""},    {3, "", "B"},   {4, "N", ""},    {5, "", "N"},
        {6, "P", ""},    {7, "", "P"},    {8, "Q", "Q"},  {9, "Q", "P"},   {10, "P", "Q"},
        {11, "R", "R"},  {12, "R", "P"},  {13, "P", "R"}, {14, "B", "B"},  {15, "B", "P"},
        {16, "P", "B"},  {17, "BP", ""},  {18, "", "BP"}, {19, "N", "N"},  {20, "N", "P"},
        {21, "P", "N"},  {22, "NP", ""},  {23, "", "NP"}, {24, "RP", "R"}, {25, "R", "RP"},
        {26, "BP", "B"}, {27, "B", "BP"},
    };
    for (const Row& row : rows) {
        const std::string fen = fen_of_material(row.white, row.black);
        EXPECT_EQ(static_cast<int>(record_of(fen).ending), row.ending) << fen;
    }
}

TEST_F(Material, OtherEndingsHaveNoClass) {
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"R", ""},    {"", "Q"},   {"P", "P"},   {"B", "N"},  {"N", "B"},   {"R", "B"},
        {"Q", "R"},   {"PP", ""},  {"RP", ""},   {"QP", ""},  {"BN", ""},   {"NN", ""},
        {"BB", ""},   {"RP", "B"}, {"NP", "N"},  {"BP", "N"}, {"QP", "Q"},  {"RP", "P"},
        {"BP", "BP"}, {"PP", "P"}, {"RP", "RP"}, {"B", "NP"}, {"RPP", "R"}, {"", "PP"},
    };
    for (const auto& [white, black] : rows) {
        const std::string fen = fen_of_material(white, black);
        EXPECT_EQ(record_of(fen).ending, EndingClass::none) << fen;
    }
}

struct ScaleRow {
    const char* white;
    const char* black;
    int white_scale;
    int black_scale;
};

void expect_scales(const std::vector<ScaleRow>& rows) {
    for (const ScaleRow& row : rows) {
        for (const bool swapped : {false, true}) {
            const std::string fen = swapped ? fen_of_material(row.black, row.white)
                                            : fen_of_material(row.white, row.black);
            const MaterialRecord record = record_of(fen);
            EXPECT_EQ(record.scale[swapped ? kBlack : kWhite], row.white_scale) << fen;
            EXPECT_EQ(record.scale[swapped ? kWhite : kBlack], row.black_scale) << fen;
        }
    }
}

TEST_F(Material, DeadEndingsScaleBothSidesToNothing) {
    expect_scales({{"", "", 0, 0}, {"R", "R", 0, 0}, {"Q", "Q", 0, 0}});
}

TEST_F(Material, ALoneMinorPieceCannotWin) {
    expect_scales({
        {"N", "", 0, 0},
        {"B", "", 0, 0},
        {"N", "PP", 0, 16},
        {"B", "Q", 0, 16},
        {"B", "B", 0, 0},
        {"N", "N", 0, 0},
    });
}

TEST_F(Material, TwoKnightsNeedAPawnToPlayAgainst) {
    expect_scales({
        {"NN", "", 0, 0},
        {"NN", "P", 1, 8},
        {"NN", "PP", 1, 16},
        {"NN", "NP", 0, 4},
        {"NN", "N", 0, 0},
    });
}

TEST_F(Material, TwoBishopsMayBeatALoneKnight) {
    expect_scales({
        {"BB", "N", 8, 0},
        {"BB", "NP", 2, 4},
        {"BB", "B", 2, 0},
        {"BB", "", 16, 0},
    });
}

TEST_F(Material, WithoutPawnsASmallLeadHardlyWins) {
    expect_scales({
        {"BN", "", 16, 0},
        {"BN", "N", 2, 0},
        {"R", "", 16, 0},
        {"R", "N", 2, 0},
        {"R", "P", 16, 8},
        {"Q", "R", 16, 2},
        {"Q", "RN", 2, 2},
        {"Q", "BN", 16, 2},
        {"QR", "Q", 16, 2},
        {"QN", "Q", 2, 2},
        {"RR", "R", 16, 2},
        {"RR", "RN", 2, 2},
        {"QR", "RRN", 16, 2},  // more than two rooks' worth of major pieces
        {"QR", "RRNN", 16, 2},
    });
}

TEST_F(Material, ASinglePawnMayBeBoughtOffWithAPiece) {
    expect_scales({
        {"BP", "B", 4, 0},
        {"BP", "N", 4, 0},
        {"NNP", "B", 4, 0},
        {"P", "B", 8, 0},
        {"P", "N", 8, 0},
        {"RP", "B", 16, 0},
        {"RP", "RN", 8, 2},
        {"RNP", "RB", 8, 2},
        {"BBP", "RN", 8, 2},
        {"QP", "QN", 8, 2},
        {"QRP", "QRN", 16, 16},  // Black leads by a piece with three rooks' worth of majors
    });
}

TEST_F(Material, ASinglePawnAgainstARook) {
    expect_scales({
        {"RP", "R", 16, 2},
        {"P", "R", 8, 16},
        {"NP", "R", 4, 2},
        {"NNP", "R", 4, 2},
        {"BNP", "R", 16, 2},
        {"RP", "RR", 8, 16},
        {"RNP", "RR", 8, 2},
        {"QP", "RR", 16, 2},  // 4 - (4 - 2) = 2
    });
}

TEST_F(Material, ASinglePawnAgainstNoPieceOrAQueenCountsInFull) {
    expect_scales({
        {"P", "", 16, 0},
        {"P", "P", 16, 16},
        {"P", "Q", 16, 16},
        {"QP", "Q", 16, 2},
        {"NP", "", 16, 0},
        {"NP", "P", 16, 8},
    });
}

TEST_F(Material, TwoPawnsCountInFull) {
    expect_scales({{"PP", "B", 16, 0}, {"BPP", "B", 16, 0}, {"PP", "PP", 16, 16}});
}

struct FlagRow {
    const char* white;
    const char* black;
    int white_flags;
    int black_flags;
    int ending_flags;
};

TEST_F(Material, FlagsSwitchLaterTermsOn) {
    const std::vector<FlagRow> rows = {
        {"QRRBBNNPP", "QRRBBNNPP", 8, 8, 0},
        // Pawns, perhaps with bishops.
        {"P", "", 1, 0, 1},
        {"PP", "", 1, 0, 0},
        {"P", "P", 1, 1, 0},
        {"P", "N", 3, 0, 0},
        {"BP", "", 1, 0, 1},
        {"BP", "P", 1, 3, 0},
        {"BP", "N", 3, 0, 0},
        {"BBP", "N", 1, 0, 0},
        {"BBP", "", 1, 0, 0},
        {"B", "P", 0, 3, 0},
        {"RP", "R", 0, 0, 0},
        // Knight and pawn.
        {"NP", "", 0, 0, 0},
        {"NP", "P", 0, 3, 0},
        {"NP", "N", 4, 0, 0},
        {"NP", "QN", 12, 0, 0},
        {"NPP", "N", 0, 0, 0},
        {"NNP", "N", 0, 0, 0},
        // Shelter from a queen that has help.
        {"P", "Q", 3, 0, 0},
        {"P", "QR", 11, 0, 0},
        {"R", "QQ", 8, 0, 0},
        {"R", "QPP", 0, 0, 0},
        // Possible draws.
        {"", "", 0, 0, 1},
        {"N", "", 0, 0, 1},
        {"B", "", 0, 0, 1},
        {"B", "B", 0, 0, 3},
        {"N", "N", 0, 0, 0},
        {"B", "N", 0, 0, 0},
        {"NN", "", 0, 0, 0},
        {"R", "", 0, 0, 0},
        {"Q", "Q", 0, 0, 0},
        // Single bishops, up to two pawns apart.
        {"BP", "B", 3, 0, 2},
        {"BPP", "B", 3, 0, 2},
        {"BPPP", "B", 3, 0, 0},
        {"BP", "BPPP", 3, 3, 2},
        {"BNP", "BP", 0, 3, 0},
        {"BBP", "BP", 1, 3, 0},
    };
    for (const FlagRow& row : rows) {
        for (const bool swapped : {false, true}) {
            const std::string fen = swapped ? fen_of_material(row.black, row.white)
                                            : fen_of_material(row.white, row.black);
            const MaterialRecord record = record_of(fen);
            EXPECT_EQ(record.side_flags[swapped ? kBlack : kWhite], row.white_flags) << fen;
            EXPECT_EQ(record.side_flags[swapped ? kWhite : kBlack], row.black_flags) << fen;
            EXPECT_EQ(record.ending_flags, row.ending_flags) << fen;
        }
    }
}

TEST_F(Material, RecordsAreCachedUntilTheTablesAreCleared) {
    const std::string fen = fen_of_material("QN", "Q");
    EXPECT_EQ(record_of(fen).opening, 240);
    eval_weights.material.knight = {600, 600};
    EXPECT_EQ(record_of(fen).opening, 240);
    EXPECT_EQ(record_of(fen).scale[kWhite], 2);
    material_tables_clear();
    EXPECT_EQ(record_of(fen).opening, 480);
}

TEST_F(Material, EveryThreadHasItsOwnTable) {
    material_tables_allocate(2);
    const Board board = board_of(fen_of_material("QN", "Q"));
    EXPECT_EQ(material_probe(board, 0).opening, 240);
    eval_weights.material.knight = {600, 600};
    EXPECT_EQ(material_probe(board, 1).opening, 480);
    EXPECT_EQ(material_probe(board, 0).opening, 240);
}

TEST_F(Material, WithoutTablesRecordsAreComputed) {
    material_tables_free();
    const Board board = board_of(fen_of_material("QN", "Q"));
    EXPECT_EQ(material_probe(board, 0).opening, 240);
    eval_weights.material.knight = {600, 600};
    EXPECT_EQ(material_probe(board, 0).opening, 480);
}

}  // namespace
}  // namespace zar
