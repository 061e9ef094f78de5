#include "differential/swap_off.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <vector>

#include "support/letter_board.h"

namespace zar::test {

namespace {

// Taking part, by side: 0 white, 1 black; earliest first. Those that have taken are off the
// letters.
struct Exchange {
    Letters letters;
    twin::Square to;
    std::array<std::vector<twin::Square>, 2> takers;
    std::array<bool, 64> seen;  // squares of men that are or were among the takers
};

std::size_t index_of(twin::Square square) {
    return static_cast<std::size_t>(8 * square.rank + square.file);
}

Score value_of(char letter) { return piece_value_of(piece_from_char(letter)); }

void add_newcomers(Exchange& exchange) {
    for (const bool white : {true, false}) {
        for (const twin::Square square : attackers_of(exchange.letters, exchange.to, white)) {
            if (!exchange.seen[index_of(square)]) {
                exchange.seen[index_of(square)] = true;
                exchange.takers[white ? 0 : 1].push_back(square);
            }
        }
    }
}

void lift(Exchange& exchange, twin::Square square) {
    letter_at(exchange.letters, square) = '.';
    add_newcomers(exchange);
}

// Men that see the square while all men are in their places, in the order in which equal ones take.
std::vector<twin::Square> first_takers(const Exchange& exchange, const Board& board, bool white) {
    const auto rank_of = [&](twin::Square square) {
        const bool pawn =
            std::tolower(static_cast<unsigned char>(letter_at(exchange.letters, square))) == 'p';
        const auto cell = static_cast<std::size_t>(square_from_64[index_of(square)]);
        return pawn ? -square.file : board.list_index[cell];
    };
    std::vector<twin::Square> takers = attackers_of(exchange.letters, exchange.to, white);
    std::sort(takers.begin(), takers.end(),
              [&](twin::Square a, twin::Square b) { return rank_of(a) < rank_of(b); });
    return takers;
}

// What the side wins by taking a man worth `prey`, if it pays.
Score best_of(Exchange& exchange, bool white, Score prey) {
    std::vector<twin::Square>& takers = exchange.takers[white ? 0 : 1];
    if (takers.empty()) {
        return 0;
    }
    const auto taker =
        std::min_element(takers.begin(), takers.end(), [&](twin::Square a, twin::Square b) {
            return value_of(letter_at(exchange.letters, a)) <
                   value_of(letter_at(exchange.letters, b));
        });
    const twin::Square square = *taker;
    const Score next_prey = value_of(letter_at(exchange.letters, square));
    takers.erase(taker);
    lift(exchange, square);
    return std::max(0, prey - best_of(exchange, !white, next_prey));
}

}  // namespace

Score swap_off(Move code, const Board& board) {
    const twin::Move move = twin_move(code);
    Exchange exchange{};
    exchange.to = move.to;
    for (std::size_t index = 0; index < 64; ++index) {
        const Piece piece = board_piece(board, square_from_64[index]);
        exchange.letters[index / 8][index % 8] = piece == kEmpty ? '.' : piece_to_char(piece);
    }
    const char man = letter_at(exchange.letters, move.from);
    const bool white = is_white_letter(man);
    const char victim = letter_at(exchange.letters, move.to);
    Score gain = victim == '.' ? 0 : value_of(victim);
    Score prey = value_of(man);
    if (move_is_promotion(code)) {
        prey = value_of(move.promotion);
        gain += prey - value_of('p');
    }
    std::array<std::vector<twin::Square>, 2> first;
    for (const std::size_t side : {std::size_t{0}, std::size_t{1}}) {
        first[side] = first_takers(exchange, board, side == 0);
        for (const twin::Square square : first[side]) {
            exchange.seen[index_of(square)] = true;
        }
    }
    lift(exchange, move.from);
    if (move_is_en_passant(code)) {
        gain = value_of('p');
        lift(exchange, {move.to.file, move.from.rank});
    }
    for (const std::size_t side : {std::size_t{0}, std::size_t{1}}) {
        for (const twin::Square square : first[side]) {
            if (index_of(square) != index_of(move.from)) {
                exchange.takers[side].push_back(square);
            }
        }
    }
    return gain - best_of(exchange, !white, prey);
}

}  // namespace zar::test
