// inspect: what the engine knows about a position without searching, one JSON object a line.

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "board/attack.h"
#include "board/exchange.h"
#include "board/movegen.h"
#include "commands.h"
#include "eval/draws.h"
#include "eval/eval.h"
#include "fen_text.h"
#include "frontend/option.h"
#include "message.h"
#include "move_names.h"
#include "options.h"
#include "position.h"
#include "position_text.h"
#include "positions.h"
#include "text_line.h"

namespace zar::tools {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kThread = 0;
constexpr Score kOpenWindow = 30000;

std::string hex(std::uint64_t key) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(key));
    return text;
}

Json names_of(const MoveList& list) {
    Json names = Json::array();
    for (const Move move : span_of(list)) {
        names.push_back(name_of(move));
    }
    return names;
}

// What a generator lists in this position.
template <typename Generator>
Json generated(Board& board, Generator generate) {
    MoveList list;
    generate(list, board);
    return names_of(list);
}

Json evasions(Board& board) {
    Attack attack;
    attack_set(attack, board);
    if (attack.count == 0) {
        return Json::array();
    }
    MoveList list;
    gen_evasions_pseudo(list, board, attack);
    return names_of(list);
}

void add_terms(Json& terms, const EvalTerms& eval) {
    terms["material_o"] = eval.material.opening;
    terms["material_e"] = eval.material.endgame;
    terms["phase"] = eval.phase;
    terms["class"] = eval.ending_class;
    terms["ending_flags"] = eval.ending_flags;
    terms["flags_w"] = eval.side_flags[0];
    terms["flags_b"] = eval.side_flags[1];
    terms["scale_w"] = eval.scale[0];
    terms["scale_b"] = eval.scale[1];
    terms["work_scale_w"] = eval.working_scale[0];
    terms["work_scale_b"] = eval.working_scale[1];
    terms["pawn_o"] = eval.pawns.opening;
    terms["pawn_e"] = eval.pawns.endgame;
    terms["passed_w"] = eval.passed_files[0];
    terms["passed_b"] = eval.passed_files[1];
    terms["lone_w"] = eval.lone_pawn[0];
    terms["lone_b"] = eval.lone_pawn[1];
    terms["pst_o"] = eval.psq.opening;
    terms["pst_e"] = eval.psq.endgame;
    terms["pattern_o"] = eval.patterns.opening;
    terms["pattern_e"] = eval.patterns.endgame;
    terms["shelter_w"] = eval.shelter[0];
    terms["shelter_b"] = eval.shelter[1];
    terms["passer_o_w"] = eval.passers[0].opening;
    terms["passer_e_w"] = eval.passers[0].endgame;
    terms["passer_o_b"] = eval.passers[1].opening;
    terms["passer_e_b"] = eval.passers[1].endgame;
    terms["mobility_o_w"] = eval.mobility[0].opening;
    terms["mobility_e_w"] = eval.mobility[0].endgame;
    terms["mobility_o_b"] = eval.mobility[1].opening;
    terms["mobility_e_b"] = eval.mobility[1].endgame;
    terms["total_o"] = eval.total.opening;
    terms["total_e"] = eval.total.endgame;
    terms["final"] = eval.final_score;
}

Json inspected(Board& board) {
    MoveList legal;
    gen_legal_moves(legal, board);
    Json checks = Json::array();
    Json exchanges = Json::object();
    for (const Move move : span_of(legal)) {
        if (move_is_check(move, board)) {
            checks.push_back(name_of(move));
        }
        exchanges[name_of(move)] = see(move, board);
    }
    Json json;
    json["fen"] = fen_of(board);
    json["key"] = hex(board.key);
    json["pawn_key"] = hex(board.pawn_key);
    json["material_key"] = hex(board.material_key);
    json["check"] = board_is_check(board);
    json["mate"] = board_is_mate(board);
    json["stalemate"] = board_is_stalemate(board);
    json["legal"] = names_of(legal);
    json["captures"] = generated(board, gen_captures);
    json["quiets"] = generated(board, gen_quiets);
    json["quiet_checks"] = generated(board, gen_quiet_checks);
    json["evasions"] = evasions(board);
    json["gives_check"] = std::move(checks);
    json["see"] = std::move(exchanges);
    json["eval"] = evaluate(board, -kOpenWindow, kOpenWindow, kThread);
    json["draw"] = is_recognised_draw(board, kThread);
    json["terms"] = Json::object();
    add_terms(json["terms"], evaluate_terms(board, kThread));
    return json;
}

// One object for one text, which may be no position. What stands behind its fields is not looked
// at.
void print(Board& board, const std::string& text) {
    const PositionText parts = position_split(text);
    std::string error = position_error(board, parts.fen);
    if (error.empty()) {
        error = position_play(board, parts.moves);
    }
    const Json json = error.empty() ? inspected(board) : Json{{"error", error}};
    std::cout << json.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
}

void run(int level, const std::vector<std::string>& words) {
    static Board board;
    option_set("Difficulty Level", std::to_string(level));
    eval_tables_allocate(1);
    eval_apply_weights();
    if (!words.empty() && (words.size() > 1 || words[0] != "-")) {
        print(board, positions_of(words).text);
        return;
    }
    int number = 0;
    for (std::string line; next_line(std::cin, line, number);) {
        print(board, line);
    }
    fail_if_input_is_broken(kBadInput);
}

}  // namespace

void add_inspect(CLI::App& app) {
    constexpr int kFullLevel = 10;
    auto level = std::make_shared<int>(kFullLevel);
    auto words = std::make_shared<std::vector<std::string>>();
    CLI::App* command = app.add_subcommand(
        "inspect",
        "Describe positions: one FEN a line on standard input, one JSON object a line on standard "
        "output");
    command->add_option("--level", *level, "Difficulty Level that the evaluation is for")
        ->transform(number_between(0, kFullLevel))
        ->capture_default_str();
    command->add_option("FEN", *words,
                        "FEN or startpos, moves M... behind it (default: lines of them on standard "
                        "input)");
    command->callback([level, words] { run(*level, *words); });
}

}  // namespace zar::tools
