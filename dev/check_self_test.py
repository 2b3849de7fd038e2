#!/usr/bin/env python3
"""Plants one violation of each rule in a copy of the tree and looks whether dev/check finds it."""

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
ONCE = "#pragma once\n"


def function(lines, indentation=""):
    body = ["void Long() {"] + ["  Step();"] * (lines - 2) + ["}"]
    return "".join(f"{indentation}{line}\n" for line in body)


# Path, content, and what the finding in that file says; None where nothing may be found.
PLANTED = [
    ("src/common/up.h", ONCE + '#include "monitor/frm_main.h"\n', "which does not stand below"),
    ("src/platform/up.h", ONCE + '#include "platform/qt/qt_files.h"\n', "which does not stand below"),
    ("src/protocols/up.h", ONCE + '#include "files/screen_file.h"\n', "which does not stand below"),
    ("src/monitor/up.h", ONCE + '#include "ui/units.h"\n', "which does not stand below"),
    ("src/graph/sideways.h", ONCE + '#include "monitor/frm_main.h"\n', "which does not stand below"),
    ("src/tools/sniffer/sideways.h", ONCE + '#include "tools/scan/scan.h"\n', "of another tool"),
    ("src/tools/scan/scan.h", ONCE, None),
    ("src/monitor/location.h", ONCE + '#include "monitor/location_table.h"\n', None),
    ("src/protocols/location.h", ONCE + '#include "monitor/location_table.h"\n', None),
    ("src/protocols/monitor.h", ONCE + '#include "monitor/monitor.h"\n', "which does not stand below"),
    ("simulator/shared.h", ONCE + '#include "common/numbers.h"\n', "which does not stand below"),
    ("tests/unit/adapter.h", ONCE + '#include "platform/qt/qt_files.h"\n', "does without Qt"),
    ("src/cellar/unknown.h", ONCE, "stands on no floor"),
    ("src/files/dots.h", ONCE + '#include "../common/numbers.h"\n', "a path with .. in it"),
    ("src/monitor/qt.h", ONCE + "#include <QString>\n", "includes QString"),
    ("src/files/qt.h", ONCE + "#include <QtCore/QString>\n", "includes QtCore/QString"),
    ("tests/form/qt.h", ONCE + "#include <QString>\n", "includes QString"),
    ("src/ui/qt.h", ONCE + "#include <QString>\n", None),
    ("src/ui/circle_a.h", ONCE + '#include "ui/circle_b.h"\n', None),
    ("src/ui/circle_b.h", ONCE + '#include "ui/circle_a.h"\n', "includes in a circle"),
    ("src/ui/sleep.h", ONCE + "inline void Wait() { QThread::msleep(5); }\n", "waits by sleeping"),
    ("src/common/sleep.h", ONCE + "inline void Wait() { sleep_for(1s); }\n", "waits by sleeping"),
    ("tests/unit/sleep.h", ONCE + "inline void Wait() { usleep(5); }\n", "waits by sleeping"),
    ("src/ui/events.h", ONCE + "inline void Run() { qApp->processEvents(); }\n", "from inside a handler"),
    ("src/ui/loop.h", ONCE + "inline QEventLoop loop;\n", "nested event loop"),
    ("src/ui/menu.h", ONCE + "inline void Show() { menu->exec(); }\n", "nested event loop"),
    ("src/ui/words.h", ONCE + '// Never sleep(1).\ninline auto text = "exec() usleep(1)";\n', None),
    ("src/common/macro.h", ONCE + "#define LIMIT 5\n", "defines a macro"),
    ("src/common/later.h", ONCE + "// TO" "DO: more\n", "unfinished"),
    ("tests/unit/off.h", ONCE + "// DIS" "ABLED_Name\n", "switched off"),
    ("src/common/long.h", ONCE + "int x;\n" * 600, "has 601 lines"),
    ("src/common/not_long.h", ONCE + "int x;\n" * 599, None),
    ("src/common/function.h", ONCE + function(61), "is a function of 61 lines"),
    ("src/common/member.h", ONCE + "class Member {\n" + function(61, "  ") + "};\n", "of 61 lines"),
    ("src/common/short_function.h", ONCE + function(60), None),
    ("src/common/table.h", ONCE + "constexpr int kTable[] = {\n" + "    1,\n" * 70 + "};\n", None),
    ("src/common/CamelCase.h", ONCE, "not snake_case"),
    ("src/common/twice.h", "int x;\n", "no #pragma once"),
    ("tests/unit/lost_test.cpp", "int x;\n", "named by no CMakeLists.txt"),
    ("src/common/lost.cpp", "int x;\n", "named by no CMakeLists.txt"),
    ("src/common/layout.h", ONCE + "int  x ;\n", "is not laid out"),
    ("dev/broken", "#!/usr/bin/env bash\nif true; then\n", "syntax error"),
    ("dev/careless", "#!/usr/bin/env bash\nrm $1/x\n", "Double quote"),
]

MOVED = """#include <string>
#include <utility>
std::string Moved(std::string text) {
  std::string taken = std::move(text);
  return taken + text;
}
"""

EMPTIED = """#include <string>
char Emptied(const std::string* text) {
  const char first = (*text)[0];
  return text == nullptr ? ' ' : first;
}
"""


def findings(command, folder):
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True, check=False)
    if done.returncode == 0:
        print(f"{' '.join(command)} ended with 0")
    return done.stdout.splitlines() if done.returncode else []


def main():
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        copy = Path(folder, "tree")
        shutil.copytree(ROOT, copy, ignore=shutil.ignore_patterns("build", ".git"))
        for path, content, _ in PLANTED:
            Path(copy, path).parent.mkdir(parents=True, exist_ok=True)
            Path(copy, path).write_text(content, encoding="utf-8")
        lines = findings(["dev/check", "--quick"], copy)
        for path, _, expected in PLANTED:
            # Planted code is not tidy; its layout counts only where the layout is the point.
            said = [line for line in lines if line.startswith(path + ":")]
            if expected != "is not laid out":
                said = [line for line in said if "is not laid out" not in line]
            right = any(expected in line for line in said) if expected else not said
            if not right:
                failures.append(f"{path}: expected {expected!r}, found {said}")

        moved = Path(copy, "src/common/moved.cpp")
        moved.write_text(MOVED, encoding="utf-8")
        lines = findings(["dev/check_tidy", "src/common/moved.cpp"], copy)
        if not any(line.startswith("src/common/moved.cpp:5: ") and "use-after-move" in line for line in lines):
            failures.append(f"src/common/moved.cpp: expected 'use-after-move', found {lines}")

        # A file that was clean before, and is no longer.
        spoiled = Path(copy, "src/common/text.cpp")
        command = ["dev/check_tidy", "src/common/text.cpp"]
        clean = subprocess.run(command, cwd=copy, capture_output=True, text=True, check=False)
        spoiled.write_text(spoiled.read_text(encoding="utf-8") + MOVED, encoding="utf-8")
        lines = findings(command, copy)
        if clean.returncode != 0 or not any("use-after-move" in line for line in lines):
            failures.append(f"src/common/text.cpp: clean {clean.stdout!r}, spoiled {lines}")

        emptied = Path(copy, "src/common/emptied.cpp")
        emptied.write_text(EMPTIED, encoding="utf-8")
        lines = findings(["dev/check_cppcheck", "src/common/emptied.cpp"], copy)
        if not any(line.startswith("src/common/emptied.cpp:3: ") and "null" in line for line in lines):
            failures.append(f"src/common/emptied.cpp: expected a null pointer, found {lines}")

    # What judges the figures of docs/reliability.md is tried as well.
    done = subprocess.run(["dev/trust", "--self-test"], cwd=ROOT, capture_output=True, text=True, check=False)
    if done.returncode != 0:
        failures.append(f"dev/trust --self-test: {done.stdout}{done.stderr}")

    for failure in failures:
        print(failure)
    print(f"dev/check --self-test: {len(PLANTED) + 3} planted, {len(failures)} misjudged")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
