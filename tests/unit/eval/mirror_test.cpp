// The evaluation knows no colour and no wing: over a set of positions from play and of endings, the
// mirrored position is worth the same.
#include <fstream>
#include <string>
#include <vector>

#include "eval/draws.h"
#include "eval/eval.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::board_swap_colors;
using Mirror = test::EvalTest;

std::vector<std::string> positions() {
    std::ifstream file(ZAR_TEST_DATA_DIR "/evaluation.fen");
    std::vector<std::string> fens;
    for (std::string line; std::getline(file, line);) {
        fens.push_back(line);
    }
    return fens;
}

ScorePair negated(ScorePair score) { return ScorePair{} - score; }

template <typename Entry>
std::array<Entry, 2> swapped(const std::array<Entry, 2>& sides) {
    return {sides[1], sides[0]};
}

// Scores of White's view change their sign, those of a side go to the other one.
void expect_swapped(const EvalTerms& terms, const EvalTerms& mirror, const std::string& fen) {
    SCOPED_TRACE(fen);
    EXPECT_EQ(mirror.material, negated(terms.material));
    EXPECT_EQ(mirror.phase, terms.phase);
    EXPECT_EQ(mirror.ending_flags, terms.ending_flags);
    EXPECT_EQ(mirror.side_flags, swapped(terms.side_flags));
    EXPECT_EQ(mirror.scale, swapped(terms.scale));
    EXPECT_EQ(mirror.working_scale, swapped(terms.working_scale));
    EXPECT_EQ(mirror.pawns, negated(terms.pawns));
    EXPECT_EQ(mirror.passed_files, swapped(terms.passed_files));
    EXPECT_EQ(mirror.psq, negated(terms.psq));
    EXPECT_EQ(mirror.patterns, negated(terms.patterns));
    EXPECT_EQ(mirror.shelter, swapped(terms.shelter));
    EXPECT_EQ(mirror.passers, swapped(terms.passers));
    EXPECT_EQ(mirror.mobility, swapped(terms.mobility));
    EXPECT_EQ(mirror.total, negated(terms.total));
    EXPECT_EQ(mirror.final_score, terms.final_score);
    for (std::size_t side = 0; side < 2; ++side) {
        const int pawn = terms.lone_pawn[side];
        EXPECT_EQ(mirror.lone_pawn[side ^ 1],
                  pawn == kNoSquare ? kNoSquare : square_flip_rows(pawn));
    }
}

TEST_F(Mirror, BothColoursAreEvaluatedAlike) {
    const std::vector<std::string> fens = positions();
    ASSERT_GE(fens.size(), 200U);
    for (const std::string& fen : fens) {
        const Board board = board_of(fen);
        const Board mirror = board_swap_colors(board);
        ASSERT_TRUE(board_consistent(mirror)) << fen;
        expect_swapped(evaluate_terms(board, 0), evaluate_terms(mirror, 0), fen);
        for (const Score alpha : {-30000, -300, -50, 0, 50, 300}) {
            const Score beta = alpha == -30000 ? 30000 : alpha + 1;
            EXPECT_EQ(evaluate(board, alpha, beta, 0), evaluate(mirror, alpha, beta, 0))
                << fen << " alpha " << alpha;
        }
        EXPECT_EQ(is_recognised_draw(board, 0), is_recognised_draw(mirror, 0)) << fen;
    }
}

TEST_F(Mirror, BothColoursAreEvaluatedAlikeAtEveryLevel) {
    const std::vector<std::string> fens = positions();
    for (const int level : {0, 3, 5, 7, 9}) {
        set_level(level);
        for (const std::string& fen : fens) {
            const Board board = board_of(fen);
            EXPECT_EQ(full_score(board), full_score(board_swap_colors(board)))
                << fen << " level " << level;
        }
    }
}

TEST_F(Mirror, BothWingsAreEvaluatedAlike) {
    int compared = 0;
    for (const std::string& fen : positions()) {
        // Castling exists on one wing only as it is.
        if (fen.find(" - - ") == std::string::npos) {
            continue;
        }
        ++compared;
        const std::string flipped = test::fen_flip_files(fen);
        EXPECT_EQ(full_score(fen), full_score(flipped)) << fen;
        EXPECT_EQ(is_recognised_draw(board_of(fen), 0), is_recognised_draw(board_of(flipped), 0))
            << fen;
    }
    EXPECT_GE(compared, 100);
}

TEST_F(Mirror, TermsEndInTheScoreThatTheEvaluationReturns) {
    for (const std::string& fen : positions()) {
        EXPECT_EQ(terms_of(fen).final_score, full_score(fen)) << fen;
    }
}

TEST_F(Mirror, ScoresDoNotDependOnWhatTheCachesHold) {
    const std::vector<std::string> fens = positions();
    std::vector<Score> cached;
    for (int pass = 0; pass < 2; ++pass) {
        cached.clear();
        for (const std::string& fen : fens) {
            cached.push_back(full_score(fen));
        }
    }
    eval_tables_free();
    for (std::size_t index = 0; index < fens.size(); ++index) {
        EXPECT_EQ(full_score(fens[index]), cached[index]) << fens[index];
    }
}

}  // namespace
}  // namespace zar
