"""The script that plays the difficulty levels against each other."""

import importlib.util
import json
import math
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from engine import HANG_LIMIT, Twin, program_path

SCRIPT = Path(__file__).resolve().parents[2] / "bench" / "levels.py"

_module = importlib.util.spec_from_file_location("levels", SCRIPT)
levels = importlib.util.module_from_spec(_module)
_module.loader.exec_module(levels)


class Statistics(unittest.TestCase):
    def test_elo_of_a_score(self):
        self.assertEqual(0, levels.elo(0.5))
        self.assertAlmostEqual(400, levels.elo(10 / 11))
        self.assertAlmostEqual(-400, levels.elo(1 / 11))
        self.assertEqual((math.inf, -math.inf), (levels.elo(1), levels.elo(0)))

    def test_the_interval_comes_from_the_spread_of_the_openings(self):
        mean, low, high = levels.interval([0, 0.5, 0.5, 1])
        # Variance 1/6, so the error of the mean is sqrt(1/24).
        self.assertAlmostEqual(0.5, mean)
        self.assertAlmostEqual(0.5 - 1.96 * math.sqrt(1 / 24), low)
        self.assertAlmostEqual(0.5 + 1.96 * math.sqrt(1 / 24), high)

    def test_a_perfect_score_leaves_something_open(self):
        self.assertEqual((1, 0.025**0.02, 1), levels.interval([1] * 50))
        self.assertEqual((0, 0, 1 - 0.025**0.02), levels.interval([0] * 50))

    def test_points_go_to_who_mates(self):
        self.assertEqual(1.0, levels.points_of_white(["m"] * 7, "mate"))
        self.assertEqual(0.0, levels.points_of_white(["m"] * 8, "mate"))
        for status in ("stalemate", "fifty", "repetition", "material", "length"):
            self.assertEqual(0.5, levels.points_of_white(["m"] * 7, status), status)


class Games(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_script(self, record, *arguments):
        done = subprocess.run(
            [
                sys.executable,
                "-B",
                SCRIPT,
                "--engine",
                program_path("ZAR_X3"),
                "--twin",
                program_path("ZAR_X3_TWIN"),
                "--record",
                self.folder / record,
                "--depth",
                "1",
                "--levels",
                "0-2",
                *arguments,
            ],
            capture_output=True,
            text=True,
            timeout=HANG_LIMIT,
        )
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        lines = (self.folder / record).read_text().splitlines()
        return done.stdout, [json.loads(line) for line in lines]

    def test_the_same_seed_gives_the_same_games(self):
        table, games = self.run_script("one", "--games", "4")
        again, others = self.run_script("two", "--games", "4", "--jobs", "2")
        self.assertEqual(table, again)
        self.assertEqual(8, len(games))
        by_number = lambda game: (game["lower"], game["number"])
        self.assertEqual(sorted(games, key=by_number), sorted(others, key=by_number))
        other_seed, _ = self.run_script("three", "--games", "4", "--seed", "2")
        self.assertNotEqual(table.splitlines()[2:], other_seed.splitlines()[2:])

    def test_an_opening_is_played_with_both_colours(self):
        _, games = self.run_script("one", "--games", "4", "--levels", "0-1")
        starts = {game["number"]: game["moves"].split()[: levels.OPENING_PLIES] for game in games}
        self.assertEqual([0, 1, 2, 3], sorted(starts))
        self.assertEqual((starts[0], starts[2]), (starts[1], starts[3]))
        self.assertNotEqual(starts[0], starts[2])

    def test_games_are_legal_and_end_as_recorded(self):
        _, games = self.run_script("one", "--games", "4")
        with Twin() as twin:
            for game in games:
                moves = game["moves"].split()
                twin.set_position(None, moves)
                status = twin.status()
                if game["status"] == "length":
                    self.assertEqual(("ongoing", levels.LONGEST_GAME), (status, len(moves)))
                else:
                    self.assertEqual(game["status"], status, game["moves"])

    def test_recorded_games_are_not_played_again(self):
        table, games = self.run_script("one", "--games", "4")
        path = self.folder / "one"
        path.write_text("\n".join(path.read_text().splitlines()[:5]) + "\n")
        again, others = self.run_script("one", "--games", "4")
        self.assertEqual(table, again)
        self.assertEqual(games[:5], others[:5])
        self.assertEqual(8, len(others))

    def test_wrong_arguments_are_refused(self):
        for arguments in (
            ("--games", "3"),
            ("--levels", "3-3"),
            ("--levels", "0-11"),
            ("--depth", "0"),
            ("--jobs", "x"),
        ):
            done = subprocess.run(
                [sys.executable, "-B", SCRIPT, *arguments], capture_output=True, text=True, timeout=HANG_LIMIT
            )
            self.assertEqual((2, ""), (done.returncode, done.stdout), arguments)


if __name__ == "__main__":
    unittest.main()
