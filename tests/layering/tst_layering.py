#!/usr/bin/env python3
"""Shows that the layering check finds what it is there to find."""

import pathlib
import tempfile
import unittest

import layering

# File, include line, the rule it breaks or None.
# fmt: off
CASES = [
    ("src/fkit/a.cpp",             '#include <netdb.h>',                None),
    ("src/fkit/a.cpp",             '#include "serverlib/protocol.h"',   "may not include src/serverlib"),
    ("src/fkit/a.cpp",             '#include <QWidget>',                "may include nothing of QtWidgets"),
    ("src/serverlib/a.cpp",        '#include <QtGui/QColor>',           "may include nothing of QtGui"),
    ("src/serverlib/a.cpp",        '#include <netinet/in.h>',           "may include nothing of network"),
    ("src/serverlib/a.cpp",        '  #  include "quellog/line.h"',     "may not include quellog"),
    ("src/serverlib/a.cpp",        '#include "objectmodel/object.h"',   "may not include src/objectmodel"),
    ("src/shared/trace.h",         '#include "quellog/line.h"',         None),
    ("src/shared/geometry/a.h",    '#include "shared/trace.h"',         "may not include src/shared"),
    ("src/shared/geometry/a.h",    '#include "fkit/export.h"',          None),
    ("src/objectmodel/gesture.cpp", '#include <tinyxml.h>',             None),
    ("src/objectmodel/a.cpp",      '#include <tinyxml.h>',              "may include nothing of tinyxml"),
    ("src/hook/a.cpp",             '#include "objectmodel/object.h"',   None),
    ("src/hook/a.cpp",             '#include <private/qwidget_p.h>',    "may include nothing of private Qt"),
    ("src/hook/highlighter.cpp",   '#include <private/qwidget_p.h>',    None),
    ("wrappers/qt/a.cpp",          '#include <QWidget>',                None),
    ("wrappers/qt/a.cpp",          '#include "hook/hook_p.h"',          "src/hook/hook_p.h is private to src/hook"),
    ("runner/a.cpp",               '#include "hook/hook_p.h"',          "may not include src/hook"),
    ("tests/hook/a.cpp",           '#include "hook/hook_p.h"',          None),
]
# fmt: on

HEADERS = [
    "quellog/line.h", "src/fkit/export.h", "src/shared/trace.h", "src/serverlib/protocol.h",
    "src/objectmodel/object.h", "src/hook/hook_p.h", "qt/QtCore/QString", "qt/QtWidgets/QWidget",
]


class Layering(unittest.TestCase):
    def test_each_case(self):
        for file, line, rule in CASES:
            with self.subTest(file=file, line=line), tempfile.TemporaryDirectory() as folder:
                root = pathlib.Path(folder).resolve()
                for header in HEADERS:
                    (root / header).parent.mkdir(parents=True, exist_ok=True)
                    (root / header).touch()
                (root / file).parent.mkdir(parents=True, exist_ok=True)
                (root / file).write_text("// Two lines.\n" + line + "\n")
                found = list(layering.Check(root, root / "qt").findings())
                self.assertEqual(len(found), 1 if rule else 0)
                for finding in found:
                    self.assertTrue(finding.startswith(f"{file}:2: {line.strip()}: "), finding)
                    self.assertTrue(finding.endswith(rule), finding)


if __name__ == "__main__":
    unittest.main()
