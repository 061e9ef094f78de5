"""Every pair of files in the folder cases is one test; run.py says what the files mean."""

import unittest

import run
from engine import IS_WINDOWS

# They show what a carriage return does, which is a part of the newline on Windows.
NOT_ON_WINDOWS = {"carriage_return", "position_list_stops_at_a_carriage_return"}


class Transcripts(unittest.TestCase):
    def test_there_are_cases_and_each_is_a_pair(self):
        scripts = {path.stem for path in run.CASES.glob("*.in")}
        outputs = {path.stem for path in run.CASES.glob("*.out")}
        self.assertTrue(scripts)
        self.assertEqual(scripts, outputs)

    def test_the_comparison_can_fail(self):
        expected = ["a {n}", "{...}", "{+}b {int}", "c {}"]
        self.assertIsNone(run.difference(expected, "a 1\nx\ny\nb -1\nb 2\nc \n"))
        for output in (
            "",
            "a x\nb 1\nc \n",
            "a 1\nc \n",
            "a 1\nb 1\nc\n",
            "a 1\nb 1\nc \nd\n",
            "a 1\nb 1\nc <no newline>\n",
        ):
            self.assertIsNotNone(run.difference(expected, output), output)


def _add_case(name):
    @unittest.skipIf(IS_WINDOWS and name in NOT_ON_WINDOWS, "not so on Windows")
    def test(self):
        trouble = run.run_case(name)
        if trouble is not None:
            self.fail(trouble)

    setattr(Transcripts, f"test_case_{name}", test)


for _name in run.case_names():
    _add_case(_name)

if __name__ == "__main__":
    unittest.main()
