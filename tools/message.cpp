#include "message.h"

#include <CLI/Error.hpp>
#include <iostream>

namespace zar::tools {

void complain(const std::string& text) { std::cerr << "zar-x3-tools: " << text << "\n"; }

void fail(const std::string& text, int status) {
    complain(text);
    throw CLI::RuntimeError(status);
}

}  // namespace zar::tools
