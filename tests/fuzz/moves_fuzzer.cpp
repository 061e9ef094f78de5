// Any text as the move list of "position": the position reached is sound. The first byte chooses
// where the moves begin.

#include <array>

#include "board/movegen.h"
#include "frontend/uci.h"
#include "fuzz_support.h"

extern "C" std::size_t LLVMFuzzerMutate(unsigned char* data, std::size_t size,
                                        std::size_t max_size);

namespace {

constexpr std::array<std::string_view, 8> positions = {
    "position startpos moves ",
    "position fen r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1 moves ",
    "position fen rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3 moves ",
    "position fen n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1 moves ",
    "position fen 8/8/8/8/8/8/6k1/4K2R w K - 99 50 moves ",
    "position fen 4k3/8/8/8/8/8/4r3/4K3 w - - 0 1 moves ",
    "position fen R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1 moves ",
    "position fen 4k3/8/8/8/3p4/8/2P1P3/4K3 w - - 1000 900 moves ",
};

// Longest line that the console hands over.
constexpr std::size_t kLongestLine = 65535;
constexpr std::size_t kLongestMoves = kLongestLine - 100;

// Plays the moves; false when the text, which may hold the marker "fen ", is a fatal error.
bool play(const unsigned char* data, std::size_t size) {
    static std::array<char, kLongestLine> line;
    const std::string_view position = positions[data[0] % positions.size()];
    std::string_view text = zar::fuzz::text_of(data + 1, size - 1);
    const std::string_view moves = zar::fuzz::take_line(text);
    std::size_t length = position.copy(line.data(), position.size());
    length += moves.copy(line.data() + length, kLongestMoves);
    return zar::fuzz::survives(
        [length] { zar::uci_execute(std::string_view(line.data(), length)); });
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    zar::fuzz::start_engine();
    zar::engine_init();
    return 0;
}

// Every other mutation appends a legal move: chance alone would not find many.
extern "C" std::size_t LLVMFuzzerCustomMutator(unsigned char* data, std::size_t size,
                                               std::size_t max_size, unsigned seed) {
    const bool has_room = size > 0 && size + 1 + zar::kMoveTextSize <= max_size;
    if (seed % 2 == 0 || !has_room || !play(data, size)) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    zar::MoveList legal;
    gen_legal_moves(legal, zar::uci_state.board);
    if (legal.size == 0) {
        return LLVMFuzzerMutate(data, size, max_size);
    }
    const unsigned chosen = seed / 2 % static_cast<unsigned>(legal.size);
    char move[zar::kMoveTextSize];
    zar::move_to_string(legal.move[chosen], move, zar::kMoveTextSize);
    data[size++] = ' ';
    for (const char character : std::string_view(move)) {
        data[size++] = static_cast<unsigned char>(character);
    }
    return size;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size > 0 && play(data, size)) {
        zar::fuzz::check_position(zar::uci_state.board);
    }
    return 0;
}
