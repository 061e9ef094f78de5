"""Sessions that no sensible program leads: the engine lives on, or ends as it says it does."""

import concurrent.futures
import os
import random
import re
import signal
import subprocess
import unittest

import report
from engine import BANNER, HANG_LIMIT, START_FEN, Engine, Twin, program_path
from report import best_move, last_depth, pv_lines

LONGEST = 65535  # characters of a line that is read whole

# All commands, in an order in which each has something to do.
SESSION = (
    "uci\nsetoption name Hash value 16\nisready\nposition startpos moves e2e4\ngo depth 2\nstop\n"
    "position fen 8/P6k/8/8/8/8/7p/K7 w - - 3 1 moves a7a8q\ngo movetime 1\nucinewgame\n"
    "go ponder wtime 9 winc 1 movestogo 3\nponderhit\n"
    "setoption name MultiPV value 3\ngo infinite\nisready\nstop\ndebug on\nquit\n"
)

# Commands after which a last line that breaks off may be a fault, and the codes of these faults.
FAULTS = {"go ": r"X-Error 1E.*", "position fen ": r"X-Error (?:4EFN1BF[1-9]|2EB1IP[2-6])\n"}

NASTY_BYTES = "\0\r\t /-09p8KkPqwba\x80\xff\x1b"

ABSURD_VALUES = ("", "-1", "0", "2147483648", "-99999999999999999999", "x" * 5000, "%s%n", "\xff")


def run(data, *arguments, **settings):
    """The engine, fed with these bytes and then the end of input: status, output, errors."""
    done = subprocess.run(
        [program_path("ZAR_X3"), *arguments],
        input=data.encode("latin-1"),
        capture_output=True,
        timeout=HANG_LIMIT,
        **settings,
    )
    return done.returncode, done.stdout.decode("latin-1"), done.stderr.decode("latin-1")


def option_names():
    """The visible options, by name."""
    with Engine.started() as engine:
        return [re.match("option name (.+) type ", line).group(1) for line in engine.shown_options()]


class BrokenSessions(unittest.TestCase):
    def test_every_prefix_of_a_session_ends_the_engine_as_it_should(self):
        statuses = set()
        prefixes = [SESSION[:size] for size in range(len(SESSION) + 1)]
        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            results = list(pool.map(run, prefixes))
        for prefix, (status, output, errors) in zip(prefixes, results):
            statuses.add(status)
            case = f"{len(prefix)} bytes, the last of them {prefix[-40:]!r}"
            self.assertTrue(output.startswith("\n".join(BANNER) + "\n"), case)
            lines = prefix.split("\n")
            self.assertEqual(lines.count("uci"), output.count("uciok"), case)
            if status == 0:
                self.assertEqual("", errors, case)
                continue
            codes = [code for head, code in FAULTS.items() if lines[-1].startswith(head)]
            self.assertEqual(1, status, case)
            self.assertEqual(1, len(codes), f"{case}: {errors!r}")
            self.assertRegex(errors, f"^{codes[0]}$", case)
        self.assertEqual({0, 1}, statuses)

    def test_binary_garbage_is_ignored(self):
        rng = random.Random(1)
        with Engine.ready() as engine:
            for size in (1, 100, 4096, LONGEST, 200_000):
                engine.send_text(rng.randbytes(size).decode("latin-1") + "\n")
                self.assertEqual([], engine.fence(), size)
            self.assertEqual(3, last_depth(engine.go("depth 3")))

    def test_binary_garbage_during_a_search_is_ignored(self):
        rng = random.Random(2)
        with Engine.ready(Threads=2) as engine:
            engine.send("go infinite")
            engine.read_until("info multipv")
            for size in (1, 100, 4096, LONGEST, 200_000):
                engine.send_text(rng.randbytes(size).decode("latin-1") + "\n")
            self.assertTrue(all(line.startswith("info ") for line in engine.fence()))
            engine.send("stop")
            self.assertIsNotNone(report.BESTMOVE_LINE.fullmatch(engine.read_until("bestmove")[-1]))

    def test_a_nul_byte_cuts_any_command(self):
        with Engine.ready() as engine:
            engine.send("position startpos moves e2e4\0 e7e5", "go depth 1\0 depth")
            self.assertIn(best_move(engine.read_until("bestmove")), self.moves_after("e2e4"))
            engine.send("setoption name MultiPV\0 value 3", "setoption name MultiPV value 2\0003")
            self.assertIn(
                "option name MultiPV type spin default 2 min 1 max 4", engine.shown_options()
            )

    def moves_after(self, *moves):
        with Twin() as twin:
            return twin.moves(moves)

    def test_garbage_without_a_newline_at_the_end_of_input(self):
        for data in ("\0", "\xff" * 100, "x" * LONGEST, "x" * (2 * LONGEST), "\0" * 200_000):
            status, output, errors = run(data)
            self.assertEqual((0, ""), (status, errors), data[:10])
            self.assertEqual("\n".join(BANNER) + "\n", output, data[:10])


class LinesDuringASearch(unittest.TestCase):
    """A line without its end must not keep a search from ending in time."""

    def test_half_a_line_of_any_length(self):
        for size in (1, 4095, LONGEST - 1, LONGEST, LONGEST + 1, 200_000):
            with self.subTest(size=size), Engine.ready() as engine:
                engine.send_text("go movetime 100\n" + "y" * size)
                engine.read_until("bestmove")
                # What is left of it and this make one more unknown line.
                engine.send("z")
                self.assertEqual([], engine.fence(), size)

    def test_half_a_line_that_grows(self):
        with Engine.ready() as engine:
            engine.send("go movetime 300")
            for _ in range(100):
                engine.send_text("s")
            engine.read_until("bestmove")

    def test_half_a_line_while_a_stopped_search_ends(self):
        with Engine.ready(Threads=2) as engine:
            engine.send("go infinite")
            engine.read_until("info multipv 1 depth 3")
            engine.send_text("stop\nsto")
            engine.read_until("bestmove")
            engine.send_text("p\nisready\n")
            self.assertEqual("readyok", engine.read_line())


class AbsurdValues(unittest.TestCase):
    def test_options_while_idle(self):
        with Engine.ready() as engine:
            for name in option_names():
                for value in ABSURD_VALUES:
                    engine.set_option(name, value)
                    engine.send("go depth 2")
                    lines = engine.read_until("bestmove")
                    move = report.BESTMOVE_LINE.fullmatch(lines[-1]).group(1)
                    self.assertIsNotNone(move, f"{name} = {value[:30]!r}")
                engine.set_option(name, {"Hash": 16, "Threads": 1}.get(name, "true"))
            engine.send("quit")
            self.assertEqual((0, ""), engine.finish()[1:])

    def test_options_while_searching(self):
        with Engine.ready(Threads=2) as engine:
            before = engine.shown_options()
            engine.send("go infinite")
            engine.read_until("info multipv")
            for name in option_names():
                for value in ABSURD_VALUES:
                    engine.set_option(name, value)
            self.assertEqual(before, engine.shown_options())
            engine.send("stop")
            engine.read_until("bestmove")
            self.assertEqual(before, engine.shown_options())

    def test_a_very_long_game(self):
        for threads in (1, 2):
            with Engine.ready(Threads=threads) as engine, Twin() as twin:
                moves = ["g1f3", "g8f6", "f3g1", "f6g8"] * 1500 + ["e2e4"]
                engine.set_position(moves=moves)
                lines = engine.go("depth 4")
                twin.set_position(moves=["e2e4"])
                self.assertIsNone(twin.illegal_variation([pv.moves for pv in pv_lines(lines)]))
                self.assertIn(best_move(lines), twin.moves(), lines[-1])

    def test_crowded_positions_and_huge_clocks(self):
        for fen in (
            "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - - 0 1",
            "Q3QQ2/2Q4Q/4Q3/1Q4Q1/3Q4/Q4Q2/ppQ4Q/krK1QQ2 w - - 0 1",
            "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 1000000000000 1",
            "r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 99 9999999999999999999999",
        ):
            with self.subTest(fen=fen), Engine.ready(MultiPV=4) as engine, Twin() as twin:
                twin.set_position(fen)
                engine.set_position(fen)
                lines = engine.go("depth 3")
                self.assertIsNone(twin.illegal_variation([pv.moves for pv in pv_lines(lines)]))
                self.assertIn(best_move(lines), twin.moves(), fen)

    def test_commands_in_first_iterations_that_take_long(self):
        crowded = "8/PPPPPPPP/8/2k5/8/2K5/pppppppp/8 w - - 0 1"
        rng = random.Random(11)
        with Engine.ready(Threads=2, MultiPV=4) as engine:
            for _ in range(12):
                engine.set_position(crowded)
                engine.send(rng.choice(("go infinite", "go movetime 1", "go ponder movetime 1")))
                engine.send(*rng.choices(("position startpos", "go", "isready", "ucinewgame"), k=5))
                engine.send(*rng.choices(("stop", "ponderhit"), k=2), "stop")
                engine.read_until("bestmove")
            engine.send(f"position fen {crowded}", "go infinite", "quit")
            self.assertEqual((0, ""), engine.finish()[1:])

    def test_damaged_fens(self):
        # A sample; all of them are read in the tests of the reader.
        rng = random.Random(3)
        statuses = set()
        for _ in range(40):
            place = rng.randrange(len(START_FEN))
            fen = START_FEN[:place] + rng.choice(NASTY_BYTES) + START_FEN[place + 1 :]
            status, output, errors = run(f"setoption name Hash value 16\nposition fen {fen}\nuci\n")
            statuses.add(status)
            self.assertEqual(status == 0, "uciok" in output, repr(fen))
            expected = "^$" if status == 0 else f"^{FAULTS['position fen ']}$"
            self.assertRegex(errors, expected, repr(fen))
        self.assertEqual({0, 1}, statuses)


class ClosedOutput(unittest.TestCase):
    """A reader that closes the engine's output: the engine ends and never loops."""

    SESSIONS = {
        "idle": "isready\nisready\n",
        "many answers": "uci\n" * 1000,
        "a search": "go depth 5\n",
        "an infinite search": "go infinite\n",
        "an infinite search of threads": "setoption name Threads value 4\ngo infinite\n",
        "a stopped search": "go infinite\nstop\nisready\n",
    }

    def start(self, data, **settings):
        """An engine that nobody listens to, told this."""
        child = subprocess.Popen(
            [program_path("ZAR_X3")],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL,
            bufsize=0,
            **settings,
        )
        self.addCleanup(child.kill)
        self.addCleanup(child.stdin.close)
        while b"Ready\n" not in os.read(child.stdout.fileno(), 4096):
            pass
        child.stdout.close()
        try:
            child.stdin.write(data.encode())
        except BrokenPipeError:
            pass
        return child

    def test_the_next_line_ends_it(self):
        for name, data in self.SESSIONS.items():
            child = self.start("setoption name Hash value 16\n" + data)
            self.assertEqual(-signal.SIGPIPE, child.wait(HANG_LIMIT), name)

    def test_where_the_signal_is_ignored_the_end_of_input_ends_it(self):
        for name, data in self.SESSIONS.items():
            child = self.start(
                "setoption name Hash value 16\n" + data,
                restore_signals=False,
                preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN),
            )
            child.stdin.close()
            self.assertIn(child.wait(HANG_LIMIT), (0, 1), name)

    def test_where_the_signal_is_ignored_quit_ends_it(self):
        for name, data in self.SESSIONS.items():
            child = self.start(
                "setoption name Hash value 16\n" + data + "quit\n",
                restore_signals=False,
                preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_IGN),
            )
            self.assertIn(child.wait(HANG_LIMIT), (0, 1), name)


class EndOfInput(unittest.TestCase):
    """In states that console_test.py and threads_test.py do not reach."""

    def test_behind_the_command_that_ends_a_search(self):
        for go in ("go infinite", "go ponder movetime 3600000", "go movetime 3600000"):
            for last in ("stop\n", "ponderhit\n", "stop", "ponderhit", "quit"):
                with Engine.ready(Threads=3) as engine:
                    engine.send(go)
                    engine.read_until("info multipv")
                    engine.send_text(last)
                    _, status, errors = engine.finish()
                    self.assertEqual((0, ""), (status, errors), f"{go}, {last!r}")

    def test_with_an_answer_of_threads_held_back(self):
        with Engine.ready(Threads=4, Difficulty_Level=0) as engine:
            engine.send("go infinite")
            engine.read_until("info multipv 1 depth 1")
            engine.fence()
            _, status, errors = engine.finish()
            self.assertEqual((0, ""), (status, errors))

    def test_behind_a_change_of_tables(self):
        for line in ("setoption name Threads value 4", "setoption name Hash value 32"):
            with Engine.ready() as engine:
                engine.send(line)
                self.assertEqual(([], 0, ""), engine.finish(), line)


if __name__ == "__main__":
    unittest.main()
