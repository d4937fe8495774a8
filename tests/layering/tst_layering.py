#!/usr/bin/env python3
"""Shows that the layering check finds what it is there to find."""

import pathlib
import subprocess
import sys
import tempfile

# File, include line, the rule it breaks or None.
# fmt: off
CASES = [
    ("src/fkit/a.cpp",             '#include <netdb.h>',                None),
    ("src/serverlib/a.cpp",        '#include <QtGui/QColor>',           "may include nothing of QtGui"),
    ("src/serverlib/a.cpp",        '  #  include "quellog/line.h"',     "may not include quellog"),
    ("src/shared/trace.h",         '#include "quellog/line.h"',         None),
    ("src/shared/geometry/a.h",    '#include "shared/trace.h"',         "may not include src/shared"),
    ("src/objectmodel/a.cpp",      '#include <tinyxml.h>',              "may include nothing of tinyxml"),
    ("src/hook/a.cpp",             '#include <private/qwidget_p.h>',    "may include nothing of private Qt"),
    ("wrappers/qt/a.cpp",          '#include "hook/hook_p.h"',          "src/hook/hook_p.h is private to src/hook"),
    ("tests/hook/a.cpp",           '#include "hook/hook_p.h"',          None),
]
# fmt: on

HEADERS = ["quellog/line.h", "src/shared/trace.h", "src/hook/hook_p.h", "qt/QtCore/QString"]


def findings(file, line):
    """What the check says of a file with this line."""
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder).resolve()
        for header in HEADERS + [file]:
            (root / header).parent.mkdir(parents=True, exist_ok=True)
            (root / header).touch()
        (root / file).write_text("// Two lines.\n" + line + "\n")
        command = [sys.executable, sys.argv[1], root, root / "qt"]
        return subprocess.run(command, capture_output=True, text=True).stdout


for file, line, rule in CASES:
    start, end = (f"{file}:2: {line.strip()}: ", f"{rule}\n") if rule else ("every include line keeps", "\n")
    found = findings(file, line)
    if not (found.startswith(start) and found.endswith(end) and found.count("\n") == 1):
        sys.exit(f"{file}: {line}: {found}")
