#!/usr/bin/env python3
"""Measures how the search scales: nodes a second and time to depth with one and two threads.

usage: bench/threads.py [--engine PATH] [--runs N] [--depth D]

Each run searches the same positions with one thread, with two threads, and with two independent
single-thread processes side by side, one after the other, so that a machine whose speed drifts
treats all alike. The figures are medians over the runs of ratios within a run. The node count of
several threads is the engine's own estimate: the thread count times the main thread's nodes.
"""

import argparse
import statistics
import subprocess
import time
from pathlib import Path

POSITIONS = [
    "rnbqkb1r/1p2pppp/p2p1n2/8/3NP3/2N5/PPP2PPP/R1BQKB1R w KQkq - 0 6",
    "r1bq1rk1/pp2bppp/2n1pn2/8/2BP4/P1N2N2/1P3PPP/R1BQ1RK1 w - - 1 11",
    "r4rk1/1bqnbppp/pp1ppn2/8/2P1P3/1PN1BP2/P2NB1PP/R2Q1RK1 b - - 3 13",
    "8/5pk1/r3p1p1/7p/1R5P/5PP1/5K2/8 w - - 0 40",
]


class Engine:
    def __init__(self, path, threads):
        self.child = subprocess.Popen(
            [path], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1
        )
        for name, value in (("Hash", 64), ("Threads", threads), ("Own Book", "false"), ("TLCV fix", "false")):
            self.send(f"setoption name {name} value {value}")
        self.send("isready")
        self.wait_for("readyok")

    def send(self, line):
        self.child.stdin.write(line + "\n")

    def wait_for(self, prefix):
        """The node count reported last before a line that begins with the prefix."""
        nodes = 0
        for line in self.child.stdout:
            if " nodes " in line:
                nodes = int(line.split(" nodes ")[1].split()[0])
            if line.startswith(prefix):
                return nodes
        raise SystemExit("the engine has ended")

    def start(self, fen, depth):
        self.send("ucinewgame")
        self.send(f"position fen {fen}")
        self.send(f"go depth {depth}")

    def quit(self):
        self.send("quit")
        self.child.wait()


def searched(path, threads, processes, depth):
    """Seconds and nodes for all positions, by so many processes side by side."""
    engines = [Engine(path, threads) for _ in range(processes)]
    nodes = 0
    begin = time.monotonic()
    for fen in POSITIONS:
        for engine in engines:
            engine.start(fen, depth)
        nodes += sum(engine.wait_for("bestmove") for engine in engines)
    seconds = time.monotonic() - begin
    for engine in engines:
        engine.quit()
    return seconds, nodes


def main():
    root = Path(__file__).resolve().parents[1]
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--engine", default=root / "build/release/zar-x3")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--depth", type=int, default=12)
    arguments = parser.parse_args()
    rows = []
    for _ in range(arguments.runs):
        one = searched(arguments.engine, 1, 1, arguments.depth)
        two = searched(arguments.engine, 2, 1, arguments.depth)
        pair = searched(arguments.engine, 1, 2, arguments.depth)
        rows.append((one, two, pair))

    def median(figure):
        return statistics.median(figure(*row) for row in rows)

    def speed(run):
        return run[1] / run[0]

    print(f"| search, depth {arguments.depth}, {arguments.runs} runs | nodes a second | ratio |")
    print("| --- | --- | --- |")
    print(f"| 1 thread | {median(lambda a, b, c: speed(a)):,.0f} | 1 |")
    print(f"| 2 threads | {median(lambda a, b, c: speed(b)):,.0f} "
          f"| {median(lambda a, b, c: speed(b) / speed(a)):.2f} |")
    print(f"| 2 processes of 1 thread | {median(lambda a, b, c: speed(c)):,.0f} "
          f"| {median(lambda a, b, c: speed(c) / speed(a)):.2f} |")
    print(f"\n2 threads to 2 processes: {median(lambda a, b, c: speed(b) / speed(c)):.2f}")
    print(f"time to depth, 2 threads to 1: {median(lambda a, b, c: b[0] / a[0]):.2f}")


if __name__ == "__main__":
    main()
