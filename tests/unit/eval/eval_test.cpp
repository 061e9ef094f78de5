#include "eval/eval.h"

#include <string>
#include <vector>

#include "eval/weights.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of_men;
using Eval = test::EvalTest;

// The start position without Black's queen. White's view, opening and endgame:
//   material       900, 1000 times 205 / 256 are 720, 800; phase (4 x 256 + 12) / 24 = 43
//   move           20, 10: the sum 740, 810 blends to 751
//   shelter        Black's full wall costs 11, times 512 / 256: 762, 810 blend to 770
//   mobility       both sides -76, -104, White's queen 2, 2: 764, 812 blend to 772
const std::string kQueenUp = "rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
const std::string kQueenUpBlackToMove = "rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1";

TEST_F(Eval, ASymmetricPositionIsWorthTheMove) {
    for (const char* fen :
         {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
          "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 1",
          "r1bqkb1r/ppp2ppp/2np1n2/4p3/4P3/2NP1N2/PPP2PPP/R1BQKB1R w KQkq - 0 1",
          "r1bqkb1r/ppp2ppp/2np1n2/4p3/4P3/2NP1N2/PPP2PPP/R1BQKB1R b KQkq - 0 1"}) {
        EXPECT_EQ(full_score(fen), 20) << fen;
    }
}

TEST_F(Eval, DeadDrawsAreWorthNothing) {
    for (const char* men :
         {"w Kd5 ka1", "b Kd5 ka1", "w Kd5 ka1 Rb8 rh1", "w Kd5 kf1 Qa8 qh2", "w Kd5 ka1 Nd4",
          "w Kd5 ka1 Nd4 Nf4", "w Kd5 ka1 Bc8 bh1", "b Kd5 kb8 Pa6"}) {
        const std::string fen = fen_of_men(men);
        EXPECT_EQ(full_score(fen), 0) << fen;
        EXPECT_EQ(evaluate(board_of(fen), 500, 501, 0), 0) << fen;
    }
}

TEST_F(Eval, AHandComputedPawnEnding) {
    // Endgame: pawn 100 + 20 times 205 / 256 = 96, isolated -26, passed 20 + 110 (for the promise
    // of 120 + 900 + 80 - 20 at 26 / 256) times 269 / 256 = 136, move 10.
    EXPECT_EQ(full_score("8/8/8/8/4P3/8/8/K6k w - - 0 1"), 216);
    EXPECT_EQ(full_score("8/8/8/8/4P3/8/8/K6k b - - 0 1"), -196);
}

TEST_F(Eval, AHandComputedMiddlegame) {
    EXPECT_EQ(full_score(kQueenUp), 772);
    // 724, 792 blend to 735
    EXPECT_EQ(full_score(kQueenUpBlackToMove), -735);
}

TEST_F(Eval, TheFirstLazyExitNeedsTheFirstMargin) {
    const Board board = board_of(kQueenUp);
    EXPECT_EQ(evaluate(board, 550, 551, 0), 751);
    EXPECT_EQ(evaluate(board, -30000, 551, 0), 751);
    EXPECT_EQ(evaluate(board, 551, 552, 0), 770);
    EXPECT_EQ(evaluate(board, 951, 952, 0), 751);
    EXPECT_EQ(evaluate(board, 950, 951, 0), 770);
}

TEST_F(Eval, TheSecondLazyExitNeedsTheSecondMargin) {
    const Board board = board_of(kQueenUp);
    EXPECT_EQ(evaluate(board, 644, 645, 0), 770);
    EXPECT_EQ(evaluate(board, 645, 646, 0), 772);
    EXPECT_EQ(evaluate(board, 895, 896, 0), 770);
    EXPECT_EQ(evaluate(board, 894, 895, 0), 772);
}

TEST_F(Eval, LazyExitsTakeTheMoversView) {
    // 700, 790 blend to 715; with the shelter 722, 790 blend to 733.
    const Board board = board_of(kQueenUpBlackToMove);
    EXPECT_EQ(evaluate(board, -515, -514, 0), -715);
    EXPECT_EQ(evaluate(board, -516, -515, 0), -733);
    EXPECT_EQ(evaluate(board, -609, -608, 0), -735);
}

TEST_F(Eval, EstimatesAreKnownOnceAnEvaluationComesToItsEnd) {
    const Board board = board_of(kQueenUp);
    Estimates estimates;
    EXPECT_EQ(evaluate_once(estimates, board, 550, 551, 0), 751);
    EXPECT_FALSE(estimates.known);
    EXPECT_EQ(evaluate_once(estimates, board, 644, 645, 0), 770);
    EXPECT_FALSE(estimates.known);
    EXPECT_EQ(evaluate_once(estimates, board, 645, 646, 0), 772);
    EXPECT_TRUE(estimates.known);
    EXPECT_EQ(estimates.first, 751);
    EXPECT_EQ(estimates.second, 770);
    EXPECT_EQ(estimates.full, 772);
    // From then on the position is not looked at.
    const Board other = board_of(kQueenUpBlackToMove);
    EXPECT_EQ(evaluate_once(estimates, other, 550, 551, 0), 751);
    EXPECT_EQ(evaluate_once(estimates, other, 644, 645, 0), 770);
    EXPECT_EQ(evaluate_once(estimates, other, 645, 646, 0), 772);
}

TEST_F(Eval, WhereNothingIsLazyTheEstimatesAreTheScore) {
    const Board board = board_of("r1b1k3/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1");
    Estimates estimates;
    const Score score = evaluate_once(estimates, board, 29000, 29001, 0);
    EXPECT_EQ(score, full_score(board));
    EXPECT_TRUE(estimates.known);
    for (const Score alpha : {-29000, 0, score, 29000}) {
        EXPECT_EQ(evaluate_once(estimates, board, alpha, alpha + 1, 0), score) << alpha;
    }
}

TEST_F(Eval, LazyExitsFollowTheirOptions) {
    option_set("ZARXEvalADVMID", "300");
    option_set("ZARXEvalADVEND", "10");
    eval_apply_weights();
    const Board board = board_of(kQueenUp);
    EXPECT_EQ(evaluate(board, 450, 451, 0), 751);
    EXPECT_EQ(evaluate(board, 451, 452, 0), 770);
    EXPECT_EQ(evaluate(board, 759, 760, 0), 770);
    EXPECT_EQ(evaluate(board, 760, 761, 0), 772);
}

TEST_F(Eval, SwitchedOffLazyExitsLeaveTheWindowWithoutEffect) {
    option_set("ZARXEvalADVOPEN", "false");
    eval_apply_weights();
    const Board board = board_of(kQueenUp);
    for (const Score alpha : {-30000, -1, 0, 550, 771, 5000, 29000}) {
        EXPECT_EQ(evaluate(board, alpha, alpha + 1, 0), 772) << alpha;
    }
}

TEST_F(Eval, WithThreePiecesOnASideNothingIsLazy) {
    // Kings count as pieces, pawns do not.
    for (const char* fen : {"r1b1k3/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1",
                            "rnb1kbnr/pppppppp/8/8/8/8/PPPPPPPP/R1B1K3 w - - 0 1"}) {
        const Board board = board_of(fen);
        for (const Score alpha : {-29000, 0, 29000}) {
            EXPECT_EQ(evaluate(board, alpha, alpha + 1, 0), full_score(board)) << fen;
        }
    }
    const Board board = board_of("rnb1k3/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w - - 0 1");
    EXPECT_NE(evaluate(board, 0, 1, 0), full_score(board));
}

TEST_F(Eval, LazyScoresAreNotScaled) {
    // Rook, bishop and knight against two bishops and a knight, without pawns: a scale of 2 / 16.
    const std::string fen = "1kbbn3/8/8/8/8/8/8/1K1RBN2 w - - 0 1";
    const EvalTerms terms = terms_of(fen);
    ASSERT_EQ(terms.scale, (std::array<int, 2>{2, 2})) << fen;
    const ScorePair base = terms.material + terms.psq + terms.pawns + terms.patterns;
    const Score estimate = blend(base + ScorePair{20, 10}, terms.phase);
    ASSERT_GT(estimate, 50);
    EXPECT_EQ(evaluate(board_of(fen), -1000, -999, 0), estimate) << fen;
    EXPECT_EQ(full_score(fen), blend(terms.total, terms.phase) * 2 / 16) << fen;
}

TEST_F(Eval, OnlyTheScaleOfTheSideAheadCounts) {
    const std::string white_ahead = "4kn2/p7/8/8/8/8/8/R3K3 w - - 0 1";
    EvalTerms terms = terms_of(white_ahead);
    ASSERT_EQ(terms.working_scale, (std::array<int, 2>{2, 4})) << white_ahead;
    Score score = blend(terms.total, terms.phase);
    ASSERT_GT(score, 16) << white_ahead;
    EXPECT_EQ(full_score(white_ahead), score * 2 / 16) << white_ahead;

    const std::string black_ahead = "4kn2/8/8/8/8/ppp5/8/R3K3 w - - 0 1";
    terms = terms_of(black_ahead);
    ASSERT_EQ(terms.working_scale, (std::array<int, 2>{2, 16})) << black_ahead;
    score = blend(terms.total, terms.phase);
    ASSERT_LT(score, -16) << black_ahead;
    EXPECT_EQ(full_score(black_ahead), score) << black_ahead;
}

TEST_F(Eval, OppositeBishopsHalveTheScore) {
    const std::string opposite = "4kb2/5p2/8/8/8/8/PPP5/4KB2 w - - 0 1";
    const EvalTerms terms = terms_of(opposite);
    ASSERT_EQ(terms.ending_flags, 2) << opposite;
    ASSERT_EQ(terms.working_scale[kWhite], 16) << opposite;
    const Score score = blend(terms.total, terms.phase);
    ASSERT_GT(score, 100) << opposite;
    EXPECT_EQ(terms.final_score, score * 8 / 16) << opposite;

    const std::string same = "2b1k3/5p2/8/8/8/8/PPP5/4KB2 w - - 0 1";
    const EvalTerms same_terms = terms_of(same);
    EXPECT_EQ(same_terms.final_score, blend(same_terms.total, same_terms.phase)) << same;
}

TEST_F(Eval, OppositeBishopsLeaveALowerScaleAlone) {
    const std::string fen = "4kb2/8/8/8/8/8/P7/4KB2 w - - 0 1";
    const EvalTerms terms = terms_of(fen);
    ASSERT_EQ(terms.ending_flags, 2) << fen;
    ASSERT_EQ(terms.working_scale[kWhite], 1) << fen;
    EXPECT_EQ(terms.final_score, blend(terms.total, terms.phase) * 1 / 16) << fen;
}

TEST_F(Eval, ScoresStayBelowTheMates) {
    const std::string crowd = "4k3/8/QQQQQQQQ/QQQQQQQ1/8/8/8/6K1 b - - 0 1";
    EXPECT_LT(full_score(crowd), -10000) << crowd;
    // 27 times 15 queens of 90 and more.
    set_level(27);
    EXPECT_EQ(full_score(crowd), -29744) << crowd;
    EXPECT_EQ(full_score(test::fen_swap_colors(crowd)), -29744) << crowd;
    const EvalTerms terms = terms_of(crowd);
    EXPECT_GT(blend(terms.total, terms.phase), 29744) << crowd;
}

TEST_F(Eval, TermsTellWhatTheEvaluationIsMadeOf) {
    const EvalTerms terms = terms_of(kQueenUp);
    EXPECT_EQ(terms.material, (ScorePair{720, 800}));
    EXPECT_EQ(terms.phase, 43);
    EXPECT_EQ(terms.ending_class, 0);
    EXPECT_EQ(terms.ending_flags, 0);
    EXPECT_EQ(terms.side_flags, (std::array<int, 2>{0, 8}));
    EXPECT_EQ(terms.scale, (std::array<int, 2>{16, 16}));
    EXPECT_EQ(terms.working_scale, (std::array<int, 2>{16, 16}));
    EXPECT_EQ(terms.pawns, (ScorePair{0, 0}));
    EXPECT_EQ(terms.passed_files, (std::array<int, 2>{0, 0}));
    EXPECT_EQ(terms.lone_pawn, (std::array<int, 2>{0, 0}));
    EXPECT_EQ(terms.psq, (ScorePair{0, 0}));
    EXPECT_EQ(terms.patterns, (ScorePair{0, 0}));
    EXPECT_EQ(terms.shelter, (std::array<int, 2>{0, 11}));
    EXPECT_EQ(terms.passers[kWhite], (ScorePair{0, 0}));
    EXPECT_EQ(terms.mobility[kWhite], (ScorePair{-74, -102}));
    EXPECT_EQ(terms.mobility[kBlack], (ScorePair{-76, -104}));
    EXPECT_EQ(terms.total, (ScorePair{764, 812}));
    EXPECT_EQ(terms.final_score, 772);
}

TEST_F(Eval, TermsOfAPawnEnding) {
    const EvalTerms terms = terms_of("8/8/8/8/4P3/8/8/K6k b - - 0 1");
    EXPECT_EQ(terms.material, (ScorePair{80, 96}));
    EXPECT_EQ(terms.phase, 256);
    EXPECT_EQ(terms.ending_class, 6);
    EXPECT_EQ(terms.ending_flags, 1);
    EXPECT_EQ(terms.side_flags, (std::array<int, 2>{1, 0}));
    EXPECT_EQ(terms.scale, (std::array<int, 2>{16, 0}));
    EXPECT_EQ(terms.pawns, (ScorePair{-26, -26}));
    EXPECT_EQ(terms.passed_files, (std::array<int, 2>{16, 0}));
    EXPECT_EQ(terms.lone_pawn, (std::array<int, 2>{120, 0}));
    EXPECT_EQ(terms.psq, (ScorePair{26, 0}));
    EXPECT_EQ(terms.passers[kWhite], (ScorePair{16, 130}));
    EXPECT_EQ(terms.total, (ScorePair{80 - 20 + 16, 70 - 10 + 136}));
    EXPECT_EQ(terms.final_score, -196);
}

TEST_F(Eval, TermsAreComputedBehindADeadDrawToo) {
    const EvalTerms terms = terms_of("k7/8/8/P7/8/8/8/K7 w - - 0 1");
    EXPECT_EQ(terms.scale, (std::array<int, 2>{16, 0}));
    EXPECT_EQ(terms.working_scale, (std::array<int, 2>{0, 0}));
    EXPECT_EQ(terms.passers[kWhite].opening, 28);
    EXPECT_NE(terms.total.endgame, 0);
    EXPECT_EQ(terms.final_score, 0);
}

TEST_F(Eval, EachGroupIsWeighedOnceAsADifference) {
    // Shelter 59 and 11, weight 2. Passers are none; mobility keeps its weight of 1.
    const std::string fen = "q3k2r/8/8/8/8/8/5PPP/Q3K2R w Kk - 0 1";
    const EvalTerms terms = terms_of(fen);
    EXPECT_EQ(terms.shelter, (std::array<int, 2>{59, (144 + 144) / 2})) << fen;
    const ScorePair rest = terms.material + terms.psq + terms.pawns + terms.patterns +
                           ScorePair{20, 10} + terms.mobility[kWhite] - terms.mobility[kBlack] +
                           weigh(terms.passers[kWhite] - terms.passers[kBlack], 269);
    EXPECT_EQ(terms.total, (rest + ScorePair{2 * (144 - 59), 0})) << fen;
}

TEST_F(Eval, BelowLevelSevenOnlyMaterialAndPatternsRemain) {
    set_level(6);
    const EvalTerms terms = terms_of("rnb1kbnr/pppp1ppp/8/4p3/P7/8/1PPPPPPP/RNBQKBNR w KQkq - 0 1");
    EXPECT_EQ(terms.pawns, (ScorePair{0, 0}));
    EXPECT_EQ(terms.psq, (ScorePair{0, 0}));
    // 540, 600 times 205 / 256.
    EXPECT_EQ(terms.material, (ScorePair{432, 480}));
    EXPECT_EQ(terms.total, (ScorePair{452, 490}));
    const EvalTerms trapped = terms_of("4k3/B2p4/1p6/8/8/8/8/4K3 w - - 0 1");
    EXPECT_EQ(trapped.patterns, (ScorePair{-45, -45}));
}

TEST_F(Eval, AtLevelZeroOnlyTheMoveCounts) {
    set_level(0);
    for (const std::string& fen :
         {kQueenUp, std::string("r4rk1/pp3ppp/2n5/3q4/8/8/PPP2PPP/3RR1K1 w - - 0 1")}) {
        const EvalTerms terms = terms_of(fen);
        EXPECT_EQ(terms.total, (ScorePair{20, 10})) << fen;
        EXPECT_EQ(full_score(fen), blend(ScorePair{20, 10}, terms.phase)) << fen;
        EXPECT_EQ(evaluate(board_of(fen), 1000, 1001, 0), blend(ScorePair{20, 10}, terms.phase))
            << fen;
    }
}

TEST_F(Eval, ALevelIsForgottenWhenTheNextIsApplied) {
    const Score before = full_score(kQueenUp);
    set_level(5);
    const Score weaker = full_score(kQueenUp);
    EXPECT_LT(weaker, before);
    set_level(10);
    EXPECT_EQ(full_score(kQueenUp), before);
}

TEST_F(Eval, OptionsThatNothingReadsChangeNothing) {
    const std::string fen = "r4rk1/pp3ppp/2n5/3q4/8/P7/1PP2PPP/3RR1K1 w - - 0 1";
    const Score before = full_score(fen);
    for (const char* name :
         {"King Safety", "Pawn Structure", "Passed Pawns", "ZARXStructureSafety", "ZARXEVALMOB",
          "ZARXEVALMOBEND", "ZARXBonusEndgame", "ZARXKingPEB", "ZARXRookPEP"}) {
        ASSERT_TRUE(option_set(name, "0")) << name;
        eval_apply_weights();
        EXPECT_EQ(full_score(fen), before) << name;
    }
}

TEST_F(Eval, CachesDoNotChangeTheScore) {
    const Board board = board_of("r4rk1/pp3ppp/2n5/3q4/8/P7/1PP2PPP/3RR1K1 w - - 0 1");
    const Score first = full_score(board);
    EXPECT_EQ(full_score(board), first);
    eval_tables_free();
    EXPECT_EQ(full_score(board), first);
    eval_tables_allocate(4);
    for (int thread = 0; thread < 4; ++thread) {
        EXPECT_EQ(evaluate(board, -30000, 30000, thread), first) << thread;
    }
}

TEST_F(Eval, AbsurdLevelsStayDefined) {
    for (const int level : {-1000, -1, 11, 100, 1000}) {
        set_level(level);
        for (const std::string& fen :
             {kQueenUp, std::string("4k3/8/QQQQQQQQ/QQQQQQQ1/8/8/8/6K1 b - - 0 1"),
              std::string("8/1P1P1P1P/2P1P1P1/8/8/k7/8/7K w - - 0 1")}) {
            const Score score = full_score(fen);
            EXPECT_LE(score, kMaxEval) << level << " " << fen;
            EXPECT_GE(score, -kMaxEval) << level << " " << fen;
        }
    }
}

}  // namespace
}  // namespace zar
