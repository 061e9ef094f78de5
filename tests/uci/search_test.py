"""Searches: mates are found, limits are kept, the same question gets the same answer."""

import unittest
from pathlib import Path

import report
from engine import START_FEN, STRICT, Engine, Twin, report_of
from report import best_move, last_depth, ponder_move, pv_lines, without_times

# Mates that a full search of every line has proved: position, moves to mate, every first move that
# mates as fast.
MATES = [
    ("6k1/5ppp/8/8/8/8/8/K3R3 w - - 0 1", 1, "e1e8"),
    ("rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2", 1, "d8h4"),
    ("r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4", 1, "h5f7"),
    ("7k/8/5K2/8/8/8/8/6Q1 w - - 0 1", 1, "g1g7"),
    ("k7/2P5/1K6/8/8/8/8/8 w - - 0 1", 1, "c7c8q c7c8r"),
    ("6rk/6pp/7N/8/8/8/8/K7 w - - 0 1", 1, "h6f7"),
    ("1n2kb1r/p4ppp/4q3/4p1B1/4P3/8/PPP2PPP/2KR4 w k - 0 1", 1, "d1d8"),
    ("7r/8/8/8/8/1k6/8/1K6 b - - 0 1", 1, "h8h1"),
    ("kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", 2, "a1a6"),
    ("8/5P1k/5K2/8/8/8/8/8 w - - 0 1", 2, "f7f8r"),
    ("4r3/pbpn2n1/1p1prp1k/8/2PP2PB/P5N1/2B2R1P/R5K1 w - - 0 1", 2, "f2f6"),
    ("2k5/8/1K6/8/8/8/8/7R w - - 0 1", 2, "h1d1"),
    ("8/8/8/8/8/2K5/7R/k7 w - - 0 1", 2, "c3b3"),
    ("r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1", 3, "f6a6"),
    ("5rk1/5Npp/8/3Q4/8/8/8/7K w - - 0 1", 3, "f7h6"),
    ("r1b1kb1r/pppp1ppp/5q2/4n3/3KP3/2N3PN/PPP4P/R1BQ1B1R b kq - 0 1", 3, "f8c5"),
    (
        "7k/7p/7K/8/8/8/8/1B5R w - - 0 1",
        3,
        "b1c2 b1d3 b1e4 h1h2 h1h3 h1h4 h1h5 h1f1 h1e1 h1d1 h1c1",
    ),
]

KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
ROOK_ENDING = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1"
PAWN_ENDING = "8/8/8/3k4/8/3K4/3P4/8 w - - 0 1"
ONE_MOVE_FEN = "7r/8/8/8/8/1k6/8/K7 w - - 0 1"
BLACK_FEN = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"


class Mates(unittest.TestCase):
    def test_mates_in_one_to_three_are_found(self):
        for fen, moves, first in MATES:
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                lines = engine.go("depth 8")
                last = pv_lines(lines)[-1]
                self.assertEqual(("mate", moves), (last.kind, last.value), fen)
                self.assertIn(best_move(lines), first.split(), fen)

    def test_go_mate_finds_mates_with_its_own_depth(self):
        for fen, moves, first in MATES:
            if moves > 1:
                continue
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                lines = engine.go("mate 1")
                self.assertEqual(1, last_depth(lines), fen)
                self.assertIn(best_move(lines), first.split(), fen)

    def test_mates_are_found_below_full_strength(self):
        for fen, moves, first in MATES:
            with self.subTest(fen=fen), Engine.ready(Difficulty_Level=4) as engine:
                engine.set_position(fen)
                lines = engine.go("depth 8")
                self.assertEqual(moves, pv_lines(lines)[-1].value, fen)
                self.assertIn(best_move(lines), first.split(), fen)


class TheAnswer(unittest.TestCase):
    """With several lines the move played is that of the line shown first."""

    def assert_first_line_is_played(self, fen, go, **options):
        with Engine.ready(**options) as engine:
            engine.set_position(fen)
            lines = engine.go(go)
        shown = [pv for pv in pv_lines(lines) if pv.multipv == 1]
        if not shown:
            return False  # stopped before all lines of depth 1 were known
        first = shown[-1]
        self.assertEqual(first.moves[0], best_move(lines), fen)
        if not STRICT:
            final = report.FINAL_LINE.fullmatch(lines[-2])
            self.assertEqual(first.moves[0], final.group(3), fen)
            self.assertEqual(first.value, int(final.group(2)), fen)
        self.assertEqual((*first.moves, None)[1], ponder_move(lines), fen)
        return True

    def test_is_the_line_shown_first(self):
        # Line 2 of the search, d4c6, is better than its line 1, b1c3.
        opening = "r1bqkb1r/pp1ppppp/2n2n2/8/3NP3/8/PPP2PPP/RNBQKB1R w KQkq - 0 1"
        self.assert_first_line_is_played(opening, "depth 8", MultiPV=3)
        for fen in (START_FEN, KIWIPETE, ROOK_ENDING, opening):
            for count in (2, 3, 4):
                for depth in range(2, 6):
                    with self.subTest(fen=fen, count=count, depth=depth):
                        self.assert_first_line_is_played(fen, f"depth {depth}", MultiPV=count)

    def test_is_that_of_a_search_cut_short_too(self):
        played = 0
        for fen in (START_FEN, KIWIPETE, ROOK_ENDING):
            for milliseconds in (20, 35, 50, 80, 400):
                with self.subTest(fen=fen, milliseconds=milliseconds):
                    go = f"movetime {milliseconds}"
                    played += self.assert_first_line_is_played(fen, go, MultiPV=4)
        self.assertGreater(played, 0)


class CrowdedPositions(unittest.TestCase):
    """Searches whose first iteration would take seconds to hours are answered all the same."""

    FENS = [
        line
        for line in (Path(__file__).parents[1] / "data" / "crowded.fen").read_text().splitlines()
        if not line.startswith("#")
    ]

    def test_are_answered(self):
        for threads, lines in ((1, 1), (1, 4), (4, 1), (4, 4)):
            with Engine.ready(Threads=threads, MultiPV=lines) as engine, Twin() as twin:
                # All of them with one thread and one line, the pawns in every way.
                for fen in self.FENS[: 5 if threads == lines == 1 else 2]:
                    twin.set_position(fen)
                    engine.set_position(fen)
                    for go, then in (
                        ("movetime 100", None),
                        ("wtime 1500 btime 1500", None),
                        ("infinite", "stop"),
                        ("ponder wtime 1000 btime 1000", "ponderhit"),
                    ):
                        with self.subTest(fen=fen, threads=threads, lines=lines, go=go):
                            engine.send(f"go {go}")
                            if then is not None:
                                engine.send(then)
                            answer = engine.read_until("bestmove")
                            self.assertIn(best_move(answer), twin.moves(), fen)


class Repeatability(unittest.TestCase):
    def test_the_same_search_twice_gives_the_same_lines(self):
        for fen in (START_FEN, KIWIPETE, ROOK_ENDING):
            for options in ({}, {"MultiPV": 3, "TLCV_fix": "true"}, {"Difficulty_Level": 5}):
                with self.subTest(fen=fen, options=options), Engine.ready(**options) as engine:
                    searches = []
                    for _ in range(2):
                        engine.send("ucinewgame")
                        engine.set_position(fen)
                        searches.append(without_times(engine.go("depth 6")))
                    self.assertEqual(searches[0], searches[1], fen)

    def test_other_searches_between_leave_no_trace(self):
        with Engine.ready() as engine:
            engine.set_position(KIWIPETE)
            first = without_times(engine.go("depth 6"))
            engine.set_position(ROOK_ENDING)
            engine.go("depth 6")
            engine.set_option("Difficulty Level", 3)
            engine.set_option("Null Move Pruning", "No")
            engine.go("depth 4")
            engine.set_option("Difficulty Level", 10)
            engine.set_option("Null Move Pruning", "Yes")
            engine.send("ucinewgame")
            engine.set_position(KIWIPETE)
            self.assertEqual(first, without_times(engine.go("depth 6")), KIWIPETE)

    def test_the_way_to_a_position_does_not_matter_without_repetition(self):
        searches = []
        for moves in (["e2e4", "e7e5", "g1f3", "b8c6"], ["g1f3", "b8c6", "e2e4", "e7e5"]):
            with Engine.ready() as engine:
                engine.set_position(None, moves)
                # The clock of the fifty-move rule differs and is far away.
                searches.append(without_times(engine.go("depth 5"))[-1])
        self.assertEqual(searches[0], searches[1])

    def test_options_that_nothing_reads_change_nothing(self):
        def nodes(**options):
            with Engine.ready(**options) as engine:
                engine.set_position(KIWIPETE)
                return pv_lines(engine.go("depth 6"))[-1].nodes

        usual = nodes()
        for name in (
            "ZARXStructureSafety",
            "ZARXEVALMOB",
            "ZARXEVALMOBEND",
            "King_Safety",
            "Pawn_Structure",
            "Passed_Pawns",
            "ZARXBonusEndgame",
            "ZARXKingPEB",
            "ZARXRookPEP",
        ):
            self.assertEqual(usual, nodes(**{name: 1}), name)
        for name, value in (
            ("Null_Move_Pruning", "No"),
            ("History_Threshold", 0),
            ("Futility_Pruning", "false"),
            ("Difficulty_Level", 9 - 1),
        ):
            self.assertNotEqual(usual, nodes(**{name: value}), name)


# What strict mode refuses, or takes notice of.
_NOT_STRICT = {
    "depth 2x",
    "depth +3",
    "depth x",
    "depth infinite",
    "nodes 1 depth 3",
    "nodes x depth 3",
    "movetime x",
    "wtime x btime 3600000",
    "nodes 1",
}


def alike(rows, parameters=lambda row: row):
    """The rows whose "go" means the same in both modes."""
    return [row for row in rows if not (STRICT and parameters(row) in _NOT_STRICT)]


class DepthLimits(unittest.TestCase):
    def assert_ends_at(self, depth, parameters, fen=START_FEN, **options):
        with self.subTest(go=parameters, fen=fen, **options), Engine.ready(**options) as engine:
            engine.set_position(fen)
            lines = engine.go(parameters)
            self.assertEqual(depth, last_depth(lines), f"go {parameters}, {fen}, {options}")
            self.assertRegex(lines[-2], f"^info depth {depth} ", f"go {parameters}, {fen}")

    def test_depth(self):
        for depth in range(1, 9):
            self.assert_ends_at(depth, f"depth {depth}")
            self.assert_ends_at(depth, f"depth {depth}", ROOK_ENDING)

    def test_forms_of_depth(self):
        rows = (
            (" depth   3 ", 3),
            ("depth 2x", 2),
            ("depth +3", 3),
            ("depth 0", 1),
            ("depth x", 1),
            ("depth infinite", 1),
            ("depth 3 depth 2", 2),
            ("searchmoves e2e4 d2d4 depth 2", 2),
            ("nodes 1 depth 3", 3),
            ("nodes x depth 3", 3),
            ("foo depth 2 bar", 2),
            ("DEPTH 9 depth 2", 2),
            ("depth 2 wtime 9999999 btime 9999999 movestogo 0", 2),
            ("movetime 9999999 depth 2", 2),
        )
        for parameters, depth in alike(rows, lambda row: row[0]):
            self.assert_ends_at(depth, parameters)

    def test_mate(self):
        for parameters, depth in (
            ("mate 1", 1),
            ("mate 2", 3),
            ("mate 3", 5),
            ("mate 0", 1),
            ("mate 3 depth 2", 2),
            ("depth 0 mate 3", 1),
        ):
            self.assert_ends_at(depth, parameters)

    def test_a_single_legal_move_is_searched_to_depth_4(self):
        for parameters in ("depth 1", "depth 9", "movetime 3600000", "wtime 3600000", "", "mate 1"):
            self.assert_ends_at(4, parameters, ONE_MOVE_FEN)

    def test_the_level_caps_the_depth(self):
        beyond = [] if STRICT else [(-1, 1), (-1000000, 1)]
        for level, depth in ((0, 1), (1, 3), (2, 5), (3, 7), (4, 9), *beyond):
            for parameters in ("", "depth 40", "movetime 3600000"):
                self.assert_ends_at(depth, parameters, PAWN_ENDING, Difficulty_Level=level)
        self.assert_ends_at(2, "depth 2", PAWN_ENDING, Difficulty_Level=4)

    def test_the_hidden_depth_option(self):
        self.assert_ends_at(3, "", ZARXSD=3)
        self.assert_ends_at(3, "depth 6", ZARXSD=3)
        self.assert_ends_at(3, "mate 9", ZARXSD=3)
        self.assert_ends_at(3, "depth 3", ZARXSD=0)
        self.assert_ends_at(3, "depth 3", ZARXSD=-5)

    def test_the_hidden_depth_option_does_not_end_an_infinite_search(self):
        with Engine.ready(ZARXSD=1) as engine:
            engine.send("go infinite")
            engine.read_until(report_of(5))
            engine.send("stop")
            engine.read_until("bestmove")


class TimeLimits(unittest.TestCase):
    def test_a_search_with_a_time_limit_is_answered(self):
        with Twin() as twin:
            for fen in (START_FEN, BLACK_FEN):
                twin.set_position(fen)
                for parameters in (
                    "movetime 1",
                    "movetime 200",
                    "wtime 3000 btime 3000",
                    "wtime 1500 btime 1500 winc 100 binc 100",
                    "wtime 3000 btime 3000 movestogo 1",
                    "wtime 3000 btime 3000 movestogo 10 winc 0 binc 0",
                    "nodes 5 wtime 3000 btime 3000",
                ):
                    with self.subTest(go=parameters, fen=fen), Engine.ready() as engine:
                        engine.set_position(fen)
                        lines = engine.go(parameters)
                        self.assertIn(best_move(lines), twin.moves(), (fen, parameters))

    def test_no_time_at_all_ends_after_the_first_iteration(self):
        rows = (
            "movetime 0",
            "movetime x",
            "movetime 0 depth 7",
            "wtime 0",
            "wtime 1000",
            "wtime 1000 winc 0 movestogo 1",
            "wtime x btime 3600000",
            "wtime 0 winc -1000",
        )
        for parameters in alike(rows):
            with self.subTest(go=parameters), Engine.ready() as engine:
                self.assertEqual(1, last_depth(engine.go(parameters)), parameters)

    def test_only_the_own_clock_counts(self):
        with Engine.ready() as engine:
            self.assertEqual(1, last_depth(engine.go("wtime 0 btime 3600000")))
            engine.set_position(BLACK_FEN)
            self.assertEqual(1, last_depth(engine.go("wtime 3600000 btime 0")))

    def test_without_a_usable_limit_the_search_waits_for_stop(self):
        rows = (
            (START_FEN, ""),
            (START_FEN, "btime 0"),
            (START_FEN, "wtime -1 btime 0"),
            (START_FEN, "movetime -1"),
            (START_FEN, "depth -1"),
            (START_FEN, "mate -1"),
            (START_FEN, "nodes 1"),
            (START_FEN, "movestogo 1 winc 0 binc 0"),
            (START_FEN, "searchmoves e2e4"),
            (BLACK_FEN, "wtime 0"),
        )
        for fen, parameters in alike(rows, lambda row: row[1]):
            with self.subTest(go=parameters, fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                engine.send(f"go {parameters}")
                engine.read_until(report_of(6))
                self.assertNotIn("bestmove", "\n".join(engine.fence()), (fen, parameters))
                engine.send("stop")
                engine.read_until("bestmove")

    def test_the_hidden_time_option(self):
        for parameters in ("", "movetime 3600000", "wtime 3600000 btime 3600000", "btime 5"):
            with self.subTest(go=parameters), Engine.ready(ZARXST=1) as engine:
                self.assertGreater(last_depth(engine.go(parameters)), 1, parameters)


class Games(unittest.TestCase):
    def test_a_move_list_of_thousands_of_moves(self):
        # Longer than any history the engine keeps; the last move leads out of the repetition.
        moves = ["g1f3", "g8f6", "f3g1", "f6g8"] * 1250 + ["e2e4"]
        with Engine.ready() as engine, Twin() as twin:
            engine.set_position(None, moves)
            twin.set_position(BLACK_FEN)
            for parameters in ("depth 6", "movetime 200"):
                self.assertIn(best_move(engine.go(parameters)), twin.moves(), parameters)

    def test_half_move_clocks_of_any_size(self):
        with Engine.ready() as engine, Twin() as twin:
            for clock in ("0", "99", "100", "1000", "5000", "99999999999999999999", "-1", "x"):
                fen = f"4k3/8/8/8/8/8/4P3/4K3 w - - {clock} 1"
                engine.set_position(fen)
                twin.set_position("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1")
                self.assertIn(best_move(engine.go("depth 5")), twin.moves(), fen)

    def test_the_last_moment_before_fifty_moves_without_progress(self):
        # Any quiet move is a draw; the pawn's move keeps the game going.
        with Engine.ready() as engine:
            engine.set_position("8/8/8/8/4k3/8/P3K3/6R1 w - - 99 80")
            lines = engine.go("depth 6")
            self.assertIn(best_move(lines), ("a2a3", "a2a4"), lines[-1])

    def test_a_repetition_is_a_draw(self):
        # White is lost but for the checks of the queen on e8 and h5.
        with Engine.ready() as engine:
            engine.set_position("6k1/6p1/8/7Q/8/1q6/1r6/6K1 w - - 0 1")
            last = pv_lines(engine.go("depth 8"))[-1]
            self.assertEqual(("cp", 0), (last.kind, last.value), last)
            self.assertEqual("h5e8", last.moves[0], last)


if __name__ == "__main__":
    unittest.main()
