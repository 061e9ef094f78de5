// Options that commands have in common.
#pragma once

#include <CLI/App.hpp>
#include <charconv>
#include <sstream>
#include <string>

#include "in_process.h"

namespace zar::tools {

// A decimal number of these bounds, all of the word: the parser alone takes "010" for eight, and no
// number at all for one without bounds.
template <typename Number>
[[nodiscard]] CLI::Validator number_between(Number least, Number most) {
    std::ostringstream bounds;
    bounds << least << " to " << most;
    const auto check = [least, most, text = bounds.str()](std::string& word) -> std::string {
        Number number{};
        const char* end = word.data() + word.size();
        const auto [stop, error] = std::from_chars(word.data(), end, number);
        if (error != std::errc{} || stop != end || !(number >= least && number <= most)) {
            return "'" + word + "' is no number from " + text;
        }
        word.erase(0, std::min(word.find_first_not_of('0'), word.size() - 1));
        return "";
    };
    return CLI::Validator(check, bounds.str());
}

// --time and --depth, of which only one can be given.
void add_effort(CLI::App& command, Effort& effort);

// --threads, --hash and --level.
void add_settings(CLI::App& command, Settings& settings);

}  // namespace zar::tools
