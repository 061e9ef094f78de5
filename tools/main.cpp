// zar-x3-tools: the engine's library behind a command line, for developers and curious users.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "commands.h"
#include "frontend/startup.h"

namespace {

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
    try {
        app.parse(count, arguments);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::RuntimeError& failure) {
        return failure.get_exit_code();
    } catch (const CLI::ParseError& error) {
        app.exit(error);
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
