"""Every "X-Error" code that input can reach: its exact bytes, the exit status, nothing else."""

import os
import resource
import tempfile
import unittest

from engine import BANNER, IS_WINDOWS, Engine, is_sanitizer_build, program_path
from report import best_move

MISSING_VALUE = {
    "binc": "X-Error 1EE1BIPTC//",
    "btime": "X-Error 1EE1BtPTC//",
    "depth": "X-Error 1EE1DEPTC//",
    "mate": "X-Error 1ES1MAPTC//",
    "movestogo": "X-Error 1ES1MTGPTC//",
    "movetime": "X-Error 1ES1MTPTC//",
    "nodes": "X-Error 1ES1NOPTC",
    "winc": "X-Error 1EE1WIPTC//",
    "wtime": "X-Error 1EE1WTPTC//",
}

# Texts behind "position " and the code they end the engine with.
BAD_POSITIONS = [
    # A digit that runs past the h file.
    ("4EFN1BF1", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBN2 w KQkq - 0 1"),
    ("4EFN1BF1", "fen 44/8/p8/8/8/8/8/8 w - - 0 1"),
    ("4EFN1BF1", "fen k6K/54/8/8/8/8/8/8 w - - 0 1"),
    # A character that is no man.
    ("4EFN1BF2", "fen rnbqkbnr/ppppxppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
    ("4EFN1BF2", "fen 9/8/8/8/8/8/8/8 w - - 0 1"),
    ("4EFN1BF2", "fen 0k6K/8/8/8/8/8/8/8 w - - 0 1"),
    ("4EFN1BF2", "fen rnbqkbn/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
    ("4EFN1BF2", "fen  rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
    ("4EFN1BF2", "fen startpos"),
    # No slash behind the eighth square of a rank.
    ("4EFN1BF3", "fen rnbqkbnrr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
    ("4EFN1BF3", "fen rnbqkbnr pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1"),
    ("4EFN1BF3", "fen 8/8/8/8/8/8/81/8 w - - 0 1"),
    # A text that ends early: nothing counts as a white pawn, again and again.
    ("4EFN1BF3", "fen "),
    ("4EFN1BF3", "fen moves e2e4"),
    ("4EFN1BF3", "fen rnbqkbnr"),
    ("4EFN1BF3", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPP"),
    ("4EFN1BF4", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/"),
    ("4EFN1BF4", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKB"),
    # No blank behind the last rank.
    ("4EFN1BF4", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR"),
    ("4EFN1BF4", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR/ w KQkq - 0 1"),
    ("4EFN1BF4", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNRR w KQkq - 0 1"),
    # The side to move.
    ("4EFN1BF5", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR W KQkq - 0 1"),
    ("4EFN1BF5", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR  w KQkq - 0 1"),
    ("4EFN1BF5", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR "),
    ("4EFN1BF6", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR wKQkq - 0 1"),
    ("4EFN1BF6", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b"),
    # Castling letters out of order, strange or unfinished.
    ("4EFN1BF7", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w qkQK - 0 1"),
    ("4EFN1BF7", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KK - 0 1"),
    ("4EFN1BF7", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w HAha - 0 1"),
    ("4EFN1BF7", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w -K - 0 1"),
    ("4EFN1BF7", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w "),
    ("4EFN1BF7", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq"),
    # The en-passant square.
    ("4EFN1BF8", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq x6 0 1"),
    ("4EFN1BF8", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq E6 0 1"),
    ("4EFN1BF8", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq 0 1"),
    ("4EFN1BF8", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq  - 0 1"),
    ("4EFN1BF8", "fen rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq "),
    ("4EFN1BF9", "fen rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e3 0 1"),
    ("4EFN1BF9", "fen rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e6 0 1"),
    ("4EFN1BF9", "fen rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e"),
    # More than sixteen men of one colour that are not pawns.
    ("2EB1IP2", "fen NNNNNNNN/NNNNNNNN/8/8/8/8/8/K6k w - - 0 1"),
    ("2EB1IP2", "fen nnnnnnnn/nnnnnnnn/8/8/8/8/8/k6K w - - 0 1"),
    # Kings.
    ("2EB1IP3", "fen 8/8/8/8/8/8/8/8 w - - 0 1"),
    ("2EB1IP3", "fen 8/8/8/8/8/8/8/7k w - - 0 1"),
    ("2EB1IP3", "fen 8/8/8/8/8/8/8/7K w - - 0 1"),
    ("2EB1IP3", "fen K6K/8/8/8/8/8/8/7k w - - 0 1"),
    ("2EB1IP3", "fen k6k/8/8/8/8/8/8/7K w - - 0 1"),
    # Pawns: nine of them, or one where none can stand.
    ("2EB1IP4", "fen 7k/8/8/8/8/P7/PPPPPPPP/7K w - - 0 1"),
    ("2EB1IP4", "fen 7k/pppppppp/p7/8/8/8/8/7K w - - 0 1"),
    ("2EB1IP4", "fen P6k/8/8/8/8/8/8/7K w - - 0 1"),
    ("2EB1IP4", "fen 7k/8/8/8/8/8/8/P6K w - - 0 1"),
    ("2EB1IP4", "fen p6k/8/8/8/8/8/8/7K w - - 0 1"),
    ("2EB1IP4", "fen 7k/8/8/8/8/8/8/p6K w - - 0 1"),
    # More than sixteen men of one colour in all.
    ("2EB1IP5", "fen 7k/8/8/8/8/NNNNNNNN/PPPPPPPP/7K w - - 0 1"),
    ("2EB1IP5", "fen 7k/pppppppp/nnnnnnnn/8/8/8/8/7K w - - 0 1"),
    # The side that is not to move stands in check.
    ("2EB1IP6", "fen 7k/8/8/8/8/8/8/K6R w - - 0 1"),
    ("2EB1IP6", "fen 7k/8/8/8/8/8/1p6/K7 b - - 0 1"),
    ("2EB1IP6", "fen 8/8/8/8/8/8/8/Kk6 w - - 0 1"),
]

TEN_BISHOPS_FEN = "8/8/8/8/7k/BBBBB3/BBBBB3/K7 w - - 0 1"


class FatalInput(unittest.TestCase):
    def assert_fatal(self, engine, errors, case, output=()):
        rest, status, shown = engine.finish()
        self.assertEqual((list(output), 1, errors), (rest, status, shown), case)

    def test_a_go_keyword_without_its_value(self):
        for keyword, code in MISSING_VALUE.items():
            for line in (f"go {keyword}", f"go depth 3 {keyword} ", f"go infinite {keyword}"):
                with self.subTest(line=line), Engine.started() as engine:
                    engine.send(line)
                    self.assert_fatal(engine, code, line)

    def test_the_last_keyword_counts(self):
        with Engine.started() as engine:
            engine.send("go wtime 1000 btime 1000 winc")
            self.assert_fatal(engine, "X-Error 1EE1WIPTC//", "winc last")

    def test_a_keyword_may_be_the_value_of_another(self):
        with Engine.started() as engine:
            engine.send("go wtime depth btime")
            self.assert_fatal(engine, "X-Error 1EE1BtPTC//", "depth is wtime's value")

    def test_bad_positions(self):
        for code, position in BAD_POSITIONS:
            with self.subTest(position=position), Engine.started() as engine:
                engine.send(f"position {position}")
                self.assert_fatal(engine, f"X-Error {code}\n", position)

    def test_a_bad_position_when_initialised(self):
        with Engine.ready() as engine:
            engine.go("depth 2")
            engine.send("position fen 8/8/8/8/8/8/8/8 w - - 0 1")
            self.assert_fatal(engine, "X-Error 2EB1IP3\n", "after a search")


class TenBishops(unittest.TestCase):
    def test_the_warning_is_printed_twice_and_the_position_accepted(self):
        with Engine.ready() as engine:
            engine.set_position(TEN_BISHOPS_FEN)
            self.assertEqual(["X-Error 2EB1IP4"] * 2, engine.fence(), TEN_BISHOPS_FEN)
            self.assertNotEqual("(none)", best_move(engine.go("depth 1")), TEN_BISHOPS_FEN)
            self.assertEqual(([], 0, ""), engine.finish())

    def test_nine_white_or_ten_black_bishops_are_no_reason(self):
        for fen in (
            "8/8/8/8/7k/BBBB4/BBBBB3/K7 w - - 0 1",
            "k7/bbbbb3/bbbbb3/7K/8/8/8/8 w - - 0 1",
        ):
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                self.assertEqual([], engine.fence(), fen)

    def test_the_warning_comes_before_a_fatal_error(self):
        fen = "8/8/8/8/7k/BBBBB3/BBBBB3/K6k w - - 0 1"
        with Engine.started() as engine:
            engine.set_position(fen)
            rest, status, errors = engine.finish()
            self.assertEqual((["X-Error 2EB1IP4"], 1, "X-Error 2EB1IP3\n"), (rest, status, errors))


@unittest.skipIf(IS_WINDOWS, "Wine has an input and needs an address space of its own")
class FatalSystem(unittest.TestCase):
    def run_with(self, stdin):
        with Engine(stdin=stdin) as engine:
            return engine.finish()

    def test_input_that_cannot_be_read(self):
        directory = os.open(os.curdir, os.O_RDONLY)
        try:
            self.assertEqual((BANNER, 1, "X-Error 7EU1MA2\n"), self.run_with(directory))
        finally:
            os.close(directory)

    def test_input_that_is_only_open_for_writing(self):
        with tempfile.TemporaryDirectory() as folder:
            with open(os.path.join(folder, "file"), "wb") as file:
                self.assertEqual((BANNER, 1, "X-Error 7EU1MA2\n"), self.run_with(file))

    @unittest.skipIf(
        is_sanitizer_build(program_path("ZAR_X3")), "a sanitizer needs the whole address space"
    )
    def test_too_little_memory(self):
        def limit_memory():
            resource.setrlimit(resource.RLIMIT_AS, (400 << 20, 400 << 20))

        # At the first initialisation, and when the table grows.
        for first, second in (("1024", ""), ("16", "setoption name Hash value 1024\n")):
            with Engine(preexec_fn=limit_memory) as engine:
                engine.send_text(f"setoption name Hash value {first}\nisready\n{second}")
                rest, status, errors = engine.finish()
                self.assertEqual((1, "X-Error 7EU1MA1\n"), (status, errors), (first, second))
                self.assertEqual(BANNER + ["readyok"] * bool(second), rest)


if __name__ == "__main__":
    unittest.main()
