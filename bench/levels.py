#!/usr/bin/env python3
"""Plays each difficulty level against the next and prints scores and Elo differences.

usage: bench/levels.py [--depth D] [--games N] [--levels FIRST-LAST] [--jobs N] [--seed N]
                       [--minutes M] [--record FILE] [--engine PATH] [--twin PATH] [--lines PATH]

Every opening is the beginning of a line of book/openings.txt and is played twice, with colours
changed. Both sides search to the same fixed depth, or as deep as their level allows if that is
less, without the opening book and with an empty hash table at the start of a game. So the same
seed gives the same games on every machine, whatever the number of jobs.

The second set of rules, zar-x3-twin, checks every move and says when a game is over: mate,
stalemate, fifty moves, the third repetition, or too little material. A game that reaches 200
half-moves is a draw too.

The interval of 95 per cent is computed from the openings, since the two games of an opening are
not independent of each other. Elo differences of neighbours do not add up over many levels.

With --record every finished game is appended to a file, and games that stand there already are not
played again: a run that --minutes has cut short goes on where it stopped.
"""

import argparse
import json
import math
import os
import queue
import random
import subprocess
import sys
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
OPENING_PLIES = 8
LONGEST_GAME = 200  # half-moves, those of the opening included
HIGHEST_LEVEL = 10
NORMAL_95 = 1.96
OPTIONS = {"Own Book": "false", "Hash": 16, "Threads": 1, "TLCV fix": "false", "Search Info": "false"}


class Program:
    """A child process that is spoken to line by line."""

    def __init__(self, path):
        self._path = path
        self._child = subprocess.Popen(
            [path], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True, bufsize=1
        )

    def send(self, line):
        self._child.stdin.write(line + "\n")

    def read(self):
        line = self._child.stdout.readline()
        if not line:
            raise RuntimeError(f"{self._path} has ended")
        return line.rstrip("\n")

    def quit(self):
        self.send("quit")
        self._child.wait()


class Engine(Program):
    def __init__(self, path, level):
        super().__init__(path)
        for name, value in {**OPTIONS, "Difficulty Level": level}.items():
            self.send(f"setoption name {name} value {value}")

    def new_game(self):
        # The table is cleared only when it exists, so "isready" comes first.
        self.send("isready\nucinewgame")

    def best_move(self, moves, depth):
        self.send(f"position startpos moves {' '.join(moves)}\ngo depth {depth}")
        while not (line := self.read()).startswith("bestmove"):
            pass
        return line.split()[1]


class Twin(Program):
    """The rules. The commands of a step go out together, which saves waiting on a busy machine."""

    def start(self, opening):
        """A new game with these first moves: how it stands."""
        self.send("start")
        self.read()
        return self.play(" ".join(opening))

    def play(self, moves):
        """Plays on: how the game stands."""
        self.send(f"play {moves}\nstatus")
        answer = self.read()
        status = self.read()
        if answer != "ok":
            raise RuntimeError(f"the move is wrong: {answer}")
        return status


class Table:
    """The players of one job: the rules, and an engine for each level that it has met."""

    def __init__(self, engine_path, twin_path):
        self._engine_path = engine_path
        self._engines = {}
        self._twin = Twin(twin_path)

    def _engine(self, level):
        if level not in self._engines:
            self._engines[level] = Engine(self._engine_path, level)
        self._engines[level].new_game()
        return self._engines[level]

    def play(self, opening, white, black, depth):
        """Plays a game of two levels: the moves and how it ended."""
        engines = [self._engine(white), self._engine(black)]
        moves = list(opening)
        status = self._twin.start(opening)
        while status == "ongoing":
            if len(moves) >= LONGEST_GAME:
                return moves, "length"
            moves.append(engines[len(moves) % 2].best_move(moves, depth))
            status = self._twin.play(moves[-1])
        return moves, status

    def quit(self):
        for program in (*self._engines.values(), self._twin):
            program.quit()


def read_openings(path):
    """The distinct beginnings of the lines, in the order of the text."""
    openings = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        moves = line.partition("#")[0].rpartition(":")[2].split()
        if len(moves) >= OPENING_PLIES:
            openings[tuple(moves[:OPENING_PLIES])] = None
    return list(openings)


def points_of_white(moves, status):
    if status != "mate":
        return 0.5
    return 1.0 if len(moves) % 2 == 1 else 0.0


def play_game(table, opening, lower, number, depth):
    """Game `number` of a pair of levels; the higher level has White in the even ones."""
    higher_is_white = number % 2 == 0
    white, black = (lower + 1, lower) if higher_is_white else (lower, lower + 1)
    moves, status = table.play(opening, white, black, depth)
    points = points_of_white(moves, status)
    return {
        "lower": lower,
        "number": number,
        "points": points if higher_is_white else 1 - points,  # of the higher level
        "status": status,
        "plies": len(moves),
        "moves": " ".join(moves),
    }


def elo(score):
    """Elo difference of an expected score between 0 and 1; infinite at its ends."""
    if score <= 0:
        return -math.inf
    if score >= 1:
        return math.inf
    return 400 * math.log10(score / (1 - score))


def interval(samples):
    """Mean score and its 95 per cent interval; each sample is the mean of an opening's games."""
    count = len(samples)
    mean = sum(samples) / count
    if mean in (0, 1):
        # No variance to go by: what a perfect score still leaves open.
        bound = 0.025 ** (1 / count)
        return (mean, bound, 1) if mean == 1 else (mean, 0, 1 - bound)
    if count == 1:
        return mean, 0, 1
    variance = sum((sample - mean) ** 2 for sample in samples) / (count - 1)
    error = NORMAL_95 * math.sqrt(variance / count)
    return mean, max(mean - error, 0), min(mean + error, 1)


def elo_text(value):
    return f"{value:+.0f}" if math.isfinite(value) else ("+inf" if value > 0 else "-inf")


def summary(lower, games):
    """One line of the table: the higher level's wins, draws and losses, score and Elo."""
    points = [game["points"] for game in games]
    openings = {}
    for game in games:
        openings.setdefault(game["number"] // 2, []).append(game["points"])
    samples = [sum(found) / len(found) for found in openings.values()]
    mean, low, high = interval(samples)
    plies = sum(game["plies"] for game in games) / len(games)
    long = sum(game["status"] == "length" for game in games)
    return (
        f"| {lower + 1} against {lower} | {len(games)} | {points.count(1)} | {points.count(0.5)} "
        f"| {points.count(0)} | {100 * mean:.1f} % | {elo_text(elo(mean))} "
        f"| {elo_text(elo(low))} to {elo_text(elo(high))} | {plies:.0f} | {long} |"
    )


HEAD = (
    "| levels | games | won | drawn | lost | score | Elo | 95 per cent | half-moves | too long |\n"
    "| --- | --- | --- | --- | --- | --- | --- | --- | --- | --- |"
)


class Match:
    """All games to be played and those that are done."""

    def __init__(self, arguments, openings):
        self.arguments = arguments
        self.openings = openings
        self.done = []
        self.errors = []
        self.waiting = queue.SimpleQueue()
        self.lock = threading.Lock()
        self.deadline = time.monotonic() + 60 * arguments.minutes
        # What must agree for a recorded game to be one of this match.
        self.key = {"depth": arguments.depth, "seed": arguments.seed}

    def load(self):
        path = self.arguments.record
        if path is None or not path.exists():
            return
        for line in path.read_text(encoding="utf-8").splitlines():
            game = json.loads(line)
            if all(game[name] == value for name, value in self.key.items()):
                self.done.append(game)

    def plan(self):
        """Opening by opening over all pairs, so that a run cut short has some of each."""
        known = {(game["lower"], game["number"]) for game in self.done}
        first, last = self.arguments.levels
        for opening in range(self.arguments.games // 2):
            for lower in range(first, last):
                for number in (2 * opening, 2 * opening + 1):
                    if (lower, number) not in known:
                        self.waiting.put((lower, number))
        return self.waiting.qsize()

    def store(self, game):
        with self.lock:
            self.done.append(game)
            if self.arguments.record is not None:
                with self.arguments.record.open("a", encoding="utf-8") as record:
                    record.write(json.dumps({**self.key, **game}) + "\n")
            if sys.stderr.isatty():
                print(f"\r{len(self.done)} games ", end="", file=sys.stderr, flush=True)

    def work(self):
        """One job: games from the list until it is empty or the time is over."""
        table = Table(self.arguments.engine, self.arguments.twin)
        try:
            while time.monotonic() < self.deadline and not self.errors:
                lower, number = self.waiting.get_nowait()
                opening = self.openings[number // 2 % len(self.openings)]
                self.store(play_game(table, opening, lower, number, self.arguments.depth))
        except queue.Empty:
            pass
        except (OSError, RuntimeError) as error:
            self.errors.append(error)
            return
        table.quit()

    def run(self):
        jobs = [threading.Thread(target=self.work) for _ in range(self.arguments.jobs)]
        for job in jobs:
            job.start()
        for job in jobs:
            job.join()
        if sys.stderr.isatty():
            print(file=sys.stderr)
        if self.errors:
            raise SystemExit(str(self.errors[0]))

    def print(self):
        first, last = self.arguments.levels
        print(f"depth {self.arguments.depth}, seed {self.arguments.seed}\n\n{HEAD}")
        for lower in range(first, last):
            games = [
                game
                for game in self.done
                if game["lower"] == lower and game["number"] < self.arguments.games
            ]
            if games:
                print(summary(lower, games))


def levels_of(text):
    first, _, last = text.partition("-")
    if not (first.isdigit() and last.isdigit() and int(first) < int(last) <= HIGHEST_LEVEL):
        raise argparse.ArgumentTypeError(f"{text!r} is no range of levels such as 0-10")
    return int(first), int(last)


def positive(text):
    if not text.isdigit() or int(text) < 1:
        raise argparse.ArgumentTypeError(f"{text!r} is no number above 0")
    return int(text)


def even(text):
    if positive(text) % 2 != 0:
        raise argparse.ArgumentTypeError(f"{text!r} is no even number")
    return int(text)


def read_arguments():
    def program(variable, path):
        return os.environ.get(variable) or str(ROOT / "build" / "release" / path)

    parser = argparse.ArgumentParser(
        description=__doc__.splitlines()[0],
        epilog="\n".join(__doc__.splitlines()[5:]),
        formatter_class=argparse.RawDescriptionHelpFormatter,
    )
    parser.add_argument("--depth", type=positive, default=4, help="plies (4)")
    parser.add_argument("--games", type=even, default=100, help="a pair, an even number (100)")
    parser.add_argument("--levels", type=levels_of, default=(0, 10), help="FIRST-LAST (0-10)")
    parser.add_argument("--jobs", type=positive, default=1, help="games at once (1)")
    parser.add_argument("--seed", type=int, default=1, help="chooses the openings (1)")
    parser.add_argument("--minutes", type=float, default=60, help="no game starts later (60)")
    parser.add_argument("--record", type=Path, help="file of finished games, one JSON object a line")
    parser.add_argument("--engine", default=program("ZAR_X3", "zar-x3"))
    parser.add_argument("--twin", default=program("ZAR_X3_TWIN", "tests/zar-x3-twin"))
    parser.add_argument("--lines", type=Path, default=ROOT / "book" / "openings.txt")
    return parser.parse_args()


def main():
    arguments = read_arguments()
    openings = read_openings(arguments.lines)
    if not openings:
        raise SystemExit(f"{arguments.lines}: no line of {OPENING_PLIES} moves")
    random.Random(arguments.seed).shuffle(openings)
    match = Match(arguments, openings)
    match.load()
    match.plan()
    match.run()
    match.print()


if __name__ == "__main__":
    main()
