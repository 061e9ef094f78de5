"""What a soak run has seen: counts, and by how much searches passed their hard limits."""

import collections

# What an excess is measured against, by kind of search.
KINDS = {
    "movetime": "the time given",
    "clock": "the engine's own hard limit",
    "ponderhit": "the same, or the ponderhit when that came later",
    "stop": "the moment of the stop",
    "crowded": "what it was of these, with the moment of grace for a first iteration",
}


def percentile(values, share):
    """The value that this share of the sorted values does not pass."""
    return values[min(len(values) - 1, int(share * len(values)))]


class Record:
    """Counters by name, and for each kind of search a list of excesses in seconds.

    An excess runs from the limit to the arrival of "bestmove" in this script, so it holds the way
    through the pipes and what else the machine was doing. It is negative for a search that ended
    before its limit.
    """

    def __init__(self):
        self.counts = collections.Counter(games=0, moves=0)
        self.excess = {kind: [] for kind in KINDS}
        self.least_clock = None  # seconds

    def note_clock(self, seconds):
        """A clock behind a move."""
        self.least_clock = seconds if self.least_clock is None else min(seconds, self.least_clock)

    def add(self, other):
        self.counts.update(other.counts)
        for kind, values in other.excess.items():
            self.excess[kind] += values
        if other.least_clock is not None:
            self.note_clock(other.least_clock)

    def summary(self):
        """One line of counts."""
        parts = [f"{number} {name}" for name, number in self.counts.items()]
        if self.least_clock is not None:
            parts.append(f"least clock {self.least_clock:.3f} s")
        return ", ".join(parts)

    def table(self):
        """The lines of a table of excesses, in milliseconds."""
        lines = ["milliseconds over the limit:"]
        lines.append(f"{'':10}{'searches':>9}{'median':>9}{'99 %':>9}{'worst':>9}")
        for kind, meaning in KINDS.items():
            values = sorted(self.excess[kind])
            if values:
                shown = (percentile(values, 0.5), percentile(values, 0.99), values[-1])
                numbers = "".join(f"{1000 * value:9.1f}" for value in shown)
                lines.append(f"{kind:10}{len(values):9}{numbers}  over {meaning}")
        return lines
