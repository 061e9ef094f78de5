"""Whole games through pipes; the twin checks every move and says when a game is over."""

import unittest

from engine import Engine, Twin
from report import best_move, ponder_move

LONGEST_GAME = 600  # plies

# Won endings, with the side to move's material; they must be won, not drawn.
WON_ENDINGS = [
    "8/8/8/3k4/8/8/8/KQ6 w - - 0 1",
    "8/8/8/3k4/8/8/8/KR6 w - - 0 1",
    "8/8/4k3/8/8/2q5/8/6K1 b - - 0 1",
    "8/8/8/8/3k4/8/3P4/RK6 w - - 0 1",
]


class TwinAnswers(unittest.TestCase):
    """What the other tests, and the soak test, rely on."""

    def test_the_first_illegal_variation_is_found(self):
        with Twin() as twin:
            legal = [["e2e4", "e7e5", "e1e2"], [], ["g1f3"]]
            self.assertIsNone(twin.illegal_variation(legal))
            answer = twin.illegal_variation([*legal, ["e2e4", "e7e5", "e1e3"], ["e2e5"]])
            self.assertEqual("illegal e1e3 in e2e4 e7e5 e1e3", answer)
            self.assertEqual(20, len(twin.moves()), "the game has not moved on")

    def test_moves_behind_a_variation(self):
        with Twin() as twin:
            self.assertEqual([], twin.moves(["f2f3", "e7e5", "g2g4", "d8h4"]))
            self.assertEqual(29, len(twin.moves(["e2e4", "e7e5"])))
            self.assertEqual(20, len(twin.moves()), "the game has not moved on")


class Games(unittest.TestCase):
    def play(self, engines, twin, fen, parameters):
        """Plays from a FEN (None: the start position), the engines in turn. Moves and result."""
        twin.set_position(fen)
        moves = []
        while (result := twin.status()) == "ongoing":
            self.assertLess(len(moves), LONGEST_GAME, f"{fen} moves {' '.join(moves)}")
            engine = engines[len(moves) % len(engines)]
            engine.set_position(fen, moves)
            move = best_move(engine.go(parameters))
            answer = twin.ask(f"play {move}")
            self.assertEqual("ok", answer, f"{move!r} after {fen} moves {' '.join(moves)}")
            moves.append(move)
        return moves, result

    def assert_over(self, engine, fen, moves, result):
        """Asked for a move in the final position, the engine has none if there is none."""
        engine.set_position(fen, moves)
        lines = engine.go("depth 1")
        over = result in ("mate", "stalemate")
        self.assertEqual(over, best_move(lines) == "(none)", f"{result} after {' '.join(moves)}")

    def test_a_game_of_two_engines_ends_in_a_result(self):
        with Engine.ready() as white, Engine.ready() as black, Twin() as twin:
            moves, result = self.play([white, black], twin, None, "movetime 50")
            self.assertIn(result, ("mate", "stalemate", "fifty", "repetition", "material"))
            self.assert_over(white, None, moves, result)
            for engine in (white, black):
                engine.send("quit")
                self.assertEqual(([], 0, ""), engine.finish())

    def test_won_endings_are_won(self):
        for fen in WON_ENDINGS:
            with self.subTest(fen=fen), Engine.ready() as engine, Twin() as twin:
                moves, result = self.play([engine], twin, fen, "depth 8")
                self.assertEqual("mate", result, f"{fen} moves {' '.join(moves)}")
                self.assertEqual(1, len(moves) % 2, f"{fen} moves {' '.join(moves)}")
                self.assert_over(engine, fen, moves, result)

    def test_pondering_through_a_game(self):
        # The engine ponders on the reply it expects; every other time the reply is another.
        with Engine.ready() as engine, Twin() as twin:
            moves, hits, misses = [], 0, 0
            twin.set_position()
            for _ in range(30):
                if twin.status() != "ongoing":
                    break
                engine.set_position(None, moves)
                lines = engine.go("depth 6")
                moves.append(best_move(lines))
                twin.play(moves[-1])
                expected = ponder_move(lines)
                if expected is None:
                    continue
                self.assertIn(expected, twin.moves(), f"ponder after {' '.join(moves)}")
                engine.set_position(None, [*moves, expected])
                engine.send("go ponder wtime 1000 btime 1000")
                reply = expected if hits <= misses else twin.moves()[0]
                hit = reply == expected
                moves.append(reply)
                twin.play(reply)
                engine.send("ponderhit" if hit else "stop")
                answer = best_move(engine.read_until("bestmove"))
                hits, misses = hits + hit, misses + (not hit)
                if hit and answer != "(none)":
                    self.assertIn(answer, twin.moves(), f"after {' '.join(moves)}")
            self.assertGreater(hits, 3)
            self.assertGreater(misses, 3)


if __name__ == "__main__":
    unittest.main()
