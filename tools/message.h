// What the tools say on standard error: one line that begins with their name.
#pragma once

#include <string>

namespace zar::tools {

void complain(const std::string& text);

// Complains and ends the program with this exit status, by way of the command line parser.
[[noreturn]] void fail(const std::string& text, int status);

constexpr const char* kStandardInput = "standard input";

// Fails when standard input has ended because it could not be read: it may be a folder.
void fail_if_input_is_broken(int status);

}  // namespace zar::tools
