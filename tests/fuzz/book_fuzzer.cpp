// Any bytes as a book file: probing it gives a legal move that the book has, none, or a fatal
// error.

#include <algorithm>
#include <cstdio>

#include "board/fen.h"
#include "board/movegen.h"
#include "book/book.h"
#include "fuzz_support.h"
#include "platform/random.h"

namespace {

constexpr int kSquaresMask = 0xFFF;
constexpr int kMostProbes = 64;

zar::Board board;
zar::Book book;

bool book_has(std::uint64_t key, zar::Move move) {
    for (std::int32_t index = 0; index < book.entry_count; ++index) {
        const zar::BookEntry entry = book_read_entry(book, index);
        if (entry.key == key && entry.weight > 0 &&
            (entry.move & kSquaresMask) == (move & kSquaresMask)) {
            return true;
        }
    }
    return false;
}

// Probes the position as if this were its key.
void probe(std::uint64_t key) {
    board.key = key;
    const zar::Move move = book_probe(book, board);
    if (move == zar::kMoveNone) {
        return;
    }
    zar::MoveList legal;
    gen_legal_moves(legal, board);
    zar::fuzz::require(list_contains(legal, move), "an illegal book move");
    zar::fuzz::require(book_has(key, move), "a move that the book does not have");
}

void probe_all() {
    const std::uint64_t key = board.key;
    probe(key);
    for (std::int32_t index = 0; index < std::min(book.entry_count, kMostProbes); ++index) {
        probe(book_read_entry(book, index).key);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zar::fuzz::start_engine();
    zar::book_reset(book);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) {
        return 0;  // fmemopen takes no empty buffer
    }
    zar::random_seed(1);
    zar::board_from_fen(board, zar::kStartFen);
    std::FILE* const file = fmemopen(const_cast<unsigned char*>(data), size, "rb");
    zar::fuzz::require(file != nullptr, "no memory for a stream");
    static_cast<void>(zar::fuzz::survives([file] {
        book_open_stream(book, file);
        probe_all();
    }));
    zar::fuzz::require(zar::fuzz::survives([] { book_close(book); }), "a book is not closed");
    return 0;
}
