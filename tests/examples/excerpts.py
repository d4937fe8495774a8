#!/usr/bin/env python3
"""Checks that the C++ excerpts of a page stand in source files as they are, but for indentation.

usage: excerpts.py PAGE SOURCE...
"""

import pathlib
import re
import sys


def lines_of(text):
    return [line.strip() for line in text.strip().splitlines()]


def contains(lines, excerpt):
    return any(lines[i:i + len(excerpt)] == excerpt for i in range(len(lines)))


def main(page, *sources):
    excerpts = re.findall(r"^```cpp\n(.*?)^```$", pathlib.Path(page).read_text(), re.MULTILINE | re.DOTALL)
    files = [lines_of(pathlib.Path(source).read_text()) for source in sources]
    missing = [text for text in excerpts if not any(contains(lines, lines_of(text)) for lines in files)]
    for text in missing:
        print(f"nowhere in the sources:\n{text}")
    print(f"{len(excerpts)} excerpts, {len(missing)} of them not found")
    return 1 if missing or not excerpts else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
