// Ways out of check, as lists.

#include "board/evasions.h"
#include "board/movegen.h"

namespace zar {

void gen_evasions(MoveList& list, Board& board, const Attack& attack) {
    list.size = 0;
    for_each_evasion<Evasions::legal>(board, attack, [&](Move move) { list_add(list, move); });
}

void gen_evasions_pseudo(MoveList& list, Board& board, const Attack& attack) {
    list.size = 0;
    for_each_evasion<Evasions::pseudo>(board, attack, [&](Move move) { list_add(list, move); });
}

bool has_evasion(Board& board, const Attack& attack) {
    bool found = false;
    for_each_evasion<Evasions::legal>(board, attack, [&](Move) { found = true; });
    return found;
}

}  // namespace zar
