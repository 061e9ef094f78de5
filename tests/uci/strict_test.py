"""What only "zar-x3 --strict" does: plain UCI, and errors that it lives on after."""

import re
import unittest

from engine import START_FEN, Engine, Twin
from report import CURRMOVE_LINE, HASHFULL_LINE

_ILLEGAL = "k7/8/8/8/8/8/8/RK6 w - - 0 1"  # Black is in check and not to move
_PV = re.compile(
    r"info depth (\d+) seldepth (\d+) multipv (\d) score (cp|mate) -?\d+( (lower|upper)bound)?"
    r" nodes \d+ nps \d+ hashfull \d+ time \d+ pv [a-h][1-8].*"
)


def strict(**options):
    """A strict engine that has its options, and has said nothing about them."""
    engine = Engine(strict=True)
    for name, value in {"Hash": 16, **options}.items():
        engine.set_option(name.replace("_", " "), value)
    assert engine.fence() == []
    return engine


def search(engine, go):
    """The lines with variations, and the answer. Others come once a second."""
    *lines, answer = engine.go(go)
    return [line for line in lines if " pv " in line], answer


def without_numbers(lines):
    return [re.sub(r"(nps|time) \d+", "", line) for line in lines if " currmove" not in line]


class Output(unittest.TestCase):
    def test_nothing_is_said_before_uci(self):
        with strict() as engine:
            engine.send("uci")
            self.assertEqual("id name ZAR-X3 64Bit", engine.read_line())
            engine.send("setoption name ZARXLoadStructure value 20")
            self.assertEqual("uciok", engine.fence()[-1])

    def test_a_search_prints_whole_lines_and_bestmove_whatever_the_options_say(self):
        for options in ({}, {"TLCV_fix": "true"}, {"MultiPV": 3}, {"Threads": 2}):
            with self.subTest(options=options), strict(**options) as engine:
                *lines, answer = engine.go("depth 6")
                for line in lines:
                    if not (CURRMOVE_LINE.fullmatch(line) or HASHFULL_LINE.fullmatch(line)):
                        self.assertRegex(line, _PV)
                self.assertRegex(answer, "^bestmove [a-h]")

    def test_extra_info_is_in_info_strings(self):
        with strict(Search_Info="false") as engine:
            engine.set_option("Extra Info", "true")
            engine.fence()
            lines = engine.go("depth 3")
            self.assertEqual(4, len(lines))
            for line in lines[:-1]:
                self.assertTrue(line.startswith("info string "), line)

    def test_a_warning_is_an_info_string(self):
        with strict() as engine:
            engine.set_position("BBBBBBBB/BB5B/8/8/8/8/8/K1k5 w - - 0 1")
            self.assertEqual(["info string X-Error 2EB1IP4"] * 2, engine.fence())

    def test_mates_are_told_as_mates(self):
        with strict() as engine:
            for fen, score in (
                ("7k/8/5K2/6Q1/8/8/8/8 w - - 0 1", "mate 1"),
                ("7k/6pp/8/8/8/8/8/RK6 b - - 0 1", None),
            ):
                engine.set_position(fen)
                lines, _ = search(engine, "depth 4")
                scores = [re.search(r"score (\w+ -?\d+)", line).group(1) for line in lines]
                if score is not None:
                    self.assertEqual(score, scores[-1])
                for text in scores:
                    self.assertLess(abs(int(text.split()[1])), 20_000, text)

    def test_the_last_lines_are_whole_and_never_show_a_first_move_twice(self):
        for lines_shown in (1, 2, 3, 4):
            with strict(MultiPV=lines_shown) as engine:
                for fen in (None, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -"):
                    for go in ("depth 5", "nodes 9000", "movetime 30", "nodes 1"):
                        with self.subTest(lines=lines_shown, fen=fen, go=go):
                            self.check_tables(engine, fen, go, lines_shown)

    def check_tables(self, engine, fen, go, lines_shown):
        """What a program that keeps the newest line of each number has at any time."""
        engine.set_position(fen)
        lines, answer = search(engine, go)
        shown = {}
        for index, line in enumerate(lines):
            number = int(re.search(r"multipv (\d)", line).group(1))
            shown[number] = line.split(" pv ")[1].split()
            following = lines[index + 1] if index + 1 < len(lines) else "multipv 1"
            if "multipv 1" in following:
                first_moves = [moves[0] for moves in shown.values()]
                self.assertEqual(len(first_moves), len(set(first_moves)), line)
        if go.startswith("depth"):
            self.assertEqual(lines_shown, len(shown))
        self.assertEqual(shown[1][0], answer.split()[1])
        self.assertEqual(shown[1][1:2], answer.split()[3:4])

    def test_an_infinite_ponder_search_is_answered(self):
        with strict() as engine:
            engine.send("go ponder infinite")
            engine.read_until("info depth 3")
            engine.send("stop")
            self.assertRegex(engine.read_until("bestmove")[-1], "^bestmove [a-h]")


class Go(unittest.TestCase):
    def test_a_bare_go_searches(self):
        with strict() as engine:
            engine.send("go")
            engine.read_until("info depth 4")
            engine.send("stop")
            engine.read_until("bestmove")

    def test_nodes_end_the_search_at_a_look_at_the_clock(self):
        for threads in (1, 3):
            with strict(Threads=threads) as engine:
                for nodes in (1, 1000, 20_000, 10_000_000_000_000_000_000_000, 300_000):
                    if nodes > 10**9:
                        self.assertEqual([], self.stopped_at_once(engine, nodes))
                        continue
                    lines, _ = search(engine, f"nodes {nodes}")
                    reached = int(re.search(r"nodes (\d+)", lines[-1]).group(1))
                    self.assertLess(reached, nodes + threads * 4096 + 4096, nodes)
                    self.assertGreater(reached, nodes // 8 - 1000, nodes)

    def stopped_at_once(self, engine, nodes):
        """The answers that came before "stop"."""
        engine.send(f"go nodes {nodes}")
        engine.read_until("info depth 6")
        early = [line for line in engine.fence() if line.startswith("bestmove")]
        engine.send("stop")
        engine.read_until("bestmove")
        return early

    def test_nodes_do_not_end_an_infinite_search(self):
        with strict() as engine:
            engine.send("go infinite nodes 1")
            engine.read_until("info depth 6")
            engine.send("stop")
            engine.read_until("bestmove")

    def test_searchmoves_restrict_the_root(self):
        for lines_shown in (1, 2, 4):
            with strict(MultiPV=lines_shown) as engine:
                for moves in ("a2a3", "h2h4 b1a3", "g1h3 a2a4 f2f3"):
                    lines, answer = search(engine, f"depth 4 searchmoves {moves}")
                    shown = {line.split(" pv ")[1].split()[0] for line in lines}
                    self.assertLessEqual(shown, set(moves.split()), moves)
                    self.assertIn(answer.split()[1], moves.split())
                    expected = min(lines_shown, len(moves.split()))
                    self.assertIn(f"multipv {expected} ", lines[-1])
                    self.assertRegex(lines[-1], "^info depth 4 ")

    def test_searchmoves_may_stand_in_front(self):
        with strict() as engine:
            lines, answer = search(engine, "searchmoves e2e3 e2e4 depth 2")
            self.assertIn(answer.split()[1], ("e2e3", "e2e4"))
            self.assertRegex(lines[-1], "^info depth 2 ")

    def test_a_position_without_a_move_is_answered(self):
        with strict() as engine:
            engine.set_position("k7/2Q5/1K6/8/8/8/8/8 b - - 0 1")
            self.assertEqual(["bestmove (none)"], engine.go("depth 3"))


class Input(unittest.TestCase):
    def test_white_space_is_understood(self):
        with strict() as engine:
            engine.send_text("  position \t startpos   moves  e2e4 \r\n\tisready\t\r\n  go  depth 2 \r\n")
            lines = engine.read_until("bestmove")
            self.assertEqual("readyok", lines[0])
            with Twin() as twin:
                twin.set_position(None, ["e2e4"])
                self.assertIn(lines[-1].split()[1], twin.moves())

    def test_an_option_keeps_the_blanks_inside_its_value(self):
        with strict() as engine:
            engine.send("setoption  name  Book File  value  my  book.bin ")
            # One blank ends the word "value"; what is behind it is the value.
            self.assertIn(
                "option name Book File type string default  my  book.bin", engine.shown_options()
            )
            engine.send("setoption name Book File value <empty>")
            self.assertIn("option name Book File type string default ", engine.shown_options())

    def test_unknown_commands_are_ignored(self):
        with strict() as engine:
            engine.send("", "   ", "debug on", "debug", "register later", "hello", "go2", "position2")
            self.assertEqual([], engine.fence())

    def assert_refused(self, engine, line):
        """One error line, and the position is the one before."""
        engine.send(line)
        told = engine.fence()
        self.assertEqual(1, len(told), (line, told))
        self.assertRegex(told[0], "^info string ERROR: [a-z]", line)
        self.assertEqual(self.before, without_numbers(self.analysis(engine)), line)

    @staticmethod
    def analysis(engine):
        engine.send("ucinewgame")
        return engine.go("depth 3")

    def test_what_cannot_be_used_is_told_and_changes_nothing(self):
        with strict() as engine:
            engine.set_position("8/8/8/3k4/8/3K4/3P4/8 w - - 0 1", ["d3e3"])
            self.before = without_numbers(self.analysis(engine))
            for line in (
                "position",
                "position moves e2e4",
                "position fen",
                "position fen moves",
                "position fen 8/8/8/8/8/8/8/8 w - - 0 1",
                "position fen rnbqkbnr/pppppppp/9/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
                f"position fen {_ILLEGAL}",
                f"position fen {_ILLEGAL} moves a1a2",
                f"position fen {START_FEN} moves e2e4 e2e4",
                "position startpos moves e2e5",
                "position startpos moves e2e4 e7e5 0000",
                "position startpos e2e4",
                "position startpos moves e7e8q",
                "position fen 8/4P3/8/8/8/5k2/8/7K w - - 0 1 moves e7e8queen",
                "go depth",
                "go movetime x",
                "go wtime 5 btime",
                "go nodes",
                "go mate two",
                "go depth 3x",
                "go depth 3 searchmoves e2e4",
                "go depth 3 searchmoves d3e4n",
                "setoption",
                "setoption name",
                "setoption name Hash",
                "setoption name Hash value",
                "setoption name Hash value 15",
                "setoption name Hash value128",
                "setoption name Own Book valuexfalse",
                "setoption name Hash value 1025",
                "setoption name Hash value 64MB",
                "setoption name Threads value 99999999999999999999",
                "setoption name Own Book value maybe",
                "setoption name Null Move Pruning value yes",
                "setoption name UCI_Elo value 1500",
                "setoption value 16 name Hash",
            ):
                with self.subTest(line=line):
                    self.assert_refused(engine, line)

    def test_lines_of_any_length_are_read(self):
        with strict() as engine:
            for words in (" " * 65_000, "x" * 65_535, "position fen " + "8" * 65_000):
                engine.send(words)
            self.assertLessEqual(len(engine.fence()), 1)
            engine.send("go depth 2 searchmoves" + " a2a3 a2a4" * 6000)
            self.assertRegex(engine.read_until("bestmove")[-1], "^bestmove a2a[34]")

    def test_options_are_set_as_usual(self):
        with strict() as engine:
            for name, value in (
                ("Hash", 32),
                ("hash", 64),
                ("Threads", 2),
                ("MultiPV", 4),
                ("Own Book", "FALSE"),
                ("Ponder", "false"),
                ("Null Move Pruning", "Fail High"),
                ("Verify Search", "No"),
                ("Futility Margin", 0),
                ("ZARXST", 0),
            ):
                engine.set_option(name, value)
                self.assertEqual([], engine.fence(), name)
            shown = "\n".join(engine.shown_options())
            self.assertIn("Hash type spin default 64 ", shown)
            self.assertIn("Threads type spin default 2 ", shown)

    def test_a_legal_position_that_is_sent_next_is_taken(self):
        with strict() as engine:
            engine.set_position(_ILLEGAL)
            engine.set_position(None, ["e2e4"])
            self.assertEqual(1, len(engine.fence()))
            with Twin() as twin:
                twin.set_position(None, ["e2e4"])
                self.assertIn(engine.go("depth 2")[-1].split()[1], twin.moves())


class TheSameSearch(unittest.TestCase):
    def test_depth_score_nodes_and_line_are_those_of_the_usual_mode(self):
        usual = re.compile(
            r"info multipv (\d) depth (\d+) score (\w+ -?\d+(?: \w+bound)?) time \d+ nodes (\d+) pv (.*)"
        )
        plain = re.compile(
            r"info depth (\d+) seldepth \d+ multipv (\d) score (\w+ -?\d+(?: \w+bound)?) nodes (\d+)"
            r" nps \d+ hashfull \d+ time \d+ pv (.*)"
        )
        with strict() as engine, Engine(strict=False) as other:
            other.send("setoption name Hash value 16", "go depth 8")
            lines = other.read_until("bestmove")
            found = [match.group(2, 1, 3, 4, 5) for match in map(usual.fullmatch, lines) if match]
            mine = [match.groups() for match in map(plain.fullmatch, engine.go("depth 8")) if match]
            self.assertEqual(found, mine)
            self.assertGreater(len(found), 8)


if __name__ == "__main__":
    unittest.main()
