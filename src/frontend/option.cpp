#include "frontend/option.h"

#include <algorithm>
#include <array>

#include "frontend/console.h"
#include "platform/fatal.h"
#include "platform/text.h"

namespace zar {

namespace {

constexpr bool kShown = true;
constexpr bool kHidden = false;

// clang-format off
std::array<Option, 38> table = {{
    {"Threads",               kShown,  "1",            "spin",   "min 1 max 4", {}},
    {"Hash",                  kShown,  "256",          "spin",   "min 16 max 1024", {}},
    {"Difficulty Level",      kShown,  "10",           "spin",   "min 0 max 10", {}},
    {"MultiPV",               kShown,  "1",            "spin",   "min 1 max 4", {}},
    {"Book File",             kShown,  "ZAR.ebk",      "string", "", {}},
    {"Own Book",              kShown,  "true",         "check",  "", {}},
    {"Ponder",                kShown,  "true",         "check",  "", {}},
    {"Search Info",           kShown,  "true",         "check",  "", {}},
    {"Extra Info",            kShown,  "false",        "check",  "", {}},
    {"TLCV fix",              kShown,  "true",         "check",  "", {}},
    {"ZARXST",                kHidden, "0",            "spin",   "min 0 max 3600", {}},
    {"ZARXSD",                kHidden, "0",            "spin",   "min 0 max 20", {}},
    {"ZARXLoadStructureTest", kHidden, "c:/tolmerin/", "string", "", {}},
    {"ZARXLoadStructure",     kHidden, "16",           "spin",   "min 16 max 1024", {}},
    {"Null Move Pruning",     kHidden, "Yes",          "combo",  "var Yes var Fail High var No", {}},
    {"Null Move Reduction",   kHidden, "3",            "spin",   "min 1 max 4", {}},
    {"Verify Search",         kHidden, "Yes",          "combo",  "var Yes var EndGame var No", {}},
    {"Verify Reduction",      kHidden, "5",            "spin",   "min 1 max 6", {}},
    {"History Pruning",       kHidden, "true",         "check",  "", {}},
    {"History Threshold",     kHidden, "70",           "spin",   "min 0 max 100", {}},
    {"Futility Pruning",      kHidden, "true",         "check",  "", {}},
    {"Futility Margin",       kHidden, "100",          "spin",   "min 0 max 500", {}},
    {"Futility Extension",    kHidden, "200",          "spin",   "min 0 max 900", {}},
    {"Delta Pruning",         kHidden, "1",            "spin",   "min 0 max 2", {}},
    {"Delta Margin",          kHidden, "50",           "spin",   "min 0 max 500", {}},
    {"ZARXReduceOne",         kHidden, "1",            "spin",   "min 0 max 2", {}},
    // Accepted and kept, but nothing reads them ...
    {"ZARXStructureSafety",   kHidden, "80",           "spin",   "min 0 max 400", {}},
    {"ZARXEVALMOB",           kHidden, "100",          "spin",   "min 0 max 400", {}},
    {"ZARXEVALMOBEND",        kHidden, "100",          "spin",   "min 0 max 400", {}},
    {"King Safety",           kHidden, "200",          "spin",   "min 0 max 400", {}},
    {"Pawn Structure",        kHidden, "130",          "spin",   "min 0 max 400", {}},
    {"Passed Pawns",          kHidden, "105",          "spin",   "min 0 max 400", {}},
    // ... up to here.
    {"ZARXEvalADVOPEN",       kHidden, "true",         "check",  "", {}},
    {"ZARXEvalADVMID",        kHidden, "200",          "spin",   "min 0 max 900", {}},
    {"ZARXEvalADVEND",        kHidden, "125",          "spin",   "min 0 max 900", {}},
    // Nor these.
    {"ZARXBonusEndgame",      kHidden, "20",           "spin",   "min 0 max 100", {}},
    {"ZARXKingPEB",           kHidden, "30",           "spin",   "min 0 max 100", {}},
    {"ZARXRookPEP",           kHidden, "10",           "spin",   "min 0 max 100", {}},
}};
// clang-format on

// Null when no option has this name.
Option* find(std::string_view name) {
    const auto row = std::find_if(table.begin(), table.end(), [&](const Option& option) {
        return string_equal_nocase(option.name, name);
    });
    return row == table.end() ? nullptr : &*row;
}

const Option& find_known(std::string_view name) {
    const Option* option = find(name);
    if (option == nullptr) {
        fatal_error("X-Error 5EOT1UO1 \"%.*s\"\n", static_cast<int>(name.size()), name.data());
    }
    return *option;
}

// The number behind a word of the row's extra text.
int bound_behind(const Option& option, std::string_view word) {
    const std::string_view extra = option.extra;
    return text_to_int(extra.substr(extra.find(word) + word.size()));
}

// Is this one of the row's choices? The search compares them exactly.
bool is_choice(const Option& option, std::string_view value) {
    constexpr std::string_view kMarker = "var ";
    std::string_view rest = option.extra;
    while (rest.starts_with(kMarker)) {
        rest.remove_prefix(kMarker.size());
        const std::size_t next = rest.find(" var ");
        if (rest.substr(0, next) == value) {
            return true;
        }
        rest.remove_prefix(next == std::string_view::npos ? rest.size() : next + 1);
    }
    return false;
}

}  // namespace

std::span<const Option> option_table() { return table; }

void option_defaults() {
    for (Option& option : table) {
        option.value = option.default_value;
    }
}

void option_print_all() {
    for (const Option& option : table) {
        if (!option.visible) {
            continue;
        }
        const char* separator = *option.extra == '\0' ? "" : " ";
        send_line("option name %s type %s default %s%s%s", option.name, option.type,
                  option.value.c_str(), separator, option.extra);
    }
}

bool option_set(std::string_view name, std::string_view value) {
    Option* option = find(name);
    if (option == nullptr) {
        return false;
    }
    option->value = value;
    return true;
}

const char* option_fault(std::string_view name, std::string_view value) {
    const Option* const option = find(name);
    if (option == nullptr) {
        return "is no option";
    }
    const std::string_view type = option->type;
    if (type == "check") {
        const bool fits = string_equal_nocase(value, "true") || string_equal_nocase(value, "false");
        return fits ? nullptr : "takes true or false";
    }
    if (type == "spin") {
        const bool fits = text_is_number(value) &&
                          text_to_int(value) >= bound_behind(*option, "min ") &&
                          text_to_int(value) <= bound_behind(*option, "max ");
        return fits ? nullptr : "takes a number within its bounds";
    }
    if (type == "combo") {
        return is_choice(*option, value) ? nullptr : "takes one of its choices";
    }
    return nullptr;
}

bool option_get_bool(std::string_view name) {
    const std::string_view value = find_known(name).value;
    return string_equal_nocase(value, "true") || string_equal_nocase(value, "yes") || value == "1";
}

int option_get_int(std::string_view name) { return text_to_int(find_known(name).value); }

int option_get_bounded(std::string_view name) {
    const Option& option = find_known(name);
    return std::clamp(text_to_int(option.value), bound_behind(option, "min "),
                      bound_behind(option, "max "));
}

const char* option_get_string(std::string_view name) { return find_known(name).value.c_str(); }

}  // namespace zar
