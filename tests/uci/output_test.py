"""The lines of a search: their form, their order, and what they say about each other."""

import functools
import re
import time
import unittest

import report
from engine import START_FEN, Engine, Twin
from report import best_move, parse_pv, ponder_move, pv_lines

POSITIONS = [
    START_FEN,
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N2N2/PP2BPPP/R1BQ1RK1 b - - 4 9",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "4k3/P6p/8/8/8/8/p6P/4K3 w - - 0 1",
    "8/8/1p1k4/p1p2p1p/P1P2P1P/1P1K4/8/8 b - - 3 40",
]
# How deep each of them is searched with so many lines.
DEPTHS = {1: 8, 2: 6, 3: 6, 4: 7}
# Positions with their number of legal moves.
FEW_MOVES = [
    ("7r/8/8/8/8/1k6/8/K7 w - - 0 1", 1),
    ("8/7K/8/8/6q1/8/1k2r3/8 w - - 0 1", 2),
    ("8/2K2q2/4r3/8/8/8/k7/8 w - - 0 1", 3),
]
# Positions, the depth to search, and the moves to mate in it (negative: the side to move is mated).
MATES = [
    ("6k1/5ppp/8/8/8/8/8/K3R3 w - - 0 1", 2, 1),
    ("8/2K2q2/4r3/8/8/8/k7/8 w - - 0 1", 3, -1),
    ("kbK5/pp6/RP6/8/8/8/8/8 b - - 0 1", 4, -1),
    ("kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", 5, 2),
    ("r5rk/5p1p/R7/4B3/8/8/7P/7K b - - 0 1", 6, -2),
    ("r5rk/5p1p/5R2/4B3/8/8/7P/7K w - - 0 1", 7, 3),
]


@functools.cache
def searched(fen, lines_wanted):
    """The lines of a fresh engine's search with "TLCV fix". Most tests look at the same searches,
    each of which is the same every time but for its times."""
    with Engine.ready(TLCV_fix="true", MultiPV=lines_wanted) as engine:
        engine.set_position(fen)
        return tuple(engine.go(f"depth {DEPTHS[lines_wanted]}"))


def tables(lines):
    """The tables that a search prints, each a list of rows."""
    found = []
    for pv in pv_lines(lines):
        if pv.multipv == 1:
            found.append([])
        found[-1].append(pv)
    return found


class Lines(unittest.TestCase):
    def assert_known(self, lines, fen):
        for line in lines:
            known = any(pattern.fullmatch(line) for pattern in report.SEARCH_LINES)
            self.assertTrue(known, f"{fen}: {line!r}")

    def test_every_line_has_a_known_form(self):
        for fen in POSITIONS:
            for lines_wanted in DEPTHS:
                self.assert_known(searched(fen, lines_wanted), fen)

    def test_the_lines_at_the_end(self):
        for fen in POSITIONS:
            with self.subTest(fen=fen):
                lines = searched(fen, 1)
                wanted = DEPTHS[1]
                last_pv = pv_lines(lines)[-1]
                best, ponder = best_move(lines), ponder_move(lines)
                # this depth always leaves a second move in these positions
                self.assertIsNotNone(ponder, lines[-1])
                hashfull, final, viewer, bestmove = lines[-4:]
                self.assertRegex(hashfull, r"^info hashfull \d+$")
                self.assertEqual(
                    f"info depth {wanted} score cp {last_pv.value} pv {best} {ponder}", final
                )
                depth, score, _, nodes, moves = report.VIEWER_LINE.fullmatch(viewer).groups()
                self.assertEqual((str(wanted), str(last_pv.value)), (depth, score), viewer)
                self.assertEqual(last_pv.nodes + 50000, int(nodes), viewer)
                self.assertEqual(f"{best} {ponder}", moves, viewer)
                self.assertEqual(f"bestmove {best} ponder {ponder}", bestmove)
                self.assertEqual((best, ponder), last_pv.moves[:2])

    def test_viewer_lines_repeat_the_line_before(self):
        for fen in POSITIONS[:3]:
            with self.subTest(fen=fen):
                lines = searched(fen, 2)
                pairs = [
                    (parse_pv(line), behind)
                    for line, behind in zip(lines, lines[1:])
                    if parse_pv(line) is not None
                ]
                self.assertTrue(pairs)
                for pv, behind in pairs:
                    moves = " ".join(pv.moves)
                    expected = f"{pv.depth} {pv.value} {pv.time} {pv.nodes} {moves}"
                    self.assertEqual(expected, behind)

    def test_viewer_lines_alone(self):
        with Engine.ready(TLCV_fix="true", Search_Info="false") as engine:
            lines = engine.go("depth 5")
            self.assertEqual([], pv_lines(lines))
            self.assertEqual([], [line for line in lines if line.startswith("info depth")])
            viewer = [line for line in lines if report.VIEWER_LINE.fullmatch(line)]
            self.assertEqual({"1", "2", "3", "4", "5"}, {line.split()[0] for line in viewer})

    def test_extra_info_says_what_was_played(self):
        with Engine.ready(MultiPV=2) as engine:
            engine.set_option("Extra Info", "true")
            engine.fence()
            lines = engine.go("depth 5")
            final = report.FINAL_LINE.fullmatch(lines[-5])
            self.assertIsNotNone(final, lines[-5])
            best, ponder = best_move(lines), ponder_move(lines)
            self.assertEqual(
                [
                    "info string - - -",
                    "Info String (Ponder, Analize Mode or Infinite Mode is Limited at level < 10)",
                    f"info string {best} ({ponder}) [Thread# 1/1, Depth 5, Value {final.group(2)}, "
                    "Current Level is 10, Ponder Limit 0 (1=true), Current Hash Size is 16, "
                    "MultiPV set to 2]",
                    f"bestmove {best} ponder {ponder}",
                ],
                lines[-4:],
            )

    def test_depth_nodes_and_time_never_fall(self):
        for fen in POSITIONS:
            with self.subTest(fen=fen):
                pvs = pv_lines(searched(fen, 1))
                for before, after in zip(pvs, pvs[1:]):
                    self.assertLessEqual(before.depth, after.depth, (before, after))
                    self.assertLessEqual(before.nodes, after.nodes, (before, after))
                    self.assertLessEqual(before.time, after.time, (before, after))
                self.assertEqual(set(range(1, DEPTHS[1] + 1)), {pv.depth for pv in pvs})

    def test_hashfull_is_printed_once_at_the_end(self):
        for fen in POSITIONS:
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                lines = engine.go("depth 3")  # far below a second
                places = [i for i, line in enumerate(lines) if "hashfull" in line]
                self.assertEqual([len(lines) - 3], places, lines)

    def test_hashfull_counts_this_search_only(self):
        with Engine.ready() as engine:
            engine.go("depth 7")
            engine.set_position("7r/8/8/8/8/1k6/8/K7 w - - 0 1")
            lines = engine.go("depth 4")
            self.assertIn("info hashfull 0", lines)

    def test_a_short_search_prints_no_current_move(self):
        with Engine.ready() as engine:
            lines = engine.go("depth 2")
            self.assertEqual([], [x for x in lines if "currmove" in x])

    def test_a_long_search_prints_current_moves_and_the_fill(self):
        with Engine.ready() as engine, Twin() as twin:
            engine.send("go infinite")
            lines = engine.read_until("info currmove")
            lines += engine.read_until("info hashfull")
            lines += engine.read_until("info currmove")
            engine.send("stop")
            lines += engine.read_until("bestmove")
            self.assert_known(lines, START_FEN)
            current = [m for m in map(report.CURRMOVE_LINE.fullmatch, lines) if m]
            for match in current:
                self.assertIn(match.group(1), twin.moves(), match.group())
                self.assertIn(int(match.group(2)), range(1, 21), match.group())
            fills = [m for m in map(report.HASHFULL_LINE.fullmatch, lines) if m]
            self.assertTrue(all(int(m.group(1)) <= 1000 for m in fills), fills)

    def test_times_are_milliseconds_and_seconds_at_the_end(self):
        with Engine.ready(TLCV_fix="true", MultiPV=4) as engine:
            begin = time.monotonic()
            engine.send("go infinite")
            engine.read_until("info currmove")  # not before a second has passed
            lines = engine.read_until("info multipv 4")
            newest = max(pv.time for pv in pv_lines(lines))
            self.assertGreaterEqual(newest, 1000)
            engine.send("stop")
            lines = engine.read_until("bestmove")
            passed = time.monotonic() - begin
            self.assertLessEqual(newest, 1000 * passed)
            seconds = int(report.VIEWER_LINE.fullmatch(lines[-2]).group(3))
            self.assertLessEqual(seconds, passed + 0.5, lines[-2])
            self.assertGreaterEqual(seconds, newest // 1000, lines[-2])

    def test_search_info_off_leaves_the_answer_and_the_fill(self):
        with Engine.ready(Search_Info="false") as engine:
            lines = engine.go("depth 4")
            self.assertEqual(2, len(lines), lines)
            self.assertRegex(lines[0], r"^info hashfull \d+$")
            self.assertRegex(lines[1], report.BESTMOVE_LINE)


class Scores(unittest.TestCase):
    def test_mates_are_counted_in_moves(self):
        for fen, depth, mate in MATES:
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                lines = engine.go(f"depth {depth}")
                last = pv_lines(lines)[-1]
                self.assertEqual(("mate", mate), (last.kind, last.value), fen)
                # A mate's line is complete: two plies a move, less the last reply of the loser.
                plies = 2 * mate - 1 if mate > 0 else -2 * mate
                self.assertEqual(plies, len(last.moves), (fen, last))

    def test_the_last_line_gives_a_mate_in_centipawns(self):
        for fen, depth, mate in MATES:
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                lines = engine.go(f"depth {depth}")
                finals = [m for m in map(report.FINAL_LINE.fullmatch, lines) if m]
                self.assertTrue(finals, fen)
                score = 30001 - 2 * mate if mate > 0 else -30000 - 2 * mate
                self.assertEqual({str(score)}, {m.group(2) for m in finals}, fen)

    def test_no_centipawn_score_is_a_mate_score(self):
        for fen, depth, _ in MATES:
            with self.subTest(fen=fen), Engine.ready() as engine:
                engine.set_position(fen)
                for pv in pv_lines(engine.go(f"depth {depth}")):
                    if pv.kind == "cp":
                        self.assertLessEqual(abs(pv.value), 29744, (fen, pv))
                    else:
                        self.assertNotEqual(0, pv.value, (fen, pv))

    def test_bounds_are_reported_where_the_window_is_narrow(self):
        seen = set()
        for fen in POSITIONS:
            with self.subTest(fen=fen):
                pvs = pv_lines(searched(fen, 1))
                for pv in pvs:
                    if pv.bound is not None:
                        self.assertGreaterEqual(pv.depth, 5, (fen, pv))
                        seen.add(pv.bound)
                self.assertIsNone(pvs[-1].bound, (fen, pvs[-1]))
        self.assertEqual({"lowerbound", "upperbound"}, seen)


class Variations(unittest.TestCase):
    def assert_moves_are_legal(self, twin, fen, lines):
        for pv in pv_lines(lines):
            illegal = twin.first_illegal(fen, pv.moves)
            self.assertIsNone(illegal, f"{fen}: {illegal} in {' '.join(pv.moves)}")

    def test_every_move_is_legal(self):
        with Twin() as twin:
            for fen in POSITIONS + [fen for fen, _ in FEW_MOVES]:
                for lines_wanted in DEPTHS:
                    lines = searched(fen, lines_wanted)
                    self.assert_moves_are_legal(twin, fen, lines)
                    played = [m for m in (best_move(lines), ponder_move(lines)) if m]
                    self.assertIsNone(twin.first_illegal(fen, played), (fen, lines[-1]))

    def test_moves_stay_legal_with_a_warm_table(self):
        with Twin() as twin, Engine.ready() as engine:
            for fen in POSITIONS:
                engine.set_position(fen)
                for depth in (4, 8, 5):
                    self.assert_moves_are_legal(twin, fen, engine.go(f"depth {depth}"))

    def test_a_mate_line_ends_in_mate(self):
        with Twin() as twin:
            for fen, depth, mate in MATES:
                with self.subTest(fen=fen), Engine.ready() as engine:
                    engine.set_position(fen)
                    for pv in pv_lines(engine.go(f"depth {depth}")):
                        if pv.kind == "mate" and pv.depth == depth:
                            twin.set_position(fen, pv.moves)
                            self.assertEqual("mate", twin.status(), (fen, pv))


class MultiPv(unittest.TestCase):
    def test_every_report_is_a_whole_table(self):
        for fen in POSITIONS:
            for wanted in DEPTHS:
                for table in tables(searched(fen, wanted)):
                    numbers = [row.multipv for row in table]
                    self.assertEqual(list(range(1, wanted + 1)), numbers, (fen, table))
                    self.assertEqual(1, len({row.nodes for row in table}), (fen, table))
                    self.assertEqual(1, len({row.bound for row in table}), (fen, table))

    def test_there_are_no_more_lines_than_moves(self):
        for fen, moves in FEW_MOVES:
            for table in tables(searched(fen, 4)):
                self.assertEqual(moves, len(table), (fen, table))

    def test_the_first_table_has_every_line_of_depth_1(self):
        for fen in POSITIONS:
            first = tables(searched(fen, 4))[0]
            self.assertEqual([1] * 4, [row.depth for row in first], (fen, first))

    def test_the_last_table_is_complete_sorted_and_without_repetition(self):
        for fen in POSITIONS:
            for wanted in (2, 4):
                last = tables(searched(fen, wanted))[-1]
                self.assertEqual([DEPTHS[wanted]] * wanted, [row.depth for row in last], (fen, last))
                ranks = [row.rank() for row in last]
                self.assertEqual(sorted(ranks, reverse=True), ranks, (fen, last))
                self.assertEqual(wanted, len({row.moves[0] for row in last}), (fen, last))

    def test_no_line_stands_twice_in_a_depth(self):
        for fen in POSITIONS:
            for table in tables(searched(fen, 4)):
                newest = max(row.depth for row in table)
                first_moves = [row.moves[0] for row in table if row.depth == newest]
                self.assertEqual(len(set(first_moves)), len(first_moves), (fen, table))

    def test_the_first_line_is_played(self):
        for fen in POSITIONS[:3]:
            with self.subTest(fen=fen):
                lines = searched(fen, 3)
                final = report.FINAL_LINE.fullmatch(lines[-3])  # the viewer's line is behind it
                rows = pv_lines(lines)[-3:]
                self.assertEqual(final.group(3), best_move(lines), lines[-2:])
                self.assertIn(best_move(lines), [row.moves[0] for row in rows], fen)

    def test_values_beyond_the_range_are_held_to_it(self):
        for wanted, rows in (("0", 1), ("-3", 1), ("9", 4), ("abc", 1)):
            with Engine.ready(MultiPV=wanted) as engine:
                for table in tables(engine.go("depth 2")):
                    self.assertEqual(rows, len(table), (wanted, table))


class Silence(unittest.TestCase):
    def test_nothing_is_printed_between_commands(self):
        with Engine.ready() as engine:
            engine.go("depth 4")
            engine.send("position startpos moves e2e4", "ucinewgame")
            engine.set_option("Ponder", "false")
            self.assertEqual([], engine.fence())
            lines = engine.go("depth 4")
            self.assertEqual(1, len(re.findall("bestmove", "\n".join(lines))))
            self.assertEqual([], engine.fence())


if __name__ == "__main__":
    unittest.main()
