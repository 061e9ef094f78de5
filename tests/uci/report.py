"""The lines of a search, taken apart: those of the engine as it is, or of strict mode."""

import re
from dataclasses import dataclass

from engine import STRICT

MOVE = r"[a-h][1-8][a-h][1-8][nbrq]?"
MOVES = rf"{MOVE}(?: {MOVE})*"

# How a variation is told. In strict mode a line is whole, and the closing lines are missing.
if STRICT:
    PV_LINE = re.compile(
        r"info depth (?P<depth>\d+) seldepth (?P<seldepth>\d+) multipv (?P<multipv>[1-4])"
        r" score (?P<kind>cp|mate) (?P<value>-?\d+)(?: (?P<bound>lowerbound|upperbound))?"
        r" nodes (?P<nodes>\d+) nps (?P<nps>\d+) hashfull (?P<hashfull>\d+) time (?P<time>\d+)"
        rf" pv (?P<moves>{MOVES})"
    )
else:
    PV_LINE = re.compile(
        r"info multipv (?P<multipv>[1-4]) depth (?P<depth>\d+) score (?P<kind>cp|mate)"
        r" (?P<value>-?\d+)(?: (?P<bound>lowerbound|upperbound))? time (?P<time>\d+)"
        rf" nodes (?P<nodes>\d+) pv (?P<moves>{MOVES})"
    )
VIEWER_LINE = re.compile(rf"(\d+) (-?\d+) (\d+) (\d+) ({MOVES}) ?")
CURRMOVE_LINE = re.compile(rf"info currmove ({MOVE}) currmovenumber (\d+)")
HASHFULL_LINE = re.compile(r"info hashfull (\d+)")
FINAL_LINE = re.compile(rf"info depth (\d+) score cp (-?\d+) pv ({MOVE})(?: ({MOVE})?)?")
BESTMOVE_LINE = re.compile(rf"bestmove (?:\(none\)|({MOVE})(?: ponder ({MOVE}))?)")

# Any line that a search may print while "Extra Info" is off.
SEARCH_LINES = (PV_LINE, CURRMOVE_LINE, HASHFULL_LINE, BESTMOVE_LINE)
if not STRICT:
    SEARCH_LINES += (VIEWER_LINE, FINAL_LINE)


@dataclass(frozen=True)
class PvLine:
    """An "info multipv" line. `kind` is cp or mate, `bound` is lowerbound, upperbound or None."""

    multipv: int
    depth: int
    kind: str
    value: int
    bound: str | None
    time: int
    nodes: int
    moves: tuple

    def rank(self):
        """A number that grows with the score."""
        if self.kind == "cp":
            return self.value
        return 100_000 - self.value if self.value > 0 else -100_000 - self.value


def parse_pv(line):
    """The PvLine of a line, None for a line of another kind."""
    match = PV_LINE.fullmatch(line)
    if match is None:
        return None
    part = match.groupdict()
    return PvLine(
        int(part["multipv"]),
        int(part["depth"]),
        part["kind"],
        int(part["value"]),
        part["bound"],
        int(part["time"]),
        int(part["nodes"]),
        tuple(part["moves"].split()),
    )


def pv_lines(lines):
    """The PvLines among the lines, in order."""
    return [pv for pv in map(parse_pv, lines) if pv is not None]


def last_depth(lines):
    """Depth of the last "info multipv" line."""
    return pv_lines(lines)[-1].depth


def best_move(lines):
    """The move of the "bestmove" line at the end; "(none)" without a legal move."""
    return lines[-1].split()[1]


def ponder_move(lines):
    """The ponder move of the "bestmove" line at the end, or None."""
    return BESTMOVE_LINE.fullmatch(lines[-1]).group(2)


def without_times(lines):
    """The lines that do not depend on the clock, their times masked."""
    kept = []
    for line in lines:
        if CURRMOVE_LINE.fullmatch(line) or HASHFULL_LINE.fullmatch(line):
            continue
        line = re.sub(r" (time|nps) \d+(?= )", r" \1 *", line)
        kept.append(re.sub(r"^(\d+ -?\d+) \d+ ", r"\1 * ", line))
    return kept
