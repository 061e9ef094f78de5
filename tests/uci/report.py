"""The lines of a search, taken apart."""

import re
from dataclasses import dataclass

MOVE = r"[a-h][1-8][a-h][1-8][nbrq]?"
MOVES = rf"{MOVE}(?: {MOVE})*"

PV_LINE = re.compile(
    r"info multipv ([1-4]) depth (\d+) score (cp|mate) (-?\d+)(?: (lowerbound|upperbound))?"
    rf" time (\d+) nodes (\d+) pv ({MOVES})"
)
VIEWER_LINE = re.compile(rf"(\d+) (-?\d+) (\d+) (\d+) ({MOVES}) ?")
CURRMOVE_LINE = re.compile(rf"info currmove ({MOVE}) currmovenumber (\d+)")
HASHFULL_LINE = re.compile(r"info hashfull (\d+)")
FINAL_LINE = re.compile(rf"info depth (\d+) score cp (-?\d+) pv ({MOVE})(?: ({MOVE})?)?")
BESTMOVE_LINE = re.compile(rf"bestmove (?:\(none\)|({MOVE})(?: ponder ({MOVE}))?)")

# Any line that a search may print while "Extra Info" is off.
SEARCH_LINES = (PV_LINE, VIEWER_LINE, CURRMOVE_LINE, HASHFULL_LINE, FINAL_LINE, BESTMOVE_LINE)


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
    multipv, depth, kind, value, bound, time, nodes, moves = match.groups()
    return PvLine(
        int(multipv),
        int(depth),
        kind,
        int(value),
        bound,
        int(time),
        int(nodes),
        tuple(moves.split()),
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
        line = re.sub(r" time \d+ ", " time * ", line)
        kept.append(re.sub(r"^(\d+ -?\d+) \d+ ", r"\1 * ", line))
    return kept
