#include "book/book.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "board/fen.h"
#include "platform/random.h"
#include "support/fatal_support.h"

namespace zar {
namespace {

constexpr std::uint64_t kStartKey = 0x463B96181691FC9C;
constexpr std::uint64_t kAfterE4Key = 0x823C9B50FD114196;

constexpr std::uint16_t move_code(int from, int to, int promotion = 0) {
    return static_cast<std::uint16_t>(promotion << 12 | from << 6 | to);
}

constexpr std::uint16_t kE2E4 = move_code(12, 28);
constexpr std::uint16_t kD2D4 = move_code(11, 27);
constexpr std::uint16_t kG1F3 = move_code(6, 21);
constexpr std::uint16_t kE7E5 = move_code(52, 36);

void append(std::string& bytes, std::uint64_t value, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 255);
    }
}

std::string bytes_of(const std::vector<BookEntry>& entries) {
    std::string bytes;
    for (const BookEntry& entry : entries) {
        append(bytes, entry.key, 8);
        append(bytes, entry.move, 2);
        append(bytes, entry.weight, 2);
        append(bytes, entry.learn_high, 2);
        append(bytes, entry.learn_low, 2);
    }
    return bytes;
}

std::string text_of(Move move) {
    char text[kMoveTextSize];
    move_to_string(move, text, kMoveTextSize);
    return text;
}

// Every test has a folder and a closed book of its own; the fixed seed makes draws repeatable.
class BookTest : public testing::Test {
  protected:
    BookTest() {
        char name[] = "/tmp/zar-book-XXXXXX";
        folder_ = mkdtemp(name);
        path_ = folder_ + "/test.bin";
        book_reset(book_);
        random_seed(1);
    }

    ~BookTest() override {
        book_close(book_);
        unlink(path_.c_str());
        rmdir(folder_.c_str());
    }

    void write(const std::string& bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }

    void open_bytes(const std::string& bytes) {
        write(bytes);
        book_open(book_, path_.c_str());
    }

    void open(const std::vector<BookEntry>& entries) { open_bytes(bytes_of(entries)); }

    std::string probe(std::string_view fen) {
        static Board board;
        board_from_fen(board, fen);
        const Move move = book_probe(book_, board);
        return move == kMoveNone ? "none" : text_of(move);
    }

    std::string folder_;
    std::string path_;
    Book book_;
};

TEST_F(BookTest, StartPositionIsFoundByItsPublishedKey) {
    open({{kStartKey, kE2E4, 1, 0, 0}});
    EXPECT_EQ("e2e4", probe(kStartFen));
}

TEST_F(BookTest, PositionAfterE4IsFoundByItsPublishedKey) {
    open({{kStartKey, kE2E4, 1, 0, 0}, {kAfterE4Key, kE7E5, 1, 0, 0}});
    EXPECT_EQ("e7e5", probe("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"));
}

TEST_F(BookTest, FieldsAreReadMostSignificantByteFirst) {
    open({{0x0102030405060708, 0x090A, 0x0B0C, 0x0D0E, 0x0F10}});
    const BookEntry entry = book_read_entry(book_, 0);
    EXPECT_EQ(0x0102030405060708U, entry.key);
    EXPECT_EQ(0x090A, entry.move);
    EXPECT_EQ(0x0B0C, entry.weight);
    EXPECT_EQ(0x0D0E, entry.learn_high);
    EXPECT_EQ(0x0F10, entry.learn_low);
}

TEST_F(BookTest, EveryKeyOfManyIsFoundAndNoOther) {
    // Only the key counts, so it is set by hand.
    for (int size = 1; size <= 20; ++size) {
        std::vector<BookEntry> entries;
        for (int i = 0; i < size; ++i) {
            entries.push_back(
                {static_cast<std::uint64_t>(i + 1) << 59, i % 2 == 0 ? kE2E4 : kD2D4, 1, 0, 0});
        }
        open(entries);
        static Board board;
        board_from_fen(board, kStartFen);
        for (int i = 0; i < size; ++i) {
            board.key = static_cast<std::uint64_t>(i + 1) << 59;
            EXPECT_EQ(i % 2 == 0 ? "e2e4" : "d2d4", text_of(book_probe(book_, board))) << size;
            board.key += 1;
            EXPECT_EQ(kMoveNone, book_probe(book_, board)) << "above entry " << i << " of " << size;
        }
        board.key = 1;
        EXPECT_EQ(kMoveNone, book_probe(book_, board)) << "below all of " << size;
        book_close(book_);
    }
}

TEST_F(BookTest, KeysAreComparedUnsigned) {
    open({{1, kD2D4, 1, 0, 0}, {0xFFFFFFFFFFFFFFFF, kE2E4, 1, 0, 0}});
    static Board board;
    board_from_fen(board, kStartFen);
    board.key = 0xFFFFFFFFFFFFFFFF;
    EXPECT_EQ("e2e4", text_of(book_probe(book_, board)));
    board.key = 1;
    EXPECT_EQ("d2d4", text_of(book_probe(book_, board)));
}

TEST_F(BookTest, FileShorterThanAnEntryHasNoMoves) {
    open_bytes(bytes_of({{kStartKey, kE2E4, 1, 0, 0}}).substr(0, 15));
    EXPECT_NE(nullptr, book_.file);
    EXPECT_EQ(0, book_.entry_count);
    EXPECT_EQ("none", probe(kStartFen));
}

TEST_F(BookTest, EmptyFileHasNoMoves) {
    open_bytes("");
    EXPECT_EQ("none", probe(kStartFen));
}

TEST_F(BookTest, TrailingBytesAreIgnored) {
    open_bytes(bytes_of({{kStartKey, kE2E4, 1, 0, 0}}) + "fifteen bytes..");
    EXPECT_EQ(1, book_.entry_count);
    EXPECT_EQ("e2e4", probe(kStartFen));
}

TEST_F(BookTest, WeightZeroIsNeverChosen) {
    open({{kStartKey, kE2E4, 0, 0, 0}});
    EXPECT_EQ("none", probe(kStartFen));
    book_close(book_);
    open({{kStartKey, kE2E4, 0, 0, 0}, {kStartKey, kD2D4, 1, 0, 0}, {kStartKey, kG1F3, 0, 0, 0}});
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ("d2d4", probe(kStartFen));
    }
}

TEST_F(BookTest, DrawsFollowTheWeights) {
    open({{kStartKey, kE2E4, 600, 0, 0},
          {kStartKey, kD2D4, 300, 0, 0},
          {kStartKey, kG1F3, 100, 0, 0}});
    constexpr int kDraws = 10000;
    std::map<std::string, int> drawn;
    for (int i = 0; i < kDraws; ++i) {
        ++drawn[probe(kStartFen)];
    }
    const std::map<std::string, double> expected = {
        {"e2e4", 0.6 * kDraws}, {"d2d4", 0.3 * kDraws}, {"g1f3", 0.1 * kDraws}};
    double chi_square = 0;
    for (const auto& [move, count] : expected) {
        chi_square += (drawn[move] - count) * (drawn[move] - count) / count;
    }
    // Two degrees of freedom: chance alone passes 20 once in 20,000 seeds.
    EXPECT_LT(chi_square, 20.0) << drawn["e2e4"] << " " << drawn["d2d4"] << " " << drawn["g1f3"];
    EXPECT_EQ(3U, drawn.size());
}

TEST_F(BookTest, MoveThatIsNotLegalIsNoMove) {
    // Castling as "king takes rook" has other squares than the engine's code.
    constexpr std::string_view fen = "4k3/8/8/8/8/8/8/4K2R w K - 0 1";
    static Board board;
    board_from_fen(board, fen);
    open({{board.key, move_code(4, 7), 1, 0, 0}});
    EXPECT_EQ("none", probe(fen));
    book_close(book_);
    open({{board.key, move_code(4, 6), 1, 0, 0}});
    EXPECT_EQ("e1g1", probe(fen));
}

TEST_F(BookTest, PromotionBitsAreIgnored) {
    constexpr std::string_view fen = "8/P3k3/8/8/8/8/8/4K3 w - - 0 1";
    static Board board;
    board_from_fen(board, fen);
    constexpr int kRook = 3;
    open({{board.key, move_code(48, 56, kRook), 1, 0, 0}});
    EXPECT_EQ("a7a8q", probe(fen));
}

TEST_F(BookTest, CheckedSideIsAnsweredByItsEvasions) {
    constexpr std::string_view fen = "4k3/8/8/8/8/8/4r3/4K3 w - - 0 1";
    static Board board;
    board_from_fen(board, fen);
    open({{board.key, move_code(4, 12), 1, 0, 0}});
    EXPECT_EQ("e1e2", probe(fen));
    book_close(book_);
    open({{board.key, move_code(4, 11), 1, 0, 0}});
    EXPECT_EQ("none", probe(fen));
}

TEST_F(BookTest, MatedSideHasNoMove) {
    constexpr std::string_view fen = "R5k1/5ppp/8/8/8/8/8/K7 b - - 0 1";
    static Board board;
    board_from_fen(board, fen);
    open({{board.key, move_code(62, 61), 1, 0, 0}});
    EXPECT_EQ("none", probe(fen));
}

TEST_F(BookTest, ClosedBookHasNoMove) {
    EXPECT_EQ("none", probe(kStartFen));
    open({{kStartKey, kE2E4, 1, 0, 0}});
    book_close(book_);
    EXPECT_EQ("none", probe(kStartFen));
    book_close(book_);
}

TEST_F(BookTest, MissingFileIsNoBook) {
    book_open(book_, (folder_ + "/missing.bin").c_str());
    EXPECT_EQ(nullptr, book_.file);
    book_open(book_, "");
    EXPECT_EQ(nullptr, book_.file);
}

TEST_F(BookTest, DirectoryPipeAndDeviceAreNoBooks) {
    ASSERT_EQ(0, mkfifo(path_.c_str(), 0600));
    for (const std::string& path : {folder_, path_, std::string("/dev/zero")}) {
        book_open(book_, path.c_str());
        EXPECT_EQ(nullptr, book_.file) << path;
    }
}

TEST_F(BookTest, FileThatShrinksIsFatal) {
    static Book book;
    static Board board;
    book_reset(book);
    write(bytes_of({{kStartKey, kE2E4, 1, 0, 0}, {kStartKey, kD2D4, 1, 0, 0}}));
    book_open(book, path_.c_str());
    ASSERT_EQ(2, book.entry_count);
    ASSERT_EQ(0, truncate(path_.c_str(), 8));
    board_from_fen(board, kStartFen);
    EXPECT_EQ("X-Error 3EBK1RE5\n",
              test::fatal_text_of([] { static_cast<void>(book_probe(book, board)); }));
    book_close(book);
}

TEST_F(BookTest, CountOfMinusOneIsFatal) {
    static Book book;
    book_reset(book);
    write("");
    constexpr off_t kSize = (off_t{1} << 36) - 16;  // sparse: no block of it exists
    if (truncate(path_.c_str(), kSize) != 0) {
        GTEST_SKIP() << "this file system has no files of 64 GiB";
    }
    EXPECT_EQ("X-Error 3EBK1RE2\n",
              test::fatal_text_of([](const char* path) { book_open(book, path); }, path_.c_str()));
    std::fclose(book.file);
}

TEST_F(BookTest, NegativeCountHasNoMove) {
    write(bytes_of({{kStartKey, kE2E4, 1, 0, 0}}));
    if (truncate(path_.c_str(), off_t{1} << 36 >> 1) != 0) {
        GTEST_SKIP() << "this file system has no files of 32 GiB";
    }
    book_open(book_, path_.c_str());
    EXPECT_LT(book_.entry_count, 0);
    EXPECT_EQ("none", probe(kStartFen));
}

// A stream that fails where it is told to.
struct Faults {
    bool seek_end;
    bool seek_set;
    bool read;
    bool close;
    off64_t position;
};

ssize_t faulty_read(void* cookie, char* buffer, size_t size) {
    if (static_cast<Faults*>(cookie)->read) {
        return -1;
    }
    std::fill_n(buffer, size, '\0');
    return static_cast<ssize_t>(size);
}

int faulty_seek(void* cookie, off64_t* offset, int whence) {
    auto* state = static_cast<Faults*>(cookie);
    if ((whence == SEEK_END && state->seek_end) || (whence == SEEK_SET && state->seek_set)) {
        return -1;
    }
    constexpr off64_t kSize = 160;
    const off64_t base = whence == SEEK_END ? kSize : whence == SEEK_CUR ? state->position : 0;
    state->position = base + *offset;
    *offset = state->position;
    return 0;
}

int faulty_close(void* cookie) { return static_cast<Faults*>(cookie)->close ? -1 : 0; }

std::FILE* open_faulty(Faults& faults) {
    return fopencookie(
        &faults, "rb",
        {.read = faulty_read, .write = nullptr, .seek = faulty_seek, .close = faulty_close});
}

Faults faults;
Book faulty_book;
Board start_board;

class BookFaultTest : public testing::Test {
  protected:
    BookFaultTest() {
        faults = Faults{};
        book_reset(faulty_book);
        board_from_fen(start_board, kStartFen);
    }
};

TEST_F(BookFaultTest, FailedSeekToTheEndIsFatal) {
    faults.seek_end = true;
    EXPECT_EQ("X-Error 3EBK1RE1\n",
              test::fatal_text_of([] { book_open_stream(faulty_book, open_faulty(faults)); }));
    std::fclose(faulty_book.file);
}

TEST_F(BookFaultTest, FailedCloseIsFatalAndTheBookIsClosed) {
    book_open_stream(faulty_book, open_faulty(faults));
    faults.close = true;
    EXPECT_EQ("X-Error 3EBK1RE3\n", test::fatal_text_of([] { book_close(faulty_book); }));
    EXPECT_EQ(nullptr, faulty_book.file);
}

TEST_F(BookFaultTest, FailedSeekToAnEntryIsFatal) {
    book_open_stream(faulty_book, open_faulty(faults));
    faults.seek_set = true;
    EXPECT_EQ("X-Error 3EBK1RE4\n",
              test::fatal_text_of([] { static_cast<void>(book_probe(faulty_book, start_board)); }));
    book_close(faulty_book);
}

TEST_F(BookFaultTest, FailedReadIsFatal) {
    book_open_stream(faulty_book, open_faulty(faults));
    EXPECT_EQ(10, faulty_book.entry_count);
    faults.read = true;
    EXPECT_EQ("X-Error 3EBK1RE6\n",
              test::fatal_text_of([] { static_cast<void>(book_probe(faulty_book, start_board)); }));
    book_close(faulty_book);
}

}  // namespace
}  // namespace zar
