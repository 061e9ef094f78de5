// zar-x3-tools: the engine's library behind a command line, for developers and curious users.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "commands.h"
#include "frontend/startup.h"
#include "message.h"
#include "text_line.h"

namespace {

constexpr const char* kHint = " (see zar-x3-tools --help)";

// What is wrong with the words that should be commands, if anything is. The parser would only say
// that it misses one.
std::string command_fault(const CLI::App& app, int count, char** arguments) {
    const CLI::App* parent = &app;
    for (int i = 1; parent->get_require_subcommand_min() > 0; ++i) {
        if (i >= count) {
            return parent == &app ? "no command is named"
                                  : "no command behind '" + parent->get_name() + "'";
        }
        const std::string word = arguments[i];
        if (word.starts_with('-')) {
            const bool known = parent->get_option_no_throw(word) != nullptr;
            return known ? "" : "unknown option " + zar::tools::in_quotes(word);
        }
        const auto found = parent->get_subcommands(
            [&](const CLI::App* command) { return command->check_name(word); });
        if (found.empty()) {
            return "unknown command " + zar::tools::in_quotes(word);
        }
        parent = found.front();
    }
    return "";
}

// The parser's words on one line.
void tell(const CLI::ParseError& error) {
    std::string text = error.what();
    std::replace(text.begin(), text.end(), '\n', ' ');
    zar::tools::complain(text + kHint);
}

int run(int count, char** arguments) {
    CLI::App app{"Looks into the chess engine ZAR-X3.", "zar-x3-tools"};
    app.set_version_flag("--version", "ZAR-X3 tools " ZAR_VERSION);
    app.require_subcommand(1);
    zar::startup_tables();
    zar::tools::add_perft(app);
    zar::tools::add_inspect(app);
    zar::tools::add_book(app);
    zar::tools::add_show(app);
    zar::tools::add_analyse(app);
    zar::tools::add_epd(app);
    if (const std::string fault = command_fault(app, count, arguments); !fault.empty()) {
        zar::tools::complain(fault + kHint);
        return zar::tools::kBadInput;
    }
    try {
        app.parse(count, arguments);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::RuntimeError& failure) {
        return failure.get_exit_code();
    } catch (const CLI::ParseError& error) {
        tell(error);
        return zar::tools::kBadInput;
    }
    return EXIT_SUCCESS;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        return run(count, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zar-x3-tools: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
