// The generators and the two questions about one move, against the slow rules and each other.

#include <algorithm>
#include <string>
#include <vector>

#include "board/attack.h"
#include "board/make.h"
#include "board/movegen.h"
#include "differential/positions.h"
#include "gtest/gtest.h"
#include "support/letter_board.h"
#include "support/move_support.h"

namespace zar {
namespace {

using test::difference;
using test::fen_of;
using test::text_of;
using test::Texts;
using test::texts_of;
using test::twin_move;
using test::twin_of;
using DifferentialMoves = test::SearchTest;
using Moves = std::vector<Move>;

Moves listed(void (*generate)(MoveList&, Board&), Board& board) {
    MoveList list;
    generate(list, board);
    return test::moves_of(list);
}

Moves listed(void (*generate)(MoveList&, const Board&), const Board& board) {
    MoveList list;
    generate(list, board);
    return test::moves_of(list);
}

Moves listed(void (*generate)(MoveList&, Board&, const Attack&), Board& board) {
    Attack attack;
    attack_set(attack, board);
    MoveList list;
    generate(list, board, attack);
    return test::moves_of(list);
}

template <typename Accept>
Moves filtered(const Moves& moves, Accept accept) {
    Moves kept;
    std::copy_if(moves.begin(), moves.end(), std::back_inserter(kept), accept);
    return kept;
}

Texts sorted_texts(const Moves& moves) {
    Texts texts = texts_of(moves);
    std::sort(texts.begin(), texts.end());
    return texts;
}

// Plays the move, asks and takes it back.
template <typename Question>
bool ask_after(Board& board, Move move, Question question) {
    UndoInfo undo;
    move_do(board, move, undo);
    const bool answer = question(board);
    move_undo(board, move, undo);
    return answer;
}

bool gives_check(const twin::Position& position, Move move) {
    return twin::is_check(twin::position_after(position, twin_move(move)));
}

// Is the king of the side that has moved safe?
bool keeps_king_safe(const twin::Position& position, Move move) {
    twin::Position after = twin::position_after(position, twin_move(move));
    after.white_to_move = position.white_to_move;
    return !twin::is_check(after);
}

bool takes_or_promotes(Move move, const Board& board) {
    return move_is_promotion(move) || move_is_en_passant(move) ||
           board_piece(board, move_to(move)) != kEmpty;
}

TEST_F(DifferentialMoves, LegalMovesAreThoseOfTheSlowRules) {
    std::size_t most = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const Moves moves = listed(gen_legal_moves, board);
        most = std::max(most, moves.size());
        ASSERT_EQ(sorted_texts(moves), twin::legal_moves(twin_of(seen))) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
    });
    EXPECT_GT(most, 100u);
}

TEST_F(DifferentialMoves, CapturesAndQuietMovesDivideTheFullList) {
    std::size_t captures = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const Moves all = listed(gen_moves, board);
        const auto tactical = [&](Move move) { return takes_or_promotes(move, seen); };
        const auto quiet = [&](Move move) { return !takes_or_promotes(move, seen); };
        ASSERT_EQ(texts_of(listed(gen_captures, board)), texts_of(filtered(all, tactical)))
            << fen_of(seen);
        ASSERT_EQ(listed(gen_captures, board), filtered(all, tactical)) << fen_of(seen);
        ASSERT_EQ(texts_of(listed(gen_quiets, board)), texts_of(filtered(all, quiet)))
            << fen_of(seen);
        ASSERT_EQ(listed(gen_quiets, board), filtered(all, quiet)) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
        captures += filtered(all, tactical).size();
    });
    EXPECT_GT(captures, 20000u);
}

TEST_F(DifferentialMoves, EvasionsAreThePseudoOnesThatKeepTheKingSafe) {
    int checks = 0;
    int double_checks = 0;
    int refused = 0;
    test::visit_all([&](const Board& seen) {
        if (!board_is_check(seen)) {
            return;
        }
        ++checks;
        Board board = seen;
        Attack attack;
        attack_set(attack, board);
        double_checks += attack.count > 1 ? 1 : 0;
        const twin::Position position = twin_of(seen);
        const Moves pseudo = listed(gen_evasions_pseudo, board);
        const Moves expected =
            filtered(pseudo, [&](Move move) { return keeps_king_safe(position, move); });
        ASSERT_EQ(texts_of(listed(gen_evasions, board)), texts_of(expected)) << fen_of(seen);
        ASSERT_EQ(listed(gen_evasions, board), expected) << fen_of(seen);
        ASSERT_EQ(sorted_texts(expected), twin::legal_moves(position)) << fen_of(seen);
        ASSERT_EQ(has_evasion(board, attack), !expected.empty()) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
        refused += static_cast<int>(pseudo.size() - expected.size());
    });
    EXPECT_GT(checks, 1500);
    EXPECT_GT(double_checks, 300);
    EXPECT_GT(refused, 2000);
}

TEST_F(DifferentialMoves, QuietChecksAreTheQuietMovesThatCheck) {
    int checks = 0;
    int castlings = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const twin::Position position = twin_of(seen);
        const Moves quiets = listed(gen_quiets, board);
        // Of the king's moves castling alone is looked at.
        const Moves expected = filtered(quiets, [&](Move move) {
            const bool by_king = piece_is_king(board_piece(seen, move_from(move)));
            return (!by_king || move_kind(move) == kKindCastling) && gives_check(position, move);
        });
        const Moves found = listed(gen_quiet_checks, board);
        ASSERT_EQ(sorted_texts(found), sorted_texts(expected)) << fen_of(seen);
        ASSERT_EQ(difference(board, seen), "") << fen_of(seen);
        checks += static_cast<int>(found.size());
        castlings += static_cast<int>(std::count_if(found.begin(), found.end(), [](Move move) {
            return move_kind(move) == kKindCastling;
        }));
    });
    EXPECT_GT(checks, 10000);
    EXPECT_GT(castlings, 5);
}

TEST_F(DifferentialMoves, AMoveIsACheckWhenTheKingIsAttackedAfterIt) {
    int checks = 0;
    int special_checks = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const twin::Position position = twin_of(seen);
        for (const Move move : listed(gen_moves, board)) {
            const bool answer = move_is_check(move, board);
            ASSERT_EQ(difference(board, seen), "") << text_of(move) << " in " << fen_of(seen);
            ASSERT_EQ(answer, ask_after(board, move, board_is_check))
                << text_of(move) << " in " << fen_of(seen);
            ASSERT_EQ(answer, gives_check(position, move))
                << text_of(move) << " in " << fen_of(seen);
            checks += answer ? 1 : 0;
            special_checks += answer && move_kind(move) != kKindNormal ? 1 : 0;
        }
    });
    EXPECT_GT(checks, 10000);
    EXPECT_GT(special_checks, 300);
}

TEST_F(DifferentialMoves, AMoveIsLegalWhenTheOwnKingIsSafeAfterIt) {
    int illegal = 0;
    int illegal_special = 0;
    test::visit_all([&](const Board& seen) {
        Board board = seen;
        const twin::Position position = twin_of(seen);
        const bool in_check = twin::is_check(position);
        ASSERT_EQ(board_is_check(board), in_check) << fen_of(seen);
        for (const Move move :
             in_check ? listed(gen_evasions_pseudo, board) : listed(gen_moves, board)) {
            const bool answer = move_is_legal(move, board);
            ASSERT_EQ(difference(board, seen), "") << text_of(move) << " in " << fen_of(seen);
            ASSERT_EQ(answer, ask_after(board, move, board_is_legal))
                << text_of(move) << " in " << fen_of(seen);
            ASSERT_EQ(answer, keeps_king_safe(position, move))
                << text_of(move) << " in " << fen_of(seen);
            illegal += answer ? 0 : 1;
            illegal_special += !answer && move_kind(move) != kKindNormal ? 1 : 0;
        }
    });
    EXPECT_GT(illegal, 5000);
    EXPECT_GT(illegal_special, 50);
}

}  // namespace
}  // namespace zar
