#!/usr/bin/env python3
"""Proves the rules of including that the source tree is built on.

  layers   A file includes its own layer and the layers below it, see BELOW.
  leaves   The headers of LEAVES include nothing of ours; all layers but platform may read them.
  system   Outside src/platform/*_posix.cpp and *_windows.cpp only the standard library is included.
  paths    A quoted path starts at src/ and names a file that is there.
  own      A source file includes its own header first.
  once     Every header has '#pragma once'.
  twin     tests/twin knows nothing of the engine.

Prints one line for every breach; the exit status is 1 if there was one.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SRC = ROOT / "src"

# Each layer with the layers whose headers it may include besides its own.
BELOW = {
    "platform": [],
    "board": ["platform"],
    "eval": ["platform", "board"],
    "book": ["platform", "board"],
    "search": ["platform", "board", "eval", "book"],
    "frontend": ["platform", "board", "eval", "book", "search"],
}
LEAVES = {"frontend/option.h", "frontend/difficulty.h"}

# The headers of the C++20 standard library that may have a use here.
STANDARD = set(
    """
    algorithm array atomic barrier bit bitset cassert cctype cerrno cfloat charconv chrono cinttypes
    climits clocale cmath compare concepts condition_variable csetjmp csignal cstdarg cstddef
    cstdint cstdio cstdlib cstring ctime deque exception filesystem fstream functional
    initializer_list iterator latch limits map memory mutex new numbers numeric optional queue
    random ratio semaphore set source_location span stack stdexcept stop_token string string_view
    system_error thread tuple type_traits unordered_map unordered_set utility variant vector version
    """.split()
)

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:<([^>]+)>|"([^"]+)")', re.MULTILINE)
SYSTEM_SUFFIX = re.compile(r"_(posix|windows)$")


def includes(text):
    """The included paths in order, each with True where it is a quoted one."""
    return [(quoted or angled, bool(quoted)) for angled, quoted in INCLUDE.findall(text)]


def breaches_in_engine(path):
    """Yields what is wrong with one file under src/."""
    name = path.relative_to(SRC).as_posix()
    layer = name.split("/")[0]
    text = path.read_text(encoding="utf-8")
    found = includes(text)
    if layer not in BELOW:
        yield f"{layer} is not a known layer"
        return

    is_system_file = layer == "platform" and re.search(r"_(posix|windows)\.cpp$", name)
    for target, quoted in found:
        target_layer = target.split("/")[0]
        if not quoted:
            if target not in STANDARD and not is_system_file:
                yield f"<{target}> is not of the standard library"
        elif not (SRC / target).is_file():
            yield f'"{target}" is not a file under src/'
        elif name in LEAVES:
            yield f'a leaf header includes "{target}"'
        elif target_layer != layer and target_layer not in BELOW[layer]:
            if target not in LEAVES or layer == "platform":
                yield f'{layer} may not include "{target}"'

    own = SYSTEM_SUFFIX.sub("", path.stem) + ".h"
    if path.suffix == ".cpp" and (path.parent / own).is_file():
        if found[:1] != [(f"{path.parent.relative_to(SRC).as_posix()}/{own}", True)]:
            yield f"does not include its own header {own} first"


def breaches_in_twin(path):
    """Yields what a file of tests/twin includes that is not beside it."""
    for target, quoted in includes(path.read_text(encoding="utf-8")):
        if quoted and not (path.parent / Path(target).name).is_file():
            yield f'the twin includes "{target}"'


def breaches_of_once(path):
    """Yields whether a header lacks its guard."""
    if not re.search(r"^#pragma once$", path.read_text(encoding="utf-8"), re.MULTILINE):
        yield "has no #pragma once"


def files(folder, *patterns):
    return sorted(path for pattern in patterns for path in (ROOT / folder).rglob(pattern))


def main():
    checks = [
        (breaches_in_engine, files("src", "*.h", "*.cpp")),
        (breaches_in_twin, files("tests/twin", "*.h", "*.cpp")),
        (breaches_of_once, files("src", "*.h") + files("tests", "*.h") + files("tools", "*.h")),
    ]
    breaches = [
        f"{path.relative_to(ROOT)}: {breach}"
        for check, paths in checks
        for path in paths
        for breach in check(path)
    ]
    for breach in breaches:
        print(breach)
    count = len(checks[0][1])
    if count == 0:
        breaches.append("no source file found")
    print(f"{count} files of the engine, {len(breaches)} breaches")
    return 1 if breaches else 0


if __name__ == "__main__":
    sys.exit(main())
