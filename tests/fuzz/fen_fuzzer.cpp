// Any text as a FEN: it is refused by a fatal error, or gives a sound position.

#include "board/fen.h"
#include "eval/eval.h"
#include "fuzz_support.h"

namespace {

zar::Board board;

// Thread 0 has caches, thread 1 has none.
void check_evaluation() {
    constexpr zar::Score kBeyondAll = 30000;
    zar::fuzz::require(zar::evaluate(board, -kBeyondAll, kBeyondAll, 0) ==
                           zar::evaluate_terms(board, 1).final_score,
                       "the evaluation is not what its terms make");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zar::fuzz::start_engine();
    zar::eval_tables_allocate(1);
    zar::eval_apply_weights();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view text = zar::fuzz::text_of(data, size);
    if (zar::fuzz::survives([text] { zar::board_from_fen(board, text); })) {
        zar::fuzz::check_position(board);
        check_evaluation();
    }
    return 0;
}
