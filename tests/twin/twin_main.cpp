// zar-x3-twin: the twin's rules for test scripts. Reads one command a line from standard input
// and answers each with one line on standard output, flushed at once:
//
//   start                  "ok"; the start position (also the position at the beginning)
//   fen FEN                "ok", or "error REASON" and the game stays as it was
//   moves [MOVE...]        the legal moves behind these moves (none: of now), sorted, separated by
//                          blanks (empty line if there are none), or "illegal MOVE"
//   play MOVE [MOVE...]    "ok", or "illegal MOVE" and the game stays before that move
//   line [MOVE...]         the same answer; the game stays as it was
//   status                 ongoing, mate, stalemate, fifty, repetition or material
//   show                   the FEN of the position
//   perft N                the number of legal sequences of N half-moves
//   quit                   ends the program without an answer, as does the end of input

#include <algorithm>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "twin.h"

namespace {

std::string answer_fen(twin::Game& game, std::istringstream& words) {
    std::string fen;
    std::getline(words, fen);
    std::string reason;
    const std::optional<twin::Position> position = twin::position_from_fen(fen, &reason);
    if (!position) return "error " + reason;
    game = twin::game_from_position(*position);
    return "ok";
}

// Plays the rest of the words as moves. The text of the first one that is illegal, or an empty
// text.
std::string follow(twin::Position& position, std::istringstream& words) {
    std::string text;
    while (words >> text) {
        const std::vector<twin::Move> legal = twin::generate_legal_moves(position);
        const auto move = std::find_if(
            legal.begin(), legal.end(),
            [&](const twin::Move& candidate) { return twin::move_to_text(candidate) == text; });
        if (move == legal.end()) return text;
        position = twin::position_after(position, *move);
    }
    return {};
}

std::string answer_line(const twin::Game& game, std::istringstream& words) {
    twin::Position position = game.position;
    const std::string illegal = follow(position, words);
    return illegal.empty() ? "ok" : "illegal " + illegal;
}

std::string answer_moves(const twin::Game& game, std::istringstream& words) {
    twin::Position position = game.position;
    const std::string illegal = follow(position, words);
    if (!illegal.empty()) return "illegal " + illegal;
    std::string text;
    for (const std::string& move : twin::legal_moves(position)) {
        if (!text.empty()) text += ' ';
        text += move;
    }
    return text;
}

std::string answer_play(twin::Game& game, std::istringstream& words) {
    std::string move;
    while (words >> move) {
        if (!twin::game_play(game, move)) return "illegal " + move;
    }
    return "ok";
}

std::string answer_perft(const twin::Game& game, std::istringstream& words) {
    int depth = 0;
    if (!(words >> depth) || depth < 0) return "error perft needs a depth of 0 or more";
    return std::to_string(twin::perft(game.position, depth));
}

std::string answer(twin::Game& game, const std::string& command, std::istringstream& words) {
    if (command == "start") {
        game = twin::game_start();
        return "ok";
    }
    if (command == "fen") return answer_fen(game, words);
    if (command == "moves") return answer_moves(game, words);
    if (command == "play") return answer_play(game, words);
    if (command == "line") return answer_line(game, words);
    if (command == "status") return twin::result_name(twin::game_result(game));
    if (command == "show") return twin::position_to_fen(game.position);
    if (command == "perft") return answer_perft(game, words);
    return "error unknown command";
}

}  // namespace

int main() {
    twin::Game game = twin::game_start();
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream words(line);
        std::string command;
        words >> command;
        if (command == "quit") break;
        std::cout << answer(game, command, words) << std::endl;
    }
    return 0;
}
