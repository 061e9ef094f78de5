// The table of UCI options. Values are kept as text and converted at every read, so any module may
// read any option by name at the moment it needs it; the header includes nothing of the engine and
// is open to every layer. Only the command thread sets options, and never while a search runs.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace zar {

struct Option {
    const char* name;  // compared without regard to case
    bool visible;      // printed in answer to "uci"
    const char* default_value;
    const char* type;   // UCI type word: spin, check, string or combo
    const char* extra;  // bounds ("min 1 max 4") or choices ("var Yes var No"), empty for others
    std::string value;
};

// All rows, in the order in which "uci" lists them.
[[nodiscard]] std::span<const Option> option_table();

// Gives every option its default value. To be called before anything reads an option.
void option_defaults();

// Prints one "option name ..." line for every visible row, with the current value as default.
void option_print_all();

// Stores the text as it is, unchecked; false, with nothing changed, when no option has this name.
bool option_set(std::string_view name, std::string_view value);

// Why this is no value for an option, as a clause with the subject left out; null when it is one,
// by the type and the bounds that "uci" announces. option_set itself does not ask.
[[nodiscard]] const char* option_fault(std::string_view name, std::string_view value);

// The getters end the engine with "X-Error 5EOT1UO1" for a name that is not in the table: a
// programming error.

// True for "true", "yes" and "1", in any case.
[[nodiscard]] bool option_get_bool(std::string_view name);

// Leading decimal number of the text as atoi reads it, 0 when there is none. Beyond the int range
// the result stays at the range's end.
[[nodiscard]] int option_get_int(std::string_view name);

// option_get_int held within the bounds that the row declares; for spin rows only.
[[nodiscard]] int option_get_bounded(std::string_view name);

// The value itself, valid until the option is set again.
[[nodiscard]] const char* option_get_string(std::string_view name);

}  // namespace zar
