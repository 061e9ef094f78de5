#!/usr/bin/env python3
"""Measures by how much the engine passes its time for a move: from writing "go" to reading
"bestmove", less the move time.

usage: bench/overrun.py [--engine PATH] [--moves N] [--threads N ...] [--movetime MS ...] [--seed N]

N moves (2,000) for each number of threads and move time, in positions drawn from the test data. Moves
that end before their time are counted apart: forced ones, and positions that are solved or over.

The times are those of this script, so on a busy machine they hold what the engine and the script
waited for a processor. Run it with "nice -n -10" there. The columns "waited" tell for how long the
threads of both could have run in these moves and did not, as far as the system tells; only what falls
behind the end of the move time makes it longer.
"""

import random
import time
from pathlib import Path

from engine import Engine, argument_parser, machine, percentile, wait_time

_DATA = Path(__file__).resolve().parents[1] / "tests" / "data" / "evaluation.fen"
_AIM = 5.0  # milliseconds, of the 99th percentile


def _think(engine, fen, milliseconds):
    """By how many milliseconds a move took longer, and for how many it waited for a processor."""
    engine.send(f"position fen {fen}")
    engine.fence()
    waited = engine.wait_time() + wait_time()
    begin = time.perf_counter()
    engine.send(f"go movetime {milliseconds}")
    engine.read_until("bestmove")
    taken = 1000 * (time.perf_counter() - begin)
    waited = engine.wait_time() + wait_time() - waited
    return taken - milliseconds, 1000 * waited


def _cells(milliseconds):
    """Median, 99th percentile and worst."""
    return [f"{percentile(milliseconds, share):.2f}" for share in (0.5, 0.99, 1.0)]


def _row(engine, threads, milliseconds, fens):
    """Plays a move in each position; a row of the table, and the worst move."""
    moves = [(*_think(engine, fen, milliseconds), number) for number, fen in enumerate(fens)]
    late = [move for move in moves if move[0] >= 0]
    if not late:
        raise SystemExit(f"no move took its {milliseconds} ms")
    overruns = [overrun for overrun, _, _ in late]
    within = sum(overrun < _AIM for overrun in overruns) / len(overruns)
    cells = [threads, f"{milliseconds} ms", len(moves), len(moves) - len(late), *_cells(overruns)]
    cells += [f"{100 * within:.1f} %", *_cells([waited for _, waited, _ in late])]
    overrun, waited, number = max(late)
    worst = (
        f"{threads} threads, {milliseconds} ms: {overrun:.1f} ms, in which {waited:.1f} ms were "
        f"waited, in move {number + 1}: {fens[number]}"
    )
    return "| " + " | ".join(str(cell) for cell in cells) + " |", worst


def main():
    parser = argument_parser(__doc__)
    parser.add_argument("--moves", type=int, default=2000)
    parser.add_argument("--threads", type=int, nargs="+", default=[1, 2])
    parser.add_argument("--movetime", type=int, nargs="+", default=[20, 50, 100])
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    positions = [line for line in _DATA.read_text().splitlines() if line and line[0] != "#"]
    rng = random.Random(arguments.seed)
    print(machine())
    print(
        "\n| threads | move time | moves | early | median | 99 % | worst | under 5 ms "
        "| waited: median | 99 % | worst |"
    )
    print("| --- " * 11 + "|", flush=True)
    worst_moves = []
    for threads in arguments.threads:
        engine = Engine(arguments.engine, Threads=threads, Own_Book="false")
        engine.fence()
        for milliseconds in arguments.movetime:
            fens = rng.choices(positions, k=arguments.moves)
            row, worst = _row(engine, threads, milliseconds, fens)
            print(row, flush=True)
            worst_moves.append(worst)
        engine.quit()
    print("\nThe worst:")
    print("\n".join(worst_moves))
    print(f"\n{machine()}")


if __name__ == "__main__":
    main()
