// The command interpreter as it stands after start-up, without a book and with a small table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "board/fen.h"
#include "frontend/option.h"
#include "frontend/report.h"
#include "frontend/uci.h"
#include "gtest/gtest.h"
#include "search/workers.h"
#include "support/console_support.h"
#include "support/search_support.h"

namespace zar::test {

class UciTest : public ::testing::Test {
  protected:
    void SetUp() override {
        open_input();
        option_defaults();
        reductions_init();
        hash_init(hash_table);
        uci_state = {};
        search_parameters = {};
        search_shared.thread_count = 1;
        search_shared.hooks = {.report_pv = report_pv,
                               .report_currmove = report_currmove,
                               .report_hashfull = report_hashfull,
                               .poll_input = poll_input};
        option_set("Hash", "16");
        option_set("Own Book", "false");
        search_reset();
        board_from_fen(uci_state.board, kStartFen);
    }

    void TearDown() override {
        threads_end();
        hash_free(hash_table);
        option_defaults();
        eval_apply_weights();
        eval_tables_free();
        search_reset();
        search_shared.hooks = {};
        search_shared.thread_count = 1;
        uci_state = {};
    }

    // The answer to one command.
    static std::vector<std::string> command(std::string_view line) {
        return lines_of([&] {
            type_line(line);
            uci_command();
        });
    }

    // ... to "go" with these arguments.
    static std::vector<std::string> go(std::string_view arguments) {
        return lines_of([&] { uci_go(arguments); });
    }
};

}  // namespace zar::test
