#include "search/order.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "board/captures.h"
#include "board/exchange.h"
#include "gtest/gtest.h"
#include "search/history.h"
#include "search/types.h"
#include "support/search_support.h"

namespace zar {
namespace {

using test::board_of;
using test::Dice;
using test::fen_of;
using test::move_of;
using test::text_of;
using Order = test::SearchTest;
using Moves = std::vector<Move>;
using Killers = std::array<Move, 2>;

Moves moves_of(const MoveList& list) { return {list.move.begin(), list.move.begin() + list.size}; }

Moves legal_moves(Board& board) {
    MoveList legal;
    gen_legal_moves(legal, board);
    return moves_of(legal);
}

bool contains(const Moves& moves, Move move) {
    return std::find(moves.begin(), moves.end(), move) != moves.end();
}

void set_killers(int ply, Killers killers) {
    search_thread(0).killers[static_cast<std::size_t>(ply)] = killers;
}

struct Served {
    Moves moves;
    std::vector<bool> from_quiets;
};

Served serve(Picker& picker) {
    Served served;
    while (const Move move = next_move(picker, 0)) {
        served.moves.push_back(move);
        served.from_quiets.push_back(picker_is_quiet(picker));
    }
    EXPECT_EQ(next_move(picker, 0), kMoveNone);
    return served;
}

Served serve_main(Board& board, Move hash_move, Killers killers) {
    Attack attack;
    attack_set(attack, board);
    set_killers(3, killers);
    Picker picker;
    picker_init(picker, board, attack, 3, hash_move, 0);
    return serve(picker);
}

Moves serve_quiescence(Board& board, bool include_checks) {
    Attack attack;
    attack_set(attack, board);
    Picker picker;
    qpicker_init(picker, board, attack, include_checks, 0);
    const auto skip_none = [](Move) { return false; };
    Moves moves;
    while (const Move move = next_qmove(picker, skip_none, 0)) {
        moves.push_back(move);
    }
    EXPECT_EQ(next_qmove(picker, skip_none, 0), kMoveNone);
    return moves;
}

std::string texts_of(const Moves& moves) {
    std::string texts;
    for (const Move move : moves) {
        texts += (texts.empty() ? "" : " ") + text_of(move);
    }
    return texts;
}

// What follows is the order as its description has it: all legal moves with a class and a score,
// sorted once. The pickers get there by stages.

enum Class { kHash, kGood, kKiller1, kKiller2, kQuiet, kBad };

bool is_tactical(Move move, const Board& board) {
    return move_is_promotion(move) || move_is_en_passant(move) ||
           board_piece(board, move_to(move)) != kEmpty;
}

Piece victim_of(Move move, const Board& board) {
    if (move_is_en_passant(move)) {
        return pawn_of(color_opposite(board.turn));
    }
    return board_piece(board, move_to(move));
}

int victim_first(Move move, const Board& board) {
    const Piece victim = victim_of(move, board);
    if (victim == kEmpty) {
        return piece_type_of(move_promote(move)) - 5;
    }
    return 6 * piece_type_of(victim) + 5 - piece_type_of(board_piece(board, move_from(move)));
}

bool is_good(Move move, const Board& board) {
    if (move_is_promotion(move)) {
        return text_of(move).back() == 'q';
    }
    return piece_value_of(victim_of(move, board)) >=
               piece_value_of(board_piece(board, move_from(move))) ||
           see(move, board) >= 0;
}

int credit(Move move, const Board& board) {
    return search_thread(0).history[history_index(move, board)];
}

struct Ranked {
    Move move;
    int group;  // lower first
    int score;  // higher first
};

void sort_ranked(std::vector<Ranked>& ranked) {
    std::stable_sort(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) {
        return a.group != b.group ? a.group < b.group : a.score > b.score;
    });
}

Moves moves_of(std::vector<Ranked> ranked) {
    sort_ranked(ranked);
    Moves moves;
    for (const Ranked& entry : ranked) {
        moves.push_back(entry.move);
    }
    return moves;
}

Moves expected_main(Board& board, Move hash_move, Killers killers) {
    std::vector<Ranked> ranked;
    for (const Move move : legal_moves(board)) {
        if (move == hash_move) {
            ranked.push_back({move, kHash, 0});
        } else if (is_tactical(move, board)) {
            const int group = is_good(move, board) ? kGood : kBad;
            ranked.push_back({move, group, victim_first(move, board)});
        } else if (move == killers[0] || move == killers[1]) {
            ranked.push_back({move, move == killers[0] ? kKiller1 : kKiller2, 0});
        } else {
            ranked.push_back({move, kQuiet, credit(move, board)});
        }
    }
    return moves_of(ranked);
}

// One list: the credit of a quiet move stays below what sets the classes apart.
Moves expected_in_check(Board& board, Move hash_move, Killers killers) {
    std::vector<Ranked> ranked;
    for (const Move move : legal_moves(board)) {
        int score = credit(move, board) - 24000;
        if (move == hash_move) {
            score = 32766;
        } else if (is_tactical(move, board)) {
            score = victim_first(move, board) + (is_good(move, board) ? 4000 : -28000);
        } else if (move == killers[0]) {
            score = 4;
        } else if (move == killers[1]) {
            score = 2;
        }
        ranked.push_back({move, 0, score});
    }
    return moves_of(ranked);
}

Moves expected_quiescence(Board& board, bool include_checks) {
    const bool in_check = board_is_check(board);
    std::vector<Ranked> ranked;
    for (const Move move : legal_moves(board)) {
        const bool tactical = is_tactical(move, board);
        if (in_check) {
            ranked.push_back({move, 0, tactical ? victim_first(move, board) : -24000});
        } else if (tactical && is_good(move, board)) {
            ranked.push_back({move, 0, victim_first(move, board)});
        }
    }
    Moves moves = moves_of(ranked);
    if (!in_check && include_checks) {
        MoveList checks;
        gen_quiet_checks(checks, board);
        for (const Move move : moves_of(checks)) {
            if (see(move, board) >= 0 && move_is_legal(move, board)) {
                moves.push_back(move);
            }
        }
    }
    return moves;
}

Move any_move(Dice& dice, const Moves& legal) {
    switch (dice.below(3)) {
        case 0:
            return kMoveNone;
        case 1:
            return static_cast<Move>(dice.below(65536));
        default:
            return legal.empty() ? kMoveNull : legal[dice.below(legal.size())];
    }
}

TEST_F(Order, EveryLegalMoveIsServedOnceWhateverHashMoveAndKillers) {
    Dice dice(11);
    int checks = 0;
    test::for_each_position(40, [&](Board& board) {
        for (std::uint16_t& count : search_thread(0).history) {
            count = static_cast<std::uint16_t>(dice.below(4) * 1000);
        }
        const Moves legal = legal_moves(board);
        for (int round = 0; round < 3; ++round) {
            const Move hash_move = any_move(dice, legal);
            const Move killer = any_move(dice, legal);
            Killers killers = {any_move(dice, legal), killer};
            if (killers[0] == killer) {
                killers[1] = kMoveNone;  // two equal ones never arise
            }
            const bool in_check = board_is_check(board);
            checks += in_check ? 1 : 0;
            const Moves expected = in_check ? expected_in_check(board, hash_move, killers)
                                            : expected_main(board, hash_move, killers);
            ASSERT_EQ(texts_of(serve_main(board, hash_move, killers).moves), texts_of(expected))
                << fen_of(board) << " hash move " << text_of(hash_move) << " killers "
                << text_of(killers[0]) << " " << text_of(killers[1]);
            ASSERT_EQ(expected.size(), legal.size());
        }
    });
    EXPECT_GT(checks, 50);
}

TEST_F(Order, QuiescenceServesGoodCapturesChecksAndEvasions) {
    int quiet_checks = 0;
    test::for_each_position(40, [&](Board& board) {
        const Moves captures = expected_quiescence(board, false);
        const Moves with_checks = expected_quiescence(board, true);
        quiet_checks += static_cast<int>(with_checks.size() - captures.size());
        ASSERT_EQ(texts_of(serve_quiescence(board, false)), texts_of(captures)) << fen_of(board);
        ASSERT_EQ(texts_of(serve_quiescence(board, true)), texts_of(with_checks)) << fen_of(board);
    });
    EXPECT_GT(quiet_checks, 100);
}

TEST_F(Order, TheMostCapturesAndQuietMovesHaveRoom) {
    // Six pawns take to both sides, two to one, each to be any of four; pieces take bishops.
    Board captures = board_of("nnnnnnnn/PPPPPPPP/1b1b1b2/Q1R1Q1N1/1b1b1b1b/B1R1B3/8/K6k w - - 0 1");
    MoveList list;
    gen_captures(list, captures);
    EXPECT_GE(list.size, 14 * 4);
    EXPECT_LE(list.size, kMostCaptures);
    const Moves taken = serve_quiescence(captures, false);
    EXPECT_EQ(texts_of(taken), texts_of(expected_quiescence(captures, false)));
    EXPECT_GE(taken.size(), 14U);
    // The most moves that a position reached from the start can have.
    Board quiets = board_of("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1");
    const Moves served = serve_main(quiets, kMoveNone, {}).moves;
    EXPECT_EQ(served.size(), legal_moves(quiets).size());
    EXPECT_EQ(served.size(), 218U);
}

TEST_F(Order, TheStagesOfOnePosition) {
    // Good: exd5 (pawn takes knight), Bxg4 takes a pawn for nothing. Bad: Qxb7 is taken back.
    constexpr const char* fen = "1r2k3/1p6/1Q6/3n4/4P1p1/8/4B3/4K3 w - - 0 1";
    Board board = board_of(fen);
    const Killers killers = {move_of("e1f2", board), move_of("e2d3", board)};
    search_thread(0).history[kWhiteKing12 * 64 + 3] = 50;  // Kd1
    const Move hash_move = move_of("b6a5", board);
    const std::string served = texts_of(serve_main(board, hash_move, killers).moves);
    EXPECT_TRUE(served.starts_with("b6a5 e4d5 e2g4 e1f2 e2d3 e1d1 ")) << served;
    EXPECT_TRUE(served.ends_with(" b6b7")) << served;
}

TEST_F(Order, AnIllegalHashMoveIsNeverServed) {
    // The knight is pinned; the pawn is blocked; there is no man on a3.
    Board board = board_of("4r1k1/8/8/8/8/7p/4N2P/4K3 w - - 0 1");
    const Moves without = serve_main(board, kMoveNone, {}).moves;
    const Move pinned = move_make(square_from_string("e2"), square_from_string("c3"));
    const Move blocked = move_make(square_from_string("h2"), square_from_string("h3"));
    const Move ghost = move_make(square_from_string("a3"), square_from_string("a4"));
    for (const Move move : {pinned, blocked, ghost, kMoveNull, Move{0xFFFF}}) {
        EXPECT_EQ(texts_of(serve_main(board, move, {}).moves), texts_of(without)) << move;
    }
}

TEST_F(Order, AKillerThatIsTheHashMoveIsServedOnce) {
    Board board = board_of(kStartFen);
    const Move move = move_of("b1c3", board);
    for (const Killers& killers : {Killers{move, kMoveNone}, Killers{kMoveNone, move}}) {
        const Moves served = serve_main(board, move, killers).moves;
        EXPECT_EQ(served.front(), move);
        EXPECT_EQ(std::count(served.begin(), served.end(), move), 1);
        EXPECT_EQ(served.size(), 20u);
    }
}

TEST_F(Order, AKillerThatIsACaptureHereIsNoKiller) {
    Board board = board_of("4k3/8/8/3q4/8/2N5/P7/4K3 w - - 0 1");
    const Move capture = move_of("c3d5", board);
    const Moves served = serve_main(board, kMoveNone, {capture, kMoveNone}).moves;
    EXPECT_EQ(served.front(), capture);
    EXPECT_EQ(std::count(served.begin(), served.end(), capture), 1);
}

TEST_F(Order, KillersBelongToTheirPly) {
    Board board = board_of(kStartFen);
    Attack attack;
    attack_set(attack, board);
    const Move killer = move_of("h2h3", board);
    set_killers(4, {killer, kMoveNone});
    Picker picker;
    picker_init(picker, board, attack, 5, kMoveNone, 0);
    EXPECT_NE(next_move(picker, 0), killer);
    picker_init(picker, board, attack, 4, kMoveNone, 0);
    EXPECT_EQ(next_move(picker, 0), killer);
}

TEST_F(Order, UnderPromotionsComeAfterAllQuietMoves) {
    constexpr const char* fen = "1n2k3/P7/8/8/8/8/8/4K3 w - - 0 1";
    Board board = board_of(fen);
    const Moves served = serve_main(board, kMoveNone, {}).moves;
    ASSERT_EQ(served.size(), 13u) << fen;
    EXPECT_EQ(text_of(served[0]), "a7b8q");
    EXPECT_EQ(text_of(served[1]), "a7a8q");
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(text_of(served[2 + i]).size(), 4u) << fen;
    }
    const std::string last = texts_of({served.begin() + 7, served.end()});
    EXPECT_EQ(last, "a7b8n a7b8r a7b8b a7a8r a7a8b a7a8n") << fen;
    EXPECT_EQ(texts_of(serve_quiescence(board, false)), "a7b8q a7a8q") << fen;
}

TEST_F(Order, QuietMovesComeByCreditAndThenAsGenerated) {
    Board board = board_of("4k3/8/8/8/8/8/8/4K2N w - - 0 1");
    auto& history = search_thread(0).history;
    history[kWhiteKing12 * 64 + 12] = 30;    // Ke2
    history[kWhiteKnight12 * 64 + 22] = 40;  // Ng3
    history[kWhiteKnight12 * 64 + 13] = 30;  // Nf2
    const std::string served = texts_of(serve_main(board, kMoveNone, {}).moves);
    EXPECT_EQ(served, "h1g3 e1e2 h1f2 e1d1 e1f1 e1d2 e1f2");
}

TEST_F(Order, QuiescencePassesOverTheCapturesItIsToldToSkipButNoChecks) {
    // White takes b5 or d5; Qe2 and others are quiet checks.
    Board board = board_of("4k3/8/8/1p1p4/2P5/8/3Q4/4K3 w - - 0 1");
    Attack attack;
    attack_set(attack, board);
    Picker picker;
    qpicker_init(picker, board, attack, true, 0);
    const Move skipped = move_of("c4b5", board);
    Moves served;
    while (const Move move = next_qmove(
               picker, [=](Move asked) { return asked == skipped; }, 0)) {
        served.push_back(move);
    }
    EXPECT_FALSE(contains(served, skipped));
    EXPECT_TRUE(contains(served, move_of("c4d5", board)));
    EXPECT_TRUE(contains(served, move_of("d2e2", board)));
    qpicker_init(picker, board, attack, true, 0);
    served.clear();
    while (const Move move = next_qmove(
               picker, [](Move) { return true; }, 0)) {
        served.push_back(move);
    }
    EXPECT_FALSE(contains(served, move_of("c4d5", board)));
    EXPECT_TRUE(contains(served, move_of("d2e2", board)));
}

// What the search's picker serves when it is told to skip all it asks about.
Moves serve_skipping(Board& board, Move hash_move, Killers killers, Moves& asked) {
    Attack attack;
    attack_set(attack, board);
    set_killers(3, killers);
    Picker picker;
    picker_init(picker, board, attack, 3, hash_move, 0);
    const auto skip = [&asked](Move move) {
        asked.push_back(move);
        return true;
    };
    Moves served;
    while (const Move move = next_move(picker, skip, 0)) {
        served.push_back(move);
    }
    return served;
}

TEST_F(Order, TheSearchPassesOverTheQuietMovesItIsToldToSkipAndNoOthers) {
    Board board = board_of("1r2k3/1p6/1Q6/3n4/4P1p1/8/4B3/4K3 w - - 0 1");
    const Move hash_move = move_of("b6a5", board);
    const Killers killers = {move_of("e1f2", board), kMoveNone};
    const Served all = serve_main(board, hash_move, killers);
    Moves others;
    for (std::size_t i = 0; i < all.moves.size(); ++i) {
        if (!all.from_quiets[i]) {
            others.push_back(all.moves[i]);
        }
    }
    ASSERT_LT(others.size(), all.moves.size());
    Moves asked;
    EXPECT_EQ(serve_skipping(board, hash_move, killers, asked), others);
    for (const Move move : asked) {
        EXPECT_FALSE(is_tactical(move, board)) << text_of(move);
    }
    EXPECT_GE(asked.size(), all.moves.size() - others.size());

    board = board_of("4k3/8/8/8/8/8/4r3/4K3 w - - 0 1");
    asked.clear();
    EXPECT_EQ(serve_skipping(board, kMoveNone, {}, asked), serve_main(board, kMoveNone, {}).moves);
    EXPECT_TRUE(asked.empty());
}

TEST_F(Order, OnlyQuietMovesOutOfCheckAreServedAsQuiet) {
    constexpr const char* fen = "1r2k3/1p6/1Q6/3n4/4P1p1/8/4B3/4K3 w - - 0 1";
    Board board = board_of(fen);
    const Move hash_move = move_of("b6a5", board);
    const Killers killers = {move_of("e1f2", board), kMoveNone};
    const Served served = serve_main(board, hash_move, killers);
    for (std::size_t i = 0; i < served.moves.size(); ++i) {
        const Move move = served.moves[i];
        const bool quiet = !is_tactical(move, board) && move != hash_move && move != killers[0];
        EXPECT_EQ(served.from_quiets[i], quiet) << fen << " " << text_of(move);
    }
    board = board_of("4k3/8/8/8/8/8/4r3/4K3 w - - 0 1");
    for (const bool quiet : serve_main(board, kMoveNone, {}).from_quiets) {
        EXPECT_FALSE(quiet);
    }
}

TEST_F(Order, InCheckTheNumberOfEvasionsIsKnown) {
    Board board = board_of("7k/8/8/8/8/8/5PPP/1r5K w - - 0 1");
    ASSERT_TRUE(board_is_check(board));
    Attack attack;
    attack_set(attack, board);
    Picker picker;
    picker_init(picker, board, attack, 0, kMoveNone, 0);
    EXPECT_EQ(picker_evasion_count(picker), static_cast<int>(legal_moves(board).size()));
}

TEST_F(Order, InCheckKillersComeBeforeOtherQuietMovesAndBadCapturesLast) {
    // The rook gives check; the queen can take it but is then taken by the pawn.
    constexpr const char* fen = "4k3/8/8/8/8/3p4/4r3/3QKB2 w - - 0 1";
    Board board = board_of(fen);
    ASSERT_EQ(texts_of(legal_moves(board)), "d1e2 f1e2") << fen;
    EXPECT_EQ(texts_of(serve_main(board, kMoveNone, {}).moves), "f1e2 d1e2") << fen;
    board = board_of("4k3/4r3/8/8/8/8/3P1P2/R2QKB2 w - - 0 1");
    const Killers killers = {move_of("f1e2", board), kMoveNone};
    search_thread(0).history[kWhiteQueen12 * 64 + 12] = 16383;
    EXPECT_EQ(texts_of(serve_main(board, kMoveNone, {}).moves), "d1e2 f1e2");
    EXPECT_EQ(texts_of(serve_main(board, kMoveNone, killers).moves), "f1e2 d1e2");
    EXPECT_EQ(texts_of(serve_main(board, move_of("d1e2", board), killers).moves), "d1e2 f1e2");
}

TEST_F(Order, LosingCapturesAndLosingChecksAreLeftOutOfQuiescence) {
    // Qxb7 loses the queen; Qe6 check is taken by the pawn; checks by the rook are safe.
    Board board = board_of("1r2k3/1p1p4/1Q6/8/8/8/8/3K3R w - - 0 1");
    EXPECT_EQ(texts_of(serve_quiescence(board, false)), "");
    const Moves served = serve_quiescence(board, true);
    EXPECT_TRUE(contains(served, move_of("h1e1", board)));
    EXPECT_TRUE(contains(served, move_of("h1h8", board)));
    EXPECT_FALSE(contains(served, move_of("b6e6", board)));
    EXPECT_FALSE(contains(served, move_of("b6b7", board)));
}

TEST_F(Order, RootMovesAreOrderedLikeEvasionsWithoutKillers) {
    Dice dice(3);
    test::for_each_position(6, [&](Board& board) {
        const Moves legal = legal_moves(board);
        const Move hash_move = any_move(dice, legal);
        set_killers(0, {any_move(dice, legal), any_move(dice, legal)});
        MoveList root;
        gen_legal_moves(root, board);
        order_root_moves(root, board, hash_move, 0);
        ASSERT_EQ(texts_of(moves_of(root)), texts_of(expected_in_check(board, hash_move, {})))
            << fen_of(board);
    });
}

}  // namespace
}  // namespace zar
