#!/usr/bin/env python3
"""Measures by how much the engine passes its time for a move: from writing "go" to reading
"bestmove", less the move time.

usage: bench/overrun.py [--engine PATH] [--moves N] [--threads N ...] [--movetime MS ...] [--seed N]
       bench/overrun.py --fresh [--engine PATH] [--moves N] [--hash MB ...] [--movetime MS ...] [--seed N]

N moves (2,000) for each number of threads and move time, in positions drawn from the test data. Moves
that end before their time are counted apart: forced ones, and positions that are solved or over.

With --fresh each of N processes (300) plays its first move only. They are spread over the sizes of the
hash table (16, 64, 256, 1024 MB), the move times (50 and 100 ms), and the orders in which match
runners open the conversation, each of which ends with "isready".

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

# What a fresh process is told before "position" and "go"; "setoption" is the size of the table.
_ORDERS = (
    ("setoption", "isready"),
    ("setoption", "ucinewgame", "isready"),
    ("isready", "setoption", "ucinewgame", "isready"),
)


def _think(engine, fen, milliseconds, fence=True):
    """By how many milliseconds a move took longer, and for how many it waited for a processor."""
    engine.send(f"position fen {fen}")
    if fence:
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


def _first_move(path, order, megabytes, milliseconds, fen):
    """By how many milliseconds the first move of a process took longer."""
    engine = Engine(path, Own_Book="false")
    engine.send("uci")
    engine.read_until("uciok")
    for command in order:
        if command == "setoption":
            command += f" name Hash value {megabytes}"
        engine.send(command)
    for _ in range(order.count("isready")):
        engine.read_until("readyok")
    overrun, _ = _think(engine, fen, milliseconds, fence=False)
    engine.quit()
    return overrun


def _measure_fresh(arguments, positions, rng):
    """First moves, a row of the table for each size and move time."""
    print("\n| Hash | move time | processes | early | median | 99 % | worst | under 5 ms |")
    print("| --- " * 8 + "|", flush=True)
    cases = [(size, time) for size in arguments.hash for time in arguments.movetime]
    for megabytes, milliseconds in cases:
        overruns = []
        for number in range(arguments.moves // len(cases)):
            order = _ORDERS[number % len(_ORDERS)]
            fen = rng.choice(positions)
            overruns.append(_first_move(arguments.engine, order, megabytes, milliseconds, fen))
        late = [overrun for overrun in overruns if overrun >= 0]
        within = sum(overrun < _AIM for overrun in late) / len(late)
        cells = [megabytes, f"{milliseconds} ms", len(overruns), len(overruns) - len(late)]
        cells += [*_cells(late), f"{100 * within:.1f} %"]
        print("| " + " | ".join(str(cell) for cell in cells) + " |", flush=True)


def _measure_long_running(arguments, positions, rng):
    """Moves of processes that play on, a row of the table for each number of threads and time."""
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


def main():
    parser = argument_parser(__doc__)
    parser.add_argument("--fresh", action="store_true")
    parser.add_argument("--moves", type=int)
    parser.add_argument("--threads", type=int, nargs="+", default=[1, 2])
    parser.add_argument("--hash", type=int, nargs="+", default=[16, 64, 256, 1024])
    parser.add_argument("--movetime", type=int, nargs="+")
    parser.add_argument("--seed", type=int, default=1)
    arguments = parser.parse_args()
    fresh = arguments.fresh
    arguments.moves = arguments.moves or (300 if fresh else 2000)
    arguments.movetime = arguments.movetime or ([50, 100] if fresh else [20, 50, 100])
    positions = [line for line in _DATA.read_text().splitlines() if line and line[0] != "#"]
    rng = random.Random(arguments.seed)
    print(machine())
    measure = _measure_fresh if fresh else _measure_long_running
    measure(arguments, positions, rng)
    print(f"\n{machine()}")


if __name__ == "__main__":
    main()
