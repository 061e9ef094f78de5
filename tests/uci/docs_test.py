"""The pages of docs/ against the program and its sources: options, errors, commands."""

import configparser
import json
import re
import shlex
import unittest
from pathlib import Path

from engine import Engine

ROOT = Path(__file__).resolve().parents[2]
SOURCES = sorted((ROOT / "src").rglob("*.[ch]*"))
OPTION_SOURCE = ROOT / "src" / "frontend" / "option.cpp"


def page(name):
    return (ROOT / "docs" / name).read_text(encoding="utf-8")


def section(text, heading):
    """The text below a heading, up to the next one of its level or a higher one."""
    level = heading.split()[0]
    _, found, rest = text.partition(f"\n{heading}\n")
    if not found:
        raise AssertionError(f"no heading {heading!r}")
    return re.split(rf"^#{{2,{len(level)}}} ", rest, flags=re.MULTILINE)[0]


def table_rows(text):
    """The rows of all tables as dictionaries, by the names in each table's head."""
    rows, head = [], None
    for line in text.splitlines():
        if not line.startswith("|"):
            head = None
            continue
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if head is None:
            head = cells
        elif not set(line) <= set("|-"):
            rows.append(dict(zip(head, cells, strict=True)))
    return rows


def documented(row):
    """Name, type, default and the engine's words for the range, of a row of the options page."""
    least_most = re.fullmatch(r"(\d+) to (\d+)", row["range"])
    if least_most:
        extra = f"min {least_most[1]} max {least_most[2]}"
    else:
        extra = " ".join("var " + choice for choice in row["range"].split(", ") if choice)
    return row["name"].removesuffix(" *"), row["type"], row["default"], extra


def documented_options(text):
    return [documented(row) for row in table_rows(text) if {"name", "default", "range"} <= set(row)]


def source_options():
    """(name, type, default, extra) of every row of the engine's table, with the hidden ones apart."""
    row = r'\{"([^"]*)",\s*(kShown|kHidden),\s*"([^"]*)",\s*"([^"]*)",\s*"([^"]*)",\s*\{\}\}'
    shown, hidden = [], []
    for name, kind, default, type_, extra in re.findall(row, OPTION_SOURCE.read_text("utf-8")):
        (shown if kind == "kShown" else hidden).append((name, type_, default, extra))
    return shown, hidden


class Options(unittest.TestCase):
    def setUp(self):
        self.page = page("options.md")

    def test_the_visible_options_are_those_that_the_engine_prints(self):
        expected = [
            f"option name {name} type {type_} default {default} {extra}".rstrip()
            for name, type_, default, extra in documented_options(
                section(self.page, "## Visible options")
            )
        ]
        with Engine() as engine:
            self.assertEqual(expected, engine.shown_options())

    def test_every_visible_option_has_its_paragraph(self):
        text = section(self.page, "## Visible options")
        names = [name for name, *_ in documented_options(text)]
        self.assertEqual(names, re.findall(r"^### (.*)$", text, flags=re.MULTILINE))

    def test_all_options_are_those_of_the_engines_table(self):
        shown, hidden = source_options()
        self.assertEqual((10, 28), (len(shown), len(hidden)))
        self.assertEqual(sorted(shown + hidden), sorted(documented_options(self.page)))

    def test_the_options_without_effect_are_those_that_nothing_reads(self):
        code = "".join(path.read_text("utf-8") for path in SOURCES if path != OPTION_SOURCE)
        shown, hidden = source_options()
        unread = {name for name, *_ in shown + hidden if f'"{name}"' not in code}
        without_effect = section(self.page, "## Hidden options that do nothing")
        self.assertEqual(unread, {name for name, *_ in documented_options(without_effect)})

    def test_the_readme_and_the_manual_page_give_the_same_defaults(self):
        shown, _ = source_options()
        defaults = [(name, default) for name, _, default, _ in shown]
        readme = (ROOT / "README.md").read_text("utf-8")
        rows = table_rows(section(readme, "## Options"))
        self.assertEqual(
            defaults, [(row["option"], row["default"]) for row in rows if "option" in row]
        )
        manual = (ROOT / "docs" / "man" / "zar-x3.6.in").read_text("utf-8")
        items = re.findall(r"^\.It (.*?) ,(?: .* ,)? default (.*)$", manual, flags=re.MULTILINE)
        items = [(name, default) for name, default in items]
        self.assertEqual(defaults, items)


class TestFrameworks(unittest.TestCase):
    """The command lines of docs/testing-at-scale.md that others are to paste."""

    def settings(self):
        """All (name, value) pairs that the page sets."""
        text = page("testing-at-scale.md")
        pairs = re.findall(r'"option\.([^="]+)=([^"]+)"', text)
        pairs += re.findall(r"(?<!\")\boption\.([^=\s]+)=(\S+)", text)
        (description,) = re.findall(r"```json\n(.*?)```", text, re.DOTALL)
        for preset in json.loads(description)["test_presets"].values():
            words = shlex.split(preset.get("both_options", ""))
            pairs += [tuple(word.split("=")) for word in words]
        return pairs

    def test_the_json_is_json(self):
        (text,) = re.findall(r"```json\n(.*?)```", page("testing-at-scale.md"), re.DOTALL)
        self.assertEqual({"g++>=12", "clang++>=14"}, set(json.loads(text)["build"]["compilers"]))

    def test_the_match_programs_start_the_strict_engine(self):
        text = page("testing-at-scale.md")
        programs = ("fastchess", "args=--strict"), ("cutechess-cli", "arg=--strict")
        for program, argument in programs:
            commands = re.findall(rf"^    {program} \\\n(?:        .*\n)+", text, re.MULTILINE)
            self.assertTrue(commands, program)
            for command in commands:
                self.assertIn(f" {argument} ", command)

    def test_a_fixed_time_for_a_move_has_a_margin(self):
        times = re.findall(r" st=\S+(.*)", page("testing-at-scale.md"))
        self.assertTrue(times)
        for rest in times:
            self.assertTrue(rest.startswith(" timemargin="), rest)

    def test_all_options_exist_and_their_values_are_in_range(self):
        shown, hidden = source_options()
        table = {name: (type_, extra) for name, type_, _, extra in shown + hidden}
        settings = self.settings()
        self.assertGreater(len(settings), 20)
        for name, value in settings:
            with self.subTest(option=name, value=value):
                type_, extra = table[name]
                if type_ == "check":
                    self.assertIn(value, ("true", "false"))
                else:
                    least, most = re.findall(r"\d+", extra)
                    self.assertTrue(int(least) <= int(value) <= int(most))


def cutechess_options(text):
    return [(row["name"], row["value"]) for engine in json.loads(text) for row in engine["options"]]


def gnome_chess_options(text):
    """The options of all three strengths; the last word of each is the value."""
    stanza = configparser.ConfigParser(delimiters="=")
    stanza.read_string(text)
    lines = [line for key, line in stanza["zar-x3"].items() if key.startswith("option-")]
    return [tuple(line.rsplit(" ", 1)) for line in lines]


def scid_options(text):
    """The pairs of the Tcl list; braces stand around names with a blank."""
    (line,) = re.findall(r"^ *UCIoptions \{(.*)\}$", text, re.MULTILINE)
    pairs = re.findall(r"\{(?:\{([^{}]*)\}|([^{}\s]+)) ([^{}]+)\}", line)
    return [(braced or bare, value) for braced, bare, value in pairs]


def xboard_options(text):
    """None: the three lines are the kind of file, the way to start the engine, and the game."""
    kind, command, game = text.splitlines()
    assert kind.startswith("plugin ") and game == "chess", text
    assert re.fullmatch(r"cd (/\S+);(/\S+)/zar-x3", command), text
    return []


def script_options(text):
    """None: it hands over to the engine."""
    assert text == '#!/bin/sh\nexec /usr/games/zar-x3 --strict "$@"\n', text
    return []


def lichess_bot_options(text):
    (block,) = re.findall(r"^  uci_options:\n((?:    .*\n)+)", text, re.MULTILINE)
    return re.findall(r'^    ([^:]+): "?([^"\n]*)"?$', block, re.MULTILINE)


class Interfaces(unittest.TestCase):
    """The files of docs/gui/ that others are to paste."""

    FOLDER = ROOT / "docs" / "gui"
    READERS = {
        "cutechess-engines.json": (cutechess_options, 3),
        "gnome-chess-engines.conf": (gnome_chess_options, 9),
        "lichess-bot-config.yml": (lichess_bot_options, 5),
        "scid-engines.dat": (scid_options, 2),
        "zar-x3-strict": (script_options, 0),
        "zar-x3.eng": (xboard_options, 0),
    }

    def setUp(self):
        with Engine() as engine:
            shown = engine.shown_options()
        row = r"option name (.+) type (\w+) default (\S*)(?: min (\d+) max (\d+))?"
        self.printed = {name: rest for name, *rest in (re.fullmatch(row, x).groups() for x in shown)}

    def text(self, name):
        return (self.FOLDER / name).read_text("utf-8")

    def test_all_files_but_the_pictures_are_looked_at_here(self):
        files = {path.name for path in self.FOLDER.iterdir() if path.suffix != ".png"}
        self.assertEqual(set(self.READERS), files)

    def test_all_options_are_printed_by_the_engine_and_their_values_are_in_range(self):
        for file, (read, count) in self.READERS.items():
            settings = read(self.text(file))
            self.assertEqual(count, len(settings), file)
            for name, value in settings:
                with self.subTest(file=file, option=name, value=value):
                    self.assertIn(name, self.printed)
                    type_, _, least, most = self.printed[name]
                    if type_ == "check":
                        self.assertIn(str(value).lower(), ("true", "false"))
                    elif type_ == "spin":
                        self.assertTrue(int(least) <= int(value) <= int(most))

    def test_cutechess_gets_the_types_defaults_and_ranges_that_the_engine_prints(self):
        for engine in json.loads(self.text("cutechess-engines.json")):
            for row in engine["options"]:
                with self.subTest(option=row["name"]):
                    keys = ("type", "default", "min", "max")
                    listed = [None if key not in row else str(row[key]).lower() for key in keys]
                    self.assertEqual(self.printed[row["name"]], listed)

    def test_options_that_the_program_sets_by_itself_are_not_in_its_file(self):
        for file in ("cutechess-engines.json", "lichess-bot-config.yml"):
            read, _ = self.READERS[file]
            names = {name for name, _ in read(self.text(file))}
            self.assertTrue(names.isdisjoint({"Ponder", "MultiPV"}), file)

    def test_cutechess_and_lichess_bot_start_the_strict_engine(self):
        (engine,) = json.loads(self.text("cutechess-engines.json"))
        self.assertEqual("zar-x3-strict", Path(engine["command"]).name)
        self.assertIn("\n  engine_options:\n    strict: ", self.text("lichess-bot-config.yml"))

    def test_all_pictures_of_the_folder_are_shown_and_no_others(self):
        shown = set(re.findall(r"\]\(gui/(\S+\.png)\)", page("gui.md")))
        self.assertEqual({path.name for path in self.FOLDER.glob("*.png")}, shown)


class Errors(unittest.TestCase):
    def test_all_codes_are_explained_and_no_others(self):
        code = "".join(path.read_text("utf-8") for path in SOURCES)
        raised = set(re.findall(r'"X-Error ([0-9A-Za-z/]+)', code))
        explained = set(re.findall(r"^\| `X-Error ([0-9A-Za-z/]+)", page("errors.md"), re.MULTILINE))
        self.assertGreater(len(raised), 30)
        self.assertEqual(raised, explained)


class Commands(unittest.TestCase):
    def test_all_commands_are_explained_and_no_others(self):
        code = (ROOT / "src" / "frontend" / "uci.cpp").read_text("utf-8")
        known = set(re.findall(r'line == "(\w+)"|is_command\(line, "(\w+)"\)', code))
        known = {word for pair in known for word in pair if word}
        rows = table_rows(section(page("uci.md"), "## Commands"))
        self.assertEqual(known, {row["command"].strip("`").split()[0] for row in rows})

    def test_all_parameters_of_go_are_explained_and_no_others(self):
        code = (ROOT / "src" / "frontend" / "uci_go.cpp").read_text("utf-8")
        known = {
            (name, "fatal" if text.startswith('"X-Error') else "")
            for name, text in re.findall(r'\{"(\w+)", Keyword::\w+, ([^}]+)\}', code)
        }
        self.assertEqual(12, len(known))
        rows = table_rows(section(page("uci.md"), "## go"))
        explained = {
            (row["parameter"].strip("`").split()[0], row["without its value"])
            for row in rows
            if row["parameter"].startswith("`")
        }
        self.assertEqual(known, explained)


if __name__ == "__main__":
    unittest.main()
