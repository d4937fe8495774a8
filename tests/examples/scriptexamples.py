#!/usr/bin/env python3
"""Runs the examples of a page on test scripts.

usage: scriptexamples.py PAGE VORKEL [OPTION...] -- PROGRAM

Each block marked "js" becomes a script; one without a test of its own becomes the body of one, with the program
launched as `app`.
"""

import pathlib
import re
import subprocess
import sys
import tempfile


def script_of(block, number):
    if re.search(r"^(test|import)\b", block, re.MULTILINE):
        return block
    return f"test('example {number}', () => {{ const app = launch();\n{block}\n}});\n"


def main(page, vorkel, *words):
    split = words.index("--")
    blocks = re.findall(r"^```js\n(.*?)^```$", pathlib.Path(page).read_text(), re.MULTILINE | re.DOTALL)
    if not blocks:
        sys.exit(f"no examples in {page}")
    with tempfile.TemporaryDirectory() as folder:
        files = []
        for number, block in enumerate(blocks, 1):
            files.append(pathlib.Path(folder, f"example{number:02}.js"))
            files[-1].write_text(script_of(block, number))
        command = [vorkel, "test", *words[:split], *map(str, files), *words[split:]]
        return subprocess.run(command, cwd=folder, check=False).returncode


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
