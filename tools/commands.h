// The subcommands. Each add_ function declares one, with its options and what it runs.
#pragma once

#include <CLI/App.hpp>

namespace zar::tools {

// Exit status when the command line, a position or a file of positions is at fault.
constexpr int kBadInput = 2;

void add_perft(CLI::App& app);
void add_inspect(CLI::App& app);
void add_book(CLI::App& app);
void add_show(CLI::App& app);
void add_analyse(CLI::App& app);
void add_epd(CLI::App& app);

}  // namespace zar::tools
