#!/usr/bin/env python3
"""Measures how the search scales: nodes a second and time to depth with one and two threads.

usage: bench/threads.py [--engine PATH] [--runs N] [--depth D]

Each run searches the same positions with one thread, with two threads, and with two independent
single-thread processes side by side, one after the other, so that a machine whose speed drifts
treats all alike. The figures are medians over the runs of ratios within a run. The node count of
several threads is the engine's own estimate: the thread count times the main thread's nodes.

"Nodes a second" are seconds of the clock. On a machine that has other work they say more of that work
than of the engine; "of processor time" counts the seconds for which the main threads really ran.
"""

import statistics
import time

from engine import Engine, argument_parser, machine

POSITIONS = [
    "rnbqkb1r/1p2pppp/p2p1n2/8/3NP3/2N5/PPP2PPP/R1BQKB1R w KQkq - 0 6",
    "r1bq1rk1/pp2bppp/2n1pn2/8/2BP4/P1N2N2/1P3PPP/R1BQ1RK1 w - - 1 11",
    "r4rk1/1bqnbppp/pp1ppn2/8/2P1P3/1PN1BP2/P2NB1PP/R2Q1RK1 b - - 3 13",
    "8/5pk1/r3p1p1/7p/1R5P/5PP1/5K2/8 w - - 0 40",
]


def nodes_of(lines):
    """The node count that was reported last."""
    return next(int(line.split(" nodes ")[1].split()[0]) for line in reversed(lines) if " nodes " in line)


def searched(path, threads, processes, depth):
    """For all positions, by so many processes side by side: seconds, nodes, and the nodes of all
    threads for a second in which they run.
    """
    engines = [
        Engine(path, Hash=64, Threads=threads, Own_Book="false", TLCV_fix="false")
        for _ in range(processes)
    ]
    for engine in engines:
        engine.fence()
    nodes = 0
    ran = sum(engine.run_time() for engine in engines)
    begin = time.monotonic()
    for fen in POSITIONS:
        for engine in engines:
            engine.send("ucinewgame")
            engine.send(f"position fen {fen}")
            engine.send(f"go depth {depth}")
        nodes += sum(nodes_of(engine.read_until("bestmove")) for engine in engines)
    seconds = time.monotonic() - begin
    ran = sum(engine.run_time() for engine in engines) - ran
    for engine in engines:
        engine.quit()
    return seconds, nodes, nodes * processes / ran if ran > 0 else 0.0


def main():
    parser = argument_parser(__doc__)
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--depth", type=int, default=12)
    arguments = parser.parse_args()
    print(machine())
    rows = []
    for _ in range(arguments.runs):
        one = searched(arguments.engine, 1, 1, arguments.depth)
        two = searched(arguments.engine, 2, 1, arguments.depth)
        pair = searched(arguments.engine, 1, 2, arguments.depth)
        rows.append((one, two, pair))
    print(machine())

    def median(figure):
        return statistics.median(figure(*row) for row in rows)

    def speed(run):
        return run[1] / run[0]

    def processor_speed(run):
        return run[2]

    def ratio(measure, run, base):
        return measure(run) / measure(base) if measure(base) > 0 else 0.0

    def columns(measure, index):
        figure = median(lambda *row: measure(row[index]))
        return f"{figure:,.0f} | {median(lambda *row: ratio(measure, row[index], row[0])):.2f}"

    print(f"\n| search, depth {arguments.depth}, {arguments.runs} runs | nodes a second | ratio "
          "| of processor time | ratio |")
    print("| --- | --- | --- | --- | --- |")
    for index, name in enumerate(("1 thread", "2 threads", "2 processes of 1 thread")):
        print(f"| {name} | {columns(speed, index)} | {columns(processor_speed, index)} |")
    print(f"\n2 threads to 2 processes: {median(lambda a, b, c: ratio(speed, b, c)):.2f}, "
          f"of processor time {median(lambda a, b, c: ratio(processor_speed, b, c)):.2f}")
    print(f"time to depth, 2 threads to 1: {median(lambda a, b, c: b[0] / a[0]):.2f}")


if __name__ == "__main__":
    main()
