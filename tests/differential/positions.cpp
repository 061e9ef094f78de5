#include "differential/positions.h"

#include <array>
#include <string_view>

#include "board/attack.h"
#include "board/movegen.h"
#include "frontend/bench.h"
#include "gtest/gtest.h"
#include "search/budget.h"
#include "search/driver.h"
#include "search/types.h"
#include "support/letter_board.h"
#include "twin.h"

namespace zar::test {

namespace {

// Engine play

constexpr int kGamesFromEach = 2;
constexpr int kLongestGame = 45;
constexpr int kOpeningPlies = 4;  // played at random, so that the games part

Move engine_move(Board& board, int depth) {
    search_reset();
    search_shared.limits = {};
    search_shared.limits.limit_depth_set = true;
    search_shared.limits.limit_depth = depth;
    search_run(board);
    return search_thread(0).result[0].best_move;
}

Game play_game(std::string_view fen, Random& random) {
    Game game{std::string(fen), {}};
    Board board = board_of(fen);
    for (int ply = 0; ply < kLongestGame; ++ply) {
        MoveList legal;
        gen_legal_moves(legal, board);
        if (legal.size == 0 || board_is_repetition(board)) {
            break;
        }
        // A random move now and then keeps the game from going round in circles.
        const std::size_t chance = below(random, 8);
        const std::size_t choice = below(random, static_cast<std::size_t>(legal.size));
        const bool at_random = ply < kOpeningPlies || chance == 0 || legal.size == 1;
        const int depth = ply % 6 == 5 ? 2 : 1;
        const Move move = at_random ? legal.move[choice] : engine_move(board, depth);
        if (!list_contains(legal, move)) {
            ADD_FAILURE() << "the engine played " << text_of(move) << " in " << fen_of(board);
            break;
        }
        game.moves.push_back(move);
        UndoInfo undo;
        move_do(board, move, undo);
    }
    return game;
}

std::vector<Game> play_games() {
    Random random(20250711);
    std::vector<std::string_view> starts(walk_fens.begin(), walk_fens.end());
    starts.insert(starts.end(), bench_positions().begin(), bench_positions().end());
    std::vector<Game> games;
    for (const std::string_view fen : starts) {
        for (int game = 0; game < kGamesFromEach; ++game) {
            games.push_back(play_game(fen, random));
        }
    }
    return games;
}

// Set-ups

constexpr std::size_t kSetUps = 3500;
constexpr std::size_t kMostTries = 200000;

enum class Kind : std::uint8_t { few, many, promoted, queens, castling, en_passant, pinned };
constexpr std::size_t kKinds = 7;

// A position in the making.
struct Draft {
    twin::Position position;
    std::array<bool, 64> taken;  // squares where nothing more may go
};

char letter_of(char kind, bool white) { return white ? static_cast<char>(kind - 'a' + 'A') : kind; }

void put(Draft& draft, char kind, bool white, twin::Square square) {
    const auto rank = static_cast<std::size_t>(square.rank);
    const auto file = static_cast<std::size_t>(square.file);
    draft.position.board[rank][file] = letter_of(kind, white);
    draft.taken[8 * rank + file] = true;
}

void put_anywhere(Draft& draft, char kind, bool white, Random& random) {
    const std::size_t first = kind == 'p' ? 8 : 0;
    const std::size_t squares = kind == 'p' ? 48 : 64;
    std::size_t index = first + below(random, squares);
    while (draft.taken[index]) {
        index = first + below(random, squares);
    }
    put(draft, kind, white, twin_square(static_cast<Square64>(index)));
}

// On the square if it is free, else anywhere.
void put_where_free(Draft& draft, char kind, bool white, twin::Square square, Random& random) {
    if (draft.taken[static_cast<std::size_t>(8 * square.rank + square.file)]) {
        put_anywhere(draft, kind, white, random);
    } else {
        put(draft, kind, white, square);
    }
}

// The text without some of its letters: each goes with a chance of one in `n`.
std::string thinned(std::string_view men, std::size_t n, Random& random) {
    std::string kept;
    for (const char man : men) {
        if (below(random, n) != 0) {
            kept += man;
        }
    }
    return kept;
}

// The men of one side but for its king, at most fifteen.
std::string army_of(Kind kind, Random& random) {
    std::string men;
    switch (kind) {
        case Kind::few:
        case Kind::pinned:
            for (std::size_t count = below(random, 4); count > 0; --count) {
                men += "ppnbrq"[below(random, 6)];
            }
            return men;
        case Kind::many:
            return thinned("ppppppppnnbbrrq", 8, random);
        case Kind::promoted:
            for (int pawn = 0; pawn < 8; ++pawn) {
                men += "ppppnbrq"[below(random, 8)];
            }
            return thinned(men + "nnbbrrq", 4, random);
        case Kind::queens:
            return "qqqqqqqqq" + thinned("nnbbrr", 2, random);
        case Kind::castling:
        case Kind::en_passant:
            return army_of(below(random, 2) == 0 ? Kind::few : Kind::many, random);
    }
    return men;
}

// King and rooks at home, or the king anywhere. Returns the army without what it has placed.
std::string put_castling_men(Draft& draft, bool white, const std::string& army, Random& random) {
    const std::size_t place = below(random, 4);
    if (place == 0) {
        put_anywhere(draft, 'k', white, random);
        return army;
    }
    if (place == 1) {
        // On the d-file or the f-file, where the other side's castling may give check.
        const int file = below(random, 2) == 0 ? 3 : 5;
        put_where_free(draft, 'k', white, {file, static_cast<int>(below(random, 8))}, random);
        return army;
    }
    const int rank = white ? 0 : 7;
    put(draft, 'k', white, {4, rank});
    for (const std::size_t side : {std::size_t{0}, std::size_t{1}}) {
        if (below(random, 4) != 0) {
            put(draft, 'r', white, {side == 0 ? 7 : 0, rank});
            draft.position.castling[(white ? 0 : 2) + side] = true;
        }
    }
    if (below(random, 2) == 0) {
        // Nothing comes between king and rooks.
        for (const int file : {1, 2, 3, 5, 6}) {
            draft.taken[static_cast<std::size_t>(8 * rank + file)] = true;
        }
    }
    std::string rest = army;
    std::erase(rest, 'r');
    return rest;
}

// A pawn that may make its double step past an enemy pawn. The side to move plays that step last.
twin::Move put_passing_pawns(Draft& draft, Random& random) {
    const bool white = draft.position.white_to_move;
    const int file = static_cast<int>(below(random, 8));
    const int beside = file == 0 || (file < 7 && below(random, 2) == 0) ? file + 1 : file - 1;
    const int home = white ? 1 : 6;
    const int forward = white ? 1 : -1;
    put(draft, 'p', white, {file, home});
    put(draft, 'p', !white, {beside, home + 2 * forward});
    for (const int rank : {home + forward, home + 2 * forward}) {
        draft.taken[static_cast<std::size_t>(8 * rank + file)] = true;
    }
    return {{file, home}, {file, home + 2 * forward}, 0};
}

bool is_free(const Draft& draft, twin::Square square) {
    return square.file >= 0 && square.file < 8 && square.rank >= 0 && square.rank < 8 &&
           !draft.taken[static_cast<std::size_t>(8 * square.rank + square.file)];
}

// The king of the side to move among enemy sliders, each with a man in between that it pins; the
// first of them gives check if wanted. Where the board has no room there are fewer.
void put_pinned_men(Draft& draft, bool in_check, Random& random) {
    const bool white = draft.position.white_to_move;
    const twin::Square king = twin_square(static_cast<Square64>(below(random, 64)));
    put(draft, 'k', white, king);
    for (int line = 0; line < 5; ++line) {
        const int file_step = static_cast<int>(below(random, 3)) - 1;
        const int rank_step = static_cast<int>(below(random, 3)) - 1;
        const int near = 1 + static_cast<int>(below(random, 2));
        const int far = near + 1 + static_cast<int>(below(random, 3));
        const twin::Square man{king.file + near * file_step, king.rank + near * rank_step};
        const twin::Square slider{king.file + far * file_step, king.rank + far * rank_step};
        char kind = "ppppnbrq"[below(random, 8)];
        kind = kind == 'p' && (man.rank == 0 || man.rank == 7) ? 'n' : kind;
        const bool diagonal = file_step != 0 && rank_step != 0;
        const char pinner = below(random, 3) == 0 ? 'q' : (diagonal ? 'b' : 'r');
        if (!is_free(draft, man) || !is_free(draft, slider)) {
            continue;
        }
        if (line > 0 || !in_check) {
            put(draft, kind, white, man);
        }
        put(draft, pinner, !white, slider);
    }
}

std::string without_one_pawn(std::string army) {
    const std::size_t place = army.find('p');
    return place == std::string::npos ? army : army.erase(place, 1);
}

bool is_legal(const twin::Position& position) {
    return twin::position_from_fen(twin::position_to_fen(position)).has_value();
}

bool is_legal_move(const twin::Position& position, const twin::Move& move) {
    for (const twin::Move& legal : twin::generate_legal_moves(position)) {
        if (twin::move_to_text(legal) == twin::move_to_text(move)) {
            return true;
        }
    }
    return false;
}

// The FEN of a set-up, empty when chance has made none that is legal.
std::string try_set_up(Kind kind, bool in_check, Random& random) {
    Draft draft{};
    for (auto& rank : draft.position.board) {
        rank.fill('.');
    }
    draft.position.white_to_move = below(random, 2) == 0;
    draft.position.ep_file = -1;
    const twin::Move step =
        kind == Kind::en_passant ? put_passing_pawns(draft, random) : twin::Move{};
    std::array<std::string, 2> armies;
    for (const bool white : {true, false}) {
        std::string army = army_of(kind, random);
        if (kind == Kind::castling) {
            army = put_castling_men(draft, white, army, random);
        } else if (kind == Kind::pinned && white == draft.position.white_to_move) {
            put_pinned_men(draft, in_check, random);
        } else {
            put_anywhere(draft, 'k', white, random);
        }
        armies[white ? 0 : 1] = kind == Kind::en_passant ? without_one_pawn(army) : army;
    }
    for (const bool white : {true, false}) {
        for (const char man : armies[white ? 0 : 1]) {
            put_anywhere(draft, man, white, random);
        }
    }
    draft.position.half_moves = static_cast<int>(below(random, 120));
    twin::Position position = draft.position;
    if (!is_legal(position)) {
        return "";
    }
    if (kind == Kind::en_passant) {
        // Played, not just written down: a pawn that had not moved leaves other checks behind.
        if (!is_legal_move(position, step)) {
            return "";
        }
        position = twin::position_after(position, step);
    }
    return twin::is_check(position) == in_check ? twin::position_to_fen(position) : "";
}

std::vector<std::string> make_set_ups() {
    Random random(20250714);
    std::vector<std::string> fens;
    for (std::size_t index = 0; index < kSetUps; ++index) {
        const Kind kind = static_cast<Kind>(index % kKinds);
        const bool in_check = index / kKinds % 2 == 1;
        std::string fen;
        for (std::size_t tries = 0; fen.empty() && tries < kMostTries; ++tries) {
            fen = try_set_up(kind, in_check, random);
        }
        if (fen.empty()) {
            ADD_FAILURE() << "no set-up of kind " << index % kKinds;
            break;
        }
        fens.push_back(fen);
    }
    return fens;
}

}  // namespace

const std::vector<Game>& engine_games() {
    static const std::vector<Game> games = play_games();
    return games;
}

const std::vector<std::string>& set_ups() {
    static const std::vector<std::string> fens = make_set_ups();
    return fens;
}

}  // namespace zar::test
