#include "book/book.h"

#include <algorithm>
#include <cassert>

#include "board/movegen.h"
#include "platform/fatal.h"
#include "platform/file.h"
#include "platform/random.h"

namespace zar {

Book opening_book{};

namespace {

constexpr int kSquaresMask = 0xFFF;  // from- and to-square of a move

// A field of `bytes` bytes at the stream's position.
std::uint64_t read_field(std::FILE* file, int bytes) {
    std::uint64_t field = 0;
    for (int i = 0; i < bytes; ++i) {
        const int byte = std::fgetc(file);
        if (byte == EOF) {
            fatal_error(std::ferror(file) != 0 ? "X-Error 3EBK1RE6\n" : "X-Error 3EBK1RE5\n");
        }
        field = field << 8 | static_cast<std::uint64_t>(byte);
    }
    return field;
}

std::uint16_t read_short(std::FILE* file) {
    return static_cast<std::uint16_t>(read_field(file, 2));
}

// Index of the first entry whose key is not below `key`; of the last entry when all are.
std::int32_t lower_bound(Book& book, std::uint64_t key) {
    std::int32_t low = 0;
    std::int32_t high = book.entry_count - 1;
    while (low < high) {
        const std::int32_t middle = low + (high - low) / 2;
        if (key > book_read_entry(book, middle).key) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

// A move code of the file, 0 when there is none for the key. Each entry takes over with probability
// weight / (sum of the weights so far), which comes to weight / (sum of all).
int choose(Book& book, std::uint64_t key) {
    constexpr int kMostWeight = 1 << 30;  // far beyond the moves of any real position
    int sum = 0;
    int chosen = 0;
    for (std::int32_t index = lower_bound(book, key); index < book.entry_count; ++index) {
        const BookEntry entry = book_read_entry(book, index);
        if (entry.key != key) {
            break;
        }
        sum = std::min(sum + entry.weight, kMostWeight);
        if (entry.weight > random_below(sum)) {
            chosen = entry.move;
        }
    }
    return chosen;
}

}  // namespace

void book_reset(Book& book) { book = Book{}; }

void book_open(Book& book, const char* path) {
    std::FILE* file = file_open(path);
    if (file != nullptr) {
        book_open_stream(book, file);
    }
}

void book_open_stream(Book& book, std::FILE* file) {
    assert(book.file == nullptr);
    book.file = file;
    // Unbuffered, so that what is read is what the file holds now.
    std::setvbuf(file, nullptr, _IONBF, 0);
    if (!file_seek(file, 0, SEEK_END)) {
        fatal_error("X-Error 3EBK1RE1\n");
    }
    book.entry_count = static_cast<std::int32_t>(file_tell(file) / kBookEntrySize);
    if (book.entry_count == -1) {
        fatal_error("X-Error 3EBK1RE2\n");
    }
}

void book_close(Book& book) {
    std::FILE* file = book.file;
    book_reset(book);
    if (file != nullptr && std::fclose(file) != 0) {
        fatal_error("X-Error 3EBK1RE3\n");
    }
}

BookEntry book_read_entry(Book& book, std::int32_t index) {
    if (!file_seek(book.file, std::int64_t{index} * kBookEntrySize, SEEK_SET)) {
        fatal_error("X-Error 3EBK1RE4\n");
    }
    BookEntry entry{};
    entry.key = read_field(book.file, 8);
    entry.move = read_short(book.file);
    entry.weight = read_short(book.file);
    entry.learn_high = read_short(book.file);
    entry.learn_low = read_short(book.file);
    return entry;
}

Move book_probe(Book& book, Board& board) {
    // The count of a file beyond 32 GiB may have come out negative.
    if (book.file == nullptr || book.entry_count <= 0) {
        return kMoveNone;
    }
    const int chosen = choose(book, board.key);
    if (chosen == 0) {
        return kMoveNone;
    }
    MoveList legal;
    gen_legal_moves(legal, board);
    for (int i = 0; i < legal.size; ++i) {
        const Move move = legal.move[static_cast<std::size_t>(i)];
        if ((move & kSquaresMask) == (chosen & kSquaresMask)) {
            return move;
        }
    }
    return kMoveNone;
}

}  // namespace zar
