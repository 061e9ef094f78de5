"""The opening book as a player meets it: the engine answers from the file, and goes on without it."""

import tempfile
import unittest
from pathlib import Path

from engine import Engine, Twin
from report import best_move, pv_lines

START_KEY = 0x463B96181691FC9C
AFTER_E4_KEY = 0x823C9B50FD114196
SQUARES = {f"{file}{rank}": 8 * (rank - 1) + i for i, file in enumerate("abcdefgh") for rank in range(1, 9)}


def entry(key, move, weight=1):
    """One entry of the file."""
    code = SQUARES[move[:2]] << 6 | SQUARES[move[2:4]]
    return key.to_bytes(8, "big") + code.to_bytes(2, "big") + weight.to_bytes(2, "big") + bytes(4)


class BookTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.book = self.folder / "openings.bin"
        self.book.write_bytes(entry(START_KEY, "e2e4") + entry(AFTER_E4_KEY, "c7c5"))

    def engine(self, **options):
        return Engine.ready(Book_File=self.book, **options)

    def searched(self, engine, parameters="depth 1"):
        """Did the engine search, rather than answer from its book?"""
        return bool(pv_lines(engine.go(parameters)))

    def test_a_book_move_is_answered_at_once_with_exactly_these_lines(self):
        with self.engine(TLCV_fix="true") as engine:
            engine.set_position()
            self.assertEqual(
                ["info hashfull 0", "info depth 0 score cp 0 pv e2e4 ", "0 0 0 50000 e2e4 ", "bestmove e2e4"],
                engine.go("wtime 60000 btime 60000"),
            )

    def test_extra_info_names_the_book(self):
        with self.engine(Extra_Info="true") as engine:
            engine.set_position()
            self.assertEqual(
                [
                    "info hashfull 0",
                    "info depth 0 score cp 0 pv e2e4 ",
                    "info string - - -",
                    f"info string BookMove e2e4 (Current Book File is {self.book})",
                    "bestmove e2e4",
                ],
                engine.go("depth 1"),
            )

    def test_after_a_search_a_book_move_shows_no_time_and_no_nodes(self):
        with self.engine(TLCV_fix="true") as engine:
            engine.set_position(moves=["a2a3"])
            engine.go("depth 6")
            engine.set_position()
            self.assertIn("0 0 0 50000 e2e4 ", engine.go("depth 6"))

    def test_levels_up_to_three_never_use_the_book(self):
        for level, uses in ((0, False), (3, False), (4, True), (9, True), (10, True)):
            with self.subTest(level=level), self.engine(Difficulty_Level=level) as engine:
                engine.set_position()
                self.assertEqual(uses, not self.searched(engine))

    def test_without_own_book_the_engine_searches(self):
        with self.engine(Own_Book="false") as engine:
            engine.set_position()
            self.assertTrue(self.searched(engine))

    def test_an_infinite_or_pondering_search_does_not_use_the_book(self):
        for parameters in ("infinite", "ponder wtime 1000 btime 1000"):
            with self.subTest(go=parameters), self.engine() as engine:
                engine.set_position()
                engine.send(f"go {parameters}")
                engine.read_until("info multipv 1 depth 4")
                engine.send("stop")
                engine.read_until("bestmove")

    def test_a_missing_file_is_no_book_without_a_word(self):
        with Engine.ready(Book_File=self.folder / "missing.bin") as engine:
            engine.set_position()
            self.assertTrue(self.searched(engine))
            self.assertEqual(([], 0, ""), engine.finish())

    def test_a_folder_is_no_book(self):
        with Engine.ready(Book_File=self.folder) as engine:
            engine.set_position()
            self.assertTrue(self.searched(engine))
            self.assertEqual(([], 0, ""), engine.finish())

    def test_every_setoption_opens_the_file_again(self):
        late = self.folder / "late.bin"
        with Engine.ready(Book_File=late) as engine:
            engine.set_position()
            self.assertTrue(self.searched(engine))
            late.write_bytes(entry(START_KEY, "d2d4"))
            self.assertTrue(self.searched(engine))
            engine.set_option("Ponder", "true")
            self.assertEqual("d2d4", best_move(engine.go("depth 1")))
            late.unlink()
            engine.send("setoption nonsense")
            self.assertTrue(self.searched(engine))

    def test_a_name_beyond_ascii_is_sent_as_utf_8(self):
        for name in ("Er\xf6ffnung.bin", "\u0434\u0435\u0431\u044e\u0442 \u958b\u5c40\U0001f642.bin"):
            book = self.folder / name
            book.write_bytes(entry(START_KEY, "g1f3"))
            with Engine.ready(Book_File=str(book).encode().decode("latin-1")) as engine:
                engine.set_position()
                self.assertEqual("g1f3", best_move(engine.go("depth 1")), name)

    def test_the_default_file_is_looked_for_in_the_working_folder(self):
        (self.folder / "ZAR.ebk").write_bytes(entry(START_KEY, "b1c3"))
        with Engine(cwd=self.folder) as engine:
            engine.send("position startpos")
            self.assertEqual("b1c3", best_move(engine.go("depth 1")))

    def test_a_file_that_shrinks_ends_the_engine(self):
        with self.engine() as engine:
            engine.set_position()
            self.book.write_bytes(b"short")
            engine.send("go depth 1")
            self.assertEqual(([], 1, "X-Error 3EBK1RE5\n"), engine.finish())

    def test_a_game_starts_in_the_book_and_leaves_it(self):
        moves = []
        with self.engine() as engine, Twin() as twin:
            for ply in range(8):
                engine.set_position(moves=moves)
                lines = engine.go("depth 3")
                self.assertEqual(ply < 2, not pv_lines(lines), (ply, lines))
                twin.set_position(moves=moves)
                self.assertIn(best_move(lines), twin.moves())
                moves.append(best_move(lines))
        self.assertEqual(["e2e4", "c7c5"], moves[:2])


if __name__ == "__main__":
    unittest.main()
