"""The tools for people at a terminal: showing a position, analysing it, running a test suite."""

import os
import re
import resource
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from engine import HANG_LIMIT, START_FEN, Twin, is_sanitizer_build, program_path
from tool import TOO_BAD, Tool, run_tool

KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
MATE = "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"
STALEMATE = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"
BARE_KINGS = "8/8/4k3/8/8/3K4/8/8 w - - 0 1"
BACK_RANK = "6k1/5ppp/8/8/8/8/8/K2R4 w - - 0 1"
BLACK_MATES = "k2r4/8/8/8/8/8/5PPP/6K1 b - - 0 1"
BLACK_IS_AHEAD = "4k3/8/8/3q4/8/8/8/4K3 b - - 0 1"

BAD_POSITIONS = [
    ("nonsense", "a rank has a character that is neither a man nor a digit from 1 to 8"),
    ("", "no '/' behind a rank"),
    ("8/8/8/8/8/8/8/8 w - - 0 1", "a colour has no king or more than one"),
    ("7k/8/8/8/8/8/8/K6R w - - 0 1", "the side that is not to move is in check"),
    ("4k3/8/8/8/8/8/8/P3K3 w - - 0 1", "a colour has more than eight pawns, or a pawn on the first or last rank"),
    ("4k3/8/8/8/8/8/8/4K3 x - - 0 1", "the side to move is neither 'w' nor 'b'"),
    ("4k3/8/8/8/8/8/8/4K3 w ? - 0 1", "the castling rights are neither '-' nor letters of 'KQkq' in this order"),
    ("4k3/8/8/8/8/8/8/4K3 w - e3 0 1", "the en-passant square is on the wrong rank for the side to move"),
]


class Show(unittest.TestCase):
    def show(self, *arguments):
        lines, status, errors = run_tool("show", *arguments)
        self.assertEqual((0, ""), (status, errors), arguments)
        return lines

    def moves(self, lines):
        """The moves listed, with the number that is said of them."""
        at = next(i for i, line in enumerate(lines) if " legal move" in line)
        number = int(lines[at].split()[0])
        return number, " ".join(lines[at + 1 : lines.index("", at)]).split()

    def pairs(self, lines):
        """Per row of the table its last two numbers: opening and endgame, White's view."""
        found = {}
        for line in lines:
            if match := re.fullmatch(r"(\S.*?\S)((?: +[+-]\d+\.\d\d){2,})", line):
                found[match[1]] = [round(100 * float(word)) for word in match[2].split()][-2:]
        return found

    def test_the_board_is_drawn_from_whites_side(self):
        lines = self.show(KIWIPETE)
        self.assertEqual(
            [
                "8  r . . . k . . r",
                "7  p . p p q p b .",
                "6  b n . . p n p .",
                "5  . . . P N . . .",
                "4  . p . . P . . .",
                "3  . . N . . Q . p",
                "2  P P P B B P P P",
                "1  R . . . K . . R",
                "",
                "   a b c d e f g h",
                "",
                "White to move",
                KIWIPETE,
            ],
            lines[:13],
        )

    def test_the_start_position_is_the_default(self):
        self.assertEqual(self.show(START_FEN), self.show())
        self.assertEqual(self.show(START_FEN), self.show(*START_FEN.split()))

    def test_moves_are_in_algebraic_notation(self):
        number, moves = self.moves(self.show(START_FEN))
        pawns = [f"{file}{rank}" for file in "abcdefgh" for rank in "34"]
        self.assertEqual(sorted(["Na3", "Nc3", "Nf3", "Nh3", *pawns]), moves)
        self.assertEqual(20, number)
        with Twin() as twin:
            for fen in (KIWIPETE, BACK_RANK, BLACK_MATES, MATE, STALEMATE):
                number, moves = self.moves(self.show(fen))
                twin.set_position(fen)
                self.assertEqual(len(twin.moves()), len(set(moves)), fen)
                self.assertEqual(number, len(moves), fen)

    def test_no_line_is_longer_than_eighty_characters(self):
        for fen in (START_FEN, KIWIPETE):
            self.assertLessEqual(max(map(len, self.show(fen))), 80, fen)

    def test_the_side_to_move_and_the_end_of_the_game(self):
        for fen, text in (
            (START_FEN, "White to move"),
            (BLACK_MATES, "Black to move"),
            ("4k3/8/8/8/8/8/8/4RK2 b - - 0 1", "Black to move, in check"),
            (MATE, "Checkmate: Black has won"),
            (STALEMATE, "Stalemate: Black cannot move"),
        ):
            self.assertIn(text, self.show(fen), fen)

    def test_a_finished_game_has_a_result_and_no_evaluation(self):
        for fen, result in (
            (MATE, "0-1"),
            ("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1", "1-0"),
            (STALEMATE, "1/2-1/2"),
        ):
            lines = self.show(fen)
            self.assertEqual(["0 legal moves", "", f"result {result}"], lines[-3:], fen)
            self.assertFalse([line for line in lines if "evaluation" in line or "pawns" in line])
        for fen in (START_FEN, "4k3/8/8/8/8/8/4q3/4K3 w - - 0 1"):
            lines = self.show(fen)
            self.assertTrue(lines[-1].startswith("evaluation"), fen)
            self.assertFalse([line for line in lines if "result" in line], fen)

    def test_the_terms_add_up(self):
        for fen in (START_FEN, KIWIPETE, BACK_RANK, BLACK_MATES, BLACK_IS_AHEAD):
            pairs = self.pairs(self.show(fen))
            total = pairs.pop("total")
            self.assertEqual(8, len(pairs), fen)
            self.assertEqual(total, [sum(column) for column in zip(*pairs.values())], fen)
            sign = 1 if " w " in fen else -1
            self.assertEqual([20 * sign, 10 * sign], pairs["the move"], fen)

    def test_the_evaluation_is_that_of_inspect_from_whites_view(self):
        for fen in (START_FEN, KIWIPETE, BLACK_MATES, BLACK_IS_AHEAD, BARE_KINGS):
            with Tool("inspect") as tool:
                tool.send(fen)
                value = int(re.search(r'"final":(-?\d+)', tool.read_line())[1])
            value = value if " w " in fen else -value
            text = [line for line in self.show(fen) if line.startswith("evaluation")][0]
            self.assertEqual(f"{value / 100:+.2f}", text.split()[3], fen)

    def test_a_drawn_ending_is_said_to_be_one(self):
        lines = self.show("8/8/4k3/8/8/3KN3/8/8 w - - 0 1")
        self.assertIn("evaluation, White's view: +0.00   (scaled: hard to win, or a draw)", lines)


class Analyse(unittest.TestCase):
    ROW = re.compile(
        r" +(?P<depth>\d+)(?P<number> +[1-4])? +(?P<bound>[<>]=)?(?P<score>[+-]\d+\.\d\d|#-?\d+) +(?P<nodes>\d+)"
        r" +(?P<nps>\d+|-) +(?P<time>\d+\.\d\d)  (?P<line>\S.*)"
    )

    def analyse(self, *arguments, reason=None):
        """The rows and the best move; the reason is what stands before the move, if anything."""
        lines, status, errors = run_tool("analyse", *arguments)
        self.assertEqual((0, ""), (status, errors), arguments)
        end = lines.index("")
        self.assertEqual([reason] if reason else [], lines[end + 1 : -1], arguments)
        rows = [self.ROW.fullmatch(line) for line in lines[1:end]]
        self.assertNotIn(None, rows, lines)
        number = "no " if rows[0]["number"] else ""
        self.assertEqual(f"depth {number}score nodes nps time line".split(), lines[0].split())
        return rows, lines[-1].removeprefix("best move ")

    def test_a_line_for_each_iteration(self):
        for fen in (START_FEN, KIWIPETE, BLACK_IS_AHEAD):
            rows, best = self.analyse("--depth", 6, fen)
            self.assertEqual(list(range(1, 7)), [int(row["depth"]) for row in rows], fen)
            nodes = [int(row["nodes"]) for row in rows]
            self.assertEqual(sorted(nodes), nodes, fen)
            self.assertEqual(best, rows[-1]["line"].split()[0], fen)
            self.assertEqual([None] * 6, [row["bound"] for row in rows], fen)

    def test_the_result_is_that_of_the_engine(self):
        rows, _ = self.analyse("--depth", 7, KIWIPETE)
        again, _ = self.analyse("--depth", 7, KIWIPETE)
        same = [(row["nodes"], row["score"], row["line"]) for row in rows]
        self.assertEqual(same, [(row["nodes"], row["score"], row["line"]) for row in again])

    def test_lines_are_legal_moves_in_algebraic_notation(self):
        rows, _ = self.analyse("--depth", 5, KIWIPETE)
        moves = run_tool("show", KIWIPETE)[0]
        legal = " ".join(moves).split()
        for row in rows:
            self.assertIn(row["line"].split()[0], legal)

    def test_mate_is_counted_in_moves_from_whites_view(self):
        for fen, score, move in ((BACK_RANK, "#1", "Rd8#"), (BLACK_MATES, "#-1", "Rd1#")):
            rows, best = self.analyse("--depth", 4, fen, reason="the mate is proven")
            self.assertEqual((score, move, move), (rows[-1]["score"], rows[-1]["line"], best), fen)

    def test_scores_are_whites_view(self):
        rows, _ = self.analyse("--depth", 5, BLACK_IS_AHEAD)
        self.assertLess(float(rows[-1]["score"]), -5)

    def test_several_lines_stand_best_first(self):
        rows, best = self.analyse("--depth", 5, "--multipv", 3, KIWIPETE)
        self.assertEqual([depth for depth in range(1, 6) for _ in range(3)], [int(row["depth"]) for row in rows])
        for at in range(0, len(rows), 3):
            group = rows[at : at + 3]
            scores = [float(row["score"]) for row in group]
            self.assertEqual(sorted(scores, reverse=True), scores)
            self.assertEqual(3, len({row["line"].split()[0] for row in group}))
            self.assertEqual([1, 2, 3], [int(row["number"]) for row in group])
        self.assertEqual(best, rows[-3]["line"].split()[0])

    def test_a_single_line_has_no_number(self):
        rows, _ = self.analyse("--depth", 2, KIWIPETE)
        self.assertEqual([None, None], [row["number"] for row in rows])

    def test_a_proven_mate_ends_the_search(self):
        """Not further away than the iteration is deep, and no iteration later than that."""
        for fen, plies in (
            (BACK_RANK, 1),
            (BLACK_MATES, 1),
            ("8/8/8/8/8/5k2/4q3/6K1 w - - 0 1", 2),
            ("k7/8/2K5/8/8/8/8/1R6 w - - 0 1", 3),
            ("7k/8/8/8/8/8/1R6/R3K3 w - - 0 1", 3),
            ("7k/8/5K2/8/8/8/1R6/8 b - - 0 1", 4),
        ):
            with Tool("analyse", "--time", 100000, fen) as tool:
                lines, status, errors = tool.finish()
            self.assertEqual((0, ""), (status, errors), fen)
            rows = [row for row in map(self.ROW.fullmatch, lines) if row]
            mate = abs(int(rows[-1]["score"].removeprefix("#")))
            side_mates = (rows[-1]["score"][1] != "-") == (" w " in fen)
            self.assertEqual(plies, 2 * mate - 1 if side_mates else 2 * mate, fen)
            self.assertGreaterEqual(int(rows[-1]["depth"]), plies, fen)
            for row in rows[:-1]:
                proven = row["score"] == rows[-1]["score"] and int(row["depth"]) >= plies
                self.assertFalse(proven and not row["bound"], (fen, row[0]))

    def test_lines_that_are_no_mates_are_searched_on(self):
        rows, best = self.analyse("--depth", 5, "--multipv", 2, BACK_RANK)
        self.assertEqual((5, "Rd8#"), (int(rows[-1]["depth"]), best))
        self.assertEqual(("#1", "1"), (rows[-2]["score"], rows[-2]["number"].strip()))

    def test_an_only_move_is_searched_to_depth_4_at_most(self):
        fen = "k7/8/8/8/8/8/8/1R2K3 b - - 0 1"
        for arguments, depth in (
            (("--time", 100000), 4),
            (("--depth", 20), 4),
            (("--depth", 2), 2),
        ):
            rows, best = self.analyse(*arguments, fen, reason="the only legal move")
            self.assertEqual((depth, "Ka7"), (int(rows[-1]["depth"]), best), arguments)

    def test_a_level_changes_the_search_and_its_depth(self):
        for level, depth in ((0, 1), (2, 5)):
            rows, _ = self.analyse("--time", 100000, "--level", level, KIWIPETE)
            self.assertEqual(depth, int(rows[-1]["depth"]))
        full, _ = self.analyse("--depth", 5, "--level", 10, KIWIPETE)
        self.assertEqual(full[-1][0][:28], self.analyse("--depth", 5, KIWIPETE)[0][-1][0][:28])
        self.assertNotEqual(full[-1]["nodes"], rows[-1]["nodes"])

    def test_several_threads_search_and_end(self):
        for threads in (2, 4):
            rows, best = self.analyse("--depth", 9, "--threads", threads, "--hash", 16, KIWIPETE)
            self.assertEqual(9, int(rows[-1]["depth"]))
            self.assertIn(best, " ".join(run_tool("show", KIWIPETE)[0]).split())
            self.assertEqual(0, int(rows[-1]["nodes"]) % threads)

    @unittest.skipIf(
        is_sanitizer_build(program_path("ZAR_X3_TOOLS")), "a sanitizer needs the whole address space"
    )
    def test_the_size_of_the_table(self):
        def limit_memory():
            resource.setrlimit(resource.RLIMIT_AS, (400 << 20, 400 << 20))

        for megabytes, expected in ((16, (0, "")), (1024, (1, "X-Error 7EU1MA1\n"))):
            arguments = ("analyse", "--depth", 1, "--hash", megabytes, START_FEN)
            with Tool(*arguments, preexec_fn=limit_memory) as tool:
                self.assertEqual(expected, tool.finish()[1:])

    def test_fewer_moves_than_lines(self):
        rows, _ = self.analyse("--depth", 2, "--multipv", 4, "7k/8/8/8/8/8/R7/7K b - - 0 1")
        self.assertEqual([1, 1, 1, 2, 2, 2], [int(row["depth"]) for row in rows])
        self.assertEqual([1, 2, 3] * 2, [int(row["number"]) for row in rows])

    def test_a_time_ends_the_search(self):
        rows, best = self.analyse("--time", "0.05", START_FEN)
        self.assertTrue(rows)
        self.assertIn(best, " ".join(run_tool("show")[0]).split())

    def test_an_interrupt_ends_the_search_with_its_best_move(self):
        with Tool("analyse", "--time", 100000, START_FEN) as tool:
            tool.read_until("    3 ")
            tool.interrupt()
            rest, status, errors = tool.finish()
        self.assertEqual((0, ""), (status, errors))
        self.assertRegex(rest[-1], "^best move [a-hN]")

    def test_a_finished_game_is_not_searched(self):
        for fen, word in ((MATE, "checkmate"), (STALEMATE, "stalemate")):
            self.assertEqual(([f"{word}, no move to search"], 0, ""), run_tool("analyse", fen), fen)

    def test_nothing_is_written_over_where_there_is_no_terminal(self):
        with Tool("analyse", "--depth", 9, KIWIPETE) as tool:
            lines, _, _ = tool.finish()
        self.assertNotIn("\x1b", "".join(lines))
        self.assertNotIn("\r", "".join(lines))


class Epd(unittest.TestCase):
    ROW = re.compile(
        r"(?P<begin>.*depth +\d+) +(?P<time>\d+\.\d\d) s +(?P<nodes>\d+) nodes(?P<end>  .*)"
    )

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "suite.epd"

    def epd(self, text, *arguments):
        self.path.write_text(text, encoding="latin-1")
        return run_tool("epd", self.path, *arguments)

    def test_solved_and_failed_positions_are_counted(self):
        back_rank, black = BACK_RANK.removesuffix(" 0 1"), BLACK_MATES.removesuffix(" 0 1")
        lines, status, errors = self.epd(
            f'# mates in one\n{back_rank} bm Rd8#; id "back rank";\n'
            f"{black} am Rd1;\n\n"
            f"{black} bm Rd1+ Kb8; am Ka7;\n"
            f"{back_rank} bm Kb2;\n",
            "--depth",
            4,
        )
        self.assertEqual((0, ""), (status, errors))
        rows = [self.ROW.fullmatch(line) for line in lines[:-3]]
        self.assertNotIn(None, rows, lines)
        self.assertEqual(
            [
                "   2  solved  Rd8#    depth  4  bm Rd8#  back rank",
                "   3  failed  Rd1#    depth  4  am Rd1#",
                "   5  solved  Rd1#    depth  4  bm Rd1# Kb8 am Ka7",
                "   6  failed  Rd8#    depth  4  bm Kb2",
            ],
            [row["begin"] + row["end"] for row in rows],
        )
        self.assertEqual(["", "2 of 4 solved (50.0 %)"], [lines[-3], lines[-1]])
        total = re.fullmatch(r"(\d+) nodes in (\d+\.\d\d) s", lines[-2])
        self.assertEqual(sum(int(row["nodes"]) for row in rows), int(total[1]))
        seconds = sum(float(row["time"]) for row in rows)
        self.assertAlmostEqual(seconds, float(total[2]), delta=0.01 * len(rows))

    def test_the_nodes_are_those_of_the_analysis(self):
        lines, _, _ = self.epd(f"{KIWIPETE} am a3;\n", "--depth", 6)
        analysis, _, _ = run_tool("analyse", "--depth", 6, KIWIPETE)
        self.assertEqual(analysis[-3].split()[2], self.ROW.fullmatch(lines[0])["nodes"])

    def test_the_status_is_1_when_nothing_is_solved(self):
        for text, expected in (
            (f"{BACK_RANK} am Rd8;\n" * 2, (1, "0 of 2 solved (0.0 %)")),
            (f"{BACK_RANK} am Rd8;\n{BACK_RANK} bm Rd8;\n", (0, "1 of 2 solved (50.0 %)")),
        ):
            lines, status, errors = self.epd(text, "--depth", 2)
            self.assertEqual((*expected, ""), (status, lines[-1], errors), text)

    def test_an_interrupt_ends_it_with_the_summary_so_far(self):
        self.path.write_text(f"{BACK_RANK} bm Rd8;\n{KIWIPETE} bm O-O;\n{KIWIPETE} bm a3;\n")
        with Tool("epd", "--time", 100000, self.path) as tool:
            first = tool.read_line()
            tool.interrupt()
            rest, status, errors = tool.finish()
        nodes = self.ROW.fullmatch(first)["nodes"]
        self.assertEqual((130, ""), (status, errors))
        self.assertEqual("1 of 1 solved (100.0 %), 2 not searched", rest[-1])
        self.assertEqual("", rest[0])
        self.assertRegex(rest[1], rf"^{nodes} nodes in \d+\.\d\d s$")

    def test_an_interrupt_in_the_first_position(self):
        self.path.write_text(f"{KIWIPETE} bm O-O;\n")
        main, terminal = os.openpty()
        self.addCleanup(os.close, main)
        child = subprocess.Popen(
            [program_path("ZAR_X3_TOOLS"), "epd", "--time", "100000", self.path], stdout=terminal
        )
        os.close(terminal)
        output = os.read(main, 1)  # the bar: it is about to search
        child.send_signal(signal.SIGINT)
        self.assertEqual(130, child.wait(HANG_LIMIT))
        while not output.endswith(b"not searched\r\n"):
            output += os.read(main, 65536)  # an error at its end
        self.assertIn(b"0 nodes in 0.00 s\r\n0 of 0 solved (0.0 %), 1 not searched\r\n", output)

    def test_a_suite_may_come_through_standard_input(self):
        text = f"\xef\xbb\xbf{BACK_RANK} bm Rd8;\r\n"
        lines, status, _ = run_tool("epd", "--depth", 2, "-", text=text)
        self.assertEqual((0, "1 of 1 solved (100.0 %)"), (status, lines[-1]))
        lines, status, errors = run_tool("epd", "-", text="nonsense\n")
        fault = "standard input:1: a rank has a character that is neither"
        self.assertEqual(([], TOO_BAD), (lines, status))
        self.assertIn(f"zar-x3-tools: {fault}", errors)

    def test_a_time_for_each_position(self):
        lines, status, _ = self.epd(f"{BACK_RANK} bm Rd8;\n", "--time", "0.05")
        self.assertEqual((0, "1 of 1 solved (100.0 %)"), (status, lines[-1]))

    def test_a_fault_is_named_with_its_line_before_anything_is_searched(self):
        good = f"{BACK_RANK} bm Rd8;\n"
        for text, fault in (
            (good + f"{BACK_RANK} bm Rd9;\n", ":2: bm: 'Rd9' is no move in standard algebraic notation"),
            (good + good + f"{BACK_RANK} am Qd8;\n", ":3: am: 'Qd8' is no legal move"),
            (f"{BACK_RANK} id \"x\";\n", ":1: neither bm nor am is there"),
            (good + "nonsense\n", f":2: {BAD_POSITIONS[0][1]}"),
            ("# nothing\n", ": no position in it"),
        ):
            lines, status, errors = self.epd(text)
            self.assertEqual(([], 2), (lines, status), text)
            self.assertEqual(f"zar-x3-tools: {self.path}{fault}\n", errors)

    def test_a_file_that_is_not_there(self):
        lines, status, errors = run_tool("epd", self.path)
        self.assertEqual(([], 2), (lines, status))
        self.assertEqual(f"zar-x3-tools: {self.path}: cannot be read\n", errors)


class BadInput(unittest.TestCase):
    def test_a_bad_position_is_one_line_and_status_2(self):
        for fen, fault in BAD_POSITIONS:
            for arguments in (("show",), ("analyse", "--depth", 1)):
                lines, status, errors = run_tool(*arguments, fen)
                self.assertEqual(([], 2), (lines, status), (arguments, fen))
                self.assertEqual(f"zar-x3-tools: FEN '{fen}': {fault}\n", errors, arguments)

    def test_wrong_arguments_are_one_line_that_names_them(self):
        for arguments, fault in (
            ((), "no command is named"),
            (("nonsense",), "unknown command 'nonsense'"),
            (("nonsense", "--help"), "unknown command 'nonsense'"),
            (("--nonsense", "show"), "unknown option '--nonsense'"),
            (("book",), "no command behind 'book'"),
            (("book", "nonsense"), "unknown command 'nonsense'"),
            (("show", "--nonsense"), "--nonsense"),
            (("analyse", "--depth", "0"), "--depth: '0' is no number from 1 to 49"),
            (("analyse", "--depth", "x"), "--depth: 'x' is no number from 1 to 49"),
            (("analyse", "--depth", "50"), "--depth: '50' is no number from 1 to 49"),
            (("analyse", "--depth", "0x3"), "--depth: '0x3' is no number from 1 to 49"),
            (("analyse", "--depth", "2.5"), "--depth: '2.5' is no number from 1 to 49"),
            (("analyse", "--depth"), "--depth"),
            (("analyse", "--time", "0"), "--time: '0' is no number from 0.001 to 1e+06"),
            (("analyse", "--time", "nan"), "--time: 'nan' is no number from 0.001 to 1e+06"),
            (("analyse", "--time", "1", "--depth", "1"), "--time excludes --depth"),
            (("analyse", "--multipv", "5"), "--multipv: '5' is no number from 1 to 4"),
            (("analyse", "--threads", "0"), "--threads: '0' is no number from 1 to 4"),
            (("analyse", "--hash", "8"), "--hash: '8' is no number from 16 to 1024"),
            (("epd", "--level", "11", "x.epd"), "--level: '11' is no number from 0 to 10"),
            (("epd",), "FILE is required"),
            (("perft",), "DEPTH is required"),
            (("perft", "31"), "DEPTH: '31' is no number from 0 to 30"),
            (("book", "check", "one", "two"), "two"),
        ):
            lines, status, errors = run_tool(*arguments)
            self.assertEqual(([], TOO_BAD), (lines, status), arguments)
            self.assertRegex(errors, r"^zar-x3-tools: [^\n]*\n$", arguments)
            self.assertIn(fault, errors, arguments)

    def test_a_number_with_a_zero_in_front_is_decimal(self):
        self.assertEqual((["1"], 0, ""), run_tool("perft", "00"))
        lines, status, _ = run_tool("analyse", "--depth", "010", BARE_KINGS)
        self.assertEqual((0, "10"), (status, lines[-3].split()[0]))

    def test_help_is_everywhere(self):
        for command, word in (
            ((), "analyse"),
            (("perft",), "--divide"),
            (("inspect",), "--level"),
            (("show",), "FEN"),
            (("analyse",), "--multipv"),
            (("analyze",), "--multipv"),
            (("epd",), "--time"),
            (("book",), "make"),
            (("book", "make"), "LINES"),
            (("book", "show"), "FEN"),
            (("book", "check"), "FILE"),
        ):
            lines, status, errors = run_tool(*command, "--help")
            self.assertEqual((0, ""), (status, errors), command)
            self.assertIn(word, "\n".join(lines), command)
            self.assertEqual((lines, status, errors), run_tool(*command, "-h"), command)

    def test_analyse_has_two_spellings(self):
        for spelling in ("analyse", "analyze"):
            lines, status, errors = run_tool(spelling, "--depth", 1, BACK_RANK)
            self.assertEqual((0, "", "best move Rd8#"), (status, errors, lines[-1]), spelling)


if __name__ == "__main__":
    unittest.main()
