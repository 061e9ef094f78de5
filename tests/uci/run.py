"""Transcript tests: what the engine must answer, word for word, to a script of input lines.

    python3 run.py            runs every case of the folder cases
    python3 run.py NAME...    runs these cases

A case is a pair of files, NAME.in and NAME.out.

NAME.in is sent line by line, each with a newline; then standard input is closed and the engine
must end. Lines that begin with "#" are not sent:

    #wait PREFIX   waits for an output line that begins with PREFIX
    #send TEXT     sends TEXT and no newline; \\n, \\r, \\0 and \\\\ stand for those bytes
    #status N      the exit status that is expected (0 when not given)
    #stderr TEXT   all of standard error (nothing when not given); \\n stands for a newline
    # TEXT         is a comment

NAME.out is all of standard output. A line that begins with "#" is a comment, one that is {...}
stands for any number of lines, and one that begins with {+} may repeat. In the rest, these stand
for text:

    {n}      a number without sign (times and nodes)
    {int}    a number that may have a minus sign
    {score}  a score: cp or mate, the number and perhaps lowerbound or upperbound
    {move}   a move such as e2e4 or e7e8q
    {moves}  one or more moves, separated by single blanks
    {cr}     a carriage return
    {}       nothing; it guards a blank at the end of a line
"""

import re
import sys
from pathlib import Path

import engine
import report

CASES = Path(__file__).resolve().parent / "cases"

_PATTERNS = {
    "{n}": r"\d+",
    "{int}": r"-?\d+",
    "{score}": r"(?:cp|mate) -?\d+(?: lowerbound| upperbound)?",
    "{move}": report.MOVE,
    "{moves}": report.MOVES,
    "{cr}": r"\r",
    "{}": "",
}
_ESCAPES = {r"\n": "\n", r"\r": "\r", r"\0": "\0", r"\\": "\\"}


def case_names():
    return sorted(path.stem for path in CASES.glob("*.in"))


def _file_lines(name):
    """The lines of a file; only a newline ends a line."""
    return (CASES / name).read_bytes().decode("latin-1").removesuffix("\n").split("\n")


def _unescape(text):
    return re.sub(r"\\.", lambda match: _ESCAPES[match.group()], text)


def _line_pattern(line):
    """The regular expression of one line of an .out file, newline included."""
    if line == "{...}":
        return r"(?:.*\n)*?"
    body, suffix = line, ""
    if line.startswith("{+}"):
        body, suffix = line[3:], "+"
    parts = re.split(r"(\{[^{}]*\})", body)
    text = "".join(_PATTERNS[part] if part[:1] == "{" else re.escape(part) for part in parts)
    return rf"(?:{text}\n){suffix}"


def difference(expected, output):
    """Compares the lines of an .out file with the output. None, or what the trouble is."""
    expected = [line for line in expected if not line.startswith("#")]
    pattern = ""
    for number, line in enumerate(expected, 1):
        pattern += _line_pattern(line)
        if re.match(pattern, output) is None:
            return f"nothing matches expected line {number}: {line!r}"
    if re.fullmatch(pattern, output) is None:
        return "there is more output than expected"
    return None


def run_case(name):
    """Runs a case. None when all is as expected, else a text that says what is not."""
    script = _file_lines(f"{name}.in")
    expected = _file_lines(f"{name}.out")
    wanted_status, wanted_errors = 0, ""
    lines = []
    with engine.Engine() as program:
        for step in script:
            word, _, rest = step.partition(" ")
            if not step.startswith("#"):
                program.send(step)
            elif word == "#wait":
                lines += program.read_until(rest)
            elif word == "#send":
                program.send_text(_unescape(rest))
            elif word == "#status":
                wanted_status = int(rest)
            elif word == "#stderr":
                wanted_errors = _unescape(rest)
            elif word != "#":
                return f"{name}.in: unknown directive {step!r}"
        rest, status, errors = program.finish()
    output = "".join(line + "\n" for line in lines + rest)
    trouble = difference(expected, output)
    if trouble is None and status != wanted_status:
        trouble = f"exit status {status}, expected {wanted_status}"
    if trouble is None and errors != wanted_errors:
        trouble = f"standard error {errors!r}, expected {wanted_errors!r}"
    if trouble is not None:
        return f"{name}: {trouble}\n--- standard output\n{output}--- standard error\n{errors}"
    return None


def main(names):
    failed = 0
    for name in names or case_names():
        trouble = run_case(name)
        print(f"{'ok  ' if trouble is None else 'FAIL'} {name}")
        if trouble is not None:
            failed += 1
            print(trouble)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
