"""Search threads: they start, stop and change in every state, and sleep when there is no search."""

import tempfile
import unittest
from pathlib import Path

from engine import IS_WINDOWS, NO_MOVE, STRICT, Engine, Twin, program_path
from report import best_move, pv_lines

MATE_IN_TWO = ("kbK5/pp6/1P6/8/8/8/8/R7 w - - 0 1", "a1a6")
MIDDLEGAME = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
START_KEY = 0x463B96181691FC9C
TSAN = b"__tsan_" in Path(program_path("ZAR_X3")).read_bytes()
# With ThreadSanitizer each of them takes a fifth of a second.
SHORT_SEARCHES = 100 if TSAN else 200


def task_ticks(engine):
    """Processor ticks that each thread of the engine has used, by thread id."""
    if IS_WINDOWS:
        raise unittest.SkipTest("the threads of a Windows program cannot be watched from here")
    ticks = {}
    for task in Path(f"/proc/{engine.pid}/task").iterdir():
        fields = (task / "stat").read_text().rsplit(")", 1)[1].split()
        ticks[task.name] = int(fields[11]) + int(fields[12])
    return ticks


class WatchedEngine(Engine):
    """An engine that tells its workers from the main thread."""

    @classmethod
    def started(cls, **options):
        engine = super().started(**options)
        if not IS_WINDOWS:
            engine.first_tasks = set(task_ticks(engine))
        return engine

    def worker_ticks(self):
        """Processor ticks of the workers, by thread id."""
        ticks = task_ticks(self)
        return {task: used for task, used in ticks.items() if task not in self.first_tasks}

    def thread_count(self):
        workers = len(self.worker_ticks())
        # ThreadSanitizer adds a thread of its own together with the first worker.
        return 1 + workers - (1 if TSAN and workers > 0 else 0)


class Threads(unittest.TestCase):
    def test_every_thread_count_finds_a_mate(self):
        fen, mate = MATE_IN_TWO
        for threads in (1, 2, 3, 4):
            with self.subTest(threads=threads), WatchedEngine.ready(Threads=threads) as engine:
                engine.set_position(fen)
                self.assertEqual(mate, best_move(engine.go("depth 6")), fen)

    @unittest.skipIf(STRICT, "strict mode refuses such values")
    def test_the_thread_count_is_held_to_one_to_four(self):
        for value, expected in ((9, 4), (4, 4), (0, 1), (-3, 1), ("abc", 1), (2, 2)):
            with self.subTest(value=value), WatchedEngine.ready(Threads=value) as engine:
                self.assertEqual(expected, engine.thread_count())

    def test_a_changed_thread_count_takes_effect_when_idle(self):
        with WatchedEngine.ready() as engine:
            for threads in (4, 2, 3, 1, 4, 4, 1):
                engine.set_option("Threads", threads)
                engine.fence()
                self.assertEqual(threads, engine.thread_count())
                engine.set_position(MIDDLEGAME)
                self.assertTrue(best_move(engine.go("depth 4")))

    def test_a_changed_thread_count_is_ignored_during_and_after_an_unanswered_search(self):
        with WatchedEngine.ready(Threads=2) as engine:
            engine.send("go infinite", "setoption name Threads value 4")
            engine.fence()
            self.assertEqual(2, engine.thread_count())
            engine.send("stop")
            engine.read_until("bestmove")
            engine.set_position(MATE_IN_TWO[0])
            engine.send("go infinite depth 1", "isready")
            engine.read_until("readyok")
            engine.send("setoption name Threads value 3", "isready")
            engine.read_until("readyok")
            self.assertEqual(2, engine.thread_count())
            engine.send("stop")
            engine.read_until("bestmove")

    def test_a_thread_count_set_before_the_first_search_is_used(self):
        with WatchedEngine.started(Threads=3) as engine:
            self.assertEqual(1, engine.thread_count())
            engine.fence()
            self.assertEqual(3, engine.thread_count())

    def test_the_reported_nodes_are_the_main_threads_times_the_thread_count(self):
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position(MIDDLEGAME)
            for line in pv_lines(engine.go("depth 5")):
                self.assertEqual(0, line.nodes % 4, line)

    @unittest.skipIf(TSAN, "its own thread cannot be told from a worker")
    def test_workers_sleep_between_searches(self):
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position(MIDDLEGAME)
            engine.go("depth 6")
            engine.fence()
            before = engine.worker_ticks()
            for _ in range(200):
                engine.fence()
            self.assertEqual(3, len(before))
            self.assertEqual(before, engine.worker_ticks())

    def test_many_short_searches_are_all_answered(self):
        with Twin() as twin:
            twin.set_position(MIDDLEGAME)
            legal = twin.moves()
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position(MIDDLEGAME)
            for number in range(SHORT_SEARCHES):
                self.assertIn(best_move(engine.go("movetime 5")), legal, number)

    def test_stop_answers_an_infinite_search_every_time(self):
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position(MIDDLEGAME)
            for number in range(SHORT_SEARCHES):
                engine.send("go infinite", "stop")
                answer = engine.read_until("bestmove")
                self.assertNotEqual("(none)", best_move(answer), number)

    def test_ponderhit_lets_all_threads_end(self):
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position(MIDDLEGAME)
            for _ in range(20):
                engine.send("go ponder wtime 1500 btime 1500", "isready", "ponderhit")
                engine.read_until("bestmove")

    def test_quit_ends_a_search_of_many_threads(self):
        for _ in range(20):
            with WatchedEngine.ready(Threads=4) as engine:
                engine.send("go infinite")
                engine.fence()
                engine.send("quit")
                engine.read_rest()
                self.assertEqual((0, ""), engine.wait())

    def test_the_end_of_input_ends_a_search_of_many_threads(self):
        for _ in range(20):
            with WatchedEngine.ready(Threads=4) as engine:
                engine.send("go infinite")
                engine.fence()
                engine.close_input()
                engine.read_rest()
                self.assertEqual((0, ""), engine.wait())

    def test_options_that_rebuild_tables_work_between_searches_of_many_threads(self):
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position(MIDDLEGAME)
            for name, value in (
                ("Hash", 32),
                ("Threads", 2),
                ("Difficulty Level", 6),
                ("Hash", 16),
                ("Threads", 4),
                ("Difficulty Level", 10),
                ("MultiPV", 3),
            ):
                engine.set_option(name, value)
                self.assertTrue(best_move(engine.go("movetime 20")), (name, value))
                engine.send("ucinewgame")

    def test_a_mated_root_resumes_no_worker(self):
        with WatchedEngine.ready(Threads=4) as engine:
            engine.set_position("R5k1/5ppp/8/8/8/8/8/K7 b - - 0 1")
            self.assertEqual(NO_MOVE, engine.go("depth 5"))
            engine.set_position()
            self.assertTrue(best_move(engine.go("depth 4")))

    @unittest.skipIf(TSAN, "its own thread cannot be told from a worker")
    def test_a_book_move_leaves_the_workers_asleep(self):
        book = Path(self.enterContext(tempfile.TemporaryDirectory())) / "one.bin"
        entry = START_KEY.to_bytes(8, "big") + (12 << 6 | 28).to_bytes(2, "big")
        book.write_bytes(entry + (1).to_bytes(2, "big") + bytes(4))
        with WatchedEngine.ready(Threads=4, Book_File=book) as engine:
            engine.set_position()
            for _ in range(20):
                self.assertEqual("e2e4", best_move(engine.go("movetime 1000")))
            engine.fence()
            used = engine.worker_ticks()
            self.assertEqual(3, len(used))
            self.assertEqual({0}, set(used.values()))
            engine.set_position(MIDDLEGAME)
            self.assertTrue(best_move(engine.go("depth 4")))


if __name__ == "__main__":
    unittest.main()
