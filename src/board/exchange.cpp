#include "board/exchange.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "board/attack.h"

namespace zar {

namespace {

// Men of one colour that attack the square in question, least valuable first; a man listed later
// stands behind men of the same code. Entries before `first` have captured already.
struct Attackers {
    int first = 0;
    int size = 0;
    std::array<Square, kMaxMen + 1> square;
    std::array<Piece, kMaxMen + 1> piece;
};

struct Exchange {
    const Board& board;
    Square to;
    std::array<Attackers, kColorCount> side;
};

void add_attacker(Exchange& exchange, Square square) {
    const Piece piece = board_piece(exchange.board, square);
    Attackers& list = exchange.side[static_cast<std::size_t>(piece_color(piece))];
    if (list.size > kMaxMen) {
        return;
    }
    auto place = static_cast<std::size_t>(list.size++);
    const auto first = static_cast<std::size_t>(list.first);
    while (place > first && list.piece[place - 1] > piece) {
        list.piece[place] = list.piece[place - 1];
        list.square[place] = list.square[place - 1];
        --place;
    }
    list.piece[place] = piece;
    list.square[place] = square;
}

// Adds the slider, of either colour, that attacks through `square` once the man there is gone.
void add_hidden(Exchange& exchange, Square square) {
    const int step = delta_ray_of(square, exchange.to);
    if (step == 0) {
        return;
    }
    Square behind = square - step;
    while (board_piece(exchange.board, behind) == kEmpty) {
        behind -= step;
    }
    if ((board_piece(exchange.board, behind) & ray_mask_of(step)) != 0) {
        add_attacker(exchange, behind);
    }
}

// Adds all men of a colour that attack the square now, but the one on `without`.
void add_direct(Exchange& exchange, Color color, Square without) {
    const Board& board = exchange.board;
    const Square to = exchange.to;
    for (const Square from : board_pieces(board, color)) {
        if (from != without && (board_piece(board, from) & delta_mask_of(from, to)) != 0 &&
            line_is_empty(board, from, to)) {
            add_attacker(exchange, from);
        }
    }
    const Square behind = to - pawn_step_of(color);
    for (const Square from : {behind + 1, behind - 1}) {
        if (from != without && board_piece(board, from) == pawn_of(color)) {
            add_attacker(exchange, from);
        }
    }
}

// What `color`, to move, wins by capturing a man worth `prey` as long as it pays; never below 0.
Score play_out(Exchange& exchange, Color color, Score prey) {
    constexpr std::size_t kMostCaptures = std::size_t{2} * (kMaxMen + 1);
    std::array<Score, kMostCaptures> preys{};
    std::size_t captures = 0;
    while (true) {
        Attackers& list = exchange.side[static_cast<std::size_t>(color)];
        if (list.first == list.size) {
            break;
        }
        const auto taker = static_cast<std::size_t>(list.first++);
        preys[captures++] = prey;
        prey = piece_value_of(list.piece[taker]);
        add_hidden(exchange, list.square[taker]);
        color = color_opposite(color);
    }
    Score value = 0;
    while (captures > 0) {
        value = std::max(0, preys[--captures] - value);
    }
    return value;
}

}  // namespace

Score see(Move move, const Board& board) {
    const Square from = move_from(move);
    const Square to = move_to(move);
    const Piece piece = board_piece(board, from);
    const Color color = piece_color(piece);
    Score gain = piece_value_of(board_piece(board, to));
    Score prey = piece_value_of(piece);
    if (move_is_promotion(move)) {
        prey = piece_value_of(move_promote(move));
        gain += prey - kPawnValue;
    } else if (move_is_en_passant(move)) {
        gain = kPawnValue;
    }
    Exchange exchange{board, to, {}};
    add_hidden(exchange, from);
    if (move_is_en_passant(move)) {
        add_hidden(exchange, to ^ kRowStep);
    }
    const Color opponent = color_opposite(color);
    add_direct(exchange, opponent, kNoSquare);
    if (exchange.side[static_cast<std::size_t>(opponent)].size == 0) {
        return gain;
    }
    add_direct(exchange, color, from);
    return gain - play_out(exchange, opponent, prey);
}

}  // namespace zar
