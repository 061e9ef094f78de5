"""The programs under test, driven through pipes as a graphical interface drives an engine.

The programs' paths come from the environment: ZAR_X3 (the engine), ZAR_X3_TOOLS and ZAR_X3_TWIN.
A variable that is not set means the program of the release build. Where the engine is one of
another system, ZAR_X3_RUNNER has the words of the command that runs it: wine64, for one. With
ZAR_X3_STRICT set to 1 the engine is run as "zar-x3 --strict".

Every wait ends after HANG_LIMIT seconds with a failure that shows the conversation so far. The
limit only catches a program that hangs; no test asks how long anything takes.
"""

import collections
import os
import queue
import shlex
import subprocess
import threading
import time
from pathlib import Path

HANG_LIMIT = 240.0

# Is the engine under test the one of strict mode?
STRICT = os.environ.get("ZAR_X3_STRICT") == "1"

# How the lines begin that tell variations, and what a position without a legal move is answered by.
ANY_REPORT = "info depth " if STRICT else "info multipv "
NO_MOVE = ["bestmove (none)"] if STRICT else ["info hashfull 0", "bestmove (none)"]

BANNER = [] if STRICT else ["ZAR-X3 64Bit", "", "Engine Ready"]


def report_of(depth):
    """How the first report of an iteration begins."""
    return f"info depth {depth} " if STRICT else f"info multipv 1 depth {depth} "


START_FEN = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"

_BOOKLESS = Path(__file__).resolve().parent
_RELEASE = Path(__file__).resolve().parents[2] / "build" / "release"
_DEFAULT_PATHS = {
    "ZAR_X3": _RELEASE / "zar-x3",
    "ZAR_X3_TOOLS": _RELEASE / "tools" / "zar-x3-tools",
    "ZAR_X3_TWIN": _RELEASE / "tests" / "zar-x3-twin",
}


def program_path(variable):
    """The path of the program that an environment variable names."""
    path = os.environ.get(variable) or str(_DEFAULT_PATHS[variable])
    if not os.access(path, os.X_OK):
        raise AssertionError(f"{variable} names no program: {path}")
    return os.path.abspath(path)


# Programs of Windows end their lines with "\r\n", and read that as a newline.
IS_WINDOWS = os.environ.get("ZAR_X3", "").endswith(".exe")


def is_sanitizer_build(path):
    """Was the program built with a sanitizer, which wants far more memory than the engine?"""
    code = Path(path).read_bytes()
    return b"__asan_" in code or b"__tsan_" in code


class Process:
    """A program with pipes at its three streams. Text is Latin-1: a character is a byte."""

    _line_end = b"\n"

    def __init__(self, path, *arguments, stdin=subprocess.PIPE, **settings):
        """Starts the program; `stdin` and `settings` are those of subprocess.Popen."""
        self._conversation = collections.deque(maxlen=60)
        self._child = subprocess.Popen(
            [path, *arguments],
            stdin=stdin,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            bufsize=0,
            **settings,
        )
        self._lines = queue.Queue()
        self._errors = []
        self._threads = [
            threading.Thread(target=self._collect_lines, daemon=True),
            threading.Thread(target=self._collect_errors, daemon=True),
        ]
        for thread in self._threads:
            thread.start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Kills the program if it still runs, and gives back what it used."""
        if self._child.poll() is None:
            self._child.kill()
        self._child.wait()
        for thread in self._threads:
            thread.join(HANG_LIMIT)
        for stream in (self._child.stdin, self._child.stdout, self._child.stderr):
            if stream is not None:
                try:
                    stream.close()
                except OSError:
                    pass  # a broken pipe with unsent bytes

    @property
    def pid(self):
        return self._child.pid

    @property
    def exit_status(self):
        """As of subprocess: minus the signal's number for a killed program, None while it runs."""
        return self._child.poll()

    def _collect_lines(self):
        pending = b""
        while chunk := os.read(self._child.stdout.fileno(), 65536):
            *lines, pending = (pending + chunk).split(self._line_end)
            for line in lines:
                self._lines.put(line.decode("latin-1"))
        if pending:
            # The mark makes an unfinished last line unequal to any line a test expects.
            self._lines.put(pending.decode("latin-1") + "<no newline>")
        self._lines.put(None)

    def _collect_errors(self):
        while chunk := os.read(self._child.stderr.fileno(), 65536):
            self._errors.append(chunk)

    def _error_text(self):
        errors = b"".join(self._errors).replace(self._line_end, b"\n")
        return errors.decode("latin-1")

    def _fail(self, what):
        talk = "\n".join(self._conversation)
        errors = self._error_text()
        raise AssertionError(f"{what}\nconversation:\n{talk}\nstandard error: {errors!r}")

    def send(self, *lines):
        """Sends each line with a newline."""
        self.send_text("".join(line + "\n" for line in lines))

    def send_text(self, text):
        """Sends exactly these characters. A program that has ended is noticed by the next read."""
        shown = text if len(text) <= 300 else f"{text[:150]} ... {text[-150:]}"
        self._conversation.append(f"> {shown!r}")
        data = text.encode("latin-1")
        try:
            while data:
                data = data[os.write(self._child.stdin.fileno(), data) :]
        except BrokenPipeError:
            self._conversation.append("(the program reads no more)")

    def read_line(self, deadline=None):
        """The next output line without its newline; None at the end of output.

        `deadline` is a time of the monotonic clock; the hang limit from now on when not given.
        """
        if deadline is None:
            deadline = time.monotonic() + HANG_LIMIT
        try:
            line = self._lines.get(timeout=max(0, deadline - time.monotonic()))
        except queue.Empty:
            self._fail("what was waited for did not come within the hang limit")
        self._conversation.append(f"< {line!r}")
        return line

    def read_until(self, prefix):
        """All lines up to and with the first that begins with the prefix."""
        lines = []
        deadline = time.monotonic() + HANG_LIMIT
        while True:
            line = self.read_line(deadline)
            if line is None:
                self._fail(f"output ended before a line that begins with {prefix!r}")
            lines.append(line)
            if line.startswith(prefix):
                return lines

    def read_rest(self):
        """All lines up to the end of output."""
        lines = []
        deadline = time.monotonic() + HANG_LIMIT
        while (line := self.read_line(deadline)) is not None:
            lines.append(line)
        return lines

    def close_input(self):
        """The end of input."""
        self._conversation.append("> (end of input)")
        self._child.stdin.close()

    def wait(self):
        """Waits for the program's end: its exit status and its standard error as text."""
        try:
            status = self._child.wait(HANG_LIMIT)
        except subprocess.TimeoutExpired:
            self._fail("the program did not end within the hang limit")
        self._threads[1].join(HANG_LIMIT)
        return status, self._error_text()

    def finish(self):
        """Closes the input if need be: the rest of the output, the exit status, standard error."""
        if self._child.stdin is not None and not self._child.stdin.closed:
            self.close_input()
        rest = self.read_rest()
        return (rest, *self.wait())


class Engine(Process):
    """The engine. A new one has printed its banner and has not been told anything.

    It runs in a folder without an opening book, so nobody's own book answers for the search.
    """

    _line_end = b"\r\n" if IS_WINDOWS else b"\n"

    def __init__(self, *arguments, strict=STRICT, **settings):
        settings.setdefault("cwd", _BOOKLESS)
        runner = shlex.split(os.environ.get("ZAR_X3_RUNNER", ""))
        if strict:
            arguments = ("--strict", *arguments)
        super().__init__(*runner, program_path("ZAR_X3"), *arguments, **settings)

    @classmethod
    def started(cls, **options):
        """An engine whose banner has been read and whose options are set, not initialised yet.

        Underscores in the keyword names stand for blanks: MultiPV=2, Difficulty_Level=3. Unless
        asked for otherwise the table is small and the extra lines of "TLCV fix" are off.
        """
        engine = cls()
        banner = [engine.read_line() for _ in BANNER]
        if banner != BANNER:
            engine._fail(f"the banner is {banner}")
        for name, value in {"Hash": 16, "TLCV_fix": "false", **options}.items():
            engine.set_option(name.replace("_", " "), value)
        return engine

    @classmethod
    def ready(cls, **options):
        """The same, initialised and idle."""
        engine = cls.started(**options)
        engine.fence()
        return engine

    def set_option(self, name, value):
        self.send(f"setoption name {name} value {value}")

    def set_position(self, fen=None, moves=()):
        """Sends "position" for a FEN (the start position if None) and the moves from there."""
        base = "startpos" if fen is None else f"fen {fen}"
        self.send(f"position {base} moves {' '.join(moves)}" if moves else f"position {base}")

    def fence(self):
        """Sends "isready" and returns the lines that came before "readyok".

        The engine answers it in every state, so this shows what it had to say without a timer.
        """
        self.send("isready")
        return self.read_until("readyok")[:-1]

    def go(self, parameters):
        """Starts a search; all its lines, "bestmove" the last."""
        self.send(f"go {parameters}")
        return self.read_until("bestmove")

    def shown_options(self):
        """The "option" lines that "uci" prints now."""
        self.send("uci")
        return [line for line in self.read_until("uciok") if line.startswith("option ")]


class Twin(Process):
    """The slow and obvious rules of chess: one line of answer to every command."""

    def __init__(self):
        super().__init__(program_path("ZAR_X3_TWIN"))

    def ask(self, command):
        self.send(command)
        answer = self.read_line()
        if answer is None:
            self._fail(f"the twin ended at {command!r}")
        return answer

    def _must(self, command):
        answer = self.ask(command)
        if answer != "ok":
            raise AssertionError(f"the twin answers {answer!r} to {command!r}")

    def set_position(self, fen=None, moves=()):
        self._must("start" if fen is None else f"fen {fen}")
        if moves:
            self._must("play " + " ".join(moves))

    def play(self, move):
        self._must(f"play {move}")

    def moves(self, behind=()):
        """The legal moves, sorted; behind these legal moves if given."""
        return self.ask(" ".join(["moves", *behind])).split()

    def status(self):
        """ongoing, mate, stalemate, fifty, repetition or material."""
        return self.ask("status")

    def illegal_variation(self, lines):
        """The first illegal one of the variations, lists of moves from the position; None if there
        is none. All are sent at once, which is far quicker than one by one.
        """
        self.send(*("line " + " ".join(line) for line in lines))
        answers = [self.read_line() for _ in lines]
        for line, answer in zip(lines, answers):
            if answer != "ok":
                return f"{answer} in {' '.join(line)}"
        return None

    def first_illegal(self, fen, moves):
        """The first of the moves that is not legal when they are played from a FEN, or None."""
        self.set_position(fen)
        for move in moves:
            if self.ask(f"play {move}") != "ok":
                return move
        return None
