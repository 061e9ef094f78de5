"""The developers' program: counting moves and looking into a position."""

import json
import os
import re
import shlex
import tempfile
import unittest
from pathlib import Path

from engine import START_FEN, Twin
from tool import TOO_BAD, Tool, run_tool

KIWIPETE = "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"
ROOK_ENDING = "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1"
PROMOTIONS = "n1n5/PPPk4/8/8/8/8/4Kppp/5N1N b - - 0 1"
MATE = "rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3"
STALEMATE = "k7/2Q5/1K6/8/8/8/8/8 b - - 0 1"
BARE_KINGS = "8/8/4k3/8/8/3K4/8/8 w - - 0 1"
TEN_BISHOPS = "8/8/8/8/7k/BBBBB3/BBBBB3/K7 w - - 0 1"

# Position, depth, number of move sequences: published counts.
COUNTS = [
    (START_FEN, 4, 197281),
    (KIWIPETE, 3, 97862),
    (ROOK_ENDING, 4, 43238),
    (PROMOTIONS, 3, 9483),
]

# The published keys of the Polyglot book format.
KEYS = [
    (START_FEN, "463b96181691fc9c"),
    ("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1", "823c9b50fd114196"),
    ("rnbqkbnr/ppp1pppp/8/3p4/4P3/8/PPPP1PPP/RNBQKBNR w KQkq d6 0 2", "0756b94461c50fb0"),
    ("rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b KQkq - 0 2", "662fafb965db29d4"),
    ("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6 0 3", "22a48b5a8e47ff78"),
    ("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR b kq - 0 3", "652a607ca3f242c1"),
    ("rnbq1bnr/ppp1pkpp/8/3pPp2/8/8/PPPPKPPP/RNBQ1BNR w - - 0 4", "00fdd303c946bdd9"),
    ("rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3 0 3", "3c8123ea7b067637"),
    ("rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq - 0 4", "5c3f9b829b279560"),
]

OBJECT_KEYS = (
    "fen key pawn_key material_key check mate stalemate legal captures quiets quiet_checks evasions"
    " gives_check see eval draw terms"
).split()
TERM_KEYS = (
    "material_o material_e phase class ending_flags flags_w flags_b scale_w scale_b work_scale_w"
    " work_scale_b pawn_o pawn_e passed_w passed_b lone_w lone_b pst_o pst_e pattern_o pattern_e"
    " shelter_w shelter_b passer_o_w passer_e_w passer_o_b passer_e_b mobility_o_w mobility_e_w"
    " mobility_o_b mobility_e_b total_o total_e final"
).split()


class Perft(unittest.TestCase):
    def test_the_last_line_is_the_total_alone(self):
        for fen, depth, count in COUNTS:
            lines, status, errors = run_tool("perft", str(depth), fen)
            self.assertEqual((str(count), 0, ""), (lines[-1], status, errors), fen)

    def test_the_position_needs_no_quotes(self):
        for fen, depth, count in COUNTS:
            lines, status, errors = run_tool("perft", str(depth), *fen.split())
            self.assertEqual((str(count), 0, ""), (lines[-1], status, errors), fen)

    def test_the_start_position_is_the_default(self):
        for depth, count in ((0, 1), (1, 20), (2, 400), (3, 8902)):
            lines, status, _ = run_tool("perft", str(depth))
            self.assertEqual((str(count), 0), (lines[-1], status), depth)

    def test_an_empty_position_is_a_bad_one(self):
        fault = "zar-x3-tools: FEN '': no '/' behind a rank\n"
        self.assertEqual(([], TOO_BAD, fault), run_tool("perft", "1", ""))

    def test_divide_counts_each_move(self):
        with Twin() as twin:
            for fen, _, _ in COUNTS:
                lines, status, _ = run_tool("perft", "--divide", "2", fen)
                counts = {}
                for line in lines[:-1]:
                    match = re.fullmatch(r"([a-h][1-8][a-h][1-8][nbrq]?)\D+(\d+)", line)
                    self.assertIsNotNone(match, (fen, line))
                    counts[match.group(1)] = int(match.group(2))
                twin.set_position(fen)
                self.assertEqual(twin.moves(), sorted(counts), fen)
                self.assertEqual(lines[-1], str(sum(counts.values())), fen)
                self.assertEqual(lines[-1], twin.ask("perft 2"), fen)
                self.assertEqual(0, status, fen)
                for move, count in counts.items():
                    twin.set_position(fen, [move])
                    self.assertEqual(twin.ask("perft 1"), str(count), (fen, move))

    def test_a_bad_position_is_an_error(self):
        for fen, fault in (
            ("nonsense", "a rank has a character that is neither a man nor a digit from 1 to 8"),
            ("8/8/8/8/8/8/8/8 w - - 0 1", "a colour has no king or more than one"),
            ("7k/8/8/8/8/8/8/K6R w - - 0 1", "the side that is not to move is in check"),
        ):
            message = f"zar-x3-tools: FEN '{fen}': {fault}\n"
            self.assertEqual(([], TOO_BAD, message), run_tool("perft", "1", fen), fen)

    def test_positions_of_standard_input_have_a_total_each(self):
        text = "".join(f"{fen}\n" for fen, *_ in COUNTS)
        lines, status, errors = run_tool("perft", 1, text=text)
        single = [run_tool("perft", 1, fen)[0][-1] for fen, *_ in COUNTS]
        self.assertEqual((single, 0, ""), (lines, status, errors))


class Pages(unittest.TestCase):
    """The pages that list the commands, against the program."""

    ROOT = Path(__file__).resolve().parents[2]

    def listed(self, *command):
        """The names under a heading of the help: the subcommands."""
        lines, _, _ = run_tool(*command, "--help")
        rows = lines[lines.index("Subcommands:") + 1 :]
        return [line.split()[0].rstrip(",") for line in rows if line]

    def commands(self):
        names = self.listed()
        names.remove("book")
        return sorted(names + [f"book {name}" for name in self.listed("book")])

    def test_the_manual_page_has_all_commands_and_their_options(self):
        page = (self.ROOT / "docs" / "man" / "zar-x3-tools.6.in").read_text("utf-8")
        items = re.findall(r"^\.It Cm (.*)$", page, re.MULTILINE)
        self.assertEqual(self.commands(), sorted(items))
        synopsis = page.partition(".Sh SYNOPSIS")[2].partition(".Sh DESCRIPTION")[0]
        forms = re.findall(r"^\.Nm\n\.Cm (.*)\n((?:\.[^N].*\n)*)", synopsis, re.MULTILINE)
        self.assertEqual(self.commands(), sorted(name for name, _ in forms))
        for name, form in forms:
            lines, _, _ = run_tool(*name.split(), "--help")
            options = set(re.findall(r"^  --(\w+)", "\n".join(lines), re.MULTILINE))
            self.assertEqual(options, set(re.findall(r"Fl -(\w+)", form)), name)

    def test_the_readme_has_all_commands(self):
        readme = (self.ROOT / "README.md").read_text("utf-8")
        section = readme.partition("\n## Tools\n")[2].partition("\n## ")[0]
        rows = re.findall(r"^\| `(.*)` \|", section, re.MULTILINE)
        self.assertEqual(self.commands(), sorted(rows))

    def test_the_examples_of_the_readme_are_as_it_says(self):
        readme = (self.ROOT / "README.md").read_text("utf-8")
        section = readme.partition("\n## Tools\n")[2].partition("\n## ")[0]
        example = r"^    \$ zar-x3-tools (perft .*)\n((?:    [^$].*\n)*)"
        found = re.findall(example, section, re.MULTILINE)
        self.assertEqual(2, len(found))
        for words, answer in found:
            lines, status, _ = run_tool(*shlex.split(words))
            self.assertEqual((0, answer.split()), (status, " ".join(lines).split()), words)


class Arguments(unittest.TestCase):
    def test_help_is_everywhere(self):
        for arguments, word in (
            (("--help",), "inspect"),
            (("perft", "--help"), "--divide"),
            (("inspect", "--help"), "--level"),
        ):
            lines, status, errors = run_tool(*arguments)
            self.assertEqual((0, ""), (status, errors), arguments)
            self.assertIn(word, "\n".join(lines), arguments)

    def test_wrong_arguments_are_errors(self):
        for arguments in (
            (),
            ("nonsense",),
            ("perft",),
            ("perft", "x"),
            ("perft", "-1"),
            ("inspect", "--level"),
            ("inspect", "--nonsense"),
        ):
            _, status, errors = run_tool(*arguments)
            self.assertGreater(status, 0, arguments)
            self.assertTrue(errors, arguments)


class PositionSources(unittest.TestCase):
    """Where perft, show, analyse and "book show" have their position from."""

    COMMANDS = (
        ("perft", 2),
        ("show",),
        ("analyse", "--depth", 1),
        ("book", "show", "BOOK"),
    )

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        lines = self.folder / "lines.txt"
        lines.write_text("e2e4 e7e5 g1f3\nd2d4\n")
        self.book = self.folder / "my.ebk"
        self.assertEqual(([], 0, ""), run_tool("book", "make", lines, self.book))

    def run_command(self, command, *words, **settings):
        command = [self.book if word == "BOOK" else word for word in command]
        return run_tool(*command, *words, **settings)

    def answer(self, command, *words, **settings):
        """The lines without the position that analyse names and without its times."""
        lines, status, errors = self.run_command(command, *words, **settings)
        self.assertEqual((0, ""), (status, errors), (command, words))
        lines = [line for line in lines if not line.startswith("position ")]
        return [line[:28] if command[0] == "analyse" else line for line in lines]

    def test_standard_input_is_read_where_no_position_is_named(self):
        behind_e4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1"
        for command in self.COMMANDS:
            expected = self.answer(command, behind_e4)
            self.assertNotEqual(self.answer(command, START_FEN), expected, command)
            for words in ((), ("-",)):
                found = self.answer(command, *words, text=behind_e4 + "\n")
                self.assertEqual(expected, found, (command, words))

    def test_a_named_position_leaves_standard_input_alone(self):
        for command in self.COMMANDS:
            expected = self.answer(command, START_FEN)
            self.assertEqual(expected, self.answer(command, "startpos", text="nonsense\n"), command)

    def test_all_forms_of_a_position(self):
        behind = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 1"
        for command in self.COMMANDS:
            expected = self.answer(command, behind)
            for text in (
                "startpos moves e2e4 e7e5",
                "startpos moves e4 e5",
                f"fen {behind}",
                f"fen {START_FEN} moves e2e4 e7e5",
                f"{START_FEN} moves e2e4 e7e5",
                f'{behind[:-4]} bm Nf3; id "x";',
                "position startpos moves e2e4 e7e5",
            ):
                self.assertEqual(expected, self.answer(command, text), (command, text))
                self.assertEqual(expected, self.answer(command, *text.split()), (command, text))
                for line in (text, f"\xef\xbb\xbf{text}\r", f"\n# here\n  {text}  "):
                    found = self.answer(command, text=line + "\n")
                    self.assertEqual(expected, found, (command, line))

    def test_what_cannot_be_used_is_told(self):
        for text, fault in (
            ("startpos moves e2e4 e2e4", "'e2e4' is no legal move"),
            ("startpos moves e2e4 x", "'x' is no move"),
            ("startpos e2e4", "'e2e4' behind it is neither moves nor operations that end with ';'"),
            (
                f"{START_FEN} e2e4 e7e5",
                "'e2e4 e7e5' behind it is neither moves nor operations that end with ';'",
            ),
        ):
            kind = "position" if text.startswith("startpos") else "FEN"
            message = f"{kind} '{text}': {fault}\n"
            for command in self.COMMANDS:
                found = self.run_command(command, text)
                self.assertEqual(([], TOO_BAD, "zar-x3-tools: " + message), found, text)
                _, status, errors = self.run_command(command, text=f"startpos\n\n{text}\n")
                expected = (TOO_BAD, "zar-x3-tools: standard input:3: " + message)
                self.assertEqual(expected, (status, errors), (command, text))

    def test_the_positions_behind_a_bad_one_are_answered_too(self):
        lines, status, _ = run_tool("perft", 1, text=f"startpos\nnonsense\n{KIWIPETE}\n")
        self.assertEqual((["20", "48"], TOO_BAD), (lines, status))

    def test_an_empty_standard_input_is_no_question(self):
        fault = "standard input: no position in it (startpos is the start position)"
        message = f"zar-x3-tools: {fault}\n"
        for command in self.COMMANDS:
            for text in ("", "\n", "# only a comment\n \n"):
                found = self.run_command(command, text=text)
                self.assertEqual(([], TOO_BAD, message), found, (command, text))
            self.assertEqual(([], TOO_BAD, message), self.run_command(command, "-"), command)

    def test_without_any_input_it_is_the_start_position(self):
        expected = self.answer(("perft", 2), "startpos")
        self.assertEqual(["400"], expected)
        self.assertEqual(expected, self.answer(("perft", 2)))  # the null device
        main, terminal = os.openpty()
        self.addCleanup(os.close, main)
        self.addCleanup(os.close, terminal)
        with Tool("perft", 2, stdin=terminal) as tool:
            self.assertEqual((expected, 0, ""), tool.finish())
        with Tool("perft", 2, stdin=None, preexec_fn=lambda: os.close(0)) as tool:
            self.assertEqual((expected, 0, ""), tool.finish())

    def test_a_file_is_read_as_a_pipe_is(self):
        path = self.folder / "positions.txt"
        path.write_text(f"{KIWIPETE}\n")
        with path.open() as file, Tool("perft", 1, stdin=file) as tool:
            self.assertEqual((["48"], 0, ""), tool.finish())

    def test_a_folder_is_no_standard_input(self):
        message = "zar-x3-tools: standard input: cannot be read\n"
        made = self.folder / "made.ebk"
        commands = [("inspect",), ("epd", "-"), ("book", "make", "-", made)]
        for command in (*self.COMMANDS, *commands):
            command = [self.book if word == "BOOK" else word for word in command]
            folder = os.open(self.folder, os.O_RDONLY)
            self.addCleanup(os.close, folder)
            with Tool(*command, stdin=folder) as tool:
                status = 1 if "make" in command else TOO_BAD
                self.assertEqual(([], status, message), tool.finish(), command)
        self.assertFalse(made.exists())

    def test_a_message_is_one_line_whatever_comes(self):
        for text in ("\0\x1b[31m\x07", "x" * 1_000_000, "\xff\xfe" * 500, "8/" * 10000):
            lines, status, errors = run_tool("show", text=text + "\n")
            self.assertEqual(([], TOO_BAD), (lines, status))
            self.assertRegex(errors, r"^zar-x3-tools: standard input:1: FEN '[^\x00-\x1f]*': .*\n$")
            self.assertLess(len(errors), 300)


class Inspect(unittest.TestCase):
    def ask(self, tool, fen):
        """Sends one position and returns its object before anything else is sent."""
        tool.send(fen)
        line = tool.read_line()
        self.assertIsNotNone(line, fen)
        return json.loads(line)

    def test_keys_and_their_order(self):
        with Tool("inspect") as tool:
            for fen in (START_FEN, KIWIPETE, ROOK_ENDING, MATE, STALEMATE, BARE_KINGS):
                tool.send(fen)
                line = tool.read_line()
                pairs = json.loads(line, object_pairs_hook=lambda pairs: pairs)
                self.assertEqual(OBJECT_KEYS, [key for key, _ in pairs], fen)
                terms = dict(pairs)["terms"]
                self.assertEqual(TERM_KEYS, [key for key, _ in terms], fen)
                for key, value in terms:
                    self.assertIs(int, type(value), (fen, key, value))
            self.assertEqual(([], 0, ""), tool.finish())

    def test_types(self):
        with Tool("inspect") as tool:
            for fen in (START_FEN, KIWIPETE, MATE, STALEMATE, BARE_KINGS):
                found = self.ask(tool, fen)
                for key in ("key", "pawn_key", "material_key"):
                    self.assertRegex(found[key], "^[0-9a-f]{16}$", (fen, key))
                for key in ("check", "mate", "stalemate", "draw"):
                    self.assertIs(bool, type(found[key]), (fen, key))
                for key in ("legal", "captures", "quiets", "quiet_checks", "evasions"):
                    for move in found[key]:
                        self.assertRegex(move, "^([a-h][1-8]){2}[nbrq]?$", (fen, key))
                self.assertEqual(found["legal"], list(found["see"]), fen)
                self.assertLessEqual(set(found["gives_check"]), set(found["legal"]), fen)
                self.assertTrue(all(type(v) is int for v in found["see"].values()), fen)
                self.assertIs(int, type(found["eval"]), fen)

    def test_keys_are_the_published_ones(self):
        with Tool("inspect") as tool:
            for fen, key in KEYS:
                self.assertEqual(key, self.ask(tool, fen)["key"], fen)

    def test_the_position_is_written_back(self):
        with Tool("inspect") as tool:
            for fen, written in (
                (START_FEN, START_FEN),
                ("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1",) * 2,
                ("4k3/8/8/8/8/8/4P3/4K3 w - - 12 34", "4k3/8/8/8/8/8/4P3/4K3 w - - 12 1"),
                ("4k3/8/8/8/8/8/4P3/4K3 w KQkq -", "4k3/8/8/8/8/8/4P3/4K3 w - - 0 1"),
                ("4k3/8/8/8/8/8/4P3/4K3 w - - 99999 1", "4k3/8/8/8/8/8/4P3/4K3 w - - 1000 1"),
            ):
                # An en-passant square that no pawn can use is not kept.
                written = written.replace(" e3 ", " - ")
                self.assertEqual(written, self.ask(tool, fen)["fen"], fen)

    def test_moves_are_those_of_the_twin(self):
        with Tool("inspect") as tool, Twin() as twin:
            for fen in (START_FEN, KIWIPETE, ROOK_ENDING, PROMOTIONS, MATE, STALEMATE, TEN_BISHOPS):
                found = self.ask(tool, fen)
                if fen == TEN_BISHOPS:
                    self.assertEqual(len(found["legal"]), len(set(found["legal"])), fen)
                    continue
                twin.set_position(fen)
                self.assertEqual(twin.moves(), sorted(found["legal"]), fen)
                status = twin.status()
                self.assertEqual(status == "mate", found["mate"], fen)
                self.assertEqual(status == "stalemate", found["stalemate"], fen)
                pseudo = set(found["captures"]) | set(found["quiets"])
                self.assertLessEqual(set(found["legal"]), pseudo, fen)
                self.assertFalse(set(found["captures"]) & set(found["quiets"]), fen)

    def test_the_order_of_the_first_moves(self):
        with Tool("inspect") as tool:
            legal = self.ask(tool, START_FEN)["legal"]
            pawns = [f"{f}2{f}{rank}" for f in "abcdefgh" for rank in "34"]
            self.assertEqual(["b1a3", "b1c3", "g1f3", "g1h3", *pawns], legal)

    def test_single_facts(self):
        with Tool("inspect") as tool:
            mate = self.ask(tool, MATE)
            self.assertEqual(
                (True, True, False, [], {}),
                tuple(mate[key] for key in ("check", "mate", "stalemate", "legal", "see")),
            )
            stalemate = self.ask(tool, STALEMATE)
            self.assertEqual(
                (False, False, True, []),
                tuple(stalemate[key] for key in ("check", "mate", "stalemate", "evasions")),
            )
            kings = self.ask(tool, BARE_KINGS)
            self.assertEqual((0, True), (kings["eval"], kings["draw"]))
            queen = self.ask(tool, "3rk3/8/8/8/8/8/8/3QK3 w - - 0 1")
            self.assertEqual(500 - 1000, queen["see"]["d1d8"])
            quiet = {"d1a4", "d1d7", "d1e2", "d1h5"}
            self.assertEqual(quiet | {"d1d8"}, set(queen["gives_check"]))
            self.assertEqual(quiet, set(queen["quiet_checks"]))

    def test_a_level_changes_the_evaluation(self):
        values = {}
        for arguments in ((), ("--level", "10"), ("--level", "3")):
            with Tool("inspect", *arguments) as tool:
                values[arguments] = self.ask(tool, KIWIPETE)["eval"]
        self.assertEqual(values[()], values["--level", "10"])
        self.assertNotEqual(values[()], values["--level", "3"])

    def test_all_forms_of_a_position_are_understood(self):
        behind = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq - 0 1"
        with Tool("inspect") as tool:
            for text, fen in (
                ("\xef\xbb\xbf" + KIWIPETE, KIWIPETE),
                (KIWIPETE + "\r", KIWIPETE),
                ("startpos", START_FEN),
                ("startpos\r", START_FEN),
                ("startpos moves e2e4 e7e5", behind),
                ("position startpos moves e4 e5", behind),
                (f"fen {KIWIPETE}", KIWIPETE),
                (f"{KIWIPETE} c0 \"what stands here does not matter", KIWIPETE),
                (f"{MATE[:-4]} c0 all moves lose", MATE[:-4] + " 0 1"),
            ):
                self.assertEqual(fen, self.ask(tool, text)["fen"], text)
            illegal = {"error": "'e2e4' is no legal move"}
            self.assertEqual(illegal, self.ask(tool, "startpos moves e2e4 e2e4"))
            self.assertEqual(([], 0, ""), tool.finish())

    def test_a_position_of_the_command_line(self):
        for words, fen in (
            ((KIWIPETE,), KIWIPETE),
            (KIWIPETE.split(), KIWIPETE),
            (("startpos",), START_FEN),
        ):
            lines, status, errors = run_tool("inspect", *words, text=MATE + "\n")
            self.assertEqual((1, 0, ""), (len(lines), status, errors), words)
            self.assertEqual(fen, json.loads(lines[0])["fen"], words)
        lines, status, _ = run_tool("inspect", "nonsense")
        self.assertEqual((['{"error":"X-Error 4EFN1BF2"}'], 0), (lines, status))
        lines, _, _ = run_tool("inspect", "-", text=STALEMATE + "\n")
        self.assertEqual(STALEMATE, json.loads(lines[0])["fen"])

    def test_the_tool_goes_on_after_an_error(self):
        with Tool("inspect") as tool:
            for fen, code in (
                ("nonsense", "4EFN1BF2"),
                ("", "4EFN1BF3"),
                ("8/8/8/8/8/8/8/8 w - - 0 1", "2EB1IP3"),
                ("9/8/8/8/8/8/8/8 w - - 0 1", "4EFN1BF2"),
                ("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq e3 0 1", "4EFN1BF9"),
                ("7k/8/8/8/8/8/8/K6R w - - 0 1", "2EB1IP6"),
            ):
                self.assertEqual({"error": f"X-Error {code}"}, self.ask(tool, fen), fen)
                self.assertEqual(20, len(self.ask(tool, START_FEN)["legal"]), f"after {fen!r}")
            rest, status, _ = tool.finish()
            self.assertEqual(([], 0), (rest, status))

    def test_ten_bishops_are_one_object(self):
        with Tool("inspect") as tool:
            self.assertEqual(TEN_BISHOPS, self.ask(tool, TEN_BISHOPS)["fen"])
            # Here the warning comes before the error.
            fatal = "8/8/8/8/7k/BBBBB3/BBBBB3/K6k w - - 0 1"
            self.assertEqual({"error": "X-Error 2EB1IP3"}, self.ask(tool, fatal))
            self.assertEqual(START_FEN, self.ask(tool, START_FEN)["fen"])
            rest, status, _ = tool.finish()
            self.assertEqual(([], 0), (rest, status))


if __name__ == "__main__":
    unittest.main()
