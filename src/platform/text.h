// Small operations on plain ASCII text.
#pragma once

#include <string_view>

namespace zar {

// Equal length and equal characters, upper and lower case being the same.
[[nodiscard]] bool string_equal_nocase(std::string_view left, std::string_view right);

// Takes the next token off the front of `rest`, tokens being separated by runs of blanks; empty
// when there is none left.
[[nodiscard]] std::string_view token_next(std::string_view& rest);

// The leading decimal number, as atoi reads it: white space is skipped, a sign may follow, anything
// behind the digits is ignored, 0 when there are none. Beyond the int range it stays at the end.
[[nodiscard]] int text_to_int(std::string_view text);

// Is the whole text decimal digits, perhaps behind a minus sign?
[[nodiscard]] bool text_is_number(std::string_view text);

}  // namespace zar
