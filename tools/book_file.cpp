#include "book_file.h"

#include <array>
#include <fstream>

#include "board/geometry.h"

namespace zar::tools {

namespace {

constexpr std::size_t kEntrySize = kBookEntrySize;

std::uint64_t read_field(const char* bytes, int count) {
    std::uint64_t field = 0;
    for (int i = 0; i < count; ++i) {
        field = field << 8 | static_cast<unsigned char>(bytes[i]);
    }
    return field;
}

std::uint16_t read_short(const char* bytes) {
    return static_cast<std::uint16_t>(read_field(bytes, 2));
}

void write_field(std::string& bytes, std::uint64_t field, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<char>(field >> shift & 0xFF));
    }
}

}  // namespace

bool book_file_read(const std::string& path, BookFile& file) {
    std::ifstream stream(path, std::ios::binary);
    std::string bytes;
    std::array<char, 65536> block{};
    while (stream.read(block.data(), block.size()) || stream.gcount() > 0) {
        bytes.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    }
    // A folder can be opened; only reading shows that it is no file.
    if (!stream.is_open() || stream.bad()) {
        return false;
    }
    file.entries.clear();
    file.entries.reserve(bytes.size() / kEntrySize);
    for (std::size_t at = 0; at + kEntrySize <= bytes.size(); at += kEntrySize) {
        const char* entry = bytes.data() + at;
        file.entries.push_back({.key = read_field(entry, 8),
                                .move = read_short(entry + 8),
                                .weight = read_short(entry + 10),
                                .learn_high = read_short(entry + 12),
                                .learn_low = read_short(entry + 14)});
    }
    file.trailing_bytes = static_cast<int>(bytes.size() % kEntrySize);
    return true;
}

bool book_file_write(const std::string& path, const std::vector<BookEntry>& entries) {
    std::string bytes;
    bytes.reserve(entries.size() * kEntrySize);
    for (const BookEntry& entry : entries) {
        write_field(bytes, entry.key, 8);
        write_field(bytes, entry.move, 2);
        write_field(bytes, entry.weight, 2);
        write_field(bytes, entry.learn_high, 2);
        write_field(bytes, entry.learn_low, 2);
    }
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << bytes;
    stream.close();
    return stream.good();
}

std::uint16_t book_code_of(Move move) {
    const int promotion = move_is_promotion(move) ? (move >> 12 & 3) + 1 : 0;
    return static_cast<std::uint16_t>(promotion << 12 | (move & 0xFFF));
}

std::string book_code_name(std::uint16_t code) {
    constexpr std::array<const char*, 16> suffix = {"",  "n", "b", "r", "q", "?", "?", "?",
                                                    "?", "?", "?", "?", "?", "?", "?", "?"};
    const auto square = [](int square64) {
        return std::string{static_cast<char>('a' + square64 % 8),
                           static_cast<char>('1' + square64 / 8)};
    };
    return square(code >> 6 & 63) + square(code & 63) + suffix[code >> 12];
}

}  // namespace zar::tools
