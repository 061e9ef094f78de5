// The rules, in this order: small questions about the board, candidate moves, reading and writing
// FEN, and then the public functions. Legality is decided in generate_legal_moves alone.

#include "twin.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace twin {

namespace {

struct Step {
    int file;
    int rank;
};

constexpr std::array<Step, 4> kStraightSteps = {{{0, 1}, {1, 0}, {0, -1}, {-1, 0}}};
constexpr std::array<Step, 4> kDiagonalSteps = {{{1, 1}, {1, -1}, {-1, -1}, {-1, 1}}};
constexpr std::array<Step, 8> kKnightSteps = {
    {{1, 2}, {2, 1}, {2, -1}, {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}}};

constexpr std::size_t index(int number) { return static_cast<std::size_t>(number); }

constexpr std::array<Square, 64> kAllSquares = [] {
    std::array<Square, 64> squares = {};
    for (int i = 0; i < 64; ++i) squares[index(i)] = {i % 8, i / 8};
    return squares;
}();

constexpr std::string_view kKinds = "pnbrqk";
constexpr std::string_view kRights = "KQkq";
constexpr char kEmpty = '.';
constexpr int kKingHomeFile = 4;
constexpr int kHighestClock = 1000;

bool is_white(char man) { return man >= 'A' && man <= 'Z'; }

bool is_man_of(char man, bool white) { return white ? is_white(man) : man >= 'a' && man <= 'z'; }

// The letter of a man of the given side; `kind` is one of kKinds.
char man_of(char kind, bool white) { return white ? static_cast<char>(kind - 'a' + 'A') : kind; }

char kind_of(char man) { return is_white(man) ? static_cast<char>(man - 'A' + 'a') : man; }

bool on_board(Square square) {
    return square.file >= 0 && square.file < 8 && square.rank >= 0 && square.rank < 8;
}

Square stepped(Square square, Step step) {
    return {square.file + step.file, square.rank + step.rank};
}

// The content of a square; off the board there is a '#', which is neither empty nor a man.
char man_at(const Position& position, Square square) {
    if (!on_board(square)) return '#';
    return position.board[index(square.rank)][index(square.file)];
}

void put_man(Position& position, Square square, char man) {
    position.board[index(square.rank)][index(square.file)] = man;
}

std::string square_to_text(Square square) {
    return {static_cast<char>('a' + square.file), static_cast<char>('1' + square.rank)};
}

int home_rank(bool white) { return white ? 0 : 7; }
int pawn_direction(bool white) { return white ? 1 : -1; }

int count_men(const Position& position, char man) {
    int count = 0;
    for (const Square square : kAllSquares) count += man_at(position, square) == man ? 1 : 0;
    return count;
}

// Is the king of the given side attacked? A side without a king is not.
bool is_king_attacked(const Position& position, bool white_king) {
    for (const Square square : kAllSquares) {
        if (man_at(position, square) == man_of('k', white_king)) {
            return is_attacked(position, square, !white_king);
        }
    }
    return false;
}

// The first man met on the way from a square (itself left out), or '#' at the edge of the board.
char first_man(const Position& position, Square square, Step step) {
    Square target = stepped(square, step);
    while (man_at(position, target) == kEmpty) target = stepped(target, step);
    return man_at(position, target);
}

// Takes away every castling right whose king or rook is not at home. A man that has left its home
// and come back is no matter here: its right went when it left.
void drop_lost_castling(Position& position) {
    for (std::size_t right = 0; right < 4; ++right) {
        const bool white = right < 2;
        const int rook_file = right % 2 == 0 ? 7 : 0;
        const Square king = {kKingHomeFile, home_rank(white)};
        const Square rook = {rook_file, home_rank(white)};
        if (man_at(position, king) != man_of('k', white) ||
            man_at(position, rook) != man_of('r', white)) {
            position.castling[right] = false;
        }
    }
}

// The square passed over by the double step that was just made on the given file.
Square ep_square(const Position& position, int file) {
    return {file, position.white_to_move ? 5 : 2};
}

// Could the side to move have a reason to capture en passant on this file? The square must be
// empty, the pawn to be taken must stand beyond it, and a pawn of the side to move beside that one.
bool is_ep_possible(const Position& position, int file) {
    const bool white = position.white_to_move;
    const Square target = ep_square(position, file);
    const Square victim = {file, target.rank - pawn_direction(white)};
    const char own_pawn = man_of('p', white);
    return man_at(position, target) == kEmpty && man_at(position, victim) == man_of('p', !white) &&
           (man_at(position, stepped(victim, {-1, 0})) == own_pawn ||
            man_at(position, stepped(victim, {1, 0})) == own_pawn);
}

// Candidate moves: as the men move, own king's safety not looked at.

void add_pawn_move(std::vector<Move>& moves, Square from, Square to) {
    if (to.rank == 0 || to.rank == 7) {
        for (const char promotion : {'q', 'r', 'b', 'n'}) moves.push_back({from, to, promotion});
    } else {
        moves.push_back({from, to, 0});
    }
}

void add_pawn_moves(std::vector<Move>& moves, const Position& position, Square from) {
    const bool white = position.white_to_move;
    const int forward = pawn_direction(white);

    const Square one = {from.file, from.rank + forward};
    const Square two = {from.file, from.rank + 2 * forward};
    if (man_at(position, one) == kEmpty) {
        add_pawn_move(moves, from, one);
        if (from.rank == home_rank(white) + forward && man_at(position, two) == kEmpty) {
            add_pawn_move(moves, from, two);
        }
    }

    for (const int side : {-1, 1}) {
        const Square to = {from.file + side, from.rank + forward};
        const bool en_passant = position.ep_file >= 0 && to.file == position.ep_file &&
                                to.rank == ep_square(position, to.file).rank;
        if (is_man_of(man_at(position, to), !white) || en_passant) add_pawn_move(moves, from, to);
    }
}

// King and knight: each step to an empty square or on to an enemy man.
template <std::size_t N>
void add_steps(std::vector<Move>& moves, const Position& position, Square from,
               const std::array<Step, N>& steps) {
    for (const Step step : steps) {
        const Square to = stepped(from, step);
        const char man = man_at(position, to);
        const bool enemy = is_man_of(man, !position.white_to_move);
        if (man == kEmpty || enemy) moves.push_back({from, to, 0});
    }
}

// Bishop, rook and queen: as far as the way is free, and the enemy man at its end.
void add_slides(std::vector<Move>& moves, const Position& position, Square from,
                const std::array<Step, 4>& steps) {
    for (const Step step : steps) {
        Square to = stepped(from, step);
        for (; man_at(position, to) == kEmpty; to = stepped(to, step)) {
            moves.push_back({from, to, 0});
        }
        const bool enemy = is_man_of(man_at(position, to), !position.white_to_move);
        if (enemy) moves.push_back({from, to, 0});
    }
}

// Castling: the right is there, the way between king and rook is free, and the king neither stands
// in check nor crosses an attacked square. The square it arrives on is tested like that of any
// other king move.
void add_castling(std::vector<Move>& moves, const Position& position) {
    const bool white = position.white_to_move;
    const int rank = home_rank(white);
    const std::size_t first_right = white ? 0 : 2;
    const Square king = {kKingHomeFile, rank};
    const auto free = [&](int file) { return man_at(position, {file, rank}) == kEmpty; };
    const auto safe = [&](int file) { return !is_attacked(position, {file, rank}, !white); };

    if (position.castling[first_right] && free(5) && free(6) && safe(4) && safe(5)) {
        moves.push_back({king, {6, rank}, 0});
    }
    if (position.castling[first_right + 1] && free(3) && free(2) && free(1) && safe(4) && safe(3)) {
        moves.push_back({king, {2, rank}, 0});
    }
}

std::vector<Move> candidate_moves(const Position& position) {
    std::vector<Move> moves;
    for (const Square from : kAllSquares) {
        const char man = man_at(position, from);
        if (!is_man_of(man, position.white_to_move)) continue;
        const char kind = kind_of(man);
        if (kind == 'p') add_pawn_moves(moves, position, from);
        if (kind == 'n') add_steps(moves, position, from, kKnightSteps);
        if (kind == 'b' || kind == 'q') add_slides(moves, position, from, kDiagonalSteps);
        if (kind == 'r' || kind == 'q') add_slides(moves, position, from, kStraightSteps);
        if (kind == 'k') {
            add_steps(moves, position, from, kDiagonalSteps);
            add_steps(moves, position, from, kStraightSteps);
        }
    }
    add_castling(moves, position);
    return moves;
}

// Fields of a FEN. Each reader returns an empty text, or what is wrong.

std::string read_placement(Position& position, const std::string& text) {
    Square square = {0, 7};
    for (const char letter : text) {
        if (letter == '/') {
            if (square.file != 8) return "a rank has fewer than eight squares";
            if (square.rank == 0) return "more than eight ranks";
            square = {0, square.rank - 1};
        } else if (letter >= '1' && letter <= '8') {
            square.file += letter - '0';
        } else if (kKinds.find(kind_of(letter)) != std::string_view::npos) {
            if (square.file < 8) put_man(position, square, letter);
            ++square.file;
        } else {
            return "unknown letter in the placement";
        }
        if (square.file > 8) return "a rank has more than eight squares";
    }
    if (square.rank != 0 || square.file != 8) return "the placement is too short";
    return {};
}

std::string read_castling(Position& position, const std::string& text) {
    if (text == "-") return {};
    for (const char letter : text) {
        const std::size_t right = kRights.find(letter);
        if (right == std::string_view::npos) return "unknown castling letter";
        if (position.castling[right]) return "castling letter given twice";
        position.castling[right] = true;
    }
    drop_lost_castling(position);
    return {};
}

std::string read_ep(Position& position, const std::string& text) {
    if (text == "-") return {};
    const std::optional<Square> square = square_from_text(text);
    if (!square) return "the en-passant field is not a square";
    if (square->rank != ep_square(position, square->file).rank) {
        return "the en-passant square is on the wrong rank";
    }
    if (is_ep_possible(position, square->file)) position.ep_file = square->file;
    return {};
}

std::string read_clock(Position& position, const std::string& text) {
    for (const char digit : text) {
        if (digit < '0' || digit > '9') return "the half-move clock is not a number";
        position.half_moves = std::min(10 * position.half_moves + (digit - '0'), kHighestClock);
    }
    return {};
}

// What makes a position impossible, or an empty text.
std::string find_impossibility(const Position& position) {
    for (const bool white : {true, false}) {
        if (count_men(position, man_of('k', white)) != 1) return "a side has not exactly one king";
        if (count_men(position, man_of('p', white)) > 8) return "a side has more than eight pawns";
        int men = 0;
        for (const char kind : kKinds) men += count_men(position, man_of(kind, white));
        if (men > 16) return "a side has more than sixteen men";
    }
    for (const Square square : kAllSquares) {
        const bool end_rank = square.rank == 0 || square.rank == 7;
        if (end_rank && kind_of(man_at(position, square)) == 'p') {
            return "a pawn stands on the first or last rank";
        }
    }
    if (is_king_attacked(position, !position.white_to_move)) {
        return "the side not to move is in check";
    }
    return {};
}

std::string castling_to_text(const Position& position) {
    std::string text;
    for (std::size_t right = 0; right < 4; ++right) {
        if (position.castling[right]) text += kRights[right];
    }
    return text.empty() ? "-" : text;
}

std::string placement_to_text(const Position& position) {
    std::string text;
    for (int rank = 7; rank >= 0; --rank) {
        int empty_run = 0;
        for (int file = 0; file < 8; ++file) {
            const char man = man_at(position, {file, rank});
            if (man != kEmpty && empty_run > 0) text += std::to_string(empty_run);
            if (man != kEmpty) text += man;
            empty_run = man == kEmpty ? empty_run + 1 : 0;
        }
        if (empty_run > 0) text += std::to_string(empty_run);
        if (rank > 0) text += '/';
    }
    return text;
}

// Two positions are the same for repetition when the same men stand on the same squares, the same
// side is to move, and the possible moves are the same: those of now (so an en-passant square that
// no legal capture can use makes no difference) and castling later on.
std::string repetition_text(const Position& position) {
    std::string text = placement_to_text(position) + (position.white_to_move ? " w " : " b ") +
                       castling_to_text(position);
    for (const std::string& move : legal_moves(position)) text += " " + move;
    return text;
}

}  // namespace

std::optional<Position> position_from_fen(const std::string& fen, std::string* error) {
    std::istringstream stream(fen);
    std::string placement, turn, castling, ep, clock;
    std::string fault;
    if (!(stream >> placement >> turn >> castling >> ep)) fault = "fewer than four fields";
    stream >> clock;  // a missing one is an empty text and counts as 0

    Position position = {};
    for (auto& rank : position.board) rank.fill(kEmpty);
    position.white_to_move = turn == "w";
    position.ep_file = -1;

    if (fault.empty()) fault = read_placement(position, placement);
    if (fault.empty() && turn != "w" && turn != "b") fault = "the side to move is neither w nor b";
    if (fault.empty()) fault = read_castling(position, castling);
    if (fault.empty()) fault = read_ep(position, ep);
    if (fault.empty()) fault = read_clock(position, clock);
    if (fault.empty()) fault = find_impossibility(position);
    if (fault.empty()) return position;
    if (error != nullptr) *error = fault;
    return std::nullopt;
}

std::string position_to_fen(const Position& position) {
    const std::string ep =
        position.ep_file < 0 ? "-" : square_to_text(ep_square(position, position.ep_file));
    return placement_to_text(position) + (position.white_to_move ? " w " : " b ") +
           castling_to_text(position) + " " + ep + " " + std::to_string(position.half_moves) + " 1";
}

std::optional<Square> square_from_text(const std::string& text) {
    if (text.size() != 2) return std::nullopt;
    const Square square = {text[0] - 'a', text[1] - '1'};
    if (!on_board(square)) return std::nullopt;
    return square;
}

std::string move_to_text(const Move& move) {
    std::string text = square_to_text(move.from) + square_to_text(move.to);
    if (move.promotion != 0) text += move.promotion;
    return text;
}

bool is_attacked(const Position& position, Square square, bool by_white) {
    // A pawn that attacks this square stands one rank behind it, as its side sees it.
    for (const int side : {-1, 1}) {
        const Square origin = stepped(square, {side, -pawn_direction(by_white)});
        if (man_at(position, origin) == man_of('p', by_white)) return true;
    }
    for (const Step step : kKnightSteps) {
        if (man_at(position, stepped(square, step)) == man_of('n', by_white)) return true;
    }
    for (const Step step : kStraightSteps) {
        if (man_at(position, stepped(square, step)) == man_of('k', by_white)) return true;
        const char man = first_man(position, square, step);
        if (man == man_of('r', by_white) || man == man_of('q', by_white)) return true;
    }
    for (const Step step : kDiagonalSteps) {
        if (man_at(position, stepped(square, step)) == man_of('k', by_white)) return true;
        const char man = first_man(position, square, step);
        if (man == man_of('b', by_white) || man == man_of('q', by_white)) return true;
    }
    return false;
}

bool is_check(const Position& position) {
    return is_king_attacked(position, position.white_to_move);
}

bool is_mate(const Position& position) {
    return is_check(position) && generate_legal_moves(position).empty();
}

bool is_stalemate(const Position& position) {
    return !is_check(position) && generate_legal_moves(position).empty();
}

bool is_material_draw(const Position& position) {
    int knights = 0;
    int bishops_on_light = 0;
    int bishops_on_dark = 0;
    for (const Square square : kAllSquares) {
        const char man = man_at(position, square);
        if (man == kEmpty) continue;
        const char kind = kind_of(man);
        if (kind == 'p' || kind == 'r' || kind == 'q') return false;
        const bool light = (square.file + square.rank) % 2 == 1;
        if (kind == 'n') ++knights;
        if (kind == 'b' && light) ++bishops_on_light;
        if (kind == 'b' && !light) ++bishops_on_dark;
    }
    if (knights == 0) return bishops_on_light == 0 || bishops_on_dark == 0;
    return knights == 1 && bishops_on_light == 0 && bishops_on_dark == 0;
}

Position position_after(const Position& position, const Move& move) {
    const bool white = position.white_to_move;
    const char man = man_at(position, move.from);
    const bool pawn = kind_of(man) == 'p';
    const bool capture = man_at(position, move.to) != kEmpty;
    Position after = position;

    put_man(after, move.from, kEmpty);
    put_man(after, move.to, move.promotion != 0 ? man_of(move.promotion, white) : man);
    if (pawn && move.from.file != move.to.file && !capture) {
        put_man(after, {move.to.file, move.from.rank}, kEmpty);
    }
    if (kind_of(man) == 'k' && std::abs(move.to.file - move.from.file) == 2) {
        const bool king_side = move.to.file > move.from.file;
        put_man(after, {king_side ? 7 : 0, move.from.rank}, kEmpty);
        put_man(after, {king_side ? 5 : 3, move.from.rank}, man_of('r', white));
    }

    after.white_to_move = !white;
    drop_lost_castling(after);
    after.half_moves = pawn || capture ? 0 : position.half_moves + 1;
    after.ep_file = -1;
    const bool double_step = pawn && std::abs(move.to.rank - move.from.rank) == 2;
    if (double_step && is_ep_possible(after, move.to.file)) after.ep_file = move.to.file;
    return after;
}

std::vector<Move> generate_legal_moves(const Position& position) {
    std::vector<Move> moves;
    for (const Move& move : candidate_moves(position)) {
        const Position after = position_after(position, move);
        if (!is_king_attacked(after, position.white_to_move)) moves.push_back(move);
    }
    return moves;
}

std::vector<std::string> legal_moves(const Position& position) {
    std::vector<std::string> texts;
    for (const Move& move : generate_legal_moves(position)) texts.push_back(move_to_text(move));
    std::sort(texts.begin(), texts.end());
    return texts;
}

std::uint64_t perft(const Position& position, int depth) {
    if (depth <= 0) return 1;
    const std::vector<Move> moves = generate_legal_moves(position);
    if (depth == 1) return moves.size();
    std::uint64_t count = 0;
    for (const Move& move : moves) count += perft(position_after(position, move), depth - 1);
    return count;
}

Game game_from_position(const Position& position) {
    return {position, {repetition_text(position)}};
}

Game game_start() { return game_from_position(*position_from_fen(kStartFen)); }

bool game_play(Game& game, const std::string& move) {
    for (const Move& legal : generate_legal_moves(game.position)) {
        if (move_to_text(legal) == move) {
            game.position = position_after(game.position, legal);
            game.history.push_back(repetition_text(game.position));
            return true;
        }
    }
    return false;
}

Result game_result(const Game& game) {
    if (is_mate(game.position)) return Result::mate;
    if (is_stalemate(game.position)) return Result::stalemate;
    if (is_material_draw(game.position)) return Result::material;
    if (game.position.half_moves >= 100) return Result::fifty;
    const auto times = std::count(game.history.begin(), game.history.end(), game.history.back());
    return times >= 3 ? Result::repetition : Result::ongoing;
}

std::string result_name(Result result) {
    constexpr std::array<const char*, 6> kNames = {"ongoing", "mate",       "stalemate",
                                                   "fifty",   "repetition", "material"};
    return kNames[static_cast<std::size_t>(result)];
}

}  // namespace twin
