// The subcommands. Each add_ function declares one, with its options and what it runs.
#pragma once

#include <CLI/App.hpp>

namespace zar::tools {

void add_perft(CLI::App& app);
void add_inspect(CLI::App& app);
void add_book(CLI::App& app);

}  // namespace zar::tools
