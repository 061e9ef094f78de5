"""What every command does in every state of the engine.

    uninitialised  nothing has been allocated yet
    idle           initialised, no search
    searching      a search that will answer by itself
    waiting        a search under "infinite" or "ponder", whose answer needs "stop" or "ponderhit"
    pending        such a search has ended, its answer is held back
"""

import unittest

from engine import ANY_REPORT, NO_MOVE, STRICT, Engine, Twin, report_of
from report import best_move, last_depth, pv_lines

# White has one move, which the start position does not have.
OTHER_FEN = "7r/8/8/8/8/1k6/8/K7 w - - 0 1"
STALEMATE_FEN = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"
# Small enough for a search that ends at once.
SMALL_FEN = "8/8/8/3k4/8/3K4/3P4/8 w - - 0 1"


def uninitialised():
    return Engine.started()


def idle():
    return Engine.ready()


def _search(parameters):
    def enter():
        engine = Engine.ready()
        engine.send("position startpos", f"go {parameters}")
        engine.read_until(report_of(1))
        return engine

    return enter


def hold_back(engine, parameters, rehearsal):
    """Lets a search that must wait for its answer come to its end; its reports.

    The engine looks at its input at nodes only, and there is none behind the last report. So when
    as many reports have come as in a rehearsal that answers, the next line finds the search over.
    """
    engine.send("ucinewgame")
    count = len(pv_lines(engine.go(rehearsal)))
    engine.send("ucinewgame", f"go {parameters}")
    return [engine.read_line() for _ in range(count)]


def _held_back(parameters):
    def enter():
        engine = Engine.ready(Difficulty_Level=0)
        engine.set_position(SMALL_FEN)
        hold_back(engine, parameters, "depth 1")
        return engine

    return enter


SEARCHING = {"searching": _search("movetime 3600000"), "searching without limit": _search("")}
WAITING = {
    "waiting (infinite)": _search("infinite"),
    "waiting (ponder)": _search("ponder wtime 3600000 btime 3600000"),
}
PENDING = {"pending (infinite)": _held_back("infinite"), "pending (ponder)": _held_back("ponder")}
RESTING = {"uninitialised": uninitialised, "idle": idle}
BUSY = {**SEARCHING, **WAITING, **PENDING}
EVERY = {**RESTING, **BUSY}


def answers(lines):
    """The lines that are not reports of a search."""
    return [line for line in lines if not line.startswith("info ")]


class States(unittest.TestCase):
    def each(self, states):
        """A new engine in each of the states, with the state's name for messages."""
        for name, enter in states.items():
            with enter() as engine:
                yield name, engine

    def assert_one_answer(self, engine, name):
        """Ends the search: exactly one "bestmove" comes, and then nothing more."""
        engine.send("stop")
        lines = answers(engine.read_until("bestmove")) + engine.fence()
        self.assertEqual(1, len(lines), (name, lines))
        self.assertRegex(lines[0], "^bestmove [a-h][1-8]", name)
        return lines[0]

    def assert_idle(self, engine, name):
        """A search of the stalemate is answered, so the engine takes commands."""
        engine.send("stop", "ponderhit")
        self.assertEqual([], engine.fence(), name)
        engine.send(f"position fen {STALEMATE_FEN}", "go depth 1")
        self.assertEqual(
            NO_MOVE, engine.read_until("bestmove"), name
        )


class EveryState(States):
    def test_isready_is_answered(self):
        for name, engine in self.each(EVERY):
            self.assertEqual([], answers(engine.fence()), name)

    def test_uci_is_answered(self):
        for name, engine in self.each(EVERY):
            engine.send("uci")
            lines = answers(engine.read_until("uciok"))
            self.assertEqual("id name ZAR-X3 64Bit", lines[0], name)
            self.assertEqual(13, len(lines), (name, lines))

    def test_quit_ends_with_status_0_and_no_answer(self):
        for name, engine in self.each(EVERY):
            engine.send("quit", "uci")
            rest, status, errors = engine.finish()
            self.assertEqual(([], 0, ""), (answers(rest), status, errors), name)

    def test_unknown_commands_are_ignored(self):
        for name, engine in self.each(EVERY):
            engine.send("xyzzy", "", "go", "position", "stop now", "debug on", "register later")
            self.assertEqual([], answers(engine.fence()), name)


class RestingStates(States):
    def test_stop_and_ponderhit_do_nothing(self):
        for name, engine in self.each(RESTING):
            engine.send("stop", "ponderhit", "stop")
            self.assertEqual([], engine.fence(), name)

    def test_ucinewgame_says_nothing(self):
        for name, engine in self.each(RESTING):
            engine.send("ucinewgame")
            self.assertEqual([], engine.fence(), name)

    def test_setoption_is_obeyed(self):
        for name, engine in self.each(RESTING):
            engine.set_option("MultiPV", 3)
            self.assertIn(
                "option name MultiPV type spin default 3 min 1 max 4", engine.shown_options(), name
            )

    def test_position_is_obeyed(self):
        for name, engine in self.each(RESTING):
            engine.set_position(OTHER_FEN)
            self.assertEqual("a1b1", best_move(engine.go("depth 1")), name)

    def test_go_is_obeyed_and_searches_the_start_position(self):
        with Twin() as twin:
            for name, engine in self.each(RESTING):
                self.assertIn(best_move(engine.go("depth 2")), twin.moves(), name)
                self.assert_idle(engine, name)

    def test_go_leads_to_each_kind_of_search(self):
        for name, engine in self.each(RESTING):
            engine.send("go infinite")
            engine.read_until(ANY_REPORT)
            self.assert_one_answer(engine, name)

    def test_a_table_size_set_when_idle_is_used(self):
        with Engine.ready() as engine:
            first = engine.go("depth 5")
            engine.set_option("Hash", 32)
            # The new table is empty, so the same search takes the same way again.
            again = engine.go("depth 5")
            self.assertEqual(pv_lines(first)[-1].nodes, pv_lines(again)[-1].nodes)
            warm = engine.go("depth 5")
            self.assertNotEqual(pv_lines(first)[-1].nodes, pv_lines(warm)[-1].nodes)

    def test_a_table_size_below_16_keeps_the_table(self):
        with Engine.ready() as engine:
            cold = engine.go("depth 5")
            engine.set_option("Hash", 8)
            warm = engine.go("depth 5")
            self.assertNotEqual(pv_lines(cold)[-1].nodes, pv_lines(warm)[-1].nodes)

    def test_ucinewgame_when_idle_clears_the_table(self):
        with Engine.ready() as engine:
            cold = engine.go("depth 5")
            warm = engine.go("depth 5")
            self.assertNotEqual(pv_lines(cold)[-1].nodes, pv_lines(warm)[-1].nodes)
            engine.send("ucinewgame")
            again = engine.go("depth 5")
            self.assertEqual(pv_lines(cold)[-1].nodes, pv_lines(again)[-1].nodes)


class BusyStates(States):
    """Commands that would change the position, the options or the tables are ignored."""

    def test_go_is_ignored(self):
        for name, engine in self.each(BUSY):
            engine.send("go depth 1", "go infinite", "go ")
            self.assertEqual([], answers(engine.fence()), name)
            self.assert_one_answer(engine, name)
            self.assert_idle(engine, name)

    def test_a_faulty_go_is_ignored(self):
        for name, engine in self.each(BUSY):
            engine.send("go depth")
            self.assertEqual([], answers(engine.fence()), name)
            self.assert_one_answer(engine, name)

    def test_position_is_ignored(self):
        with Twin() as twin:
            for name, engine in self.each(BUSY):
                engine.send(f"position fen {OTHER_FEN}", "position fen nonsense")
                self.assertEqual([], answers(engine.fence()), name)
                self.assert_one_answer(engine, name)
                # The next search still is one of the old position.
                twin.set_position(SMALL_FEN if name in PENDING else None)
                lines = engine.go("depth 1")
                self.assertIn(best_move(lines), twin.moves(), name)

    def test_setoption_is_ignored(self):
        for name, engine in self.each(BUSY):
            before = answers(engine.shown_options())
            engine.set_option("Extra Info", "true")
            engine.set_option("Hash", 32)
            engine.set_option("ZARXLoadStructure", 16)
            after = answers(engine.shown_options())
            self.assertEqual(10, len(before), name)
            self.assertEqual(before, after, name)
            self.assert_one_answer(engine, name)

    def test_setoption_prints_nothing(self):
        for name, engine in self.each(BUSY):
            engine.set_option("ZARXLoadStructure", 16)
            self.assertNotIn("Engine Ready", engine.fence(), name)

    def test_ucinewgame_is_ignored_while_searching(self):
        for name, engine in self.each({**SEARCHING, **WAITING}):
            engine.send("ucinewgame")
            self.assertEqual([], answers(engine.fence()), name)
            self.assert_one_answer(engine, name)

    def test_ucinewgame_is_ignored_while_pending(self):
        with Engine.ready(Difficulty_Level=2) as engine:  # a search ends after depth 5
            engine.set_position(SMALL_FEN)
            cold, warm = (pv_lines(engine.go(""))[-1].nodes for _ in range(2))
            self.assertNotEqual(cold, warm, SMALL_FEN)
            hold_back(engine, "infinite", "")
            engine.send("ucinewgame", "stop")
            engine.read_until("bestmove")
            self.assertEqual(warm, pv_lines(engine.go(""))[-1].nodes, "was the table cleared?")


class Searching(States):
    def test_stop_answers(self):
        for name, engine in self.each(SEARCHING):
            self.assert_one_answer(engine, name)
            self.assert_idle(engine, name)

    def test_ponderhit_changes_nothing(self):
        for name, engine in self.each(SEARCHING):
            engine.send("ponderhit", "ponderhit")
            self.assertEqual([], answers(engine.fence()), name)
            self.assert_one_answer(engine, name)

    def test_stop_right_behind_go_still_gives_a_move(self):
        with Twin() as twin:
            for parameters in ("infinite", "ponder", "movetime 3600000", ""):
                with Engine.ready() as engine:
                    engine.send(f"go {parameters}", "stop")
                    lines = engine.read_until("bestmove")
                    self.assertIn(best_move(lines), twin.moves(), parameters)
                    self.assert_idle(engine, parameters)

    def test_a_stopped_search_leaves_the_next_one_alone(self):
        for name, engine in self.each({**SEARCHING, **WAITING}):
            self.assert_one_answer(engine, name)
            self.assertEqual(5, last_depth(engine.go("depth 5")), name)

    def test_a_second_stop_is_ignored(self):
        for name, engine in self.each(SEARCHING):
            engine.send("stop", "stop", "stop")
            lines = answers(engine.read_until("bestmove")) + engine.fence()
            self.assertEqual(1, len(lines), (name, lines))


class Waiting(States):
    def test_stop_answers(self):
        for name, engine in self.each(WAITING):
            self.assert_one_answer(engine, name)
            self.assert_idle(engine, name)

    def test_the_search_goes_beyond_every_limit(self):
        for parameters in (
            "infinite depth 1",
            "infinite mate 1",
            "infinite movetime 0",
            "infinite wtime 0 btime 0",
            "ponder depth 1",
            "ponder movetime 0",
            "ponder wtime 0 btime 0",
        ):
            with self.subTest(parameters=parameters), Engine.ready() as engine:
                engine.send(f"go {parameters}")
                engine.read_until(report_of(5))
                self.assert_one_answer(engine, parameters)

    def test_ponderhit_lets_the_limits_apply(self):
        for parameters in (
            "ponder depth 1",
            "ponder movetime 0",
            "ponder wtime 0 btime 0",
            "ponder wtime 2000 btime 2000",
            "infinite depth 1",
            "infinite movetime 0",
        ):
            with self.subTest(parameters=parameters), Engine.ready() as engine:
                engine.send(f"go {parameters}")
                engine.read_until(report_of(4))
                engine.send("ponderhit")
                self.assertRegex(engine.read_until("bestmove")[-1], "^bestmove [a-h]", parameters)
                self.assert_idle(engine, parameters)

    def test_ponderhit_makes_it_a_search_that_still_runs(self):
        for name, engine in self.each(WAITING):
            engine.send("ponderhit")
            self.assertEqual([], answers(engine.fence()), name)
            engine.read_until(report_of(6))
            self.assert_one_answer(engine, name)

    def test_ponderhit_then_the_end_of_the_search_answers(self):
        # At level 2 no search goes deeper than 5 plies, so it may end before or after "ponderhit".
        with Engine.ready(Difficulty_Level=2) as engine:
            engine.send("go ponder")
            engine.read_until(report_of(2))
            engine.send("ponderhit")
            lines = engine.read_until("bestmove")
            self.assertEqual([], engine.fence())
            self.assertLessEqual(last_depth(lines), 5)

    @unittest.skipIf(STRICT, "strict mode answers")
    def test_ponder_and_infinite_ends_without_an_answer(self):
        for parameters in ("ponder infinite", "infinite wtime 1000 btime 1000 ponder"):
            with self.subTest(parameters=parameters), Engine.ready() as engine:
                engine.send(f"go {parameters}")
                engine.read_until(report_of(3))
                engine.send("stop")
                # Nothing behind "stop" is read before the search has ended.
                lines = engine.fence()
                self.assertEqual([], answers(lines), parameters)
                self.assertEqual([], [x for x in lines if x.startswith("info depth")], parameters)
                self.assertRegex(lines[-1], r"^info hashfull \d+$", parameters)
                self.assert_idle(engine, parameters)

    def test_ponderhit_in_ponder_and_infinite_makes_it_answer(self):
        with Engine.ready() as engine:
            engine.send("go ponder infinite")
            engine.read_until(report_of(3))
            engine.send("ponderhit")
            self.assert_one_answer(engine, "ponder infinite, ponderhit, stop")


class Pending(States):
    def test_nothing_is_said_until_stop(self):
        for name, engine in self.each(PENDING):
            self.assertEqual([], engine.fence(), name)
            self.assert_one_answer(engine, name)
            self.assert_idle(engine, name)

    def test_ponderhit_answers(self):
        for name, engine in self.each(PENDING):
            engine.send("ponderhit")
            lines = engine.read_until("bestmove")
            self.assertEqual(not STRICT, lines[0].startswith("info hashfull "), name)
            self.assertRegex(lines[-1], "^bestmove [a-h]", name)
            self.assertEqual([], engine.fence(), name)
            self.assert_idle(engine, name)

    def test_the_held_back_answer_is_printed_once(self):
        for name, engine in self.each(PENDING):
            engine.send("stop", "ponderhit", "stop")
            lines = answers(engine.read_until("bestmove")) + engine.fence()
            self.assertEqual(1, len(lines), (name, lines))

    @unittest.skipIf(STRICT, "strict mode answers")
    def test_ponder_and_infinite_prints_the_hash_line_only(self):
        for release in ("stop", "ponderhit"):
            with self.subTest(release=release), Engine.ready(Difficulty_Level=0) as engine:
                engine.set_position(SMALL_FEN)
                hold_back(engine, "ponder infinite", "depth 1")
                engine.send(release)
                lines = engine.fence()
                self.assertEqual(1, len(lines), (release, lines))
                self.assertRegex(lines[0], r"^info hashfull \d+$", release)
                self.assert_idle(engine, release)

    def test_infinite_searches_to_the_cap_of_the_level_whatever_the_depth(self):
        for level, depth in ((0, 1), (1, 3), (2, 5)):
            with self.subTest(level=level), Engine.ready(Difficulty_Level=level) as engine:
                engine.set_position(SMALL_FEN)
                lines = hold_back(engine, "infinite depth 2", "")
                self.assertEqual(depth, last_depth(lines), level)
                self.assertEqual([], engine.fence(), level)
                self.assert_one_answer(engine, level)


if __name__ == "__main__":
    unittest.main()
