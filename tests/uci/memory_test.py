"""The large tables are in memory when the engine says that it is ready, so that no search has to wait
for the system to find and clear their pages.
"""

import sys
import unittest
from pathlib import Path

from engine import IS_WINDOWS, Engine, is_sanitizer_build, program_path

_MEGABYTE = 1 << 20
_PAWN_TABLE = 8  # megabytes, for each thread


def _resident_megabytes(engine):
    """What the process has in memory."""
    for line in Path(f"/proc/{engine.pid}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1]) * 1024 / _MEGABYTE
    raise AssertionError("the system does not tell")


@unittest.skipUnless(sys.platform == "linux" and not IS_WINDOWS, "looks into /proc")
@unittest.skipIf(is_sanitizer_build(program_path("ZAR_X3")), "a sanitizer has memory of its own")
class Memory(unittest.TestCase):
    def assert_resident(self, engine, megabytes):
        self.assertGreaterEqual(_resident_megabytes(engine), megabytes)

    def test_at_the_first_readyok(self):
        with Engine.started(Hash=64, Threads=2) as engine:
            self.assertLess(_resident_megabytes(engine), 64)
            engine.fence()
            self.assert_resident(engine, 64 + 2 * _PAWN_TABLE)

    def test_at_readyok_behind_ucinewgame(self):
        with Engine.started(Hash=64) as engine:
            engine.send("ucinewgame")
            engine.fence()
            self.assert_resident(engine, 64 + _PAWN_TABLE)
            engine.send("ucinewgame")
            engine.fence()
            self.assert_resident(engine, 64 + _PAWN_TABLE)

    def test_at_readyok_behind_changed_options(self):
        with Engine.ready() as engine:
            engine.set_option("Hash", 128)
            engine.set_option("Threads", 3)
            engine.fence()
            self.assert_resident(engine, 128 + 3 * _PAWN_TABLE)

    def test_behind_a_search_that_came_without_isready(self):
        with Engine.started(Hash=64) as engine:
            engine.go("depth 1")
            self.assert_resident(engine, 64 + _PAWN_TABLE)

    def test_a_smaller_table_gives_memory_back(self):
        with Engine.ready(Hash=256) as engine:
            engine.set_option("Hash", 16)
            engine.fence()
            self.assertLess(_resident_megabytes(engine), 128)


if __name__ == "__main__":
    unittest.main()
