#include "frontend/bench.h"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "board/fen.h"
#include "eval/eval.h"
#include "frontend/console.h"
#include "frontend/option.h"
#include "platform/clock.h"
#include "search/budget.h"
#include "search/driver.h"
#include "search/hash.h"

namespace zar {

namespace {

constexpr int kBenchMegabytes = 16;

// Frozen, like the depth: another set of positions is another signature.
constexpr std::array<std::string_view, 33> positions = {
    // Openings.
    kStartFen,
    "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq - 0 4",
    "rnbqkb1r/ppp2ppp/4pn2/3p4/2PP4/2N5/PP2PPPP/R1BQKBNR w KQkq - 2 4",
    "rnbqkb1r/1p2pppp/p2p1n2/8/3NP3/2N5/PPP2PPP/R1BQKB1R w KQkq - 0 6",
    "rnbq1rk1/ppp1ppbp/3p1np1/8/2PPP3/2N2N2/PP3PPP/R1BQKB1R w KQ - 2 6",
    "rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3",
    "rnbqk1nr/pppp1ppp/8/4p3/1b2P3/3P4/PPP2PPP/RNBQKBNR w KQkq - 1 3",
    // Middlegames.
    "r1bq1rk1/pp2bppp/2n1pn2/8/2BP4/P1N2N2/1P3PPP/R1BQ1RK1 w - - 1 11",
    "r2q1rk1/pppb2bp/3p1np1/n2Ppp2/2P1P3/2N2P2/PP1BB1PP/R2QNRK1 w - - 0 13",
    "2kr3r/pbpq1ppp/1pn1pn2/3p4/3P1B2/2PBPN2/PP1N1PPP/R2Q1RK1 w - - 4 11",
    "r4rk1/1bqnbppp/pp1ppn2/8/2P1P3/1PN1BP2/P2NB1PP/R2Q1RK1 b - - 3 13",
    "2r2rk1/1p1bqppp/p2p1n2/4p3/P3P3/1BN1BP2/1PP3PP/R2Q1RK1 b - - 2 17",
    // Tactics.
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r1b2rk1/pp1n1pp1/2p1p2p/q7/3PN3/P2B4/1P1Q1PPP/2KR3R w - - 0 16",
    "r2q1rk1/1b2bppp/p1n1p3/1p1nP3/3P4/P1NB1N2/1P3PPP/R1BQ1RK1 w - - 2 13",
    "3r2k1/5ppp/p1q5/1p6/3Q4/1P4P1/P4P1P/3R2K1 b - - 0 28",
    "r3r1k1/1P3ppp/8/8/8/8/2p2PPP/1R4K1 b - - 0 30",
    "6k1/5ppp/8/2q5/8/1P6/Q4PPP/3Q2K1 b - - 0 34",
    // Pawn endings.
    "8/1p3k2/p7/3P1p1p/2P2P1P/1K6/P7/8 w - - 0 40",
    "8/2k5/1p1p4/1P1P1p2/5P2/3K4/8/8 w - - 0 45",
    "8/8/4k3/8/4P3/4K3/8/8 b - - 0 60",
    "8/PP3k2/8/8/8/2n5/1p4K1/8 w - - 0 50",
    // Rook and queen endings.
    "8/5pk1/r3p1p1/7p/1R5P/5PP1/5K2/8 w - - 0 40",
    "1K1k4/1P6/8/8/8/8/r7/2R5 w - - 0 60",
    "8/8/8/3k4/3p4/8/8/R3K3 w - - 0 60",
    "8/5pk1/4q1p1/7p/3P4/4Q1P1/5P1P/6K1 w - - 3 41",
    "8/2P5/1K6/8/8/8/3k4/7q b - - 0 60",
    // Endings of minor pieces.
    "8/pp3pk1/4p1p1/3n3p/3P4/1B3P2/PP1K2PP/8 w - - 0 31",
    "8/3k1pp1/2p1b2p/1p6/1P2B3/2P2PP1/6KP/8 b - - 0 39",
    "8/8/8/3k4/8/2K5/4B3/5N2 w - - 0 60",
    "8/8/3k4/3n4/8/2BBK3/8/8 w - - 0 60",
    "4k3/8/4K3/4B3/8/8/1r6/5R2 b - - 0 60",
    "8/8/1k6/8/1PK5/2N5/3b4/8 w - - 0 60",
};

std::uint64_t search_position(Board& board, std::string_view fen, int depth) {
    board_from_fen(board, fen);
    hash_clear(hash_table);
    search_reset();
    search_shared.limits.limit_depth_set = true;
    search_shared.limits.limit_depth = depth;
    search_run(board);
    return search_thread(0).nodes;
}

}  // namespace

std::span<const std::string_view> bench_positions() { return positions; }

void bench_run(int depth) {
    static Board board;
    console_init();
    search_shared.hooks = {};
    search_shared.thread_count = 1;
    hash_alloc(hash_table, kBenchMegabytes);
    eval_tables_allocate(search_shared.thread_count);
    eval_apply_weights();
    const double start = clock_wall_seconds();
    std::uint64_t total = 0;
    constexpr auto kCount = static_cast<int>(positions.size());
    int number = 0;
    for (const std::string_view fen : positions) {
        const std::uint64_t nodes = search_position(board, fen, depth);
        total += nodes;
        ++number;
        send_line("position %d of %d: %" PRIu64 " nodes", number, kCount, nodes);
    }
    constexpr double kLeastSeconds = 0.001;
    const double seconds = std::max(clock_wall_seconds() - start, kLeastSeconds);
    send_line("%" PRIu64 " nodes %.0f nps", total, static_cast<double>(total) / seconds);
}

}  // namespace zar
