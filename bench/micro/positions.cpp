#include "positions.h"

#include "board/fen.h"
#include "frontend/bench.h"

namespace zar::micro {

namespace {

constexpr std::size_t kFollowerStep = 6;

struct AllSamples {
    Samples calm;
    Samples check;
};

Sample sample_of(Board& board) {
    Sample sample{};
    attack_set(sample.attack, board);
    gen_legal_moves(sample.legal, board);
    if (sample.attack.count > 0) {
        gen_evasions_pseudo(sample.pseudo, board, sample.attack);
    } else {
        gen_moves(sample.pseudo, board);
        gen_captures(sample.captures, board);
    }
    board_copy(sample.board, board);
    return sample;
}

void add(AllSamples& all, Board& board, bool in_check) {
    (in_check ? all.check : all.calm).push_back(sample_of(board));
}

AllSamples make_samples() {
    AllSamples all;
    std::size_t follower = 0;
    static Board board;
    for (const std::string_view fen : bench_positions()) {
        board_from_fen(board, fen);
        add(all, board, board_is_check(board));
        MoveList legal;
        gen_legal_moves(legal, board);
        for (std::size_t i = 0; i < static_cast<std::size_t>(legal.size); ++i) {
            UndoInfo undo;
            move_do(board, legal.move[i], undo);
            const bool in_check = board_is_check(board);
            if (in_check || follower++ % kFollowerStep == 0) {
                add(all, board, in_check);
            }
            move_undo(board, legal.move[i], undo);
        }
    }
    return all;
}

AllSamples& all_samples() {
    static AllSamples samples = make_samples();
    return samples;
}

}  // namespace

Samples& calm_samples() { return all_samples().calm; }

Samples& check_samples() { return all_samples().check; }

}  // namespace zar::micro
