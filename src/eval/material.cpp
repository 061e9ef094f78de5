#include "eval/material.h"

#include <algorithm>
#include <cstddef>

#include "board/piece.h"
#include "eval/cache.h"
#include "eval/score.h"
#include "eval/weights.h"

namespace zar {

namespace {

constexpr std::size_t kMaterialEntryCount = 256;

// Every thread writes its own table only.
RecordCache<MaterialRecord, kMaterialEntryCount> material_cache;

// Queen and knight work together better than queen and bishop, at every level.
constexpr int kQueenAndKnight = 10;

// Units of both sides together when all pieces are on the board.
constexpr int kFullUnits = 24;

// The men of one side, its king left out.
struct Men {
    int pawns = 0;
    int knights = 0;
    int bishops = 0;
    int rooks = 0;
    int queens = 0;

    friend constexpr bool operator==(const Men&, const Men&) = default;

    [[nodiscard]] constexpr int minors() const { return knights + bishops; }
    [[nodiscard]] constexpr int pieces() const { return minors() + rooks + queens; }
    // Rooks and queens, in rooks.
    [[nodiscard]] constexpr int majors() const { return rooks + 2 * queens; }
    // Pieces, in minor pieces.
    [[nodiscard]] constexpr int units() const { return minors() + 2 * majors(); }
};

Men count_men(const Board& board, Color color) {
    const auto count = [&](PieceType type) {
        return board.kind_count[static_cast<std::size_t>(piece12_make(type, color))];
    };
    return {.pawns = count(kPawn),
            .knights = count(kKnight),
            .bishops = count(kBishop),
            .rooks = count(kRook),
            .queens = count(kQueen)};
}

ScorePair times(ScorePair value, int count) {
    return {value.opening * count, value.endgame * count};
}

ScorePair material_value(const Men& men) {
    const MaterialWeights& weights = eval_weights.material;
    return times(weights.pawn, men.pawns) + times(weights.knight, men.knights) +
           times(weights.bishop, men.bishops) + times(weights.rook, men.rooks) +
           times(weights.queen, men.queens);
}

int value_without_pawns(const Men& men) {
    return material_value(men).opening - eval_weights.material.pawn.opening * men.pawns;
}

// Pieces are worth a little more than the pawns that were given for them.
ScorePair imbalance(const Men& white, const Men& black) {
    const int value = eval_weights.material.imbalance;
    const int difference = value_without_pawns(white) - value_without_pawns(black);
    if (difference > 0 && white.pawns < black.pawns) {
        return {value, value};
    }
    if (difference < 0 && white.pawns > black.pawns) {
        return {-value, -value};
    }
    return {};
}

ScorePair bishop_pairs(const Men& white, const Men& black) {
    const int pairs = (white.bishops > 1 ? 1 : 0) - (black.bishops > 1 ? 1 : 0);
    return times(eval_weights.material.bishop_pair, pairs);
}

bool has_queen_and(const Men& men, int Men::*minor) {
    return men.pieces() == 2 && men.queens == 1 && men.*minor == 1;
}

bool has_single_rook(const Men& men) { return men.pieces() == 1 && men.rooks == 1; }

// What certain endings add to the endgame score, White's view.
int ending_adjustment(const Men& white, const Men& black) {
    const MaterialWeights& weights = eval_weights.material;
    const int extra_pawns = white.pawns - black.pawns;
    if (white.pieces() == 0 && black.pieces() == 0) {
        return std::clamp(extra_pawns, -2, 2) * weights.pawn_ending_extra;
    }
    if (has_queen_and(white, &Men::knights) && has_queen_and(black, &Men::bishops)) {
        return kQueenAndKnight;
    }
    if (has_queen_and(white, &Men::bishops) && has_queen_and(black, &Men::knights)) {
        return -kQueenAndKnight;
    }
    if (has_single_rook(white) && has_single_rook(black)) {
        return -std::clamp(extra_pawns, -1, 1) * weights.rook_ending_damping;
    }
    return 0;
}

ScorePair material_balance(const Men& white, const Men& black) {
    ScorePair score = material_value(white) - material_value(black);
    score += imbalance(white, black);
    score += bishop_pairs(white, black);
    score.endgame += ending_adjustment(white, black);
    return weigh(score, eval_weights.material.scale);
}

int phase_of(const Men& white, const Men& black) {
    const int missing = std::max(0, kFullUnits - (white.units() + black.units()));
    return (missing * kEndgamePhase + kFullUnits / 2) / kFullUnits;
}

constexpr Men kNothing{};
constexpr Men kP{.pawns = 1};
constexpr Men kN{.knights = 1};
constexpr Men kB{.bishops = 1};
constexpr Men kR{.rooks = 1};
constexpr Men kQ{.queens = 1};
constexpr Men kNP{.pawns = 1, .knights = 1};
constexpr Men kBP{.pawns = 1, .bishops = 1};
constexpr Men kRP{.pawns = 1, .rooks = 1};

struct ClassRow {
    EndingClass ending;
    Men white;
    Men black;
};

constexpr std::array<ClassRow, 27> kClassRows = {{
    {EndingClass::kvk, kNothing, kNothing}, {EndingClass::kbvk, kB, kNothing},
    {EndingClass::kvkb, kNothing, kB},      {EndingClass::knvk, kN, kNothing},
    {EndingClass::kvkn, kNothing, kN},      {EndingClass::kpvk, kP, kNothing},
    {EndingClass::kvkp, kNothing, kP},      {EndingClass::kqvkq, kQ, kQ},
    {EndingClass::kqvkp, kQ, kP},           {EndingClass::kpvkq, kP, kQ},
    {EndingClass::krvkr, kR, kR},           {EndingClass::krvkp, kR, kP},
    {EndingClass::kpvkr, kP, kR},           {EndingClass::kbvkb, kB, kB},
    {EndingClass::kbvkp, kB, kP},           {EndingClass::kpvkb, kP, kB},
    {EndingClass::kbpvk, kBP, kNothing},    {EndingClass::kvkbp, kNothing, kBP},
    {EndingClass::knvkn, kN, kN},           {EndingClass::knvkp, kN, kP},
    {EndingClass::kpvkn, kP, kN},           {EndingClass::knpvk, kNP, kNothing},
    {EndingClass::kvknp, kNothing, kNP},    {EndingClass::krpvkr, kRP, kR},
    {EndingClass::krvkrp, kR, kRP},         {EndingClass::kbpvkb, kBP, kB},
    {EndingClass::kbvkbp, kB, kBP},
}};

EndingClass ending_class(const Men& white, const Men& black) {
    for (const ClassRow& row : kClassRows) {
        if (row.white == white && row.black == black) {
            return row.ending;
        }
    }
    return EndingClass::none;
}

// Scale of a side without pawns. It can hardly win unless it is well ahead.
int scale_without_pawns(const Men& own, const Men& enemy) {
    if (own.units() <= 1) {
        return 0;
    }
    if (own == Men{.knights = 2}) {
        return enemy.pawns > 0 && enemy.pieces() == 0 ? 1 : 0;
    }
    if (own == Men{.bishops = 2} && enemy == kN) {
        return 8;
    }
    if (own.units() - enemy.units() <= 1 && own.majors() <= 2) {
        return 2;
    }
    return kFullScale;
}

// Scale of a side with one pawn, for which the enemy may give up a piece.
int scale_with_one_pawn(const Men& own, const Men& enemy) {
    if (enemy.minors() == 0 && enemy.rooks == 0) {
        return kFullScale;
    }
    const int sacrifice = enemy.minors() > 0 ? 1 : 2;
    if (own.units() == 1 || (own.units() == 2 && own.knights == 2)) {
        return 4;
    }
    if (own.units() - (enemy.units() - sacrifice) <= 1 && own.majors() <= 2) {
        return 8;
    }
    return kFullScale;
}

int scale_of(const Men& own, const Men& enemy) {
    if (own.pawns == 0) {
        return scale_without_pawns(own, enemy);
    }
    return own.pawns == 1 ? scale_with_one_pawn(own, enemy) : kFullScale;
}

int side_flags_of(const Men& own, const Men& enemy) {
    int flags = 0;
    if (own.pawns > 0 && own.pieces() == own.bishops) {
        flags |= kTestRookFile;
        if (own.bishops < 2 && enemy.pieces() > 0) {
            flags |= kTestBlockedFile;
        }
    }
    if (own == kNP && enemy.pieces() > 0) {
        flags |= kTestKnightPawn;
    }
    if (enemy.queens > 0 && enemy.pieces() > 1) {
        flags |= kNeedsShelter;
    }
    return flags;
}

bool may_be_drawn(const Men& white, const Men& black, EndingClass ending) {
    if (white.pawns + black.pawns + white.majors() + black.majors() == 0) {
        return white.minors() + black.minors() < 2 || ending == EndingClass::kbvkb;
    }
    return ending == EndingClass::kpvk || ending == EndingClass::kvkp ||
           ending == EndingClass::kbpvk || ending == EndingClass::kvkbp;
}

bool has_single_bishop(const Men& men) { return men.pieces() == 1 && men.bishops == 1; }

int ending_flags_of(const Men& white, const Men& black, EndingClass ending) {
    int flags = 0;
    if (may_be_drawn(white, black, ending)) {
        flags |= kEndingMayBeDrawn;
    }
    const int extra_pawns = white.pawns - black.pawns;
    if (has_single_bishop(white) && has_single_bishop(black) && extra_pawns >= -2 &&
        extra_pawns <= 2) {
        flags |= kEndingSingleBishops;
    }
    return flags;
}

MaterialRecord compute_record(const Board& board) {
    const Men white = count_men(board, kWhite);
    const Men black = count_men(board, kBlack);
    const ScorePair score = material_balance(white, black);
    const EndingClass ending = ending_class(white, black);
    const bool dead = ending == EndingClass::kqvkq || ending == EndingClass::krvkr;
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value); };
    return {
        .lock = cache_lock(board.material_key),
        .ending = ending,
        .ending_flags = byte(ending_flags_of(white, black, ending)),
        .side_flags = {byte(side_flags_of(white, black)), byte(side_flags_of(black, white))},
        .scale = {byte(dead ? 0 : scale_of(white, black)), byte(dead ? 0 : scale_of(black, white))},
        .phase = static_cast<std::uint16_t>(phase_of(white, black)),
        .opening = static_cast<std::int16_t>(score.opening),
        .endgame = static_cast<std::int16_t>(score.endgame),
    };
}

}  // namespace

MaterialRecord material_probe(const Board& board, int thread) {
    MaterialRecord* const entry = cache_entry(material_cache, board.material_key, thread);
    if (entry != nullptr && entry->lock == cache_lock(board.material_key)) {
        return *entry;
    }
    const MaterialRecord record = compute_record(board);
    if (entry != nullptr) {
        *entry = record;
    }
    return record;
}

void material_tables_allocate(int thread_count) { cache_allocate(material_cache, thread_count); }

void material_tables_clear() { cache_clear(material_cache); }

void material_tables_free() { cache_free(material_cache); }

}  // namespace zar
