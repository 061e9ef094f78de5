#include "board/exchange.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "board/attack.h"
#include "board/cells.h"

namespace zar {

namespace {

// A piece code above all that there are.
constexpr Piece kAboveAll = 256;

// A man that can capture on the square in question; square 0 stands for none.
struct Attacker {
    Square square;
    Piece piece;
};

// A slider that came into view when the man before it left.
struct HiddenAttacker {
    Attacker man;
    bool joined_late;  // found while capturing goes on, and so behind men of the same code
};

// The men of one colour that attack the square, least valuable first, men of one code in the order
// of their list. Each is looked for only when it is asked for.
struct Attackers {
    Color color;
    int pawns_tried;
    // Entries of the piece list, strongest first, that have not been looked at.
    int unseen;
    // Men of one code that were found together; the last one captures first.
    int found_count;
    std::array<Square, kMaxMen> found;
    Attacker direct;  // in plain view and not served yet
    int hidden_count;
    std::array<HiddenAttacker, kMaxMen> hidden;
};

// Left uninitialised but for what exchange_start sets: it is made for every question.
struct Exchange {
    const Board* board;
    Square to;
    Square mover;  // does not capture a second time
    std::array<Attackers, kColorCount> side;
};

Attackers& side_of(Exchange& exchange, Color color) {
    return exchange.side[static_cast<std::size_t>(color)];
}

void attackers_start(Attackers& side, const Board& board, Color color) {
    side.color = color;
    side.pawns_tried = 0;
    side.unseen = board_piece_count(board, color);
    side.found_count = 0;
    side.direct.square = kNoSquare;
    side.hidden_count = 0;
}

bool attacks_in_view(const Exchange& exchange, Square from, Piece piece) {
    return (piece & delta_mask_of(from, exchange.to)) != 0 && from != exchange.mover &&
           line_is_empty(*exchange.board, from, exchange.to);
}

void add_found(Attackers& side, Square from) {
    side.found[static_cast<std::size_t>(side.found_count++)] = from;
}

// Finds the next men of the colour, all of one code, that attack the square in plain view.
void find_direct(Attackers& side, const Exchange& exchange) {
    const Board& board = *exchange.board;
    while (side.pawns_tried < 2) {
        const Square behind = exchange.to - pawn_step_of(side.color);
        const Square from = side.pawns_tried++ == 0 ? behind + 1 : behind - 1;
        if (from != exchange.mover && board_piece(board, from) == pawn_of(side.color)) {
            add_found(side, from);
            return;
        }
    }
    const std::uint8_t* const men = board_pieces(board, side.color).begin();
    while (side.unseen > 0) {
        const Square from = men[--side.unseen];
        const Piece piece = board_piece(board, from);
        if (!attacks_in_view(exchange, from, piece)) {
            continue;
        }
        add_found(side, from);
        while (side.unseen > 0 && board_piece(board, men[side.unseen - 1]) == piece) {
            const Square other = men[--side.unseen];
            if (attacks_in_view(exchange, other, piece)) {
                add_found(side, other);
            }
        }
        return;
    }
}

// The man in plain view that captures first; square 0 when there is none.
Attacker next_direct(Attackers& side, const Exchange& exchange) {
    if (side.found_count == 0) {
        find_direct(side, exchange);
    }
    if (side.found_count == 0) {
        return {kNoSquare, kEmpty};
    }
    const Square square = side.found[static_cast<std::size_t>(--side.found_count)];
    return {square, board_piece(*exchange.board, square)};
}

// Of the hidden men the first to capture, when one comes before the man in plain view; else -1.
int first_hidden(const Attackers& side) {
    int best = -1;
    const auto rank = [](const HiddenAttacker& man) {
        return 4 * man.man.piece + (man.joined_late ? 2 : 0);
    };
    int best_rank = side.direct.square == kNoSquare ? 4 * 256 : 4 * side.direct.piece + 1;
    for (int i = 0; i < side.hidden_count; ++i) {
        const int candidate = rank(side.hidden[static_cast<std::size_t>(i)]);
        if (candidate < best_rank) {
            best = i;
            best_rank = candidate;
        }
    }
    return best;
}

// Serves the next man to capture.
Attacker next_attacker(Exchange& exchange, Color color) {
    Attackers& side = side_of(exchange, color);
    if (side.direct.square == kNoSquare) {
        side.direct = next_direct(side, exchange);
    }
    const int index = side.hidden_count == 0 ? -1 : first_hidden(side);
    if (index < 0) {
        const Attacker direct = side.direct;
        side.direct.square = kNoSquare;
        return direct;
    }
    const Attacker man = side.hidden[static_cast<std::size_t>(index)].man;
    side.hidden_count -= 1;
    for (auto i = static_cast<std::size_t>(index); i < static_cast<std::size_t>(side.hidden_count);
         ++i) {
        side.hidden[i] = side.hidden[i + 1];
    }
    return man;
}

// The slider, of either colour, that attacks the square once the man before it has left; none where
// no such man stands behind. Taken into every caller, as is first_attacker: 30 instructions a node
// less.
[[gnu::always_inline]] inline Attacker slider_behind(const Board& board, Square man, Square to) {
    const int step = delta_ray_of(man, to);
    if (step == 0) {
        return {kNoSquare, kEmpty};
    }
    Square behind = man - step;
    while (board_piece(board, behind) == kEmpty) {
        behind -= step;
    }
    const Piece piece = board_piece(board, behind);
    return (piece & ray_mask_of(step)) != 0 ? Attacker{behind, piece} : Attacker{kNoSquare, kEmpty};
}

// Adds the slider that attacks through `square` once the man there is gone.
void add_hidden(Exchange& exchange, Square square, bool joined_late) {
    const Attacker man = slider_behind(*exchange.board, square, exchange.to);
    if (man.square == kNoSquare) {
        return;
    }
    Attackers& side = side_of(exchange, piece_color(man.piece));
    if (side.hidden_count < kMaxMen) {
        side.hidden[static_cast<std::size_t>(side.hidden_count++)] = {man, joined_late};
    }
}

// What `color`, to move, wins by capturing a man worth `prey` as long as it pays; never below 0.
Score play_out(Exchange& exchange, Color color, Score prey) {
    constexpr std::size_t kMostTakers = std::size_t{2} * kMaxMen;
    std::array<Score, kMostTakers> preys{};
    std::size_t captures = 0;
    while (captures < kMostTakers) {
        const Attacker taker = next_attacker(exchange, color);
        if (taker.square == kNoSquare) {
            break;
        }
        preys[captures++] = prey;
        prey = piece_value_of(taker.piece);
        add_hidden(exchange, taker.square, true);
        color = color_opposite(color);
    }
    Score value = 0;
    while (captures > 0) {
        value = std::max(0, preys[--captures] - value);
    }
    return value;
}

// Does `color`, to move, win at most `bound` by capturing a man worth `prey` as long as it pays?
bool wins_at_most(Exchange& exchange, Color color, Score prey, Score bound) {
    const Color other = color_opposite(color);
    while (true) {
        // What the other colour has to win back.
        const Score need = prey - bound;
        if (need <= 0) {
            return true;
        }
        Attacker taker = next_attacker(exchange, color);
        if (taker.square == kNoSquare) {
            return true;
        }
        prey = piece_value_of(taker.piece);
        bound = prey - need;
        if (bound < 0) {
            return false;
        }
        add_hidden(exchange, taker.square, true);
        taker = next_attacker(exchange, other);
        if (taker.square == kNoSquare) {
            return false;
        }
        prey = piece_value_of(taker.piece);
        add_hidden(exchange, taker.square, true);
    }
}

// The move itself: what it wins, and what stands on the to-square after it.
struct FirstCapture {
    Score gain;
    Score prey;
};

FirstCapture first_capture(Move move, const Board& board) {
    const Score gain = piece_value_of(board_piece(board, move_to(move)));
    if (move_is_promotion(move)) {
        const Score prey = piece_value_of(move_promote(move));
        return {gain + prey - kPawnValue, prey};
    }
    const Score prey = piece_value_of(board_piece(board, move_from(move)));
    return {move_is_en_passant(move) ? kPawnValue : gain, prey};
}

// Makes the move and readies the answers to it. Returns the colour that answers.
Color exchange_start(Exchange& exchange, Move move, const Board& board) {
    exchange.board = &board;
    exchange.to = move_to(move);
    exchange.mover = move_from(move);
    attackers_start(exchange.side[kWhite], board, kWhite);
    attackers_start(exchange.side[kBlack], board, kBlack);
    add_hidden(exchange, exchange.mover, false);
    if (move_is_en_passant(move)) {
        add_hidden(exchange, exchange.to ^ kRowStep, false);
    }
    return color_opposite(piece_color(board_piece(board, exchange.mover)));
}

// The man of the colour that captures first after the mover's move: the one that next_attacker
// finds, without the records that a longer exchange needs.
[[gnu::always_inline]] inline Attacker first_attacker(const Board& board, Square mover, Square to,
                                                      Color color) {
    const Square behind = to - pawn_step_of(color);
    if (has_beside(board, behind, pawn_bit(color))) {
        for (const Square from : {behind + 1, behind - 1}) {
            if (board_piece(board, from) == pawn_of(color) && from != mover) {
                return {from, pawn_of(color)};
            }
        }
    }
    Attacker first = slider_behind(board, mover, to);
    Piece limit = first.piece;
    if ((first.piece & color_bit(color)) == 0) {
        first = {kNoSquare, kEmpty};
        limit = kAboveAll;
    }
    const SquareRange men = board_pieces(board, color);
    for (const std::uint8_t* man = men.end(); man != men.begin();) {
        const Square from = *--man;
        const Piece piece = board_piece(board, from);
        if (piece >= limit) {
            break;
        }
        if ((piece & delta_mask_of(from, to)) != 0 && from != mover &&
            line_is_empty(board, from, to)) {
            first = {from, piece};
            limit = piece + 1;  // of one code the first in the list captures first
        }
    }
    return first;
}

enum class Verdict { fails, holds, open };

// Whether the opponent wins at most `bound` by capturing the moved man worth `prey`, as far as the
// first capture and the question whether anybody can answer it tell: most of the time. Into its
// caller, which does little else.
[[gnu::always_inline]] inline Verdict judge_early(Move move, const Board& board, Score prey,
                                                  Score bound) {
    if (move_is_en_passant(move)) {
        return Verdict::open;
    }
    const Square mover = move_from(move);
    const Square to = move_to(move);
    const Color color = piece_color(board_piece(board, mover));
    const Attacker taker = first_attacker(board, mover, to, color_opposite(color));
    if (taker.square == kNoSquare) {
        return Verdict::holds;
    }
    if (piece_value_of(taker.piece) < prey - bound) {
        return Verdict::fails;
    }
    if ((slider_behind(board, taker.square, to).piece & color_bit(color)) == 0 &&
        first_attacker(board, mover, to, color).square == kNoSquare) {
        return Verdict::fails;
    }
    return Verdict::open;
}

// The same once all captures must be looked at. Kept out of its caller, which needs none of the
// large record: 4 instructions a node less.
[[gnu::noinline]] bool holds_in_full(Move move, const Board& board, Score prey, Score bound) {
    Exchange exchange;
    const Color opponent = exchange_start(exchange, move, board);
    return wins_at_most(exchange, opponent, prey, bound);
}

}  // namespace

Score see(Move move, const Board& board) {
    const FirstCapture first = first_capture(move, board);
    Exchange exchange;
    const Color opponent = exchange_start(exchange, move, board);
    return first.gain - play_out(exchange, opponent, first.prey);
}

bool see_at_least(Move move, const Board& board, Score threshold) {
    const FirstCapture first = first_capture(move, board);
    // The opponent wins back something between nothing and the man that has moved.
    const Score bound = first.gain - threshold;
    if (bound < 0 || bound >= first.prey) {
        return bound >= 0;
    }
    if (const Verdict verdict = judge_early(move, board, first.prey, bound);
        verdict != Verdict::open) {
        return verdict == Verdict::holds;
    }
    return holds_in_full(move, board, first.prey, bound);
}

}  // namespace zar
