"""The engine's command line: the benchmark, whose node count is a fixed number, and the rest."""

import re
import unittest
from pathlib import Path

from engine import Engine

SIGNATURE = Path(__file__).resolve().parents[2] / "bench" / "signature"
RESULT = re.compile(r"(\d+) nodes (\d+) nps")


class Bench(unittest.TestCase):
    def test_the_node_count_is_the_signature(self):
        expected = SIGNATURE.read_text()
        self.assertRegex(expected, r"^\d+\n$")
        with Engine("bench") as engine:
            lines, status, errors = engine.finish()
        self.assertEqual((0, ""), (status, errors), lines)
        result = RESULT.fullmatch(lines[-1])
        self.assertIsNotNone(result, lines[-1])
        self.assertEqual(expected.strip(), result.group(1))
        earlier = [line for line in lines[:-1] if RESULT.search(line)]
        self.assertEqual([], earlier)

    def test_another_depth_gives_another_count(self):
        counts = []
        for depth in ("1", "2"):
            with Engine("bench", depth) as engine:
                lines, status, errors = engine.finish()
            self.assertEqual((0, ""), (status, errors), lines)
            counts.append(int(RESULT.fullmatch(lines[-1]).group(1)))
        self.assertLess(counts[0], counts[1])


class Arguments(unittest.TestCase):
    def run_with(self, *arguments):
        with Engine(*arguments) as engine:
            return engine.finish()

    def test_help_and_version(self):
        lines, status, errors = self.run_with("--help")
        self.assertEqual((0, ""), (status, errors))
        for word in ("bench", "--help", "--version"):
            self.assertIn(word, "\n".join(lines))
        lines, status, errors = self.run_with("--version")
        self.assertEqual((0, "", 1), (status, errors, len(lines)), lines)
        self.assertRegex(lines[0], r"\d+\.\d+")

    def test_an_unknown_argument_is_one_line_and_status_2(self):
        for arguments in (
            ("--nonsense",),
            ("Bench",),
            ("--hel",),
            ("-x",),
            ("",),
            ("uci",),
            ("--help=1",),
            ("--help", "bench"),
            ("bench", "x"),
            ("bench", "0"),
            ("bench", "-1"),
            ("bench", "3x"),
            ("bench", "3", "3"),
        ):
            lines, status, errors = self.run_with(*arguments)
            self.assertEqual(([], 2), (lines, status), arguments)
            self.assertRegex(errors, r"^[^\n]+\n$", arguments)


if __name__ == "__main__":
    unittest.main()
