#include "eval/pieces.h"

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "board/geometry.h"
#include "board/piece.h"
#include "eval/rank_mask.h"
#include "eval/weights.h"
#include "gtest/gtest.h"
#include "support/eval_support.h"

namespace zar {
namespace {

using test::board_of;
using test::fen_of_men;
using Pieces = test::EvalTest;

// The pieces are White's; the same holds for Black's with colours exchanged.
struct Row {
    const char* what;
    const char* men;
    ScorePair score;
};

void expect_scores(const std::vector<Row>& rows, bool press_king = false) {
    for (const Row& row : rows) {
        for (const bool swapped : {false, true}) {
            const std::string plain = fen_of_men(row.men);
            const std::string fen = swapped ? test::fen_swap_colors(plain) : plain;
            const Board board = board_of(fen);
            PawnRecord pawns;
            evaluate_pawns(pawns, board, 0);
            const Color color = swapped ? kBlack : kWhite;
            EXPECT_EQ(unpack(evaluate_pieces(board, color, pawns, press_king)), row.score)
                << row.what << "\n"
                << fen;
        }
    }
}

TEST_F(Pieces, AKingAloneHasNone) {
    expect_scores({{"bare", "w Ke1 ke8", {0, 0}}, {"pawns", "w Ke1 ke8 Pa2 Ph5", {0, 0}}});
}

TEST_F(Pieces, KnightsCountEmptySquaresNoPawnAttacks) {
    expect_scores({
        {"8 squares", "w Ke1 ke8 Nd4", {16, 16}},
        {"2 squares", "w Ke1 ke8 Na1", {-8, -8}},
        {"an enemy man is not empty", "w Ke1 ke8 Nd4 nf5", {12, 12}},
        {"an own man is not empty", "w Ke1 ke8 Nd4 Pb3 Pe2", {8, 8}},
        {"d7 attacks c6 and e6", "w Ke1 ke8 Nd4 pd7", {8, 8}},
        {"b7 attacks c6 only", "w Ke1 ke8 Nd4 pb7", {12, 12}},
        {"own pawns attack nothing", "w Ke1 ke8 Nd4 Pd3", {16, 16}},
        {"none left", "w Ke1 ke8 Na1 Pb3 Pc2", {-16, -16}},
    });
}

TEST_F(Pieces, EachSquareThatAKnightReachesCountsFour) {
    expect_scores({
        {"8", "w Kh1 kh8 Nd4", {16, 16}},
        {"7", "w Kh1 kh8 Nd4 nb3", {12, 12}},
        {"6", "w Kh1 kh8 Nd4 nb3 nb5", {8, 8}},
        {"5", "w Kh1 kh8 Nd4 nb3 nb5 nc2", {4, 4}},
        {"4", "w Kh1 kh8 Nd4 nb3 nb5 nc2 nc6", {0, 0}},
        {"3", "w Kh1 kh8 Nd4 nb3 nb5 nc2 nc6 ne2", {-4, -4}},
        {"2", "w Kh1 kh8 Nd4 nb3 nb5 nc2 nc6 ne2 ne6", {-8, -8}},
        {"1", "w Kh1 kh8 Nd4 nb3 nb5 nc2 nc6 ne2 ne6 nf3", {-12, -12}},
        {"0", "w Kh1 kh8 Nd4 nb3 nb5 nc2 nc6 ne2 ne6 nf3 nf5", {-16, -16}},
    });
}

TEST_F(Pieces, OutpostsLieInTheEnemyHalfAndBeforeIt) {
    // clang-format off
    constexpr int expected[6][8] = {
        {0, 0, 0,  0,  0, 0, 0, 0},  // rank 8
        {0, 0, 0,  0,  0, 0, 0, 0},
        {0, 0, 4,  5,  5, 4, 0, 0},
        {0, 2, 5, 10, 10, 5, 2, 0},
        {0, 2, 5, 10, 10, 5, 2, 0},
        {0, 0, 0,  0,  0, 0, 0, 0},  // rank 3
    };
    // clang-format on
    for (int rank = 3; rank <= 8; ++rank) {
        for (int file = 0; file < 8; ++file) {
            const auto square = [](int on_file, int on_rank) {
                return std::string{static_cast<char>('a' + on_file),
                                   static_cast<char>('0' + on_rank)};
            };
            // One pawn defends the knight; Black's king is on the other wing.
            const std::string fen =
                fen_of_men("b Ke1 k" + std::string(file < 4 ? "h8" : "a8") + " N" +
                           square(file, rank) + " P" + square(file == 0 ? 1 : file - 1, rank - 1));
            const Board board = board_of(fen);
            const ScorePair score = unpack(evaluate_pieces(board, kWhite, pawns_of(board), false));
            // Mobility is the same in both phases; a knight in the enemy's half attacks with 2.
            EXPECT_EQ(score.opening - score.endgame - (rank >= 5 ? 2 : 0), expected[8 - rank][file])
                << fen;
            const Board swapped = board_of(test::fen_swap_colors(fen));
            EXPECT_EQ(unpack(evaluate_pieces(swapped, kBlack, pawns_of(swapped), false)), score)
                << fen;
        }
    }
}

TEST_F(Pieces, AnOutpostCountsForEveryDefendingPawn) {
    // On ranks 5 and 6 the knight is an attacker too: 1 x 2.
    expect_scores({
        {"d4, one", "w Ke1 ke8 Nd4 Pc3", {16 + 10, 16}},
        {"d4, two", "w Ke1 ke8 Nd4 Pc3 Pe3", {16 + 20, 16}},
        {"d5, two", "w Ke1 kh8 Nd5 Pc4 Pe4", {16 + 20 + 2, 16}},
        {"b5, one", "w Ke1 kh8 Nb5 Pa4", {8 + 2 + 2, 8}},
        {"c5, one", "w Ke1 kh8 Nc5 Pb4", {16 + 5 + 2, 16}},
        {"f6, one", "w Ke1 ka8 Nf6 Pe5", {16 + 4 + 2, 16}},
        {"d6, one", "w Ke1 ka8 Nd6 Pe5", {16 + 5 + 2, 16}},
        {"g6", "w Ke1 ka8 Ng6 Pf5", {8 + 0 + 2, 8}},
        {"a5", "w Ke1 kh8 Na5 Pb4", {0 + 0 + 2, 0}},
        {"d3", "w Ke1 kh8 Nd3 Pc2", {12, 12}},
        {"no defender", "w Ke1 kh8 Nd5", {16 + 2, 16}},
    });
}

TEST_F(Pieces, AnOutpostIsNoneWhereAnEnemyPawnAttacks) {
    expect_scores({
        {"attacked", "w Ke1 kh8 Nd5 Pc4 Pe4 pe6", {16 + 2, 16}},
        {"passed by, f4 attacked", "w Ke1 kh8 Nd5 Pc4 Pe4 pe5", {12 + 20 + 2, 12}},
    });
}

TEST_F(Pieces, BishopsCountTheirDiagonalsAndOneMore) {
    expect_scores({
        {"7 and 1", "w Kg1 ke8 Ba1", {20, 20}},
        {"9 and 1", "w Kg1 ke8 Bb2", {0, 0}},
        {"13 and 1", "w Kh1 ke8 Bd4", {0, 0}},
        {"shut in: 0 and 1", "w Kg1 ke8 Ba1 Pb2", {-15, -15}},
        {"4 and 1, to an enemy man", "w Kg1 ke8 Bb2 nd4", {5, 5}},
        {"an own man stops it as well", "w Kg1 ke8 Bb2 Pd4", {5, 5}},
    });
}

TEST_F(Pieces, EachSquareThatABishopReachesCountsFiveUpToEight) {
    expect_scores({
        {"0, shut in", "w Kh1 ke8 Be4 pd5 pf5 nd3 nf3", {-20, -20}},
        {"0 and 1", "w Kh1 ke8 Ba1 nb2", {-15, -15}},
        {"1 and 1", "w Kh1 ke8 Ba1 nc3", {-10, -10}},
        {"2 and 1", "w Kh1 ke8 Ba1 nd4", {-5, -5}},
        {"3 and 1", "w Kh1 ke8 Ba1 ne5", {0, 0}},
        {"4 and 1", "w Kh1 ke8 Ba1 nf6", {5, 5}},
        {"5 and 1", "w Kh1 ke8 Ba1 ng7", {10, 10}},
        {"6 and 1", "w Kh1 ke8 Ba1 nh8", {15, 15}},
        {"7 and 1", "w Kh1 ke8 Ba1", {20, 20}},
        {"8 and 1", "w Kh1 ke8 Bd4 ne5 na7", {0, 0}},
        {"9 and 1", "w Kh1 ke8 Bd4 ne5", {0, 0}},
        {"10 and 1", "w Kh1 ke8 Bd4 nf6", {0, 0}},
        {"11 and 1", "w Kh1 ke8 Bd4 ng7", {0, 0}},
        {"12 and 1", "w Kh1 ke8 Bd4 nh8", {0, 0}},
        {"13 and 1", "w Kh1 ke8 Bd4", {0, 0}},
    });
}

TEST_F(Pieces, ABishopBehindTwoEnemyPawnsLosesItsExtraSquare) {
    expect_scores({
        {"6", "w Kg1 ke8 Be4 pd5 pf5", {10, 10}},
        {"6 and 1, own pawn", "w Kg1 ke8 Be4 pd5 Pf5", {15, 15}},
        {"6 and 1, knights", "w Kg1 ke8 Be4 nd5 nf5", {15, 15}},
    });
}

TEST_F(Pieces, RooksCountTheirLinesAndTheStateOfTheirFile) {
    expect_scores({
        {"open: 10 squares", "w Ke1 ke8 Ra1", {6 - 1 + 2, 12 - 1 + 2}},
        {"half open: 8 squares", "w Ke1 ke8 Ra1 pa7", {2 - 1 + 1, 4 - 1 + 1}},
        {"closed: 5 squares", "w Ke1 ke8 Ra1 Pa4", {-4 - 1, -8 - 1}},
        {"closed by both", "w Ke1 ke8 Ra1 Pa4 pa7", {-4 - 1, -8 - 1}},
        {"14 squares", "w Ka1 ka8 Rd4", {14 - 1 + 2, 28 - 1 + 2}},
        {"1 square", "w Ka1 ka8 Rh1 Ng1 Ph3", {-12 - 1 - 8, -24 - 1 - 8}},
    });
}

TEST_F(Pieces, RooksPressAKingThatNeedsShelter) {
    const std::vector<Row> rows = {
        {"own file, 12 squares", "b Ka1 ke8 Re1", {10 + 1 + 2, 20 + 1}},
        {"next file, 13 squares", "w Ka1 ke8 Rd1", {12 + 1 + 1, 24 + 1}},
        {"other next file, 13 squares", "w Ka1 ke8 Rf1", {12 + 1 + 1, 24 + 1}},
        {"two files away, 13 squares", "w Ka1 ke8 Rc1", {12 + 1, 24 + 1}},
    };
    expect_scores(rows, true);
    expect_scores({{"no need, own file", "b Ka1 ke8 Re1", {10 + 1, 20 + 1}},
                   {"no need, next file", "w Ka1 ke8 Rd1", {12 + 1, 24 + 1}}});
}

TEST_F(Pieces, TheSeventhRankNeedsATarget) {
    // In the enemy's half: rook 2 x 2, queen 4 x 2.
    expect_scores({
        {"rook, king at home", "w Ke1 ke8 Ra7", {14 + 1 + 2 + 4, 28 + 1 + 4}},
        {"rook, king gone", "w Ke1 ke6 Ra7", {14 + 1 + 4, 28 + 1}},
        {"rook, pawn on its second rank", "w Ke1 ke6 Ra7 ph7", {12 + 1 + 2 + 4, 24 + 1 + 4}},
        {"rook, pawn elsewhere", "w Ke1 ke6 Ra7 ph6", {14 + 1 + 4, 28 + 1}},
        {"rook on the sixth", "w Ke1 kh8 Ra6", {14 + 1 + 4, 28 + 1}},
        {"queen, king at home", "w Ke1 ke8 Qa7", {5 + 1 + 8, 5 + 2}},
        {"queen, king gone", "w Ke1 ke6 Qa7", {5 + 8, 5}},
        {"queen, pawn on its second rank", "w Ke1 ke6 Qa7 ph7", {5 + 1 + 8, 5 + 2}},
    });
}

TEST_F(Pieces, QueensComeNearTheKing) {
    expect_scores({
        {"4 ranks, 1 file", "w Ke1 ke8 Qd4", {5, 5}},
        {"7 ranks, 7 files", "b Kb1 kh8 Qa1", {-4, -4}},
        {"7 ranks, 1 file", "w Ke1 kg8 Qh1", {2, 2}},
    });
}

TEST_F(Pieces, AttackersInTheEnemyHalfCountTogether) {
    // Queens on rank 5 are 3 ranks and 0, 1, 2, ... files from a8; each weighs 4.
    expect_scores({
        {"1", "b Kh1 ka8 Qa5", {7 + 4 * 2, 7}},
        {"2", "b Kh1 ka8 Qa5 Qb5", {13 + 8 * 5, 13}},
        {"3", "b Kh1 ka8 Qa5 Qb5 Qc5", {18 + 12 * 8, 18}},
        {"4", "b Kh1 ka8 Qa5 Qb5 Qc5 Qd5", {22 + 16 * 12, 22}},
        {"5", "b Kh1 ka8 Qa5 Qb5 Qc5 Qd5 Qe5", {25 + 20 * 15, 25}},
        {"6", "b Kh1 ka8 Qa5 Qb5 Qc5 Qd5 Qe5 Qf5", {27 + 24 * 20, 27}},
        {"7", "b Kh1 ka8 Qa5 Qb5 Qc5 Qd5 Qe5 Qf5 Qg5", {28 + 28 * 20, 28}},
    });
}

TEST_F(Pieces, AttackersWeighByTheirKind) {
    // Knight and bishop 1, rook 2, queen 4; pieces on rank 4 do not count. Kings on the a-file.
    expect_scores({
        {"knight: 8 squares", "w Ka1 ka8 Ne5", {16 + 2, 16}},
        {"bishop: 7 and 1 squares", "w Ka1 kb8 Ba5", {20 + 2, 20}},
        {"rook: 14 squares", "w Ka1 ka8 Re5", {15 + 4, 29}},
        {"queen: 3 ranks, 4 files", "w Ka1 ka7 Qe5", {10 - 2 - 4 + 8, 10 - 2 - 4}},
        {"knight and rook: 3 x 5", "w Ka1 ka8 Ne5 Rh6", {16 + 15 + 15, 16 + 29}},
        {"knight at home and rook: 2 x 2", "w Ka1 ka8 Ne4 Rh6", {16 + 15 + 4, 16 + 29}},
    });
}

// The same scores by plain means: every square of the board is looked at and every step counted.
// Outposts and king attack are left out: they count in the opening only.
int plain_endgame_score(const Board& board, Color color, const PawnRecord& pawns) {
    const MobilityWeights& weights = eval_weights.mobility;
    const Color enemy = color_opposite(color);
    const Square king = board_king(board, enemy);
    const bool has_target =
        pawns.second_rank[static_cast<std::size_t>(enemy)] != 0 || relative_rank(king, enemy) == 1;
    const auto enemy_pawns_beside = [&](Square square) {
        return (board_piece(board, square - 1) == pawn_of(enemy) ? 1 : 0) +
               (board_piece(board, square + 1) == pawn_of(enemy) ? 1 : 0);
    };
    const Square forward = pawn_step_of(color);
    int score = 0;
    for (Square64 index = 0; index < 64; ++index) {
        const Square square = square_of_64(index);
        const Piece piece = board_piece(board, square);
        const int type = piece_type_of(piece);
        if (piece == kEmpty || piece_color(piece) != color || type == kPawn || type == kKing) {
            continue;
        }
        std::size_t reached = 0;
        for (const int step : piece_steps(piece)) {
            for (Square to = square + step; board_piece(board, to) == kEmpty; to += step) {
                if (type != kKnight || enemy_pawns_beside(to + forward) == 0) {
                    ++reached;
                }
                if (type == kKnight) {
                    break;
                }
            }
        }
        const bool hits_target = has_target && relative_rank(square, color) == 7;
        const auto column = static_cast<std::size_t>(square_column(square));
        if (type == kKnight) {
            score += unpack(weights.knight[reached]).endgame;
        } else if (type == kBishop) {
            const bool shut_in = enemy_pawns_beside(square + forward) == 2;
            score +=
                unpack(shut_in ? weights.shut_in_bishop[reached] : weights.bishop[reached]).endgame;
        } else if (type == kRook) {
            const bool own = board.pawn_file[static_cast<std::size_t>(color)][column] != 0;
            const bool other = board.pawn_file[static_cast<std::size_t>(enemy)][column] != 0;
            const ScorePair file = unpack(other ? weights.rook_half_open : weights.rook_open);
            score += unpack(weights.rook[reached]).endgame + (own ? 0 : file.endgame) +
                     (hits_target ? unpack(weights.rook_seventh).endgame : 0);
        } else {
            score += 10 - std::abs(square_row(square) - square_row(king)) -
                     std::abs(square_column(square) - square_column(king)) +
                     (hits_target ? unpack(weights.queen_seventh).endgame : 0);
        }
    }
    return score;
}

TEST_F(Pieces, PlainCountsGiveTheSameScore) {
    std::ifstream file(ZAR_TEST_DATA_DIR "/evaluation.fen");
    int count = 0;
    for (std::string fen; std::getline(file, fen); ++count) {
        const Board board = board_of(fen);
        const PawnRecord pawns = pawns_of(board);
        for (const Color color : {kWhite, kBlack}) {
            EXPECT_EQ(unpack(evaluate_pieces(board, color, pawns, true)).endgame,
                      plain_endgame_score(board, color, pawns))
                << fen << " colour " << color;
        }
    }
    EXPECT_GE(count, 200);
}

TEST_F(Pieces, BelowFullStrengthNoSquareCounts) {
    set_level(9);
    expect_scores({
        {"knight", "w Ke1 ke8 Nd4", {-16, -16}},
        {"bishop, the extra square stays", "w Kg1 ke8 Ba1", {-15, -15}},
        {"shut-in bishop", "w Kg1 ke8 Be4 pd5 pf5", {-20, -20}},
        {"rook, open file", "w Ke1 ke8 Ra1", {-14 + 1, -28 + 1}},
        {"rook, half-open file", "w Ke1 ke8 Ra1 pa7", {-14, -28}},
        {"rook, closed file", "w Ke1 ke8 Ra1 Pa4", {-14, -28}},
        {"rook on the seventh", "w Ke1 ke8 Ra7", {-14 + 1 + 1 + 4, -28 + 1 + 3}},
        {"queen on the seventh", "w Ke1 ke8 Qa7", {5 + 0 + 8, 5 + 1}},
    });
    expect_scores({{"king's file", "b Ka1 ke8 Re1", {-14 + 1 + 1, -28 + 1}},
                   {"next file", "w Ka1 ke8 Rd1", {-14 + 1, -28 + 1}}},
                  true);
}

TEST_F(Pieces, AbsurdLevelsStayWithinTheTables) {
    set_level(1000);
    // Open files 200, the seventh rank 200 / 400; counts beyond the tables take the last entry.
    expect_scores({
        {"knight", "w Ke1 ke8 Nd4", {16, 16}},
        {"bishop", "w Kg1 ke8 Bd4", {0, 0}},
        {"rook", "w Ke1 ke8 Ra1", {-100 + 200, -100 + 200}},
    });
    set_level(-1000);
    expect_scores({
        {"knight", "w Ke1 ke8 Nd4", {-16, -16}},
        {"bishop", "w Kg1 ke8 Bd4", {-20, -20}},
    });
}

}  // namespace
}  // namespace zar
