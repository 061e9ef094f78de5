"""Lines in, lines out: long and broken lines, and the end of input in every state."""

import os
import tempfile
import unittest

from engine import BANNER, IS_WINDOWS, Engine
from report import best_move, last_depth, parse_pv

# White has one move, a1b1, and Black then mates with h8h1.
ONE_MOVE_FEN = "7r/8/8/8/8/1k6/8/K7 w - - 0 1"
STALEMATE_FEN = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"

# The longest line that is read whole, without its newline.
LONGEST = 65535


def position_line(length):
    """A "position" line of this many characters whose last four are the move a1b1."""
    head, tail = f"position fen {ONE_MOVE_FEN} moves ", "a1b1"
    return head + " " * (length - len(head) - len(tail)) + tail


class LongLines(unittest.TestCase):
    def assert_position_line_is_whole(self, length):
        with Engine.ready() as engine:
            engine.send(position_line(length))
            lines = engine.go("depth 2")
            self.assertEqual("h8h1", best_move(lines), f"line of {length} characters")

    def test_a_line_of_65535_characters_is_read_whole(self):
        self.assert_position_line_is_whole(LONGEST)

    def test_a_line_one_shorter_is_read_whole(self):
        self.assert_position_line_is_whole(LONGEST - 1)

    def test_the_rest_of_a_longer_line_is_the_next_command(self):
        with Engine.ready() as engine:
            engine.send("x" * LONGEST + "uci")
            self.assertIn("uciok", engine.fence())

    def test_a_longer_line_is_split_after_65535_characters_exactly(self):
        with Engine.ready() as engine:
            # One filler less, and the second line begins with "ci"; one more, with "xuci".
            engine.send("x" * (LONGEST - 1) + "uci", "x" * (LONGEST + 1) + "uci")
            self.assertEqual([], engine.fence())

    def test_a_line_of_many_pieces_is_split_every_65535_characters(self):
        with Engine.ready() as engine:
            engine.send("x" * (3 * LONGEST) + "uci")
            self.assertIn("uciok", engine.fence())

    def test_a_line_of_exactly_the_longest_leaves_nothing_behind(self):
        with Engine.ready() as engine:
            engine.send("x" * LONGEST, "uci")
            lines = engine.fence()
            self.assertEqual(1, lines.count("uciok"), lines)

    def test_long_lines_are_read_during_a_search(self):
        with Engine.ready() as engine:
            engine.send("go infinite")
            engine.read_until("info multipv")
            engine.send("x" * LONGEST + "stop")
            engine.read_until("bestmove")

    def test_an_option_value_of_the_longest_line_is_stored_and_its_print_cut(self):
        with Engine.ready() as engine:
            head = "setoption name Book File value "
            engine.send(head + "b" * (LONGEST - len(head)))
            (shown,) = [o for o in engine.shown_options() if "Book File" in o]
            expected = "option name Book File type string default " + "b" * LONGEST
            self.assertEqual(expected[:4095], shown)
            engine.set_option("Book File", "short")
            (shown,) = [o for o in engine.shown_options() if "Book File" in o]
            self.assertEqual("option name Book File type string default short", shown)


class OddBytes(unittest.TestCase):
    def test_a_nul_byte_ends_a_command(self):
        with Engine.ready() as engine:
            engine.send_text("uci\0xyzzy\n")
            lines = engine.fence()
            self.assertEqual(1, lines.count("uciok"), lines)

    def test_a_nul_byte_first_makes_no_command(self):
        with Engine.ready() as engine:
            engine.send_text("\0\0\n\0\n")
            self.assertEqual([], engine.fence())

    @unittest.skipIf(IS_WINDOWS, "a carriage return there is a part of the newline")
    def test_a_carriage_return_is_part_of_the_line(self):
        with Engine.ready() as engine:
            engine.send_text("uci\r\nisready\r\nquit\r\n")
            self.assertEqual([], engine.fence())

    def test_bytes_beyond_ascii_are_only_text(self):
        with Engine.ready() as engine:
            engine.send_text("\xff\xfe\x80uci\n\x1a\x04\nsetoption name \xe9 value \xff\n")
            self.assertEqual([], engine.fence())
            engine.set_option("Book File", "Er\xf6ffnung.bin")
            (shown,) = [o for o in engine.shown_options() if "Book File" in o]
            self.assertEqual("option name Book File type string default Er\xf6ffnung.bin", shown)

    def test_a_line_may_come_in_pieces(self):
        with Engine.ready() as engine:
            for piece in ("u", "c", "i", "\nisr", "ead", "y\n"):
                engine.send_text(piece)
            self.assertEqual("readyok", engine.read_until("readyok")[-1])

    def test_many_lines_may_come_at_once(self):
        with Engine.ready() as engine:
            engine.send(*["isready"] * 1000, "uci")
            self.assertEqual(1000, engine.read_until("uciok").count("readyok"))


@unittest.skipUnless(IS_WINDOWS, "elsewhere a carriage return is part of the line")
class CarriageReturns(unittest.TestCase):
    def test_lines_may_end_in_a_carriage_return_and_a_newline(self):
        with Engine.ready() as engine:
            engine.send_text("position startpos\r\ngo depth 2\r\n")
            self.assertEqual(2, last_depth(engine.read_until("bestmove")))
            engine.send_text("quit\r\n")
            self.assertEqual(([], 0, ""), engine.finish())

    def test_the_two_bytes_may_come_one_by_one(self):
        with Engine.ready() as engine:
            engine.send_text("isready\r")
            engine.send_text("\n")
            self.assertEqual("readyok", engine.read_line())
            engine.send_text("go infinite\r\n")
            engine.read_until("info multipv")
            engine.send_text("stop\r")
            while (pv := parse_pv(engine.read_line())) is None or pv.depth < 5:
                pass
            engine.send_text("\n")
            engine.read_until("bestmove")

    def test_a_carriage_return_elsewhere_is_part_of_the_line(self):
        with Engine.ready() as engine:
            engine.send_text("uci\r\r\nisr\read\rquit\r\nuci\r")
            self.assertEqual(([], 0, ""), engine.finish())

    def test_a_newline_alone_will_do(self):
        with Engine.ready() as engine:
            engine.send_text("isready\nisready\r\nisready\n")
            self.assertEqual(["readyok"] * 3, [engine.read_line() for _ in range(3)])


class InputDuringASearch(unittest.TestCase):
    def test_half_a_line_does_not_block_the_search(self):
        with Engine.ready() as engine:
            engine.send_text("go depth 6\nisre")
            lines = engine.read_until("bestmove")
            self.assertEqual(6, last_depth(lines), lines[-1])
            engine.send_text("ady\n")
            self.assertEqual("readyok", engine.read_line())

    def test_half_a_line_is_completed_during_the_search(self):
        with Engine.ready() as engine:
            engine.send_text("go infinite\nst")
            while (pv := parse_pv(engine.read_line())) is None or pv.depth < 5:
                pass
            engine.send_text("op\n")
            engine.read_until("bestmove")

    def test_every_waiting_line_is_answered_during_the_search(self):
        with Engine.ready() as engine:
            engine.send("go infinite")
            engine.read_until("info multipv")
            engine.send(*["isready"] * 500, "stop")
            lines = engine.read_until("bestmove")
            self.assertEqual(500, lines.count("readyok"), lines[-1])

    def test_lines_behind_stop_are_served_after_the_answer(self):
        with Engine.ready() as engine:
            engine.send("go infinite")
            engine.read_until("info multipv 1 depth 2")
            engine.send(f"stop\nposition fen {STALEMATE_FEN}\ngo depth 1\nisready")
            engine.read_until("bestmove")
            rest = engine.read_until("readyok")
            self.assertEqual(["info hashfull 0", "bestmove (none)", "readyok"], rest)


class EndOfInput(unittest.TestCase):
    """The engine ends with status 0 and says nothing more, whatever it was doing."""

    def assert_ends_silently(self, engine, state):
        rest, status, errors = engine.finish()
        answers = [line for line in rest if not line.startswith("info ")]
        self.assertEqual(([], 0, ""), (answers, status, errors), state)
        return rest

    def test_at_start(self):
        with Engine() as engine:
            rest, status, errors = engine.finish()
            self.assertEqual((BANNER, 0, ""), (rest, status, errors))

    def test_before_initialisation(self):
        with Engine.started() as engine:
            self.assertEqual([], self.assert_ends_silently(engine, "before initialisation"))

    def test_when_idle(self):
        with Engine.ready() as engine:
            self.assertEqual([], self.assert_ends_silently(engine, "idle"))

    def test_during_a_search(self):
        for parameters in ("infinite", "ponder wtime 1000 btime 1000", "movetime 3600000", ""):
            with Engine.ready() as engine:
                engine.send(f"go {parameters}")
                engine.read_until("info multipv")
                self.assert_ends_silently(engine, f"go {parameters}")

    def test_right_behind_go(self):
        with Engine.ready() as engine:
            engine.send("go infinite")
            self.assert_ends_silently(engine, "right behind go")

    def test_with_a_held_back_answer(self):
        for parameters in ("infinite", "ponder"):
            with Engine.ready() as engine:
                engine.set_position(STALEMATE_FEN)
                engine.send(f"go {parameters}")
                self.assertEqual([], engine.fence())
                rest = self.assert_ends_silently(engine, f"pending after go {parameters}")
                self.assertEqual([], rest, parameters)

    def test_with_half_a_line_during_a_search(self):
        with Engine.ready() as engine:
            engine.send("go infinite")
            engine.read_until("info multipv")
            engine.send_text("sto")
            self.assert_ends_silently(engine, "half a line")

    def test_a_last_line_without_newline_is_still_a_line(self):
        with Engine.ready() as engine:
            engine.send_text("isready")
            rest, status, errors = engine.finish()
            self.assertEqual((["readyok"], 0, ""), (rest, status, errors))

    def test_input_from_a_file(self):
        with tempfile.TemporaryFile() as script:
            script.write(b"setoption name Hash value 16\ngo depth 3\nisready\n")
            script.seek(0)
            with Engine(stdin=script) as engine:
                rest, status, errors = engine.finish()
        self.assertEqual((0, ""), (status, errors))
        self.assertEqual(1, rest.count("readyok"), rest)
        # The end of the file is seen during the search or after it, so an answer may be missing.
        self.assertLessEqual(sum(line.startswith("bestmove") for line in rest), 1, rest)

    def test_input_from_nowhere(self):
        with open(os.devnull, "rb") as nothing, Engine(stdin=nothing) as engine:
            rest, status, errors = engine.finish()
            self.assertEqual((BANNER, 0, ""), (rest, status, errors))


if __name__ == "__main__":
    unittest.main()
