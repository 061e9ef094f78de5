#pragma once

// Reads the perft files of the test data, one position a line:
//   FEN ;D1 n ;D2 n ... ;id "text"
// where `Dd n` says that there are n legal sequences of d half-moves; the id is optional.

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace twin {

struct PerftCount {
    int depth;
    std::uint64_t moves;
};

struct PerftRow {
    std::string fen;
    std::vector<PerftCount> counts;
    std::string id;  // with its quotation marks, empty if there is none
};

inline std::string without_outer_blanks(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The rows of a file in ZAR_TEST_DATA_DIR. A missing or malformed file fails the running test.
inline std::vector<PerftRow> read_perft_rows(const std::string& name) {
    std::ifstream file(std::string(ZAR_TEST_DATA_DIR) + "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    std::vector<PerftRow> rows;
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        std::string field;
        std::getline(fields, field, ';');
        PerftRow row = {without_outer_blanks(field), {}, {}};
        while (std::getline(fields, field, ';')) {
            field = without_outer_blanks(field);
            if (field.starts_with("id ")) {
                row.id = field.substr(3);
                continue;
            }
            char opcode = 0;
            PerftCount count = {};
            std::istringstream words(field);
            words >> opcode >> count.depth >> count.moves;
            EXPECT_TRUE(opcode == 'D' && !words.fail()) << field << " in " << line;
            row.counts.push_back(count);
        }
        rows.push_back(row);
    }
    return rows;
}

}  // namespace twin
