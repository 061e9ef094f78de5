#include "in_process.h"

#include <cstdio>

#include "eval/eval.h"
#include "frontend/option.h"
#include "frontend/report.h"
#include "search/budget.h"
#include "search/driver.h"
#include "search/hash.h"
#include "search/workers.h"

namespace zar::tools {

void in_process_start(const Settings& settings) {
    option_set("Own Book", "false");
    option_set("MultiPV", std::to_string(settings.lines));
    option_set("Difficulty Level", std::to_string(settings.level));
    search_shared.thread_count = settings.threads;
    hash_alloc(hash_table, settings.hash);
    eval_tables_allocate(search_shared.thread_count);
    eval_apply_weights();
    threads_create();
}

void in_process_end() { threads_end(); }

void in_process_search(Board& board, const Effort& effort) {
    hash_clear(hash_table);
    search_reset();
    SearchLimits& limits = search_shared.limits;
    limits.limit_depth_set = effort.depth > 0;
    limits.limit_depth = effort.depth;
    limits.limit_time_set = effort.depth == 0;
    limits.time_limit = effort.seconds;
    // Far off, so that no search ends early because its move looks easy.
    limits.time_target = 5 * effort.seconds;
    search_run(board);
}

std::uint64_t in_process_nodes() {
    std::uint64_t nodes = 0;
    for (int thread = 0; thread < search_shared.thread_count; ++thread) {
        nodes += search_thread(thread).nodes;
    }
    return nodes;
}

std::string score_text(Score score, Color turn) {
    constexpr double kPawn = 100;
    const int sign = turn == kWhite ? 1 : -1;
    char text[32];
    if (const int mate = score_to_mate(score); mate != 0) {
        std::snprintf(text, sizeof text, "#%d", sign * mate);
    } else {
        std::snprintf(text, sizeof text, "%+.2f", sign * score / kPawn);
    }
    return text;
}

}  // namespace zar::tools
