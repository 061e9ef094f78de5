"""An engine that is watched: every line that it prints, its time and its memory are checked."""

import collections
import os
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "uci"))

import engine  # noqa: E402
import report  # noqa: E402

# A crash leaves a status, a hang only this.
engine.HANG_LIMIT = 60.0

# Blocks this large are mapped and given back when freed, so that the resident size is that of the
# tables in use. Without this the C library keeps some of the freed ones.
_ENVIRONMENT = {**os.environ, "MALLOC_MMAP_THRESHOLD_": "131072"}
_MEBIBYTE = 1 << 20
_GRACE = 0.2  # seconds that a first iteration has beyond its limit
_THREAD_BYTES = 8 * _MEBIBYTE + 4096  # pawn and material table
_WARM_UP_WEIGHINGS = 3
_GROWTH_ALLOWED = 2 * _MEBIBYTE

# The options that matter here.
_DEFAULTS = {"Threads": 1, "Hash": 256, "MultiPV": 1, "Ponder": "true", "Extra Info": "false"}
_EXTRA_INFO = ("info string ", "Info String ")


class Failure(Exception):
    """What a soak run is there to find."""


def hard_limit(clock, increment, moves_to_go, ponder):
    """The seconds that the engine allows itself at most, from what "go" tells it in seconds.

    `moves_to_go` is None when it is not told, `ponder` the option of that name.
    """
    moves = moves_to_go if moves_to_go is not None and 1 <= moves_to_go <= 30 else 30
    usable = max(0.95 * clock - 1.0, 0.0)
    total = (moves - 1) * max(increment, 0.0) + usable
    target = min((1.25 if ponder else 1.0) * total / moves, usable)
    return min(max(0.5 * total, target), usable)


def hash_bytes(megabytes):
    """The size of the table that the option gives: a power of two, from 16 MiB to 1 GiB."""
    size = 1 << (min(megabytes, 1024).bit_length() - 1)
    return size * _MEBIBYTE


class _RecordedEngine(engine.Engine):
    """An engine that keeps what it was told."""

    def __init__(self, *arguments, **settings):
        self.sent = collections.deque(maxlen=4000)
        super().__init__(*arguments, **settings)

    def send_text(self, text):
        self.sent.append(text)
        super().send_text(text)

    def resident_bytes(self):
        """What it holds of memory that is its own: not the program's file."""
        for line in Path(f"/proc/{self.pid}/status").read_text().splitlines():
            if line.startswith("RssAnon:"):
                return int(line.split()[1]) * 1024
        raise Failure("the process has no resident size: has it ended?")


class Player:
    """One side of the games, with the engine process that plays it.

    `pondering` is the move that the engine ponders on, None when it is idle; `seconds` what the
    last call of think() took. `crowded` is set for games whose first iterations take long.
    """

    def __init__(self, twin, record):
        self._twin = twin
        self._record = record
        self._sanitized = engine.is_sanitizer_build(engine.program_path("ZAR_X3"))
        self._start()

    def _start(self):
        self.engine = _RecordedEngine(env=_ENVIRONMENT)
        self.crowded = False
        self.options = dict(_DEFAULTS)
        self.pondering = None
        self._weights = []
        if (lines := [self.engine.read_line() for _ in engine.BANNER]) != engine.BANNER:
            raise Failure(f"the banner is {lines}")

    def end(self, command=None):
        """Ends the idle engine by a command, or else by the end of its input."""
        if command is not None:
            self.engine.send(command)
        ended = self.engine.finish()
        if ended != ([], 0, ""):
            raise Failure(f"the engine ended with lines, status, errors {ended}")
        self.engine.close()

    def restart(self, command=None):
        """Ends the engine and starts another."""
        self.end(command)
        self._start()

    def set_options(self, options):
        told = self._tells_extra()
        for name, value in options.items():
            self.engine.set_option(name, value)
        self.options |= options
        self._fence(told or self._tells_extra())

    def new_game(self):
        self.engine.send("ucinewgame")
        self.fence()

    def fence(self):
        """Waits until all commands are done; nothing must be printed meanwhile."""
        self._fence(False)

    def _fence(self, extra_allowed):
        for line in self.engine.fence():
            if not (extra_allowed and line.startswith(_EXTRA_INFO)):
                raise Failure(f"an idle engine says {line!r}")

    def _tells_extra(self):
        return self.options["Extra Info"] == "true"

    # Searches.

    def think(self, fen, moves, go):
        """Searches the position after the moves: the best and the ponder move, either may be None.

        `go` is a record of games.Go.
        """
        self.engine.set_position(fen, moves)
        started = time.monotonic()
        self.engine.send(f"go {go.text}")
        if go.stop_after is None:
            answer = self._answer(go.kind, started + go.limit)
        else:
            time.sleep(go.stop_after)
            stopped = time.monotonic()
            self.engine.send("stop")
            answer = self._answer("stop", stopped)
        self.seconds = self._answered - started
        return answer

    def start_pondering(self, fen, moves, move, go):
        """Begins to ponder on the reply `move` behind the moves."""
        self.engine.set_position(fen, [*moves, move])
        self.pondering = move
        self._ponder_limit = time.monotonic() + go.limit
        self.engine.send(f"go ponder {go.text}")

    def ponderhit(self):
        """The reply was played, in the twin too: the best and the ponder move."""
        hit = time.monotonic()
        self.engine.send("ponderhit")
        self.pondering = None
        self._record.counts["ponderhits"] += 1
        return self._answer("ponderhit", max(hit, self._ponder_limit))

    def stop_pondering(self, played):
        """Ends pondering. `played` tells whether the twin has the reply on its board already."""
        stopped = time.monotonic()
        self.engine.send("stop")
        self._record.counts["ponder searches stopped"] += 1
        behind = [] if played else [self.pondering]
        self.pondering = None
        self._answer("stop", stopped, behind)

    def _answer(self, kind, deadline, behind=()):
        """Reads and checks all lines of a search that is to end by the deadline.

        Its root is the twin's position, or the one `behind` these moves from there.
        """
        lines = self.engine.read_until("bestmove")
        self._answered = time.monotonic()
        if self.crowded:
            kind, deadline = "crowded", deadline + _GRACE
        self._record.excess[kind].append(self._answered - deadline)
        match = report.BESTMOVE_LINE.fullmatch(lines[-1])
        if match is None:
            raise Failure(f"not an answer: {lines[-1]!r}")
        best, ponder = match.groups()
        variations = {tuple(self._moves_of(line)) for line in lines}
        variations.discard(())
        root = list(behind)
        fault = self._twin.illegal_variation([[*root, *moves] for moves in sorted(variations)])
        if fault is not None:
            shown = "\n".join(lines)
            raise Failure(f"{fault}, at {self._twin.ask('show')}\n{shown}")
        if best is None and self._twin.moves(root):
            raise Failure(f"{lines[-1]!r} where there are moves")
        self._record.counts["variations"] += len(variations)
        return best, ponder

    def _moves_of(self, line):
        """The moves of a line from the root; a line of no known form is a failure."""
        pv = report.parse_pv(line)
        if pv is not None:
            if pv.multipv > int(self.options["MultiPV"]):
                raise Failure(f"too many lines: {line!r}")
            return pv.moves
        for pattern, group in ((report.VIEWER_LINE, 5), (report.CURRMOVE_LINE, 1)):
            if match := pattern.fullmatch(line):
                return match.group(group).split()
        if match := report.FINAL_LINE.fullmatch(line):
            return [move for move in match.groups()[2:] if move]
        if match := report.BESTMOVE_LINE.fullmatch(line):
            return [move for move in match.groups() if move]
        if report.HASHFULL_LINE.fullmatch(line):
            return ()
        if self._tells_extra() and line.startswith(_EXTRA_INFO):
            return ()
        raise Failure(f"a line of no known form: {line!r}")

    # Memory.

    def weigh(self):
        """Checks the memory of the idle engine, after every game.

        What it holds beside its tables may not grow, except for what the first games need. Tables
        that short games have not touched throughout hold less than their size: that is no less
        than nothing beside them.
        """
        if self._sanitized:
            return
        tables = hash_bytes(int(self.options["Hash"]))
        tables += int(self.options["Threads"]) * _THREAD_BYTES
        rest = max(self.engine.resident_bytes() - tables, 0)
        self._weights.append(rest)
        warm = max(self._weights[:_WARM_UP_WEIGHINGS])
        if rest > warm + _GROWTH_ALLOWED:
            raise Failure(
                f"memory grows: beside its tables the engine held {warm >> 10} KiB after its first"
                f" games and {rest >> 10} KiB after {len(self._weights)}"
            )

