#include "message.h"

#include <CLI/Error.hpp>
#include <cstdio>
#include <iostream>

namespace zar::tools {

void complain(const std::string& text) { std::cerr << "zar-x3-tools: " << text << "\n"; }

void fail(const std::string& text, int status) {
    complain(text);
    throw CLI::RuntimeError(status);
}

void fail_if_input_is_broken(int status) {
    // The stream of C++ takes every error for the end.
    if (std::ferror(stdin) != 0) {
        fail(std::string(kStandardInput) + ": cannot be read", status);
    }
}

}  // namespace zar::tools
