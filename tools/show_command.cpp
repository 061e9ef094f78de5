// show: a position as a person reads it, with its moves and what the evaluation makes of it.

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "board/attack.h"
#include "board/movegen.h"
#include "commands.h"
#include "eval/eval.h"
#include "eval/weights.h"
#include "fen_text.h"
#include "in_process.h"
#include "move_names.h"
#include "positions.h"
#include "san.h"

namespace zar::tools {

namespace {

constexpr int kThread = 0;
constexpr std::size_t kLineWidth = 80;

void print_board(const Board& board) {
    for (int row = kLastLine; row >= kFirstLine; --row) {
        std::printf("%d ", row - kFirstLine + 1);
        for (int column = kFirstLine; column <= kLastLine; ++column) {
            const Piece man = board_piece(board, square_make(row, column));
            std::printf(" %c", man == kEmpty ? '.' : piece_to_char(man));
        }
        std::printf("\n");
    }
    std::printf("\n   a b c d e f g h\n\n");
}

// Whose move it is, or how the game has ended.
std::string state_text(Board& board) {
    const bool white = board.turn == kWhite;
    if (board_is_mate(board)) {
        return white ? "Checkmate: Black has won" : "Checkmate: White has won";
    }
    if (board_is_stalemate(board)) {
        return white ? "Stalemate: White cannot move" : "Stalemate: Black cannot move";
    }
    const std::string side = white ? "White to move" : "Black to move";
    return board_is_check(board) ? side + ", in check" : side;
}

// As in the records of games; null while it goes on.
const char* result_text(Board& board) {
    if (board_is_mate(board)) {
        return board.turn == kWhite ? "0-1" : "1-0";
    }
    return board_is_stalemate(board) ? "1/2-1/2" : nullptr;
}

void print_moves(Board& board) {
    MoveList legal;
    gen_legal_moves(legal, board);
    std::vector<std::string> texts;
    for (const Move move : span_of(legal)) {
        texts.push_back(san_of(move, board));
    }
    std::sort(texts.begin(), texts.end());
    std::printf("%zu legal move%s", texts.size(), texts.size() == 1 ? "" : "s");
    std::size_t column = kLineWidth;
    for (const std::string& text : texts) {
        const bool wrap = column + 1 + text.size() > kLineWidth;
        std::printf("%s%s", wrap ? "\n  " : " ", text.c_str());
        column = (wrap ? 2 : column + 1) + text.size();
    }
    std::printf("\n\n");
}

void print_pair(ScorePair score) {
    constexpr double kPawn = 100;
    std::printf("  %+7.2f %+7.2f", score.opening / kPawn, score.endgame / kPawn);
}

// A row that is known for both colours together.
void print_row(const char* name, ScorePair sum) {
    std::printf("%-20s  %7s %7s  %7s %7s", name, "", "", "", "");
    print_pair(sum);
    std::printf("\n");
}

// A row of what White and Black have for themselves; the sum is rounded once, from both.
void print_row(const char* name, const std::array<ScorePair, 2>& own, int scale) {
    std::printf("%-20s", name);
    print_pair(weigh(own[kWhite], scale));
    print_pair(weigh(own[kBlack], scale));
    print_pair(weigh(own[kWhite] - own[kBlack], scale));
    std::printf("\n");
}

ScorePair weighted_sum(const std::array<ScorePair, 2>& own, int scale) {
    return weigh(own[kWhite] - own[kBlack], scale);
}

// The draw scale that the blend is multiplied with, where it is not 1, and the result.
void print_result(const EvalTerms& terms, Color turn) {
    constexpr int kPercent = 100;
    const int blended = blend(terms.total, terms.phase);
    std::printf("\n%d %% of the way from the opening to the endgame: %s\n",
                terms.phase * kPercent / kEndgamePhase, score_text(blended, kWhite).c_str());
    const Score white_view = turn == kWhite ? terms.final_score : -terms.final_score;
    std::printf("evaluation, White's view: %s%s\n", score_text(white_view, kWhite).c_str(),
                white_view == blended ? "" : "   (scaled: hard to win, or a draw)");
}

void print_evaluation(const Board& board) {
    const EvalTerms terms = evaluate_terms(board, kThread);
    const std::array<ScorePair, 2> shelter = {ScorePair{-terms.shelter[kWhite], 0},
                                              ScorePair{-terms.shelter[kBlack], 0}};
    const Weights& weights = eval_weights;
    const ScorePair named = terms.material + terms.psq + terms.pawns + terms.patterns +
                            weighted_sum(shelter, weights.king.scale) +
                            weighted_sum(terms.passers, weights.passers.scale) +
                            weighted_sum(terms.mobility, weights.mobility.scale);
    std::printf("%-20s  %15s  %15s  %15s\n", "in pawns", "White        ", "Black        ",
                "White's view  ");
    std::printf("%-20s", "");
    for (int view = 0; view < 3; ++view) {
        std::printf("  %7s %7s", "opening", "endgame");
    }
    std::printf("\n");
    print_row("material", terms.material);
    print_row("men on their squares", terms.psq);
    print_row("pawn structure", terms.pawns);
    print_row("trapped men", terms.patterns);
    print_row("king shelter", shelter, weights.king.scale);
    print_row("passed pawns", terms.passers, weights.passers.scale);
    print_row("mobility", terms.mobility, weights.mobility.scale);
    print_row("the move", terms.total - named);
    print_row("total", terms.total);
    print_result(terms, board.turn);
}

void run(const std::vector<std::string>& words) {
    static Board board;
    eval_tables_allocate(1);
    eval_apply_weights();
    PositionInput input = positions_of(words);
    while (positions_next(input, board)) {
        if (input.count > 1) {
            std::printf("\n");
        }
        print_board(board);
        std::printf("%s\n%s\n", state_text(board).c_str(), fen_of(board).c_str());
        print_moves(board);
        // There is nothing to expect of a game that is over, though the evaluation has a number.
        if (const char* result = result_text(board)) {
            std::printf("result %s\n", result);
        } else {
            print_evaluation(board);
        }
        std::fflush(stdout);
    }
    positions_end(input);
}

}  // namespace

void add_show(CLI::App& app) {
    auto words = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand(
        "show", "Draw a position, list its legal moves and tell the evaluation term by term");
    command->add_option("FEN", *words, kPositionHelp);
    command->callback([words] { run(*words); });
}

}  // namespace zar::tools
