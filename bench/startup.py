#!/usr/bin/env python3
"""Measures how soon the engine answers, in milliseconds.

usage: bench/startup.py [--engine PATH] [--runs N]

Each run starts new engines with default options.

  --version            for comparison: from starting the program to its end
  uciok                from starting the program, with "uci" already waiting in the pipe
  first readyok        from starting the program, "isready" being sent on "uciok"
  ... of which isready from sending "isready"
  Hash 1024, fresh     from sending "setoption name Hash value 1024" and "isready" to a new engine
  Hash 1024, in use    the same, after "isready" and a search have filled a part of the old table
  ucinewgame           from sending it and "isready" after a search with 1024 MB

In brackets: the part of the time in which the engine was waiting for a processor.
"""

import subprocess
import time
from pathlib import Path

from engine import Engine, argument_parser, machine, percentile

_AIMS = {"uciok": 5}  # milliseconds, on an idle machine


class _Timer:
    def __init__(self, begin, waited=0.0):
        self._begin = begin
        self._waited = waited

    def read(self, engine):
        """Milliseconds since the beginning, and those of them spent waiting for a processor."""
        now = time.perf_counter()
        waited = engine.wait_time() - self._waited
        return 1000 * (now - self._begin), 1000 * waited


def _timer_of(engine):
    return _Timer(time.perf_counter(), engine.wait_time())


def _timed_fence(engine, *commands):
    timer = _timer_of(engine)
    for command in commands:
        engine.send(command)
    engine.fence()
    return timer.read(engine)


def _one_run(path, figures):
    begin = time.perf_counter()
    subprocess.run([Path(path).resolve(), "--version"], stdout=subprocess.PIPE, check=True)
    figures["--version"].append((1000 * (time.perf_counter() - begin), 0.0))

    start = _Timer(time.perf_counter())
    engine = Engine(path)
    engine.send("uci")
    engine.read_until("uciok")
    figures["uciok"].append(start.read(engine))
    ready = _timed_fence(engine)
    figures["first readyok"].append(start.read(engine))
    figures["... of which isready"].append(ready)

    resize = "setoption name Hash value 1024"
    engine.send("position startpos")
    engine.send("go depth 7")
    engine.read_until("bestmove")
    figures["Hash 1024, in use"].append(_timed_fence(engine, resize))
    engine.send("go depth 7")
    engine.read_until("bestmove")
    figures["ucinewgame"].append(_timed_fence(engine, "ucinewgame"))
    engine.quit()

    engine = Engine(path)
    engine.read_until("Engine Ready")
    figures["Hash 1024, fresh"].append(_timed_fence(engine, resize))
    engine.quit()


def main():
    parser = argument_parser(__doc__)
    parser.add_argument("--runs", type=int, default=50)
    arguments = parser.parse_args()
    names = ["--version", "uciok", "first readyok", "... of which isready"]
    names += ["Hash 1024, fresh", "Hash 1024, in use", "ucinewgame"]
    figures = {name: [] for name in names}
    print(machine())
    for _ in range(arguments.runs):
        _one_run(arguments.engine, figures)
    print(machine())

    def cell(values, share):
        taken, waited = ([value[i] for value in values] for i in (0, 1))
        return f"{percentile(taken, share):.2f} ({percentile(waited, share):.2f})"

    print(f"\n| milliseconds, {arguments.runs} runs | median | 90 % | worst | aim |")
    print("| --- | --- | --- | --- | --- |")
    for name, values in figures.items():
        cells = " | ".join(cell(values, share) for share in (0.5, 0.9, 1.0))
        print(f"| {name} | {cells} | {_AIMS.get(name, '')} |")


if __name__ == "__main__":
    main()
