#include "book_faults.h"

#include <cstdint>
#include <cstdio>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "board/fen.h"
#include "board/make.h"
#include "board/movegen.h"
#include "fen_text.h"
#include "move_names.h"

namespace zar::tools {

namespace {

// The indices of the entries of every position.
using Index = std::unordered_map<std::uint64_t, std::vector<std::size_t>>;

std::string named(const BookFile& file, std::size_t index) {
    const BookEntry& entry = file.entries[index];
    char text[64];
    std::snprintf(text, sizeof text, "entry %zu (%016llx %s)", index,
                  static_cast<unsigned long long>(entry.key), book_code_name(entry.move).c_str());
    return text;
}

void find_disorder(const BookFile& file, std::vector<std::string>& faults) {
    for (std::size_t i = 1; i < file.entries.size(); ++i) {
        const BookEntry& before = file.entries[i - 1];
        const BookEntry& entry = file.entries[i];
        if (entry.key < before.key) {
            faults.push_back(named(file, i) + ": a higher key stands before it");
        } else if (entry.key == before.key && entry.weight > before.weight) {
            faults.push_back(named(file, i) + ": a lower weight stands before it");
        }
    }
}

void find_duplicates(const BookFile& file, std::vector<std::string>& faults) {
    std::map<std::pair<std::uint64_t, std::uint16_t>, std::size_t> seen;
    for (std::size_t i = 0; i < file.entries.size(); ++i) {
        const BookEntry& entry = file.entries[i];
        const auto [first, is_new] = seen.try_emplace({entry.key, entry.move}, i);
        if (!is_new) {
            faults.push_back(named(file, i) + ": the same move as entry " +
                             std::to_string(first->second));
        }
    }
}

// The walk through all positions that the book's own moves reach.
struct Walk {
    const BookFile& file;
    Index index;
    std::vector<bool> legal;  // per entry: its move was found among the legal ones
    std::unordered_set<std::uint64_t> seen;
    std::vector<std::string> waiting;  // FENs: a Board with its history is large
};

// Marks the entries of this position whose moves are legal and puts what is behind them on the
// list.
void visit(Walk& walk, const std::string& fen) {
    static Board board;
    board_from_fen(board, fen);
    const auto found = walk.index.find(board.key);
    if (!walk.seen.insert(board.key).second || found == walk.index.end()) {
        return;
    }
    MoveList moves;
    gen_legal_moves(moves, board);
    for (const Move move : span_of(moves)) {
        bool in_book = false;
        for (const std::size_t i : found->second) {
            if (walk.file.entries[i].move == book_code_of(move)) {
                walk.legal[i] = true;
                in_book = true;
            }
        }
        if (in_book) {
            UndoInfo undo;
            move_do(board, move, undo);
            walk.waiting.push_back(fen_of(board));
            move_undo(board, move, undo);
        }
    }
}

void find_illegal(const BookFile& file, std::vector<std::string>& faults) {
    Walk walk{file, {}, std::vector<bool>(file.entries.size()), {}, {std::string(kStartFen)}};
    for (std::size_t i = 0; i < file.entries.size(); ++i) {
        walk.index[file.entries[i].key].push_back(i);
    }
    while (!walk.waiting.empty()) {
        const std::string fen = std::move(walk.waiting.back());
        walk.waiting.pop_back();
        visit(walk, fen);
    }
    for (std::size_t i = 0; i < file.entries.size(); ++i) {
        if (!walk.legal[i]) {
            const bool is_reached = walk.seen.count(file.entries[i].key) != 0;
            faults.push_back(named(file, i) + (is_reached ? ": the move is not legal"
                                                          : ": no book moves reach its position"));
        }
    }
}

}  // namespace

std::vector<std::string> book_faults(const BookFile& file) {
    std::vector<std::string> faults;
    find_disorder(file, faults);
    find_duplicates(file, faults);
    find_illegal(file, faults);
    if (file.trailing_bytes != 0) {
        faults.push_back("bytes behind the last whole entry: " +
                         std::to_string(file.trailing_bytes));
    }
    return faults;
}

}  // namespace zar::tools
