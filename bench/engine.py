"""What the measuring scripts share: an engine behind pipes, and how figures are told."""

import argparse
import math
import os
import subprocess
from pathlib import Path

_ROOT = Path(__file__).resolve().parents[1]


def argument_parser(description):
    """A parser that knows --engine."""
    parser = argparse.ArgumentParser(
        description=description, formatter_class=argparse.RawTextHelpFormatter
    )
    parser.add_argument("--engine", default=_ROOT / "build/release/zar-x3")
    return parser


class Engine:
    """An engine that has just been started. It runs in this folder, where no opening book is."""

    def __init__(self, path, **options):
        """Underscores in the names of options stand for blanks."""
        self._child = subprocess.Popen(
            [Path(path).resolve()],
            cwd=_ROOT / "bench",
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            text=True,
        )
        for name, value in options.items():
            self.send(f"setoption name {name.replace('_', ' ')} value {value}")

    def send(self, line):
        self._child.stdin.write(line + "\n")
        self._child.stdin.flush()

    def read_until(self, prefix):
        """All lines up to and with the first that begins with the prefix."""
        lines = []
        for line in self._child.stdout:
            lines.append(line.rstrip("\n"))
            if line.startswith(prefix):
                return lines
        raise SystemExit(f"the engine has ended before a line {prefix!r}")

    def fence(self):
        """Waits until the engine has done all that it was told."""
        self.send("isready")
        self.read_until("readyok")

    def quit(self):
        self.send("quit")
        self._child.wait()

    def run_time(self):
        """Seconds for which the main thread has run; 0 where the system does not tell."""
        return _schedule_times(self._child.pid, self._child.pid)[0]

    def wait_time(self):
        """Seconds for which threads could have run and waited for a processor, all added up."""
        return wait_time(self._child.pid)


def wait_time(process="self"):
    """As Engine.wait_time, for any process of a Linux system; by default this one."""
    threads = Path(f"/proc/{process}/task")
    if not threads.is_dir():
        return 0.0
    return sum(_schedule_times(process, thread.name)[1] for thread in threads.iterdir())


def _schedule_times(process, thread):
    """What Linux tells of a thread: seconds on a processor, and of waiting for one."""
    try:
        text = Path(f"/proc/{process}/task/{thread}/schedstat").read_text()
    except OSError:
        return 0.0, 0.0
    ran, waited = text.split()[:2]
    return int(ran) / 1e9, int(waited) / 1e9


def percentile(values, share):
    """The least value that at least this share (0..1) of the values does not pass."""
    rank = max(1, math.ceil(share * len(values)))
    return sorted(values)[rank - 1]


def machine():
    """How busy the machine is, in a line for beside the figures."""
    load = ", ".join(f"{figure:.1f}" for figure in os.getloadavg())
    return f"{os.cpu_count()} processors, load average {load}, nice {os.nice(0)}"
