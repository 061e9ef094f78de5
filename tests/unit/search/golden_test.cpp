// Complete searches against a record of what they printed: whatever makes the engine faster must
// not change a single line. tests/data/search_lines.txt says how the record is written and renewed.

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "gtest/gtest.h"
#include "support/uci_support.h"

namespace zar {
namespace {

constexpr const char* kDataFile = ZAR_TEST_DATA_DIR "/search_lines.txt";
constexpr const char* kRecordVariable = "ZAR_RECORD_SEARCH_LINES";

using Lines = std::vector<std::string>;

// One search of the file: "fen", any number of "option", "go", then the lines expected.
struct Case {
    std::string fen;
    Lines options;  // "Name=value"
    std::string go;
    Lines expected;
};

struct Record {
    Lines head;  // the comment that the file begins with
    std::vector<Case> cases;
};

bool take_word(std::string_view& line, std::string_view word) {
    if (!line.starts_with(word)) {
        return false;
    }
    line.remove_prefix(word.size());
    return true;
}

Record read_record() {
    Record record;
    std::ifstream file(kDataFile);
    EXPECT_TRUE(file) << kDataFile;
    for (std::string text; std::getline(file, text);) {
        std::string_view line = text;
        if (line.starts_with("#")) {
            record.head.push_back(text);
        } else if (take_word(line, "fen ")) {
            record.cases.push_back({std::string(line), {}, {}, {}});
        } else if (record.cases.empty()) {
            EXPECT_TRUE(line.empty()) << line;
        } else if (take_word(line, "option ")) {
            record.cases.back().options.emplace_back(line);
        } else if (take_word(line, "go ")) {
            record.cases.back().go = line;
        } else if (take_word(line, "  ")) {
            record.cases.back().expected.emplace_back(line);
        } else {
            EXPECT_TRUE(line.empty()) << line;
        }
    }
    return record;
}

void write_record(const Record& record) {
    std::ofstream file(kDataFile);
    for (const std::string& line : record.head) {
        file << line << "\n";
    }
    for (const Case& entry : record.cases) {
        file << "\nfen " << entry.fen << "\n";
        for (const std::string& option : entry.options) {
            file << "option " << option << "\n";
        }
        file << "go " << entry.go << "\n";
        for (const std::string& line : entry.expected) {
            file << "  " << line << "\n";
        }
    }
    EXPECT_TRUE(file.flush()) << kDataFile;
}

// Without what depends on the clock: times, current moves, and the hash fill but for the last.
Lines without_times(const Lines& lines) {
    Lines kept;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string line = lines[i];
        const bool is_last_fill = i + 3 >= lines.size();
        if (line.starts_with("info currmove ") ||
            (line.starts_with("info hashfull ") && !is_last_fill)) {
            continue;
        }
        const std::size_t time = line.find(" time ");
        if (time != std::string::npos) {
            line.erase(time, line.find(' ', time + 6) - time);
        }
        kept.push_back(line);
    }
    return kept;
}

class Golden : public test::UciTest {
  protected:
    void SetUp() override {
        UciTest::SetUp();
        engine_init();
        // A corner of the table is quick to clear and soon full.
        constexpr std::uint32_t kSlots = 4096;
        ASSERT_GT(hash_table.entry_count, kSlots + 3);
        hash_table.slot_mask = kSlots - 1;
        hash_table.entry_count = kSlots + 3;
    }

    static Lines run(const Case& entry) {
        option_defaults();
        option_set("Own Book", "false");
        option_set("TLCV fix", "false");
        search_parameters = {};
        for (const std::string& option : entry.options) {
            const std::size_t equals = option.find('=');
            EXPECT_TRUE(option_set(option.substr(0, equals), option.substr(equals + 1))) << option;
        }
        eval_apply_weights();
        board_from_fen(uci_state.board, entry.fen);
        hash_clear(hash_table);
        return without_times(go(entry.go));
    }
};

TEST_F(Golden, SearchesPrintTheLinesOnRecord) {
    Record record = read_record();
    EXPECT_GE(record.cases.size(), 60u);
    const bool recording = std::getenv(kRecordVariable) != nullptr;
    for (Case& entry : record.cases) {
        const Lines lines = run(entry);
        if (recording) {
            entry.expected = lines;
            continue;
        }
        std::string setting = "fen " + entry.fen;
        for (const std::string& option : entry.options) {
            setting += " option " + option;
        }
        EXPECT_EQ(lines, entry.expected) << setting << " go " << entry.go;
    }
    if (recording) {
        write_record(record);
        GTEST_SKIP() << "recorded " << record.cases.size() << " searches in " << kDataFile;
    }
}

}  // namespace
}  // namespace zar
