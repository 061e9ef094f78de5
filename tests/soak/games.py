"""Games of two watched engines: what each is told, and who is to move."""

from dataclasses import dataclass
from pathlib import Path

from player import hard_limit

_DATA = Path(__file__).resolve().parents[1] / "data"
_LONGEST_GAME = 300  # plies

# A value is drawn from the list for half of the games, else the first one is taken.
_OPTION_VALUES = {
    "Threads": [1, 2, 3, 4],
    "Hash": [16, 16, 17, 32, 64, 100],
    "Difficulty Level": [10, *range(10)],
    "MultiPV": [1, 2, 3, 4],
    "Own Book": ["false", "true"],
    "Ponder": ["true", "false"],
    "Extra Info": ["false", "true"],
    "TLCV fix": ["true", "false"],
    "Search Info": ["true", "true", "true", "false"],
    "Null Move Pruning": ["Yes", "Fail High", "No"],
    "Null Move Reduction": [3, 1, 2, 4, 99],
    "Verify Search": ["Yes", "EndGame", "No"],
    "Verify Reduction": [5, 1, 6, -1],
    "History Pruning": ["true", "false"],
    "History Threshold": [70, 0, 100],
    "Futility Pruning": ["true", "false"],
    "Futility Margin": [100, 0, 500],
    "Futility Extension": [200, 0, 900],
    "Delta Pruning": [1, 0],
    "Delta Margin": [50, 0, 500],
    "ZARXReduceOne": [1, 0, 2],
    "ZARXEvalADVOPEN": ["true", "false"],
    "ZARXEvalADVMID": [200, 0, 900],
    "ZARXEvalADVEND": [125, 0, 900],
}


@dataclass(frozen=True)
class Go:
    """A search to ask for. `limit` and `stop_after` are seconds; one of them is None."""

    kind: str  # of record.KINDS
    text: str  # behind "go "
    limit: float | None = None
    stop_after: float | None = None


def random_go(rng, white, ponder):
    """A short search for a side: by move time, clock or depth, or one that is to be stopped."""
    kind = rng.choice(("movetime", "movetime", "clock", "clock", "depth", "stop"))
    if kind == "clock":
        return _random_clock(rng, white, ponder)
    if kind == "stop":
        text = rng.choice(("infinite", "infinite", "wtime -1", "infinite depth 1", ""))
        return Go("stop", text, stop_after=rng.uniform(0, 0.01))
    milliseconds = rng.randint(0, 20)
    text = f"movetime {milliseconds}"
    if kind == "depth":
        text += rng.choice((f" depth {rng.randint(0, 9)}", f" mate {rng.randint(0, 4)}"))
    return Go("movetime", text, limit=0.001 * milliseconds)


def _random_clock(rng, white, ponder):
    own, other = rng.randint(0, 1400), rng.randint(0, 100_000)
    increment = rng.choice((0, 0, rng.randint(0, 200)))
    wtime, btime = (own, other) if white else (other, own)
    text = f"wtime {wtime} btime {btime} winc {increment} binc {increment}"
    moves_to_go = rng.choice((None, None, rng.randint(1, 40)))
    if moves_to_go is not None:
        text += f" movestogo {moves_to_go}"
    limit = hard_limit(0.001 * own, 0.001 * increment, moves_to_go, ponder)
    return Go("clock", text, limit=limit)


def _random_options(rng, book):
    options = {}
    for name, values in _OPTION_VALUES.items():
        options[name] = rng.choice(values) if rng.random() < 0.5 else values[0]
    options["Book File"] = book
    return options


def _positions():
    """The positions of the test data, one FEN each."""
    fens = _fens("evaluation.fen")
    for name in ("perft.epd", "rules.epd"):
        fens += [line.split(" ;")[0] for line in _fens(name)]
    return fens


def _fens(name):
    return [line for line in (_DATA / name).read_text().splitlines() if line[:1] not in ("", "#")]


def random_opening(rng, twin, crowded=False):
    """Sets up the twin: a FEN (None for the start position) and moves behind it."""
    if crowded:
        fen = rng.choice(_fens("crowded.fen"))
    else:
        fen = rng.choice(_positions()) if rng.random() < 0.4 else None
    twin.set_position(fen)
    moves = []
    for _ in range(rng.randint(0, 12)):
        if twin.status() != "ongoing":
            break
        moves.append(rng.choice(twin.moves()))
        twin.play(moves[-1])
    return fen, moves


def play_soak_game(players, twin, record, rng, book):
    """A game with random options, a few milliseconds a move; the first player begins."""
    for player in players:
        if rng.random() < 0.8:
            player.set_options(_random_options(rng, book))
        player.new_game()
    crowded = rng.random() < 0.03
    for player in players:
        player.crowded = crowded
    fen, moves = random_opening(rng, twin, crowded)
    white_begins = fen is None or fen.split()[1] == "w"
    mover, other = players
    while twin.status() == "ongoing" and len(moves) < _LONGEST_GAME:
        white = white_begins == (len(moves) % 2 == 0)
        ponders = mover.options["Ponder"] == "true"
        if mover.pondering is not None:
            best, ponder = mover.ponderhit()
        else:
            best, ponder = mover.think(fen, moves, random_go(rng, white, ponders))
        # Now and then a pondering engine is stopped although it has guessed right.
        if other.pondering is not None and (other.pondering != best or rng.random() < 0.2):
            other.stop_pondering(played=False)
        twin.play(best)
        moves.append(best)
        record.counts["moves"] += 1
        if ponder is not None and rng.random() < 0.5:
            mover.start_pondering(fen, moves, ponder, _random_clock(rng, white, ponders))
        elif rng.random() < 0.02:
            name = rng.choice(list(_OPTION_VALUES))
            mover.set_options({name: rng.choice(_OPTION_VALUES[name])})
        mover, other = other, mover
    # The side that has moved ponders on a reply that will not come, the other one on the last move.
    for player, played in ((other, False), (mover, True)):
        if player.pondering is not None:
            player.stop_pondering(played)
        player.fence()
        player.weigh()


def play_clock_game(players, twin, record, rng, clock, increment):
    """A whole game from a random opening, with these seconds and these for every move."""
    for player in players:
        player.new_game()
    twin.set_position()
    moves = []
    while len(moves) < 6:
        moves.append(rng.choice(twin.moves()))
        twin.play(moves[-1])
    if twin.status() != "ongoing":
        return
    clocks = [clock, clock]
    while (result := twin.status()) == "ongoing":
        side = len(moves) % 2
        wtime, btime, step = (int(1000 * seconds) for seconds in (*clocks, increment))
        text = f"wtime {wtime} btime {btime} winc {step} binc {step}"
        player = players[side]
        limit = hard_limit(clocks[side], increment, None, player.options["Ponder"] == "true")
        best, _ = player.think(None, moves, Go("clock", text, limit=limit))
        clocks[side] -= player.seconds
        record.note_clock(clocks[side])
        record.counts["moves"] += 1
        if clocks[side] < 0:
            result = "lost on time"
            break
        clocks[side] += increment
        twin.play(best)
        moves.append(best)
    record.counts[result] += 1
    for player in players:
        player.fence()
        player.weigh()
