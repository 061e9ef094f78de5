"""The engine as a Python program meets it: python-chess drives "zar-x3 --strict", and nothing that
the engine says makes it write a warning.

python-chess is no package of Debian 12. Without it this test is skipped.
"""

import contextlib
import io
import itertools
import logging
import os
import re
import shlex
import sys
import tempfile
import threading
import unittest
from pathlib import Path

from engine import HANG_LIMIT, program_path

try:
    import chess
    import chess.engine
    from chess.engine import Cp, Limit, Mate
except ImportError:
    print("skipped: python-chess is missing; 'pip install chess' gets it")
    sys.exit(77)

_FOLDER = Path(__file__).resolve().parent  # without an opening book
_GUI_PAGE = _FOLDER.parents[1] / "docs" / "gui.md"

# The main thread looks at its counts after so many nodes.
LOOK = 4096

# Position, moves to mate for the side to move (negative where it is mated).
MATES = [
    ("6k1/5ppp/8/8/8/8/8/K3R3 w - - 0 1", 1),
    ("7r/8/8/8/8/1k6/8/1K6 b - - 0 1", 1),
    ("kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", 2),
    ("r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1", 3),
    ("7r/8/8/8/8/1k6/8/K7 w - - 0 1", -1),
    ("k7/8/1KR5/8/8/8/8/8 b - - 0 1", -2),
]
MATED = "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"
STALEMATE = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"
ONE_MOVE = "7r/8/8/8/8/1k6/8/K7 w - - 0 1"
FENS = [
    chess.STARTING_FEN,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1",
]


class Log(logging.Handler):
    """Keeps what python-chess logs: the conversation, and its complaints apart."""

    def __init__(self):
        super().__init__(logging.DEBUG)
        self.lines = []
        self.complaints = []

    def emit(self, record):
        line = record.getMessage()
        self.lines.append(line)
        if record.levelno >= logging.WARNING:
            self.complaints.append(line)

    def talk(self, sign):
        """The lines that went one way: "<<" to the engine, ">>" from it."""
        halves = [line.partition(f": {sign} ") for line in self.lines]
        return [text for _, found, text in halves if found]


class PythonChess(unittest.TestCase):
    """An engine for each test. Whatever the test is about, no warning may have come at its end."""

    def setUp(self):
        self.log = Log()
        logger = chess.engine.LOGGER
        logger.setLevel(logging.DEBUG)
        logger.propagate = False
        logger.addHandler(self.log)
        self.addCleanup(logger.removeHandler, self.log)
        runner = shlex.split(os.environ.get("ZAR_X3_RUNNER", ""))
        self.engine = chess.engine.SimpleEngine.popen_uci(
            [*runner, program_path("ZAR_X3"), "--strict"], timeout=HANG_LIMIT, cwd=_FOLDER
        )
        self.addCleanup(self.engine.close)
        # An engine that never answers is closed, and the test that waits for it gets an exception.
        watchdog = threading.Timer(HANG_LIMIT, self.engine.close)
        watchdog.daemon = True
        watchdog.start()
        self.addCleanup(watchdog.cancel)
        self.engine.configure({"Hash": 16})

    def tearDown(self):
        self.engine.ping()
        self.assertEqual([], self.log.complaints[:3])
        self.engine.quit()

    def analyse(self, fen, limit, **settings):
        """What python-chess makes of a search, with the best move: a list with `multipv`."""
        with self.engine.analysis(chess.Board(fen), limit, game=object(), **settings) as analysis:
            best = analysis.wait()
            return analysis.multipv if "multipv" in settings else analysis.info, best


class Start(PythonChess):
    def test_nothing_is_said_before_the_first_command(self):
        heard = self.log.talk(">>")
        self.assertEqual(self.engine.id["name"], heard[0].removeprefix("id name "))
        for line in heard[: heard.index("uciok")]:
            self.assertRegex(line, "^(id|option) ")

    def test_the_options_have_their_types_and_ranges(self):
        hash_size = self.engine.options["Hash"]
        self.assertEqual(("spin", 16, 1024), (hash_size.type, hash_size.min, hash_size.max))
        self.assertEqual("check", self.engine.options["Own Book"].type)
        self.assertEqual("string", self.engine.options["Book File"].type)


class Playing(PythonChess):
    def test_a_game_with_a_clock_is_played(self):
        board = chess.Board()
        game = object()
        clock = Limit(white_clock=8, black_clock=8, white_inc=0.1, black_inc=0.1)
        for _ in range(24):
            result = self.engine.play(board, clock, game=game, info=chess.engine.INFO_ALL)
            self.assertIn(result.move, board.legal_moves, board.fen())
            self.assertEqual(result.move, result.info["pv"][0], board.fen())
            board.push(result.move)
        self.assertEqual(1, self.log.talk("<<").count("ucinewgame"))

    def test_a_position_without_moves_gets_none(self):
        for fen in (MATED, STALEMATE):
            with self.subTest(fen=fen):
                result = self.engine.play(chess.Board(fen), Limit(depth=4), game=object())
                self.assertIsNone(result.move)
                self.assertIsNone(result.ponder)

    def test_only_root_moves_are_played(self):
        board = chess.Board()
        for name in ("a2a3", "g1h3", "e2e4"):
            with self.subTest(move=name):
                move = chess.Move.from_uci(name)
                result = self.engine.play(board, Limit(depth=4), root_moves=[move])
                self.assertEqual(move, result.move)

    def test_a_ponder_hit_becomes_the_next_search(self):
        board = chess.Board()
        game = object()
        clock = Limit(white_clock=20, black_clock=20)
        result = self.engine.play(board, clock, game=game, ponder=True)
        hits = 0
        while hits < 2 and board.fullmove_number < 20:
            board.push(result.move)
            if board.is_game_over():
                break
            expected = result.ponder is not None
            board.push(result.ponder if expected else next(iter(board.legal_moves)))
            before = self.log.talk("<<").count("ponderhit")
            result = self.engine.play(board, clock, game=game, ponder=True)
            hits = self.log.talk("<<").count("ponderhit")
            self.assertEqual(before + expected, hits, board.fen())
            self.assertIn(result.move, board.legal_moves, board.fen())
        self.assertEqual(2, hits)

    def test_a_ponder_miss_is_stopped_and_the_true_position_searched(self):
        board = chess.Board()
        game = object()
        clock = Limit(white_clock=20, black_clock=20)
        result = self.engine.play(board, clock, game=game, ponder=True)
        self.assertIsNotNone(result.ponder)
        board.push(result.move)
        board.push(next(move for move in board.legal_moves if move != result.ponder))
        result = self.engine.play(board, clock, game=game, ponder=True)
        self.assertIn("stop", self.log.talk("<<"))
        self.assertNotIn("ponderhit", self.log.talk("<<"))
        self.assertIn(result.move, board.legal_moves, board.fen())

    def test_a_move_from_the_book_is_played(self):
        with tempfile.TemporaryDirectory() as folder:
            book = Path(folder) / "openings.bin"
            # One entry: the start position's key, the move a2a4, weight 1.
            book.write_bytes(bytes.fromhex("463b96181691fc9c 0218 0001 00000000"))
            self.engine.configure({"Book File": str(book), "Own Book": True})
            result = self.engine.play(chess.Board(), Limit(depth=6))
            self.assertEqual("a2a4", result.move.uci())
            self.engine.configure({"Own Book": False})
            result = self.engine.play(chess.Board(), Limit(depth=6))
            self.assertNotEqual("a2a4", result.move.uci())


class Analysing(PythonChess):
    def test_depth_is_kept_and_the_line_is_whole(self):
        for fen in FENS:
            with self.subTest(fen=fen):
                info, best = self.analyse(fen, Limit(depth=7))
                self.assertEqual(7, info["depth"])
                self.assertGreater(len(info["pv"]), 2)
                self.assertEqual(best.move, info["pv"][0])
                self.assertEqual(best.ponder, info["pv"][1])

    def test_time_ends_a_search(self):
        info, best = self.analyse(chess.STARTING_FEN, Limit(time=0.3))
        self.assertEqual(best.move, info["pv"][0])
        self.assertGreater(info["time"], 0)

    def test_nodes_end_a_search_at_the_next_look(self):
        for nodes in (1, 1000, 5000, 30_000, 100_000):
            for multipv in (1, 3):
                with self.subTest(nodes=nodes, multipv=multipv):
                    lines, _ = self.analyse(
                        chess.STARTING_FEN, Limit(nodes=nodes), multipv=multipv
                    )
                    self.assertLessEqual(max(line["nodes"] for line in lines), nodes + LOOK)
                    if nodes == 100_000:
                        self.assertGreater(max(line["nodes"] for line in lines), LOOK)

    def test_mates_are_mates(self):
        for fen, moves in MATES:
            with self.subTest(fen=fen):
                info, _ = self.analyse(fen, Limit(depth=8))
                self.assertEqual(Mate(moves), info["score"].relative)

    def test_go_mate_finds_the_mate(self):
        for fen, moves in MATES:
            if moves > 0:
                with self.subTest(fen=fen):
                    info, _ = self.analyse(fen, Limit(mate=moves))
                    self.assertEqual(Mate(moves), info["score"].relative)

    def test_other_scores_are_centipawns(self):
        info, _ = self.analyse("4k3/8/8/8/8/8/8/Q3K3 w - - 0 1", Limit(depth=1))
        self.assertIsInstance(info["score"].relative, Cp)
        self.assertGreater(info["score"].relative, Cp(300))
        self.assertLess(info["score"].relative, Cp(3000))

    def test_speed_depth_and_table_are_told(self):
        info, _ = self.analyse(chess.STARTING_FEN, Limit(depth=9))
        self.assertGreater(info["nps"], 1000)
        self.assertGreater(info["seldepth"], 9)
        self.assertIn(info["hashfull"], range(1001))

    def test_several_lines_begin_with_several_moves(self):
        limits = (Limit(depth=6), Limit(time=0.05), Limit(nodes=9000))
        for fen, limit, multipv in itertools.product(FENS, limits, (1, 2, 3, 4)):
            with self.subTest(fen=fen, limit=limit, multipv=multipv):
                lines, best = self.analyse(fen, limit, multipv=multipv)
                firsts = [line["pv"][0] for line in lines]
                self.assertEqual(multipv, len(firsts))
                self.assertEqual(multipv, len(set(firsts)), firsts)
                self.assertEqual(best.move, firsts[0])
                if limit.depth is not None:  # else a line may be from the depth before
                    scores = [line["score"].relative for line in lines]
                    self.assertEqual(sorted(scores, reverse=True), scores)

    def test_there_are_no_more_lines_than_moves(self):
        lines, _ = self.analyse(ONE_MOVE, Limit(depth=4), multipv=4)
        self.assertEqual(["a1b1"], [line["pv"][0].uci() for line in lines])

    def test_only_root_moves_are_analysed(self):
        moves = [chess.Move.from_uci(name) for name in ("a2a3", "b1a3", "h2h4")]
        for multipv in (1, 2, 4):
            with self.subTest(multipv=multipv):
                with self.engine.analysis(
                    chess.Board(), Limit(depth=6), multipv=multipv, root_moves=moves
                ) as analysis:
                    begun = [info["pv"][0] for info in analysis if "pv" in info]
                    firsts = [line["pv"][0] for line in analysis.multipv]
                self.assertLessEqual(set(begun), set(moves))
                self.assertEqual(min(multipv, 3), len(firsts))
                self.assertEqual(len(firsts), len(set(firsts)))

    def test_stop_ends_an_endless_analysis(self):
        for multipv in (1, 3):
            with self.subTest(multipv=multipv):
                with self.engine.analysis(chess.Board(FENS[1]), multipv=multipv) as analysis:
                    for info in analysis:
                        if info.get("depth", 0) >= 5:
                            break
                    analysis.stop()
                    best = analysis.wait()
                    firsts = [line["pv"][0] for line in analysis.multipv]
                self.assertIn("stop", self.log.talk("<<"))
                self.assertEqual(best.move, firsts[0])
                self.assertEqual(multipv, len(set(firsts)))

    def test_a_stop_at_once_still_has_a_move(self):
        board = chess.Board()
        for _ in range(20):
            with self.engine.analysis(board) as analysis:
                analysis.stop()
                best = analysis.wait()
            self.assertIn(best.move, board.legal_moves)


class Configuring(PythonChess):
    def test_options_act(self):
        self.engine.configure({"Difficulty Level": 1, "Threads": 2, "Hash": 32})
        info, _ = self.analyse(chess.STARTING_FEN, Limit(depth=8))
        self.assertEqual(3, info["depth"])
        self.engine.configure({"Difficulty Level": 10, "Threads": 1})
        info, _ = self.analyse(chess.STARTING_FEN, Limit(depth=8))
        self.assertEqual(8, info["depth"])

    def test_threads_do_not_change_what_is_said(self):
        self.engine.configure({"Threads": 3})
        lines, best = self.analyse(FENS[1], Limit(depth=8), multipv=3)
        self.assertEqual(8, lines[0]["depth"])
        self.assertEqual(3, len({line["pv"][0] for line in lines}))
        self.assertIn(best.move, chess.Board(FENS[1]).legal_moves)

    def test_no_option_brings_a_line_that_is_no_uci(self):
        self.engine.configure({"TLCV fix": True, "Extra Info": True, "Search Info": True})
        info, best = self.analyse(MATES[3][0], Limit(depth=8))
        self.assertEqual(Mate(3), info["score"].relative)
        self.assertEqual(best.move, info["pv"][0])

    def test_without_search_info_only_the_move_comes(self):
        self.engine.configure({"Search Info": False})
        info, best = self.analyse(chess.STARTING_FEN, Limit(depth=6))
        self.assertNotIn("pv", info)
        self.assertIsNotNone(best.move)

    def test_a_new_game_forgets_the_old_one(self):
        board = chess.Board(FENS[1])
        games = [object(), object()]
        nodes = []
        for game in (games[0], games[0], games[1]):
            info = self.engine.analyse(board, Limit(depth=8), game=game)
            nodes.append(info["nodes"])
        self.assertNotEqual(nodes[0], nodes[1])
        self.assertEqual(nodes[0], nodes[2])
        self.assertEqual(2, self.log.talk("<<").count("ucinewgame"))


class Recipe(unittest.TestCase):
    """The program of docs/gui.md that others are to paste."""

    def test_it_prints_what_the_page_says(self):
        page = _GUI_PAGE.read_text("utf-8")
        code = re.search(r"```python\n(.*?)```", page, re.DOTALL)[1]
        shown = re.search(r"\nIt prints .*\n\n((?:    .*\n)+)", page)[1]
        self.assertIn('["/usr/games/zar-x3", "--strict"]', code)
        runner = shlex.split(os.environ.get("ZAR_X3_RUNNER", ""))
        command = repr([*runner, program_path("ZAR_X3"), "--strict"])
        code = code.replace('["/usr/games/zar-x3", "--strict"]', command)
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            exec(compile(code, "gui.md", "exec"), {})
        expected = [line.strip() for line in shown.splitlines()]
        self.assertEqual(expected, printed.getvalue().splitlines())


if __name__ == "__main__":
    unittest.main()
