#!/usr/bin/env python3
"""Feeds what dev/trust, dev/soak, dev/fuzz and dev/coverage judge by with good, missing, skipped and bad
texts, and looks whether each is told for what it is."""

import importlib.machinery
import importlib.util
import sys
import time
from pathlib import Path
from types import SimpleNamespace

DEV = Path(__file__).resolve().parent
sys.dont_write_bytecode = True


def load(name):
    loader = importlib.machinery.SourceFileLoader(f"dev_{name}", str(DEV / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


trust, soak, fuzz, coverage = (load(name) for name in ("trust", "soak", "fuzz", "coverage"))
failures = []
judged = 0


def expect(what, found, wanted):
    global judged
    judged += 1
    if found != wanted:
        failures.append(f"{what}: {found!r} instead of {wanted!r}")


def result(judge, *more):
    row = trust.Row()
    judge(row, *more)
    return row.result()


SUITE = "[==========] 52 tests from 3 test suites ran. (80 ms total)\n[  PASSED  ] 52 tests.\n"
ONE_SKIPPED = "a_test.cpp:95: Skipped\nNo small disk here.\n\n[  SKIPPED ] Disk.IsFull (0 ms)\n" + SUITE
ONE_FAILED = "[  FAILED  ] Disk.IsFull, where GetParam() = 1 (3 ms)\n" + SUITE


def try_suites():
    expect("a suite", result(trust.judge_suite, True, SUITE, 52), trust.HOLDS)
    expect("a suite of too few", result(trust.judge_suite, True, SUITE, 53), trust.BROKEN)
    expect("a suite that says nothing", result(trust.judge_suite, True, "", 1), trust.BROKEN)
    expect("a suite of none", result(trust.judge_suite, True, SUITE.replace("52", "0"), 1), trust.BROKEN)
    expect("a suite that crashes", result(trust.judge_suite, False, SUITE, 52), trust.BROKEN)
    expect("a test that fails", result(trust.judge_suite, False, ONE_FAILED, 52), trust.BROKEN)
    expect("a test that is skipped", result(trust.judge_suite, True, ONE_SKIPPED, 52), trust.NOT_PROVEN)
    row = trust.Row()
    trust.judge_suite(row, True, ONE_SKIPPED, 52)
    expect("why it is skipped", row.told(), "52 tests, 1 skipped: No small disk here.")
    expect("a failure beside a skip", result(trust.judge_suite, False, ONE_SKIPPED + ONE_FAILED, 52), trust.BROKEN)


def try_figures():
    row = trust.Row()
    row.figure("{:,} cycles", rf"{trust.COUNT} cycles", "a: 1,000 cycles\nb: 20 cycles\n", least=1_020)
    expect("a sum", (row.told(), row.result()), ("1,020 cycles", trust.HOLDS))
    row.figure("{:,} half", rf"half {trust.COUNT}", "half 1, half 0", most=0)
    expect("too many", row.result(), trust.BROKEN)
    for share, wanted in (("8.5e-05", trust.HOLDS), ("2.6", trust.HOLDS), ("5.1", trust.BROKEN), ("nan", trust.BROKEN)):
        said = f"the graph: 60 cycles, at most {share} % of a processor\n"
        expect(f"a share of {share}", result(trust.judge_plug, said, 60), wanted)
    expect("too few cycles", result(trust.judge_plug, "5 cycles, at most 1 % of a processor", 60), trust.BROKEN)


def try_fuzz():
    good = "dates          1,200 runs  nothing broken\nnumbers          400 runs  nothing broken, not kept: 2\n"
    both = ["dates", "numbers"]
    expect("two targets", result(trust.judge_fuzz, True, good, both), trust.HOLDS)
    expect("a target without a line", result(trust.judge_fuzz, True, good, [*both, "paths"]), trust.BROKEN)
    idle = good.replace("400", "0")
    expect("a target without runs", result(trust.judge_fuzz, True, idle, both), trust.BROKEN)
    broken = good.replace("nothing broken\n", "see the log\n")
    expect("a target that is broken", result(trust.judge_fuzz, True, broken, both), trust.BROKEN)
    expect("a bad end", result(trust.judge_fuzz, False, good, both), trust.BROKEN)
    expect("no target", result(trust.judge_fuzz, True, "", []), trust.BROKEN)
    log = "#718\tINITED cov: 366\nstat::number_of_executed_units: 9290\n"
    expect("runs", fuzz.new_runs(log), (718, 8572))
    expect("runs of which some are not told", fuzz.new_runs(log.replace("INITED", "READ")), (0, 0))
    packed, dropped = fuzz.packed_shortest([b"x" * 30_000, b"y" * 30_000, b"z"])
    expect("a pack", ([len(entry) for entry in fuzz.unpack(packed)], len(dropped)), ([1, 30_000], 1))


SOAKED = "2000 exchanges, 9 of them with a fault on the line\n4 logs, 6 rows, 12 values of each Location\n"
NO_WAIT = "the window kept its user waiting 0 times\n"
GROWS = "memory after 10.0 minutes: +0.140 MiB/h, standard error 0.010\n"
SHORT = "memory after 0.2 minutes: +9.140 MiB/h, standard error 4.010: too short to tell\n"


def try_soak_rows():
    said = SOAKED + NO_WAIT
    expect("logs", result(trust.judge_logs, True, said, False), trust.HOLDS)
    expect("too little for the full form", result(trust.judge_logs, True, said, True), trust.BROKEN)
    for bad in (said.replace("2000", "0"), said.replace("6 rows", "0 rows"), said.replace("0 times", "1 times"), SOAKED):
        expect(f"{bad!r}", result(trust.judge_logs, True, bad, False), trust.BROKEN)
    expect("memory", result(trust.judge_memory, True, GROWS, True), trust.HOLDS)
    expect("memory in short", result(trust.judge_memory, True, SHORT, False), trust.TOO_SHORT)
    expect("memory in short without its line", result(trust.judge_memory, True, "", False), trust.BROKEN)
    expect("memory too short in full", result(trust.judge_memory, True, SHORT, True), trust.BROKEN)
    expect("memory that grows", result(trust.judge_memory, False, GROWS, False), trust.BROKEN)


def soaked(waits=(), rows=6, exchanges=2000, samples=(), faults=()):
    return SimpleNamespace(
        boiler=SimpleNamespace(exchanges=exchanges, struck=1),
        program=SimpleNamespace(waits=list(waits)),
        samples=samples,
        warm_up=0,
        held=3,
        rows=lambda: rows,
        logs=lambda: ["run 1.log"],
        faults_of_logs=lambda: list(faults),
    )


def samples(growth):
    """Ten runs and ten graphs, each a minute long."""
    return [
        {"time": 60.0 * (2 * turn + at), "phase": phase, "round": turn, "files": 9,
         "resident": 40 + growth * (2 * turn + at) / 60}
        for turn in range(10) for at, phase in enumerate(("run", "graph"), 1)
    ]  # fmt: skip


def try_soak():
    steady = samples(0.1)
    expect("a soak", soak.verdict(soaked(samples=steady), None, False)[1], True)
    for what, bad in {
        "a wait": soaked(samples=steady, waits=["120 ms in a paint"]),
        "no row": soaked(samples=steady, rows=0),
        "no exchange": soaked(samples=steady, exchanges=0),
        "a bad log": soaked(samples=steady, faults=["run 1.log, torn"]),
        "growth": soaked(samples=samples(2)),
    }.items():
        expect(what, soak.verdict(bad, None, True)[1], False)
    expect("trouble", soak.verdict(soaked(samples=steady), "it ended", True)[1], False)
    expect("too short", soak.verdict(soaked(samples=steady[:2]), None, False)[1], False)
    expect("too short, with --short", soak.verdict(soaked(samples=steady[:2]), None, True)[1], True)


def try_logs():
    heads = "soak\r\n" + "\t".join(["Time"] + ["Word"] * soak.LOCATIONS + [""]) + "\r\n"
    value = "\t".join(["10:00:00"] + [str(256 * column) for column in range(soak.LOCATIONS)]) + "\r\n"
    nothing = "\t".join(["10:00:01"] + ["NA"] * soak.LOCATIONS) + "\r\n"
    expect("a log", soak.fault_of_log(heads + nothing + value, 1), None)
    expect("a log without a row", soak.fault_of_log(heads, 1), "nothing but headings")
    expect("a log without a value", soak.fault_of_log(heads + nothing * 2, 1), "no value in it")
    stale = heads + value.replace("\t256\t", "\t257\t")
    expect("a value never had", soak.fault_of_log(stale, 1), "line 3: Word 1 was never '257'")


def exit_of(action):
    try:
        action()
    except SystemExit as ended:
        return str(ended.code)
    return None


def try_coverage():
    said = "lines of the logic: 99.7 %, promised 95 %\nbranches of readers and decoders: 91.0 %, promised 90 %\n"
    expect("shares", result(trust.judge_coverage, True, said), trust.HOLDS)
    expect("a share that is missing", result(trust.judge_coverage, True, said.splitlines()[0]), trust.BROKEN)
    expect("a share too small", result(trust.judge_coverage, True, said.replace("99.7", "94.7")), trust.BROKEN)
    files = [coverage.File(f"{entry}.cpp", 1, 1, 1, 1, []) for entry in coverage.READERS]
    expect("readers", len(coverage.readers_among(files)), len(files))
    wanted = f"READERS names what is not there: {coverage.READERS[-1]}"
    expect("a reader that is not there", exit_of(lambda: coverage.readers_among(files[:-1])), wanted)
    expect("nothing of nothing", coverage.shares([]), (None, None))
    sources = [str(path.relative_to(coverage.ROOT)) for path in coverage.ROOT.glob("src/**/*.cpp")]
    absent = [entry for entry in coverage.READERS if not any(name.startswith(entry) for name in sources)]
    expect("READERS without a source", absent, [])


def try_end():
    expect("all hold", trust.verdict([trust.HOLDS, trust.TOO_SHORT], 599, False)[1], 0)
    expect("one broken", trust.verdict([trust.HOLDS, trust.BROKEN], 9, False)[1], 1)
    expect("one not proven", trust.verdict([trust.HOLDS, trust.NOT_PROVEN], 9, False)[1], 1)
    expect("none", trust.verdict([], 9, False)[1], 1)
    expect("too late", trust.verdict([trust.HOLDS], 601, False)[1], 1)
    expect("the full form", trust.verdict([trust.HOLDS], 601, True)[1], 0)
    begun = time.monotonic()
    well, said = trust.run(["bash", "-c", "echo begun; cat /dev/zero | cat >/dev/null"], 0.2)
    expect("that it is ended in time", time.monotonic() - begun < 1.5, True)
    expect("one that does not end", (well, said), (False, "begun\n\nit took more than 0.2 s"))
    expect("one that is not there", trust.run(["build/no such program"], 1)[0], False)
    row = trust.Row()
    row.ended(well, said)
    expect("its row", row.told(), "ended badly: it took more than 0.2 s")


def main():
    begun = time.monotonic()
    tries = (try_suites, try_figures, try_fuzz, try_soak_rows, try_soak, try_logs, try_coverage, try_end)
    for look in tries:
        look()
    for failure in failures:
        print(failure)
    print(f"dev/trust --self-test: {judged} judged, {len(failures)} misjudged ({time.monotonic() - begun:.1f} s)")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
