"""Soak test: the engine plays itself through pipes until something breaks or the time is over.

    python3 tests/soak/soak.py --seconds 3600 --jobs 2
    python3 tests/soak/soak.py --clock 5+0.1 --games 60 --jobs 2

A soak game gives each move a few milliseconds, by move time, by clock, by depth or by "stop", with
random options, threads, pondering and lines. With --clock the games are ordinary ones at that time
control. The twin checks every answer, every ponder move and every printed variation. The first
crash, hang, illegal move, line of unknown form or growth of memory ends the run with status 1, and
so does a loss on time at its end.

The random seed is printed. The same seed chooses the same openings, options and limits; what the
engine plays also hangs on the clock, so beside it the commands that the engines were told are
kept in files when something breaks.
"""

import argparse
import multiprocessing
import os
import queue
import random
import sys
import tempfile
import time
from pathlib import Path

import games
import player
from record import Record

_PROGRESS_INTERVAL = 60.0  # seconds


def _time_control(text):
    base, _, increment = text.partition("+")
    return float(base), float(increment or 0)


def _option(text):
    name, equals, value = text.partition("=")
    if not equals:
        raise ValueError
    return name, value


def parse_arguments():
    parser = argparse.ArgumentParser(
        description="Plays the engine against itself and checks all that it says."
    )
    parser.add_argument("--seconds", type=float, help="begin no game later than this (default 30)")
    parser.add_argument("--games", type=int, help="play so many games in all")
    parser.add_argument("--jobs", type=int, default=1, help="games at a time")
    parser.add_argument("--seed", type=int, help="of everything that is random")
    parser.add_argument("--first", type=int, default=0, help="number of the first game")
    parser.add_argument("--clock", type=_time_control, help="seconds + increment: ordinary games")
    parser.add_argument(
        "--option", type=_option, action="append", default=[], help="NAME=VALUE, with --clock"
    )
    parser.add_argument("--engine", help="the engine (default: ZAR_X3 or the release build)")
    parser.add_argument("--twin", help="zar-x3-twin (default: ZAR_X3_TWIN or the release build)")
    parser.add_argument("--book", help="an opening book (default: share/ZAR.ebk by the engine)")
    parser.add_argument(
        "--keep", default=tempfile.gettempdir(), help="folder for the commands of a failed game"
    )
    arguments = parser.parse_args()
    for variable, path in (("ZAR_X3", arguments.engine), ("ZAR_X3_TWIN", arguments.twin)):
        if path is not None:
            os.environ[variable] = path
    if arguments.seconds is None and arguments.games is None:
        arguments.seconds = 30.0
    if arguments.seed is None:
        arguments.seed = random.SystemRandom().randrange(1 << 32)
    try:
        program = Path(player.engine.program_path("ZAR_X3"))
        player.engine.program_path("ZAR_X3_TWIN")
    except AssertionError as error:
        parser.error(str(error))
    arguments.book = os.path.abspath(arguments.book or program.parent / "share" / "ZAR.ebk")
    return arguments


class Job:
    """A process that plays every so many-th game, so that a game's number does not depend on it."""

    def __init__(self, arguments, number, stop, results):
        self._arguments = arguments
        self._number = number
        self._stop = stop
        self._results = results
        self._record = Record()
        self._players = []
        self._game = arguments.first + number

    def run(self):
        failure = None
        try:
            self._play()
        except (player.Failure, AssertionError, OSError) as error:
            self._stop.set()
            failure = self._describe(error)
        except BaseException:
            self._stop.set()
            raise
        self._results.put((self._record, failure))

    def _play(self):
        arguments = self._arguments
        end = time.monotonic() + (arguments.seconds or float("inf"))
        last = arguments.first + (arguments.games or sys.maxsize)
        progress = time.monotonic() + _PROGRESS_INTERVAL
        with player.engine.Twin() as twin:
            self._players = [player.Player(twin, self._record) for _ in range(2)]
            if arguments.clock:
                self._prepare_clock_games()
            while self._game < last and time.monotonic() < end and not self._stop.is_set():
                self._play_game(twin, random.Random(f"{arguments.seed} {self._game}"))
                self._game += arguments.jobs
                if time.monotonic() > progress:
                    print(f"job {self._number}: {self._record.summary()}", flush=True)
                    progress += _PROGRESS_INTERVAL
            for one in self._players:
                one.end("quit")

    def _prepare_clock_games(self):
        options = {"TLCV fix": "false", "Ponder": "false", "Own Book": "false", "Hash": 64}
        options |= dict(self._arguments.option)
        for one in self._players:
            one.set_options(options)

    def _play_game(self, twin, rng):
        # Either engine begins every other game.
        sides = self._players if rng.random() < 0.5 else self._players[::-1]
        if self._arguments.clock:
            games.play_clock_game(sides, twin, self._record, rng, *self._arguments.clock)
        else:
            games.play_soak_game(sides, twin, self._record, rng, self._arguments.book)
            # One engine lives for the whole run, the other is replaced now and then.
            if rng.random() < 0.05:
                self._players[1].restart(rng.choice((None, "quit")))
        self._record.counts["games"] += 1

    def _describe(self, error):
        text = [f"game {self._game} of seed {self._arguments.seed}: {error}"]
        for index, one in enumerate(self._players):
            name = f"soak-{self._arguments.seed}-{self._game}-{index}.txt"
            path = Path(self._arguments.keep) / name
            path.write_text("".join(one.engine.sent), encoding="latin-1")
            state = one.engine.exit_status
            shown = "runs" if state is None else f"has ended with status {state}"
            text.append(f"engine {index} {shown}; it was told {path}")
            one.engine.close()
        return "\n".join(text)


def main():
    arguments = parse_arguments()
    print(f"seed {arguments.seed}, engine {player.engine.program_path('ZAR_X3')}", flush=True)
    if not arguments.clock and not Path(arguments.book).is_file():
        print(f"there is no book {arguments.book}: games without one", flush=True)
    stop = multiprocessing.Event()
    results = multiprocessing.Queue()
    processes = []
    for number in range(arguments.jobs):
        job = Job(arguments, number, stop, results)
        processes.append(multiprocessing.Process(target=job.run))
        processes[-1].start()
    record = Record()
    failures = []
    for _ in processes:
        part, failure = _next_result(results, processes)
        record.add(part)
        if failure is not None:
            failures.append(failure)
    for process in processes:
        process.join()
    print(record.summary())
    print("\n".join(record.table()))
    for failure in failures:
        print(f"FAILED {failure}")
    return 1 if failures or record.counts["lost on time"] else 0


def _next_result(results, processes):
    while True:
        try:
            return results.get(timeout=1.0)
        except queue.Empty:
            if not any(process.is_alive() for process in processes) and results.empty():
                return Record(), "a job ended without a word"


if __name__ == "__main__":
    sys.exit(main())
