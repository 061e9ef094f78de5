#!/usr/bin/env python3
"""Searches the end of every opening line and lists the lines that leave one side clearly better.

usage: tools/check_openings.py [--engine PATH] [--depth D] [--limit CP] [--jobs N] [LINES]

LINES is a text as 'zar-x3-tools book make' reads it; by default it is book/openings.txt. The engine
is that of --engine, or of the environment's ZAR_X3, or of the release build. Every distinct line is
searched from its last position to the depth, always with an empty hash table. A line whose score is
beyond the limit for either side is printed with its number and its score from White's view, in
centipawns. The exit status is 1 if there was one.
"""

import argparse
import os
import re
import subprocess
import sys
import threading
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
OPTIONS = {"Own Book": "false", "Difficulty Level": 10, "Hash": 64, "Threads": 1, "TLCV fix": "false"}
SCORE = re.compile(r"info multipv 1 depth (\d+) score (cp|mate) (-?\d+)")
MATE = 30000  # stands for any mate score


class Engine:
    """An engine that searches one position after the other."""

    def __init__(self, path):
        self._child = subprocess.Popen(
            [path], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1
        )
        for name, value in OPTIONS.items():
            self._send(f"setoption name {name} value {value}")
        self._send("isready")
        self._read_until("readyok")

    def _send(self, line):
        self._child.stdin.write(line + "\n")

    def _read_until(self, prefix):
        lines = []
        for line in self._child.stdout:
            lines.append(line)
            if line.startswith(prefix):
                return lines
        raise RuntimeError(f"the engine has ended before {prefix!r}")

    def score(self, moves, depth):
        """The score after these moves in centipawns, from White's view."""
        self._send("ucinewgame")
        self._send(f"position startpos moves {' '.join(moves)}")
        self._send(f"go depth {depth}")
        found = [SCORE.match(line) for line in self._read_until("bestmove")]
        found = [match for match in found if match]
        if not found:
            raise RuntimeError(f"no score after {' '.join(moves)}")
        _, kind, value = found[-1].groups()
        value = int(value)
        if kind == "mate":
            value = MATE if value > 0 else -MATE
        return value if len(moves) % 2 == 0 else -value

    def quit(self):
        self._send("quit")
        self._child.wait()


def read_lines(path):
    """The distinct lines: tuples of moves with the number of the line where they stand first."""
    lines = {}
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        moves = tuple(line.partition("#")[0].rpartition(":")[2].split())
        if moves:
            lines.setdefault(moves, number)
    return lines


def search_all(path, lines, depth, jobs):
    """The scores of all lines, searched by so many engines at once."""
    scores = {}
    waiting = list(lines)
    lock = threading.Lock()
    errors = []

    def work():
        try:
            engine = Engine(path)
            while True:
                with lock:
                    if not waiting or errors:
                        break
                    moves = waiting.pop(0)
                score = engine.score(moves, depth)
                with lock:
                    scores[moves] = score
                    print(f"\r{len(scores)} of {len(lines)} ", end="", file=sys.stderr, flush=True)
            engine.quit()
        except (OSError, RuntimeError) as error:
            errors.append(error)

    threads = [threading.Thread(target=work) for _ in range(jobs)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    print(file=sys.stderr)
    if errors:
        raise SystemExit(str(errors[0]))
    return scores


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("lines", nargs="?", type=Path, default=ROOT / "book" / "openings.txt")
    default_engine = os.environ.get("ZAR_X3") or str(ROOT / "build" / "release" / "zar-x3")
    parser.add_argument("--engine", default=default_engine)
    parser.add_argument("--depth", type=int, default=12, help="plies (12)")
    parser.add_argument("--limit", type=int, default=100, help="centipawns (100)")
    parser.add_argument("--jobs", type=int, default=1, help="engines at once (1)")
    arguments = parser.parse_args()

    lines = read_lines(arguments.lines)
    scores = search_all(arguments.engine, lines, arguments.depth, arguments.jobs)
    beyond = [moves for moves in lines if abs(scores[moves]) > arguments.limit]
    for moves in beyond:
        print(f"{arguments.lines}:{lines[moves]}: {scores[moves]:+d} {' '.join(moves)}")
    print(f"{len(lines)} lines searched, {len(beyond)} beyond {arguments.limit} centipawns")
    return 1 if beyond else 0


if __name__ == "__main__":
    sys.exit(main())
