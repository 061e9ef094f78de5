"""Opening books as text, as files and back: making, showing and checking them."""

import re
import struct
import tempfile
import unittest
from pathlib import Path

import tool
from engine import START_FEN, Engine, program_path
from report import best_move

ROOT = Path(__file__).resolve().parents[2]
OPENINGS = ROOT / "book" / "openings.txt"

START_KEY = 0x463B96181691FC9C
E4_FEN = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"
E4_KEY = 0x823C9B50FD114196

# Lines and the published keys of the positions before each of their moves.
PUBLISHED = [
    (
        "e2e4 d7d5 e4e5 f7f5 e1e2 e8f7 a2a3",
        [
            START_KEY,
            E4_KEY,
            0x0756B94461C50FB0,
            0x662FAFB965DB29D4,
            0x22A48B5A8E47FF78,
            0x652A607CA3F242C1,
            0x00FDD303C946BDD9,
        ],
    ),
    ("a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3 a7a6", {5: 0x3C8123EA7B067637, 7: 0x5C3F9B829B279560}),
]

KING_SIDE = "e2e4 e7e5 g1f3 g8f6 f1e2 f8e7 e1g1 e8g8"
QUEEN_SIDE = "d2d4 d7d5 c1f4 c8f5 b1c3 b8c6 d1d2 d8d7 e1c1 e8c8"
WHITE_PROMOTES = "a2a4 b7b5 a4b5 a7a6 b5a6 c8b7 a6b7 h7h6 b7a8"
BLACK_PROMOTES = "a2a3 h7h5 g2g4 h5g4 h2h3 g4h3 f1g2 h3g2 a3a4 g2h1"


def run_tool(*arguments, text=None):
    """Output lines, exit status and standard error of a "book" subcommand."""
    return tool.run_tool("book", *arguments, text=text)


def code(text):
    """The number that the file holds for a move in coordinate text."""
    from_file, from_rank, to_file, to_rank = text[:4]
    from_square = "abcdefgh".index(from_file) + 8 * (int(from_rank) - 1)
    to_square = "abcdefgh".index(to_file) + 8 * (int(to_rank) - 1)
    promotion = " nbrq".index(text[4]) if len(text) == 5 else 0
    return promotion << 12 | from_square << 6 | to_square


def packed(*entries):
    """The bytes of a file of (key, move, weight) entries."""
    return b"".join(
        struct.pack(">QHHHH", key, move if isinstance(move, int) else code(move), weight, 0, 0)
        for key, move, weight in entries
    )


def unpacked(data):
    """The (key, move code, weight) entries of a file."""
    if len(data) % 16 != 0:
        raise AssertionError(f"{len(data)} bytes are no whole entries")
    entries = list(struct.iter_unpack(">QHHHH", data))
    if any(learn for entry in entries for learn in entry[3:]):
        raise AssertionError("a learning field is not zero")
    return [entry[:3] for entry in entries]


class BookCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.lines = self.folder / "lines.txt"
        self.book = self.folder / "made.bin"

    def make(self, *lines):
        """Makes a book of lines that have no fault; its entries."""
        self.lines.write_bytes("".join(line + "\n" for line in lines).encode())
        self.assertEqual(([], 0, ""), run_tool("make", self.lines, self.book), lines)
        return unpacked(self.book.read_bytes())

    def make_faulty(self, *lines):
        """Makes a book of lines with faults: its entries and the messages, without the path."""
        self.lines.write_bytes("".join(line + "\n" for line in lines).encode())
        output, status, errors = run_tool("make", self.lines, self.book)
        self.assertEqual(([], 1), (output, status), lines)
        messages = errors.splitlines()
        for message in messages:
            self.assertTrue(message.startswith(f"{self.lines}:"), message)
        messages = [message.removeprefix(f"{self.lines}:") for message in messages]
        return unpacked(self.book.read_bytes()), messages

    def show(self, *fen):
        """The moves shown for a position: text to (weight, per cent), and their order."""
        output, status, errors = run_tool("show", self.book, *fen)
        self.assertEqual((0, ""), (status, errors), fen)
        rows = [re.fullmatch(r"(\S+) +(\d+) +(\d+\.\d\d)%", line) for line in output]
        self.assertTrue(all(rows), output)
        return [(row[1], int(row[2]), float(row[3])) for row in rows]

    def check(self, data):
        """The faults that are reported for a file of these bytes."""
        self.book.write_bytes(data)
        output, status, errors = run_tool("check", self.book)
        self.assertEqual("", errors)
        entries = len(data) // 16
        positions = len({data[16 * i : 16 * i + 8] for i in range(entries)})
        faults = output[:-1]
        self.assertEqual(
            f"{entries} entries, {positions} positions, {len(faults)} faults", output[-1]
        )
        self.assertEqual(1 if faults else 0, status, output)
        return faults


class Make(BookCase):
    def test_the_first_bytes_of_entries_are_the_published_keys(self):
        self.make("e2e4 e7e5")
        data = self.book.read_bytes()
        self.assertEqual(32, len(data))
        self.assertEqual("463b96181691fc9c", data[0:8].hex())
        self.assertEqual("823c9b50fd114196", data[16:24].hex())
        self.assertEqual("031c000100000000", data[8:16].hex())

    def test_keys_are_the_published_ones(self):
        for line, keys in PUBLISHED:
            entries = self.make(line)
            moves = line.split()
            for index, key in keys.items() if isinstance(keys, dict) else enumerate(keys):
                self.assertIn((key, code(moves[index]), 1), entries, (line, index))
            self.assertEqual(len(moves), len(entries), line)

    def test_castling_is_the_kings_move_of_two_files(self):
        self.assertEqual((0x0106, 0x0F3E), (code("e1g1"), code("e8g8")))
        for line in (KING_SIDE, QUEEN_SIDE):
            moves = [move for _, move, _ in self.make(line)]
            self.assertEqual(sorted(code(move) for move in line.split()), sorted(moves))

    def test_promotions_are_numbered_from_the_knight_on(self):
        for line in (WHITE_PROMOTES, BLACK_PROMOTES):
            entries = self.make(line + "q", line + "r", line + "b", line + "n")
            plain = code(line.split()[-1])
            promotions = [move for _, move, _ in entries if move & 0xFFF == plain]
            expected = [plain | number << 12 for number in (1, 2, 3, 4)]
            self.assertEqual(expected, sorted(promotions), line)
            others = [move for _, move, _ in entries if move & 0xFFF != plain]
            self.assertTrue(all(move < 0x1000 for move in others), line)

    def test_weights_of_equal_moves_are_summed(self):
        self.make("3: e2e4", "2: e2e4 e7e5", "d2d4 d7d5", "4: e2e4 c7c5")
        self.assertEqual([("e2e4", 9, 90.0), ("d2d4", 1, 10.0)], self.show())
        self.assertEqual([("c7c5", 4, 66.67), ("e7e5", 2, 33.33)], self.show(E4_FEN))

    def test_lines_meet_where_they_transpose(self):
        entries = self.make("d2d4 g8f6 c2c4 e7e6 g1f3", "2: c2c4 g8f6 d2d4 e7e6 b1c3")
        self.assertEqual(9, len(entries))
        position = "rnbqkb1r/pppppppp/5n2/8/2PP4/8/PP2PPPP/RNBQKBNR b KQkq - 0 2"
        self.assertEqual([("e7e6", 3, 100.0)], self.show(position))

    def test_a_position_with_an_en_passant_capture_is_another_one(self):
        # The same men on the same squares, but only the first line lets White take on d6.
        first = "e2e4 g8f6 e4e5 d7d5 b1c3"
        second = "e2e4 d7d6 e4e5 d6d5 b1c3"
        entries = self.make(first, second)
        keys = {key for key, move, _ in entries if move == code("b1c3")}
        self.assertEqual(2, len(keys))

    def test_weights_of_a_position_are_scaled_down_together(self):
        self.make(
            "65535: e2e4",
            "65535: e2e4 c7c5",
            "7: e2e4 e7e5",
            "32000: d2d4",
            "16000: c2c4",
            "1: g1f3",
        )
        shown = {move: weight for move, weight, _ in self.show()}
        self.assertEqual(65535, shown["e2e4"])
        self.assertEqual(1, shown["g1f3"])
        for move, weight in (("d2d4", 32000), ("c2c4", 16000)):
            scaled = weight * 65535 / (2 * 65535 + 7)
            self.assertAlmostEqual(scaled, shown[move], delta=1, msg=move)
        # The next position has sums that fit, so they stand.
        self.assertEqual([("c7c5", 65535, 99.99), ("e7e5", 7, 0.01)], self.show(E4_FEN))

    def test_a_sum_of_65535_is_not_scaled(self):
        self.make("65534: e2e4", "e2e4", "3: d2d4")
        self.assertEqual([("e2e4", 65535), ("d2d4", 3)], [row[:2] for row in self.show()])

    def test_entries_are_sorted_by_key_then_by_weight(self):
        entries = self.make(
            "a2a3 a7a6", "5: h2h3 h7h6", "2: e2e4 e7e5", "e2e4 c7c5", "9: e2e4 c7c6", "2: b2b3"
        )
        self.assertEqual(sorted(entries, key=lambda entry: (entry[0], -entry[2])), entries)
        self.assertGreater(len({key for key, _, _ in entries}), 3)
        shown = [weight for _, weight, _ in self.show()]
        self.assertEqual([12, 5, 2, 1], shown)

    def test_moves_of_equal_weight_have_a_fixed_order(self):
        one = self.make("a2a3", "h2h3", "b2b3", "b1c3")
        other = self.make("b1c3", "b2b3", "h2h3", "a2a3")
        self.assertEqual(one, other)

    def test_comments_and_blanks(self):
        plain = self.make("3: e2e4 e7e5", "d2d4")
        for lines in (
            ("# heading", "", "3: e2e4 e7e5", "  # indented", "d2d4"),
            ("3: e2e4 e7e5 # behind", "d2d4# close", "#e2e4 e2e4"),
            ("3:e2e4 e7e5", "1: d2d4"),
            ("  3 :\te2e4\t e7e5  ", "d2d4 "),
            ("3: e2e4 e7e5\r", "\r", "d2d4\r"),
            ("3: e2e4 e7e5#9: x", "3:", "d2d4", "3: # nothing"),
        ):
            self.assertEqual(plain, self.make(*lines), lines)
        behind = self.make("3: e2e4 # e7e5", "d2d4")
        self.assertEqual(self.make("3: e2e4", "d2d4"), behind)

    def test_a_last_line_without_newline_counts(self):
        self.lines.write_text("e2e4\nd2d4")
        self.assertEqual(([], 0, ""), run_tool("make", self.lines, self.book))
        self.assertEqual(2, len(unpacked(self.book.read_bytes())))

    def test_no_lines_make_an_empty_book(self):
        self.assertEqual([], self.make())
        self.assertEqual([], self.make("# nothing", ""))

    def test_a_longer_book_is_replaced(self):
        self.make("e2e4 e7e5 g1f3", "d2d4")
        self.assertEqual([(START_KEY, code("c2c4"), 1)], self.make("c2c4"))

    def test_a_very_long_line(self):
        rounds = 1500
        entries = self.make(" ".join(["g1f3 g8f6 f3g1 f6g8"] * rounds))
        self.assertEqual([rounds] * 4, [weight for _, _, weight in entries])

    def test_an_illegal_move_costs_the_rest_of_its_line_only(self):
        entries, messages = self.make_faulty(
            "# comment", "2: e2e4 e7e5 e4e5 g8f6", "d2d4 d7d5", "e2e4 c7c5 e1e2 d8d1 a2a3"
        )
        self.assertEqual(2, len(messages), messages)
        self.assertRegex(messages[0], r"^2: .*\be4e5\b")
        self.assertRegex(messages[1], r"^4: .*\bd8d1\b")
        good = self.make("2: e2e4 e7e5", "d2d4 d7d5", "e2e4 c7c5 e1e2")
        self.assertEqual(good, entries)

    def test_what_is_no_legal_move(self):
        mate = "f2f3 e7e5 g2g4 d8h4"
        for before, word in (
            ("", "e2e5"),
            ("", "e7e5"),
            ("", "E2E4"),
            ("", "e2e4q"),
            ("", "e2e4x"),
            ("", "e2-e4"),
            ("", "e5"),
            ("", "Nf4"),
            ("", "1e4"),
            ("g1f3 g8f6 b1c3", "f6d5?e7"),
            ("g1f3 g8f6 d2d3 e7e6", "Nd2"),
            ("", "0000"),
            ("", "null"),
            ("", "e1g1"),
            ("e2e4 e7e5 g1f3 b8c6 f1c4 f8c5", "e1h1"),
            ("e2e4 e7e5 g1f3 b8c6 f1c4 f8c5", "O-O-O"),
            ("e2e4", ":"),
            (mate, "a2a3"),
            (WHITE_PROMOTES.rpartition(" ")[0], "b7a8"),
            (WHITE_PROMOTES.rpartition(" ")[0], "b7a8k"),
            (WHITE_PROMOTES.rpartition(" ")[0], "b7a8qq"),
        ):
            line = f"1: {before} {word} h2h3"
            entries, messages = self.make_faulty(line, "h2h4")
            self.assertEqual(1, len(messages), line)
            self.assertTrue(messages[0].startswith(f"1: {word} "), messages)
            self.assertEqual(self.make(before, "h2h4"), entries, line)

    def test_a_wrong_weight_costs_its_whole_line(self):
        for weight in ("0", "65536", "99999999999", "-1", "+3", "x", "3.5", "1 2", "3x", "0x3", ""):
            entries, messages = self.make_faulty("a2a3", f"{weight}: e2e4 e7e5", "h2h3")
            self.assertEqual(1, len(messages), weight)
            self.assertRegex(messages[0], r"^2: .*weight", weight)
            self.assertEqual(self.make("a2a3", "h2h3"), entries, weight)

    def test_files_that_cannot_be_used(self):
        self.lines.write_text("e2e4\n")
        for lines, book, named in (
            (self.folder / "none.txt", self.book, "none.txt"),
            (self.folder, self.book, str(self.folder)),
            (self.lines, self.folder / "none" / "out.bin", "out.bin"),
            (self.lines, self.folder, str(self.folder)),
        ):
            output, status, errors = run_tool("make", lines, book)
            self.assertEqual(([], 1), (output, status), (lines, book))
            self.assertRegex(errors, r"^[^\n]+\n$")
            self.assertIn(named, errors)
        self.assertFalse(self.book.exists())


class Notation(BookCase):
    """Lines in standard notation."""

    def test_a_line_may_be_in_either_notation_or_both(self):
        for coordinates, *others in (
            (KING_SIDE, "e4 e5 Nf3 Nf6 Be2 Be7 O-O O-O", "e4 e7e5 Nf3! Ng8f6 f1e2 Be7 0-0 e8g8"),
            (QUEEN_SIDE, "d4 d5 Bf4 Bf5 Nc3 Nc6 Qd2 Qd7 O-O-O O-O-O"),
            (WHITE_PROMOTES + "n", "a4 b5 axb5 a6 bxa6 Bb7 axb7 h6 bxa8=N"),
            (BLACK_PROMOTES + "q", "a3 h5 g4 hxg4 h3 gxh3 Bg2 hxg2 a4 gxh1=Q"),
            ("f2f3 e7e5 g2g4 d8h4", "f3 e5 g4 Qh4# 0-1", "f3?! e5 g4?? Qh4"),
        ):
            expected = self.make("3: " + coordinates)
            for other in others:
                self.assertEqual(expected, self.make("3: " + other), other)

    def test_numbers_marks_and_results_mean_no_move(self):
        expected = self.make("2: e2e4 e7e5 g1f3", "d2d4")
        for line in (
            "2: 1. e4 e5 2. Nf3",
            "2: 1.e4 e5 2.Nf3 1/2-1/2",
            "2: 1. e4 1... e5 2. Nf3 *",
            "2: 1.e4 $1 1...e5 e.p. 2.g1f3 $14 1-0",
        ):
            self.assertEqual(expected, self.make(line, "1. d4"), line)

    def test_the_number_of_plies_can_be_limited(self):
        self.lines.write_text("e4 e5 Nf3 Nc6 nonsense\n3: d4\n")
        self.assertEqual(([], 0, ""), run_tool("make", "--plies", 2, self.lines, self.book))
        found = unpacked(self.book.read_bytes())
        self.assertEqual(found, self.make("e2e4 e7e5", "3: d2d4"))

    def test_a_text_may_come_from_elsewhere(self):
        expected = self.make("e2e4 e7e5", "d2d4")
        for text in ("\xef\xbb\xbfe4 e5\nd4\n", "\xef\xbb\xbf1. e4 e5\r\nd4\r\n"):
            self.assertEqual(([], 0, ""), run_tool("make", "-", self.book, text=text))
            self.assertEqual(expected, unpacked(self.book.read_bytes()), text)
        _, status, errors = run_tool("make", "-", self.book, text="e4 e4\n")
        message = "standard input:1: e4 is no legal move, the rest of the line is dropped\n"
        self.assertEqual((1, message), (status, errors))


class Games(BookCase):
    """Books from games in PGN."""

    TAGS = '[Event "A game"]\n[White "One, \\"two\\""]\n[Result "1-0"]\n\n'

    def games(self, text, *arguments):
        """The entries that games without a fault come to."""
        self.lines.write_bytes(text.encode("latin-1"))
        found = run_tool("make", *arguments, self.lines, self.book)
        self.assertEqual(([], 0, ""), found, text)
        return unpacked(self.book.read_bytes())

    def faulty_games(self, text):
        """The entries that are left, and the messages without the path."""
        self.lines.write_bytes(text.encode("latin-1"))
        output, status, errors = run_tool("make", self.lines, self.book)
        self.assertEqual(([], 1), (output, status), text)
        messages = [line.removeprefix(f"{self.lines}:") for line in errors.splitlines()]
        return unpacked(self.book.read_bytes()), messages

    def test_games_are_lines_of_weight_1(self):
        text = (
            f"{self.TAGS}1. e4 e5 2. Nf3 Nc6\n3. Bb5 1-0\n\n"
            f"{self.TAGS}1. e4 c5 1/2-1/2\n\n{self.TAGS}1.d4 *\n"
        )
        expected = self.make("e2e4 e7e5 g1f3 b8c6 f1b5", "e2e4 c7c5", "d2d4")
        self.assertEqual(expected, self.games(text))
        self.assertEqual(expected, self.games("\xef\xbb\xbf" + text.replace("\n", "\r\n")))
        self.assertEqual(expected, self.games("\n\n" + text))

    def test_what_is_no_move_of_the_game_is_passed_over(self):
        expected = self.make("e2e4 e7e5 g1f3 b8c6 f1b5")
        for moves in (
            "1. e4 {best (by test) [%clk 1:00] $3} e5 2. Nf3 Nc6 3. Bb5",
            "1. e4 {a comment\n[Event of] 2. h4\n% lines} e5 2. Nf3 Nc6 3. Bb5",
            "1. e4 e5 ; 2. h4 h5 {\n2. Nf3 Nc6 3. Bb5",
            "%1. h4 {\n1. e4 e5 2. Nf3 Nc6 3. Bb5",
            "1. e4 (1. d4 d5 (1... Nf6 {)} 2. c4) 2. c4) e5 2. Nf3 Nc6 3. Bb5",
            "1.e4$1e5 $14 2.Nf3!?$2(2.f4)Nc6{a}3.Bb5",
            "1. e4! e5?? 2. Nf3!! Nc6!? 3. Bb5?!",
            "1. e2e4 e5 2. Ng1f3 Nc6 3. Bb5",
        ):
            self.assertEqual(expected, self.games(f"{self.TAGS}{moves} 1-0\n"), moves)

    def test_texts_that_begin_otherwise(self):
        expected = self.make("e2e4 e7e5")
        for begin in ("{a comment} ", "% a line\n", "; a line\n"):
            self.assertEqual(expected, self.games(begin + "1. e4\ne5 *\n"), begin)
        self.lines = self.folder / "bare.pgn"
        self.assertEqual(expected, self.games("1. e4\ne5 *\n"))

    def test_the_number_of_plies_can_be_limited(self):
        expected = self.make("e2e4 e7e5", "d2d4 d7d5")
        text = f"{self.TAGS}1. e4 e5 2. Nf3 1-0\n{self.TAGS}1. d4 d5 2. nonsense 1-0\n"
        self.assertEqual(expected, self.games(text, "--plies", 2))

    def test_a_game_may_begin_elsewhere(self):
        fen = "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"
        for tags in (f'[Event "x"]\n[FEN "{fen}"]\n', f'[FEN "{fen}"]\n[Event "x"]\n'):
            self.games(f"{tags}\n1. e4 Ke7 *\n\n{self.TAGS}1. e3 *\n")
            self.assertEqual([("e2e4", 1, 100.0)], self.show(fen))
            self.assertEqual([("e2e3", 1, 100.0)], self.show())

    def test_a_game_without_moves_or_result_leaves_nothing_behind(self):
        fen = "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"
        for rest in ("", "\n", "\n*\n", "\n1-0\n\n"):
            text = f'{self.TAGS}[FEN "{fen}"]\n{rest}\n{self.TAGS}1. d4 *\n'
            self.assertEqual(self.make("d2d4"), self.games(text), rest)

    def test_a_fault_costs_the_rest_of_its_game(self):
        good = f"{self.TAGS}1. d4 d5 *\n"
        for game, line, word in (
            ("1. e4 e5\n2. Ke3 Ke7 *\n", 6, "Ke3 is no legal move, the rest of the game"),
            ("1. e4 e5 2. nonsense 1-0\n", 5, "nonsense is no move, the rest of the game"),
            ("1. e4 e5 2. -- *\n", 5, "-- is no move, the rest of the game"),
            ("1. e4 e5 2. \x1b[31m *\n", 5, "?[31m is no move, the rest of the game"),
            ("1. e4 e5 (2. h4\n\n", 7, "a variation of the game before is not closed"),
        ):
            entries, messages = self.faulty_games(self.TAGS + game + good)
            self.assertEqual(1, len(messages), messages)
            self.assertTrue(messages[0].startswith(f"{line}: {word}"), messages)
            self.assertEqual(self.make("e2e4 e7e5", "d2d4 d7d5"), entries, game)

    def test_a_bad_start_costs_its_game(self):
        text = f'[Event "x"]\n[FEN "nonsense"]\n\n1. e4 *\n\n{self.TAGS}1. d4 *\n'
        entries, messages = self.faulty_games(text)
        self.assertEqual(self.make("d2d4"), entries)
        self.assertRegex(messages[0], "^2: FEN: a rank has .*, the game is dropped$")

    def test_a_comment_that_is_not_closed_is_told(self):
        entries, messages = self.faulty_games(f"{self.TAGS}1. e4 {{never\n{self.TAGS}1. d4 *\n")
        self.assertEqual(self.make("e2e4"), entries)
        self.assertEqual(["5: a comment is not closed, what is behind it is dropped"], messages)

    def test_names_that_are_no_text(self):
        for path in (self.folder, self.folder / "none.pgn"):
            message = f"zar-x3-tools: {path}: cannot be read\n"
            self.assertEqual(([], 1, message), run_tool("make", path, self.book))


class Show(BookCase):
    def test_the_start_position_is_the_default(self):
        self.make("3: e2e4", "1: d2d4")
        expected = [("e2e4", 3, 75.0), ("d2d4", 1, 25.0)]
        self.assertEqual(expected, self.show())
        self.assertEqual(expected, self.show(START_FEN))
        self.assertEqual(expected, self.show(*START_FEN.split()))

    def test_a_position_without_moves(self):
        self.make("e2e4")
        output, status, errors = run_tool("show", self.book, E4_FEN)
        self.assertEqual(([], 1), (output, status))
        self.assertRegex(errors, r"^[^\n]+\n$")

    def test_moves_are_shown_as_the_file_has_them(self):
        self.book.write_bytes(
            packed((START_KEY, "e2e5", 0), (START_KEY, "a7a8q", 3), (START_KEY, 0x5000, 1))
        )
        self.assertEqual([("e2e5", 0, 0.0), ("a7a8q", 3, 75.0), ("a1a1?", 1, 25.0)], self.show())

    def test_weights_of_zero(self):
        self.book.write_bytes(packed((START_KEY, "e2e4", 0), (START_KEY, "d2d4", 0)))
        self.assertEqual([("e2e4", 0, 0.0), ("d2d4", 0, 0.0)], self.show())

    def test_entries_anywhere_in_the_file(self):
        self.book.write_bytes(
            packed((E4_KEY, "e7e5", 1), (START_KEY, "e2e4", 1), (1, "a2a3", 1), (E4_KEY, "c7c5", 3))
        )
        self.assertEqual([("e7e5", 1, 25.0), ("c7c5", 3, 75.0)], self.show(E4_FEN))

    def test_bad_arguments(self):
        self.make("e2e4")
        output, status, errors = run_tool("show", self.book, "nonsense")
        self.assertEqual(([], tool.TOO_BAD), (output, status))
        fault = "a rank has a character that is neither a man nor a digit from 1 to 8"
        self.assertEqual(f"zar-x3-tools: FEN 'nonsense': {fault}\n", errors)
        for path in (self.folder / "none.bin", self.folder):
            output, status, errors = run_tool("show", path)
            self.assertEqual(([], 1), (output, status), path)
            self.assertIn(str(path), errors)


class Check(BookCase):
    def assert_fault(self, data, *patterns):
        """The faults are these, one pattern each, in this order."""
        faults = self.check(data)
        self.assertEqual(len(patterns), len(faults), faults)
        for pattern, fault in zip(patterns, faults):
            self.assertRegex(fault, pattern)

    def test_a_made_book_is_good(self):
        self.make(KING_SIDE, "3: " + QUEEN_SIDE, WHITE_PROMOTES + "n", BLACK_PROMOTES + "q")
        self.assertEqual([], self.check(self.book.read_bytes()))

    def test_an_empty_file_is_good(self):
        self.assertEqual([], self.check(b""))

    def test_keys_out_of_order(self):
        self.assert_fault(
            packed((E4_KEY, "e7e5", 1), (START_KEY, "e2e4", 1)), "^entry 1 .*463b96181691fc9c.*key"
        )

    def test_keys_are_unsigned(self):
        self.assertGreater(E4_KEY, 1 << 63)
        self.assertEqual([], self.check(packed((START_KEY, "e2e4", 1), (E4_KEY, "e7e5", 1))))

    def test_weights_out_of_order(self):
        entries = packed((START_KEY, "e2e4", 1), (START_KEY, "d2d4", 2), (START_KEY, "c2c4", 2))
        self.assert_fault(entries, "^entry 1 .*d2d4.*weight")

    def test_a_move_that_stands_twice(self):
        entries = packed((START_KEY, "e2e4", 3), (START_KEY, "d2d4", 2), (START_KEY, "e2e4", 1))
        self.assert_fault(entries, "^entry 2 .*e2e4.*entry 0$")

    def test_two_promotions_on_one_square_are_two_moves(self):
        self.make(WHITE_PROMOTES + "q", WHITE_PROMOTES + "n")
        self.assertEqual([], self.check(self.book.read_bytes()))

    def test_a_move_that_is_not_legal(self):
        entries = packed((START_KEY, "e2e4", 3), (START_KEY, "e2e5", 2), (START_KEY, 0, 1))
        self.assert_fault(entries, "^entry 1 .*e2e5.*legal", "^entry 2 .*legal")

    def test_a_position_that_is_not_reached(self):
        line = self.make("e2e4 e7e5 g1f3")
        self.assertEqual([START_KEY, E4_KEY], [key for key, _, _ in line if key >= START_KEY][:2])
        # Without Black's move the book leads no further; with it, everything is reached again.
        rest = [entry for entry in line if entry[0] != E4_KEY]
        self.assert_fault(packed(*rest), "g1f3.*reach")
        self.assertEqual([], self.check(packed(*line)))

    def test_castling_onto_the_rook_is_not_legal(self):
        entries = self.make(KING_SIDE.rpartition(" ")[0])
        wrong = [
            (key, code("e1h1") if move == code("e1g1") else move, weight)
            for key, move, weight in entries
        ]
        self.assert_fault(packed(*wrong), "e1h1.*legal")

    def test_a_promotion_without_its_piece_is_not_legal(self):
        for piece in (0, 5):
            entries = self.make(WHITE_PROMOTES + "q")
            wrong = [
                (key, code("b7a8") | piece << 12 if move == code("b7a8q") else move, weight)
                for key, move, weight in entries
            ]
            self.assert_fault(packed(*wrong), "b7a8.*legal")

    def test_positions_reached_by_a_move_of_weight_zero_count(self):
        self.assertEqual([], self.check(packed((START_KEY, "e2e4", 0), (E4_KEY, "e7e5", 0))))

    def test_a_book_that_leads_in_a_circle(self):
        self.make("g1f3 g8f6 f3g1 f6g8 g1f3")
        self.assertEqual([], self.check(self.book.read_bytes()))

    def test_bytes_behind_the_last_entry(self):
        good = packed((START_KEY, "e2e4", 1))
        for count in (1, 15):
            self.assert_fault(good + b"x" * count, f"behind.* {count}$")

    def test_all_faults_are_reported(self):
        data = packed(
            (E4_KEY, "e7e5", 1),
            (START_KEY, "e2e4", 1),
            (START_KEY, "e2e4", 2),
            (1, "a2a3", 1),
        )
        self.assert_fault(
            data + b"x",
            "^entry 1 .*key",
            "^entry 2 .*weight",
            "^entry 3 .*key",
            "^entry 2 .*entry 1$",
            "^entry 3 .*reach",
            "behind.* 1$",
        )

    def test_files_that_cannot_be_read(self):
        for path in (self.folder / "none.bin", self.folder):
            output, status, errors = run_tool("check", path)
            self.assertEqual(([], 1), (output, status), path)
            self.assertIn(str(path), errors)


class Arguments(unittest.TestCase):
    def test_help(self):
        for arguments, word in (
            (("--help",), "check"),
            (("make", "--help"), "LINES"),
            (("show", "--help"), "FEN"),
            (("check", "--help"), "FILE"),
        ):
            lines, status, errors = run_tool(*arguments)
            self.assertEqual((0, ""), (status, errors), arguments)
            self.assertIn(word, "\n".join(lines), arguments)

    def test_wrong_arguments_are_errors(self):
        for arguments in ((), ("nonsense",), ("make",), ("make", "x"), ("show",), ("check",)):
            _, status, errors = run_tool(*arguments)
            self.assertGreater(status, 0, arguments)
            self.assertTrue(errors, arguments)


class InPlay(BookCase):
    def test_the_engine_plays_what_the_book_says(self):
        """Moves that no search prefers, castling both ways and a promotion among them."""
        for line in (KING_SIDE, QUEEN_SIDE, "a2a3 h7h6", WHITE_PROMOTES + "q"):
            self.make(line)
            moves = line.split()
            with Engine.ready(Book_File=self.book) as engine:
                for ply, move in enumerate(moves):
                    engine.set_position(moves=moves[:ply])
                    lines = engine.go("depth 1")
                    self.assertEqual(move, best_move(lines), (line, ply))
                    self.assertFalse([text for text in lines if " nodes " in text], (line, ply))


class Repertoire(BookCase):
    """The opening lines that the project ships with."""

    def test_the_text_has_no_fault_and_makes_a_good_book(self):
        self.assertEqual(([], 0, ""), run_tool("make", OPENINGS, self.book))
        data = self.book.read_bytes()
        self.assertEqual([], self.check(data))
        self.assertGreater(len(data) // 16, 2000)

    def test_there_are_400_different_lines_of_8_to_20_plies(self):
        lines = [line.partition("#")[0] for line in OPENINGS.read_text().splitlines()]
        lines = [line.rpartition(":")[2].split() for line in lines if line.strip()]
        for moves in lines:
            self.assertTrue(8 <= len(moves) <= 20, moves)
        self.assertGreaterEqual(len({tuple(moves) for moves in lines}), 400)
        self.assertEqual(len({tuple(moves) for moves in lines}), len(lines))

    def test_the_build_makes_it_in_a_folder_of_its_own(self):
        build = Path(program_path("ZAR_X3_TOOLS")).resolve().parents[1]
        self.assertEqual(([], 0, ""), run_tool("make", OPENINGS, self.book))
        self.assertEqual(self.book.read_bytes(), (build / "share" / "ZAR.ebk").read_bytes())
        for folder in (ROOT, build):
            self.assertFalse((folder / "ZAR.ebk").exists(), folder)


if __name__ == "__main__":
    unittest.main()
