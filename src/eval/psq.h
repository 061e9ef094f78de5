// The values of the piece-square table: pawns in the centre, knights out of the enemy's corners,
// the king toward the centre in the endgame. All other squares and men are worth 0.
#pragma once

namespace zar {

// Fills psq_table for a level (-1000..1000); below level 7 it stays empty. The sums that boards
// keep are those of the old table until board_sum_psq is called for them.
void psq_rebuild(int level);

}  // namespace zar
