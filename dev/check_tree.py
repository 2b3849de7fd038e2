#!/usr/bin/env python3
"""Rules of the tree that no compiler holds: floors, circles, waits, sizes, files that no build runs.

dev/check_tree.py [ROOT]: prints one line per finding and ends with 1 if there is any.
"""

import re
import sys
from pathlib import Path

LONGEST_FILE = 600
LONGEST_FUNCTION = 60

# The floors of src/, and for each what its files may include beside their own folder. The longest
# prefix that fits a path says where it belongs.
LOCATION = "src/monitor/location_table"
LOW = {"src/common", "src/platform"}
LOGIC = LOW | {LOCATION, "src/protocols", "src/files"}
MAY_INCLUDE = {
    "src/common": set(),
    "src/platform": {"src/common"},
    "src/platform/qt": LOW,
    LOCATION: LOW,
    "src/protocols": LOW | {LOCATION},
    "src/files": LOW | {LOCATION, "src/protocols"},
    "src/monitor": LOGIC,
    "src/graph": LOGIC,
    "src/tools": LOGIC,
    "src/ui": LOGIC | {"src/platform/qt", "src/monitor", "src/graph", "src/tools"},
    "src/app": LOGIC | {"src/platform/qt", "src/monitor", "src/graph", "src/tools", "src/ui"},
    # The other end of the line shares nothing with the program.
    "simulator": set(),
}
# Each folder of tools/ is a tool of its own; what stands in tools/ itself is common to them.
TOOLS = "src/tools"

# The folders that may see Qt; everything else has to run without it.
SEES_QT = ("src/platform/qt", "src/ui", "src/app", "bench", "tests/contract", "tests/disk",
           "tests/ui", "tests/e2e")
# A nested event loop is the dialogs' own; the application's one loop is started by main().
MAY_LOOP = re.compile(r"src/platform/qt/\w*dialog\w*\.(cpp|h)|src/app/.*|tests/.*|bench/.*")

SLEEPS = re.compile(
    r"\b(u?sleep|msleep|nanosleep|clock_nanosleep|qSleep|qWait|sleep_for|sleep_until"
    r"|waitFor(ReadyRead|BytesWritten))\s*\("
)
PROCESS_EVENTS = re.compile(r"\b(processEvents|sendPostedEvents)\b")
NESTED_LOOP = re.compile(r"\bQEventLoop\b|\bexec\s*\(")
MACRO = re.compile(r"^\s*#\s*define\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')
QT_HEADER = re.compile(r"Q[A-Z]|Qt|q[a-z]+\.h$")
# Written in halves, so that this file does not find itself.
UNFINISHED = re.compile(r"\b(TO" r"DO|FIX" r"ME|XX" r"X|HA" r"CK|DIS" r"ABLED_\w+)\b")
FILE_NAME = re.compile(r"[a-z0-9_]+\.(h|cpp)")
TYPE_OR_NAMESPACE = re.compile(r"(template\s*<.*>\s*)?(inline\s+)?(namespace|class|struct|union|enum|extern)\b")

# Comments, and texts in quotes with a raw text's own end mark.
NOT_CODE = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"'
    r'|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\'',
    re.DOTALL,
)


def strip(text, keep_texts):
    """The text without comments, and without what stands in quotes; lines stay lines."""

    def blank(match):
        token = match.group(0)
        if keep_texts and not token.startswith(("//", "/*")):
            return token
        quote = token[-1] if token[-1] in "\"'" else ""
        return quote + "\n" * token.count("\n") + quote

    return NOT_CODE.sub(blank, text)


class Tree:
    def __init__(self, root):
        self.root = Path(root)
        self.findings = []
        self.code = {}  # path -> text
        self.makefiles = {}  # folder -> the CMakeLists.txt in it
        self.scripts = {}  # path -> text
        for path in sorted(self.root.rglob("*")):
            relative = path.relative_to(self.root)
            if relative.parts[0] in ("build", ".git") or not path.is_file():
                continue
            name = relative.as_posix()
            if path.suffix in (".h", ".cpp"):
                self.code[name] = path.read_text(encoding="utf-8")
            elif path.name == "CMakeLists.txt":
                self.makefiles[relative.parent.as_posix()] = path.read_text(encoding="utf-8")
            elif path.suffix == ".py" or relative.parts[0] == "dev" or name in ("run", "test"):
                self.scripts[name] = path.read_text(encoding="utf-8")

    def found(self, path, line, what):
        self.findings.append((path, line, what))

    # -- includes

    def resolve(self, path, header):
        """The file of the tree that an include means, or None."""
        folder = Path(path).parent.as_posix()
        for start in ("src", ".", "tests", folder):
            candidate = (Path(start) / header).as_posix()
            if candidate in self.code:
                return candidate
        return None

    def check_includes(self):
        includes = {}
        for path, text in self.code.items():
            includes[path] = []
            for number, line in enumerate(strip(text, keep_texts=True).split("\n"), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                self.check_qt(path, number, match.group(2))
                if ".." in match.group(2):
                    self.found(path, number, "includes by a path with .. in it")
                target = self.resolve(path, match.group(2))
                if target:
                    self.check_floor(path, number, target)
                    includes[path].append((number, target))
        self.check_circles(includes)

    def check_qt(self, path, number, header):
        if QT_HEADER.match(header) and not path.startswith(SEES_QT):
            self.found(path, number, f"includes {header}, but Qt is seen by {', '.join(SEES_QT)} only")

    def check_floor(self, path, number, target):
        here, there = place(path), place(target)
        if here is None:
            if there == "src/platform/qt" and not path.startswith(SEES_QT):
                self.found(path, number, f"includes {target}, but its folder does without Qt")
            return
        if here == there:
            if tool(path) and tool(target) and tool(path) != tool(target):
                self.found(path, number, f"includes {target}: a tool knows nothing of another tool")
        elif there not in MAY_INCLUDE.get(here, set()):
            self.found(path, number, f"includes {target}, which does not stand below {here}")

    def check_circles(self, includes):
        done, trail = set(), []

        def visit(path):
            if path in done:
                return
            trail.append(path)
            for number, target in includes[path]:
                if target in trail:
                    circle = trail[trail.index(target) :] + [target]
                    self.found(path, number, "includes in a circle: " + " -> ".join(circle))
                else:
                    visit(target)
            trail.pop()
            done.add(path)

        for path in includes:
            visit(path)

    # -- what a line says

    def check_lines(self):
        for path, text in self.code.items():
            for number, line in enumerate(strip(text, keep_texts=False).split("\n"), 1):
                if SLEEPS.search(line):
                    self.found(path, number, "waits by sleeping: use a timer or wait for a condition")
                if PROCESS_EVENTS.search(line) and not path.startswith("tests/"):
                    self.found(path, number, "runs the event loop from inside a handler")
                if NESTED_LOOP.search(line) and not MAY_LOOP.fullmatch(path):
                    self.found(path, number, "opens a nested event loop outside the dialogs")
                if MACRO.match(line):
                    self.found(path, number, "defines a macro")
        texts = {f"{folder}/CMakeLists.txt": text for folder, text in self.makefiles.items()}
        for path, text in (self.code | texts | self.scripts).items():
            for number, line in enumerate(text.split("\n"), 1):
                match = UNFINISHED.search(line)
                if match:
                    self.found(path, number, f"is unfinished or switched off: {match.group(0)}")

    # -- sizes

    def check_sizes(self):
        for path, text in self.code.items():
            lines = strip(text, keep_texts=False).split("\n")
            count = text.count("\n")
            if count > LONGEST_FILE:
                self.found(path, count, f"has {count} lines, more than {LONGEST_FILE}")
            for first, last in functions(lines):
                if last - first + 1 > LONGEST_FUNCTION:
                    self.found(
                        path, first, f"is a function of {last - first + 1} lines, more than {LONGEST_FUNCTION}"
                    )

    # -- files

    def check_files(self):
        for path, text in self.code.items():
            name = Path(path).name
            if path.startswith("src/") and place(path) not in MAY_INCLUDE:
                self.found(path, 1, "stands on no floor that dev/check_tree.py knows")
            if not FILE_NAME.fullmatch(name):
                self.found(path, 1, "has a file name that is not snake_case")
            if name.endswith(".h") and "#pragma once" not in text:
                self.found(path, 1, "has no #pragma once")
            if name.endswith(".cpp") and not self.is_built(path):
                self.found(path, 1, "is named by no CMakeLists.txt, so that no build knows it")

    def is_built(self, path):
        """True if the CMakeLists.txt of a folder above names the file, by its path from there."""
        for folder in Path(path).parents:
            text = self.makefiles.get(folder.as_posix())
            if text is None:
                continue
            name = Path(path).relative_to(folder).with_suffix("").as_posix()
            commands = re.sub(r"#.*", "", text)
            if re.search(rf"(?<![\w/]){re.escape(name)}(\.cpp)?(?![\w.])", commands):
                return True
        return False

    def check(self):
        self.check_includes()
        self.check_lines()
        self.check_sizes()
        self.check_files()
        return sorted(set(self.findings))


def place(path):
    """The row of the table that a path belongs to."""
    stem = str(Path(path).with_suffix(""))
    fitting = [row for row in MAY_INCLUDE if stem == row or path.startswith(row + "/")]
    if not fitting and path.startswith("src/"):
        return Path(path).parent.as_posix()
    return max(fitting, key=len, default=None)


def tool(path):
    """The folder of tools/ that a path belongs to."""
    parts = Path(path).parts
    inside = path.startswith(TOOLS + "/") and len(parts) > len(Path(TOOLS).parts) + 1
    return parts[2] if inside else None


def functions(lines):
    """First and last line of each function. Relies on the layout that clang-format gives: a body
    closes at the indentation of the line that begins its head."""
    found = []
    number = 0
    while number < len(lines):
        first, last = function_at(lines, number)
        if last:
            found.append((first + 1, last + 1))
        number = (last or number) + 1
    return found


def function_at(lines, number):
    """First and last index of the function whose body the line opens, or no last."""
    if not lines[number].rstrip().endswith("{"):
        return number, None
    first = number
    while first > 0 and not re.search(r"^\s*#|(^|[;{}:])\s*$", lines[first - 1]):
        first -= 1
    head = " ".join(line.strip() for line in lines[first : number + 1])
    if TYPE_OR_NAMESPACE.match(head) or "(" not in head or re.search(r"=\s*\{+$", head):
        return number, None
    indentation = len(lines[first]) - len(lines[first].lstrip())
    # A function-try-block goes on with its handlers.
    end = re.compile(rf" {{{indentation}}}\}}(?! catch\b)")
    for last in range(number + 1, len(lines)):
        if end.match(lines[last]):
            return first, last
        if lines[last].strip() and len(lines[last]) - len(lines[last].lstrip()) < indentation - 1:
            break
    return number, None


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent
    findings = Tree(root).check()
    for path, line, what in findings:
        print(f"{path}:{line}: {what}")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
