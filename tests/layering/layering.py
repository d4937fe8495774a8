#!/usr/bin/env python3
"""Checks every #include line against the table of who may include whom.

usage: layering.py ROOT [QT_HEADERS]

QT_HEADERS is the folder that holds QtCore/, QtGui/ and so on; it tells which module a Qt class belongs to.
"""

import fnmatch
import glob
import pathlib
import re
import sys

# Folder, the folders it may include besides its own, and what it may include from outside the repository.
# The C, C++ and POSIX libraries are open to all but for their network headers. The longest folder that a file
# lies in decides.
# fmt: off
ROWS = [
    ("quellog",                  "",                                                 ""),
    ("src/fkit",                 "",                                                 "QtCore network"),
    ("src/shared",               "src/fkit",                                         "QtCore"),
    ("src/shared/geometry",      "",                                                 "QtCore"),
    ("src/shared/uiabstraction", "",                                                 "QtCore QtGui"),
    ("src/serverlib",            "src/fkit src/shared",                              "QtCore zlib"),
    ("src/objectmodel",          "src/fkit src/shared src/shared/geometry",          "QtCore"),
    ("src/hook/platform",        "src/fkit src/shared src/shared/geometry",          "QtCore QtGui"),
    ("src/hook",                 "src/*",                                            "QtCore QtGui"),
    ("plugins/xlib",             "src/hook/platform src/shared src/shared/geometry", "QtCore xlib"),
    ("wrappers/qt",              "src/*",                                            "Qt*"),
    ("runner",                   "src/serverlib src/fkit src/shared*",               "Qt*"),
    ("examples",                 "src/*",                                            "*"),
    ("bench",                    "src/* quellog tests examples",                     "*"),
    ("fuzz",                     "src/* quellog tests",                              "*"),
    ("tests",                    "src/* quellog runner wrappers/qt examples",        "*"),
]

# Files that may include more than their folder: file, the one thing it may include besides.
EXTRA = [
    ("src/*",                         "src/fkit/export.h"),
    ("src/shared/trace.h",            "quellog"),
    ("src/objectmodel/*gesture*",     "tinyxml"),
    ("runner/*",                      "src/objectmodel/objectmap.h"),
    ("runner/*",                      "src/objectmodel/objectname.h"),
    ("src/hook/platform/*script*",    "src/objectmodel"),
    ("src/hook/platform/*functions*", "src/objectmodel"),
    ("src/hook/*highlighter*",        "private Qt"),
    ("src/hook/*filter*",             "tinyxml"),
]

# Headers that no other folder includes but for those that look inside.
PRIVATE = "src/*_p.h"
INSIDERS = "tests bench fuzz"

OUTSIDE = [
    (r"zlib\.h|zconf\.h",                                        "zlib"),
    (r"tinyxml\.h",                                              "tinyxml"),
    (r"X11/.*",                                                  "xlib"),
    (r"(private|qpa)/.*|Qt\w+/(\d[\d.]*/Qt\w+/)?(private|qpa)/.*", "private Qt"),
    (r"sys/socket\.h|sys/un\.h|netinet/.*|arpa/.*|net/.*|netdb\.h|ifaddrs\.h", "network"),
]
# fmt: on

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')


def row_of(path):
    """The row of the longest folder that holds the file, or None."""
    rows = [row for row in ROWS if path.startswith(row[0] + "/")]
    return max(rows, key=lambda row: len(row[0]), default=None)


def may(allowed, name):
    return any(fnmatch.fnmatchcase(name, pattern) for pattern in allowed.split())


class Check:
    def __init__(self, root, qt_headers):
        self.root = root
        self.modules = {header.name: header.parent.name for header in qt_headers.glob("Qt*/[Qq]*")}
        self.qt_headers = qt_headers

    def files(self):
        tops = sorted({row[0].split("/")[0] for row in ROWS})
        for top in tops:
            yield from sorted(path for path in (self.root / top).rglob("*") if path.suffix in (".h", ".cpp"))

    def own(self, path, include):
        """The included file's path below the root, or None if it is not of this repository."""
        for start in (path.parent, self.root / "src", self.root, self.root / "tests" / "support"):
            found = (start / include).resolve()
            if found.is_file() and found.is_relative_to(self.root):
                return found.relative_to(self.root).as_posix()
        return None

    def outside(self, include):
        """What a header of another project belongs to; None for the system's own library."""
        for pattern, kind in OUTSIDE:
            if re.fullmatch(pattern, include):
                return kind
        if match := re.match(r"(Qt\w+)/", include):
            return match[1]
        return self.modules.get(include)

    def broken_rule(self, path, include):
        """Why the file at path may not include this, or None."""
        name = path.relative_to(self.root).as_posix()
        row = row_of(name)
        if row is None:
            return None
        folder, folders, kinds = row
        extra = [what for file, what in EXTRA if fnmatch.fnmatchcase(name, file)]

        own = self.own(path, include)
        if own is None:
            kind = self.outside(include)
            if kind is None or kind in extra or may(kinds, kind):
                return None
            return f"{folder} may include nothing of {kind}"

        target = row_of(own)
        if target is None or target[0] == folder or own in extra or target[0] in extra:
            return None
        if not may(folders, target[0]):
            return f"{folder} may not include {target[0]}"
        if fnmatch.fnmatchcase(own, PRIVATE) and not may(INSIDERS, folder):
            return f"{own} is private to {target[0]}"
        return None

    def findings(self):
        for path in self.files():
            for number, line in enumerate(path.read_text().splitlines(), 1):
                if match := INCLUDE.match(line):
                    if rule := self.broken_rule(path, match[1] or match[2]):
                        yield f"{path.relative_to(self.root)}:{number}: {line.strip()}: {rule}"


def main(arguments):
    if len(arguments) not in (1, 2):
        sys.exit(__doc__)
    default = next(iter(glob.glob("/usr/include/*/qt6")), "/usr/include/qt6")
    check = Check(pathlib.Path(arguments[0]).resolve(), pathlib.Path((arguments + [default])[1]))
    if "QString" not in check.modules:
        sys.exit(f"no Qt headers in {check.qt_headers}")
    findings = list(check.findings())
    print("\n".join(findings) or "every include line keeps to the table")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
