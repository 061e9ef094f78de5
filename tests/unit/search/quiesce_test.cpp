#include "search/quiesce.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "board/exchange.h"
#include "gtest/gtest.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of;
using test::move_of;
using test::text_of;

struct Result {
    Score score;
    std::uint64_t nodes;
    std::string pv;
};

class Quiesce : public test::SearchTest {
  protected:
    void SetUp() override {
        SearchTest::SetUp();
        set_checks(false);
    }

    // Quiet checks in the first ply, or none at all.
    static void set_checks(bool wanted) { search_thread(0).check_plies_limit = wanted ? 0 : 99; }

    static Result run(Board& board, Score alpha, Score beta, int ply = 2) {
        search_thread(0).nodes = 0;
        Line pv;
        pv[0] = kMoveNone;
        const Score score = qsearch(board, alpha, beta, 0, ply, pv, 0);
        return {score, search_thread(0).nodes, text_of(pv)};
    }

    static Result run(const char* fen, Score alpha, Score beta, int ply = 2) {
        Board board = board_of(fen);
        return run(board, alpha, beta, ply);
    }

    static HashHit stored(const Board& board) {
        HashHit hit{};
        EXPECT_TRUE(hash_probe(hash_table, board.key, hit)) << fen_of(board);
        return hit;
    }

    static bool is_stored(const Board& board) {
        HashHit hit;
        return hash_probe(hash_table, board.key, hit);
    }
};

// Nothing to take.
constexpr const char* kQuietFen = "6k1/5ppp/8/8/8/8/5PPP/6K1 w - - 0 1";

TEST_F(Quiesce, ACalmPositionHasItsStaticValue) {
    const Score value = evaluate(board_of(kQuietFen), -30000, 30000, 0);
    const Result result = run(kQuietFen, -30000, 30000);
    EXPECT_EQ(result.score, value);
    EXPECT_EQ(result.nodes, 0u);
    EXPECT_EQ(result.pv, "");
}

TEST_F(Quiesce, ACorneredBareKingThatCannotMoveIsStalemate) {
    for (const char* const fen :
         {"k7/2Q5/8/8/8/8/8/7K b - - 0 1", "7k/5Q2/8/8/8/8/8/K7 b - - 0 1",
          "7K/8/8/8/8/8/2Q5/k7 b - - 0 1", "K7/8/8/8/8/8/5Q2/7k b - - 0 1"}) {
        Board board = board_of(fen);
        ASSERT_TRUE(board_is_stalemate(board)) << fen;
        EXPECT_LT(evaluate(board, -30000, 30000, 0), -500) << fen;
        EXPECT_EQ(run(fen, -30000, 30000).score, 0) << fen;
    }
}

TEST_F(Quiesce, OtherStalematesAreNotLookedFor) {
    for (const char* const fen : {"4k3/4P3/4K3/8/8/8/8/6R1 b - - 0 1",  // not in a corner
                                  "k7/8/1Q6/8/8/8/7p/7K b - - 0 1",     // not bare
                                  "k7/8/8/1Q6/8/8/8/7K b - - 0 1"}) {   // can move
        Board board = board_of(fen);
        const Score value = evaluate(board, -30000, 30000, 0);
        EXPECT_LT(value, -300) << fen;
        EXPECT_EQ(run(fen, -30000, 30000).score, value) << fen;
    }
}

TEST_F(Quiesce, ACorneredKingMayTakeWhatIsNotProtected) {
    EXPECT_EQ(run("k7/1R6/8/8/8/8/8/7K b - - 0 1", -30000, 30000).pv, "a8b7");
    const Result stalemate = run("k7/1R6/2K5/8/8/8/8/8 b - - 0 1", -30000, 30000);
    EXPECT_EQ(stalemate.score, 0);
    EXPECT_EQ(stalemate.pv, "");
}

TEST_F(Quiesce, StandingPatAboveBetaReturnsAndStores) {
    Board board = board_of(kQuietFen);
    const Score value = evaluate(board, -500, -400, 0);
    ASSERT_GE(value, -400);
    const Result result = run(board, -500, -400);
    EXPECT_EQ(result.score, value);
    const HashHit hit = stored(board);
    EXPECT_EQ(hit.move, kMoveNone);
    EXPECT_EQ(hit.depth, 0);
    EXPECT_EQ(hit.bound, kBoundLower);
    EXPECT_EQ(hit.value, value);
}

// A knight that takes an undefended pawn, with nothing else to take.
constexpr const char* kPawnToTakeFen = "6k1/5ppp/8/3p4/8/4N3/5PPP/6K1 w - - 0 1";

TEST_F(Quiesce, ResultsAreStoredWithTheirBounds) {
    Board board = board_of(kPawnToTakeFen);
    const Move capture = move_of("e3d5", board);
    const Score calm = evaluate(board, -30000, 30000, 0);
    const Result exact = run(board, -30000, 30000);
    EXPECT_GT(exact.score, calm + 50);
    EXPECT_EQ(exact.pv, "e3d5");
    HashHit hit = stored(board);
    EXPECT_EQ(hit.move, capture);
    EXPECT_EQ(hit.bound, kBoundExact);
    EXPECT_EQ(hit.value, exact.score);
    hash_clear(hash_table);
    const Result upper = run(board, exact.score + 100, 30000);
    EXPECT_EQ(upper.score, exact.score);
    hit = stored(board);
    EXPECT_EQ(hit.move, kMoveNone);
    EXPECT_EQ(hit.bound, kBoundUpper);
    hash_clear(hash_table);
    const Result lower = run(board, -30000, calm + 10);
    EXPECT_GE(lower.score, calm + 10);
    hit = stored(board);
    EXPECT_EQ(hit.move, capture);
    EXPECT_EQ(hit.bound, kBoundLower);
}

TEST_F(Quiesce, EveryMoveSearchedIsANode) {
    Board board = board_of(kPawnToTakeFen);
    search_thread(0).selective_depth = 0;
    EXPECT_EQ(run(board, -30000, 30000, 7).nodes, 1u);
    EXPECT_EQ(search_thread(0).selective_depth, 8);
}

TEST_F(Quiesce, DeltaPruningSkipsACaptureThatCannotReachAlpha) {
    Board board = board_of(kPawnToTakeFen);
    const Score calm = evaluate(board, -30000, 30000, 0);
    const Score alpha = calm + 50 + 100;
    ASSERT_EQ(evaluate(board, alpha, alpha + 1, 0), calm);
    // The margin and the pawn reach alpha and no more: not worth a look.
    const Result pruned = run(board, alpha, alpha + 1);
    EXPECT_EQ(pruned.nodes, 0u);
    EXPECT_EQ(pruned.score, alpha);
    EXPECT_EQ(pruned.pv, "");
    hash_clear(hash_table);
    EXPECT_EQ(run(board, alpha - 1, alpha).nodes, 1u);
    hash_clear(hash_table);
    set("Delta Margin", "51");
    EXPECT_EQ(run(board, alpha, alpha + 1).nodes, 1u);
}

TEST_F(Quiesce, WithDeltaPruningOffNoCaptureIsSkipped) {
    for (const char* const off : {"0", "2", "no"}) {
        hash_clear(hash_table);
        set("Delta Pruning", off);
        EXPECT_EQ(run(kPawnToTakeFen, 2000, 2001).nodes, 1u) << off;
    }
    set("Delta Pruning", "1");
    set("Difficulty Level", "8");
    hash_clear(hash_table);
    EXPECT_EQ(run(kPawnToTakeFen, 2000, 2001).nodes, 1u);
}

TEST_F(Quiesce, InAFullWindowNoCaptureIsSkipped) {
    EXPECT_EQ(run(kPawnToTakeFen, 2000, 2002).nodes, 1u);
    EXPECT_EQ(run(kPawnToTakeFen, 2000, 2001).nodes, 0u);
}

struct DeltaRow {
    const char* fen;
    const char* move;
    bool skipped;
    Score gain;  // beyond stand-pat and margin
};

TEST_F(Quiesce, DeltaPruningSparesMovesThatMayChangeMore) {
    for (const DeltaRow& row : {
             DeltaRow{"6k1/5ppp/8/3n4/8/4N3/5PPP/6K1 w - - 0 1", "e3d5", true, 300},
             DeltaRow{"6k1/5ppp/8/3b4/8/4N3/5PPP/6K1 w - - 0 1", "e3d5", true, 325},
             DeltaRow{"6k1/5ppp/8/3r4/8/4N3/5PPP/6K1 w - - 0 1", "e3d5", true, 500},
             DeltaRow{"6k1/5ppp/8/3q4/8/4N3/5PPP/6K1 w - - 0 1", "e3d5", false, 0},
             DeltaRow{"6k1/5ppp/8/3pP3/8/8/5PPP/6K1 w - d6 0 1", "e5d6", true, 100},
             // Check.
             DeltaRow{"8/k4ppp/8/3p4/8/5B2/5PPP/6K1 w - - 0 1", "f3d5", true, 100},
             DeltaRow{"8/1k3ppp/8/3p4/8/5B2/5PPP/6K1 w - - 0 1", "f3d5", false, 0},
             // Pawns that arrive at the seventh rank or promote.
             DeltaRow{"6k1/3n2pp/4P3/8/8/8/5PPP/6K1 w - - 0 1", "e6d7", false, 0},
             DeltaRow{"8/P4pkp/8/8/8/8/5PPP/6K1 w - - 0 1", "a7a8q", false, 0},
             // A pawn about to promote.
             DeltaRow{"6k1/5ppp/8/8/8/4N3/2p2PPP/6K1 w - - 0 1", "e3c2", false, 0},
             DeltaRow{"6k1/5ppp/8/8/4N3/2p5/5PPP/6K1 w - - 0 1", "e4c3", true, 100},
         }) {
        hash_clear(hash_table);
        Board board = board_of(row.fen);
        ASSERT_NE(move_of(row.move, board), kMoveNone) << row.fen;
        constexpr Score kAlpha = 4000;
        const Score calm = evaluate(board, kAlpha, kAlpha + 1, 0);
        const Result result = run(board, kAlpha, kAlpha + 1);
        EXPECT_EQ(result.nodes == 0, row.skipped) << row.fen;
        if (row.skipped) {
            EXPECT_EQ(result.score, calm + 50 + row.gain) << row.fen;
        }
    }
}

TEST_F(Quiesce, InCheckEveryEvasionIsSearched) {
    // A far alpha would prune any capture.
    constexpr const char* fen = "6k1/8/8/8/8/6P1/5P1P/r5K1 w - - 0 1";
    Board board = board_of(fen);
    ASSERT_TRUE(board_is_check(board)) << fen;
    MoveList legal;
    gen_legal_moves(legal, board);
    const Result result = run(board, 5000, 5001);
    EXPECT_EQ(result.nodes, static_cast<std::uint64_t>(legal.size)) << fen;
}

TEST_F(Quiesce, InCheckWithoutEvasionIsMate) {
    constexpr const char* fen = "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1";
    for (const int ply : {1, 2, 10, 200}) {
        Board board = board_of(fen);
        EXPECT_EQ(run(board, -30000, 30000, ply).score, ply - 30000);
        EXPECT_FALSE(is_stored(board));
    }
}

TEST_F(Quiesce, MateInOneByACaptureIsSeen) {
    const Result result = run("3r2k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1", -30000, 30000, 4);
    EXPECT_EQ(result.score, 30000 - 5);
    EXPECT_EQ(result.pv, "d1d8");
}

TEST_F(Quiesce, QuietChecksAreTriedUpToTheirLimit) {
    // Rd8 mates and takes nothing.
    constexpr const char* fen = "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1";
    EXPECT_LT(run(fen, -30000, 30000).score, 2000);
    set_checks(true);
    hash_clear(hash_table);
    EXPECT_EQ(run(fen, -30000, 30000).score, 30000 - 3);
    search_thread(0).check_plies_limit = 1;
    hash_clear(hash_table);
    EXPECT_LT(run(fen, -30000, 30000).score, 2000);
    search_thread(0).check_plies_limit = -3;
    hash_clear(hash_table);
    EXPECT_EQ(run(fen, -30000, 30000).score, 30000 - 3);
}

TEST_F(Quiesce, AtTheLastPlyTheStaticValueIsReturned) {
    for (const char* const fen :
         {kPawnToTakeFen, "6k1/8/8/8/8/6P1/5P1P/r5K1 w - - 0 1", kQuietFen}) {
        Board board = board_of(fen);
        const Score value = evaluate(board, -20000, 20000, 0);
        const Result result = run(board, -20000, 20000, 255);
        EXPECT_EQ(result.score, value) << fen;
        EXPECT_EQ(result.nodes, 0u) << fen;
        EXPECT_FALSE(is_stored(board)) << fen;
    }
    // One ply earlier captures are tried.
    EXPECT_EQ(run(kPawnToTakeFen, -20000, 20000, 254).nodes, 1u);
}

TEST_F(Quiesce, CapturesIntoADrawCountAsDrawn) {
    // The last pawn falls, and nobody can win.
    const Result result = run("4k3/8/8/8/8/8/3p4/4K3 w - - 0 1", -30000, 30000);
    EXPECT_EQ(result.score, 0);
    EXPECT_EQ(result.pv, "e1d2");
    Board board = board_of("4k3/8/8/8/8/8/8/4K2B w - - 0 1");
    EXPECT_TRUE(is_draw(board, 0));
    board = board_of("4k3/8/8/8/8/8/8/4K2R w - - 99 1");
    EXPECT_FALSE(is_draw(board, 0));
    board = board_of("4k3/8/8/8/8/8/8/4K2R w - - 100 1");
    EXPECT_TRUE(is_draw(board, 0));
}

struct ProbeRow {
    int bound;
    Score value;
    Score alpha;
    Score beta;
    bool cuts;
};

TEST_F(Quiesce, StoredResultsOfAnyDraftCutByTheirBound) {
    for (const ProbeRow& row : {
             ProbeRow{kBoundExact, 77, 50, 51, true},
             ProbeRow{kBoundExact, 77, 100, 101, true},
             ProbeRow{kBoundExact, 77, 50, 100, false},
             ProbeRow{kBoundExact, 77, 50, 77, true},
             ProbeRow{kBoundExact, 77, 77, 100, true},
             ProbeRow{kBoundLower, 77, 50, 77, true},
             ProbeRow{kBoundLower, 77, 50, 78, false},
             ProbeRow{kBoundLower, 77, 100, 101, false},
             ProbeRow{kBoundUpper, 77, 77, 100, true},
             ProbeRow{kBoundUpper, 77, 76, 77, false},
             ProbeRow{kBoundUpper, 77, 10, 11, false},
             // "No score yet" is no exact score, but it is below any alpha.
             ProbeRow{kBoundExact, -32767, -500, -499, true},
         }) {
        for (const int draft : {0, 9}) {
            hash_clear(hash_table);
            Board board = board_of(kQuietFen);
            const Score calm = evaluate(board, row.alpha, row.beta, 0);
            hash_store(hash_table, board.key, kMoveNone, draft, row.bound, row.value);
            const Score expected = row.cuts ? row.value : calm;
            const Result result = run(board, row.alpha, row.beta, 1);
            if (row.value != -32767) {
                EXPECT_EQ(result.score, expected) << row.bound << " " << row.alpha;
            } else {
                EXPECT_EQ(result.score, value_from_hash(row.value, 1));
            }
        }
    }
}

TEST_F(Quiesce, StoredMateScoresAreSeenFromTheRoot) {
    Board board = board_of(kQuietFen);
    hash_store(hash_table, board.key, kMoveNone, 0, kBoundLower, 29990);
    EXPECT_EQ(run(board, 0, 1, 6).score, 29984);
}

struct MateRow {
    Score alpha;
    Score beta;
    bool cuts;
    Score score;
    Score new_alpha;
    Score new_beta;
};

void expect_mate_distance(const char* fen, int ply, const MateRow& row) {
    Board board = board_of(fen);
    Score alpha = row.alpha;
    Score beta = row.beta;
    Score score = 0;
    EXPECT_EQ(mate_distance_cuts(board, alpha, beta, ply, score), row.cuts) << fen << row.alpha;
    if (row.cuts) {
        EXPECT_EQ(score, row.score) << fen << row.alpha;
    } else {
        EXPECT_EQ(alpha, row.new_alpha) << fen << row.alpha;
        EXPECT_EQ(beta, row.new_beta) << fen << row.alpha;
    }
}

TEST_F(Quiesce, TheWindowIsNarrowedToWhatMatesAllow) {
    constexpr int kPly = 10;
    for (const MateRow& row : {
             MateRow{-30000, 30000, false, 0, -29988, 29989},
             MateRow{-29988, 29989, false, 0, -29988, 29989},
             MateRow{-29989, -29987, false, 0, -29988, -29987},
             MateRow{-29999, -29988, true, -29988, 0, 0},
             MateRow{29989, 29995, true, 29989, 0, 0},
             MateRow{29988, 29995, false, 0, 29988, 29989},
             MateRow{-5, 5, false, 0, -5, 5},
         }) {
        expect_mate_distance(kQuietFen, kPly, row);
    }
    constexpr const char* mate_fen = "R5k1/5ppp/8/8/8/8/8/6K1 b - - 0 1";
    expect_mate_distance(mate_fen, kPly, {-30000, 30000, false, 0, -29990, 29989});
    expect_mate_distance(mate_fen, kPly, {-29989, -29988, false, 0, -29989, -29988});
    expect_mate_distance(mate_fen, kPly, {-30000, -29990, true, -29990, 0, 0});
}

// The lowest and highest score that are within reach of a node that is no mate.
void expect_narrowed(int ply, Score alpha, Score beta) {
    const Score lower = ply + 2 - 30000;
    const Score upper = 30000 - 1 - ply;
    MateRow row = {alpha, beta, false, 0, std::max(alpha, lower), std::min(beta, upper)};
    if (alpha < lower && beta <= lower) {
        row = {alpha, beta, true, lower, 0, 0};
    } else if (upper < beta && upper <= alpha) {
        row = {alpha, beta, true, upper, 0, 0};
    }
    expect_mate_distance(kQuietFen, ply, row);
}

TEST_F(Quiesce, AtEveryPlyTheWindowIsNarrowedAlike) {
    for (int ply = 0; ply < kMaxPly; ++ply) {
        for (Score edge = kMateBound - 3; edge <= kMateBound + 3; ++edge) {
            expect_narrowed(ply, -edge, -edge + 1);
            expect_narrowed(ply, -edge, edge);
            expect_narrowed(ply, edge - 1, edge);
        }
    }
}

}  // namespace
}  // namespace zar
