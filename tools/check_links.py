#!/usr/bin/env python3
"""check_links.py FOLDER...: every link of a Markdown page below the folders leads to a file there."""

import re
import sys
from pathlib import Path


def broken_links(folder):
    """Pages and their links that lead nowhere, or out of the folder; and the number of all links."""
    broken, links = [], 0
    for page in folder.rglob("*.md"):
        for target in re.findall(r"\]\(([^)#\s]+)[^)]*\)", page.read_text(encoding="utf-8")):
            if re.match(r"[a-z]+:", target):
                continue
            links += 1
            place = (page.parent / target).resolve()
            if not (place.exists() and place.is_relative_to(folder.resolve())):
                broken.append(f"{page}: {target}")
    return broken, links


status = 0
for name in sys.argv[1:]:
    broken, links = broken_links(Path(name))
    print(*broken, f"{name}: {links} links, {len(broken)} broken", sep="\n")
    if broken or not links:
        status = 1
sys.exit(status)
