"""Changes the plug-in and the host core in one small way after another and asks the tests.

usage: scripts/mutants [options]; 0 when enough changes are noticed, 1 otherwise

Every change that a test notices is killed. What no test notices has survived, is listed as
equivalent in tests/mutants/equivalent.txt with the reason, or stands where no test comes by.
"""
import argparse
import collections
import difflib
import hashlib
import multiprocessing
import os
import pathlib
import pickle
import queue
import random
import re
import shutil
import subprocess
import sys
import threading
import time

from clang import cindex

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import points  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutants"
SHADOW = WORK / "source"
BUILD = WORK / "build"
EQUIVALENT = ROOT / "tests" / "mutants" / "equivalent.txt"

FOLDERS = ("havcore/src", "inmem/values", "inmem/model", "inmem/provider")
# In the order in which a change meets them.
SUITES = ("havcore", "values", "model", "contract_linked", "oracle")
# Enough for what only the comparison with the model notices, and no more.
ENVIRONMENT = {"HAV_ORACLE_PROGRAMS": "40"}
AT_LEAST = 97.0

def limit_of(took):
    """What a test may take, in microseconds of processor time, before it counts as endless."""
    return 200_000 + min(10 * took, took + 2_000_000)



def sources():
    return sorted(str(path.relative_to(ROOT)) for folder in FOLDERS
                  for path in (ROOT / folder).iterdir() if path.suffix in (".cpp", ".h"))


# --- Building --------------------------------------------------------------------------------

def instrument_unit(arguments):
    return points.instrument(*arguments)


def instrument(names, jobs):
    """Returns {name: (mutants, text)}; of the units that stand as they did from the last time."""
    resources = subprocess.run(["clang", "-print-resource-dir"], capture_output=True, text=True,
                               check=True).stdout.strip()
    flags = ["-std=c++17", "-resource-dir", resources, f"-I{ROOT}", f"-I{ROOT}/havcore/include",
             "-DHAVCORE_BUILDING", "-DINMEM_BUILDING"]
    library = next(iter(sorted(pathlib.Path("/usr/lib").glob("llvm-*/lib/libclang.so.1"))), None)
    if library:
        cindex.Config.set_library_file(str(library))
    common = hashlib.sha256(pathlib.Path(points.__file__).read_bytes() + " ".join(names).encode())
    for path in (*names, *sorted((ROOT / "havcore/include").rglob("*.h"))):
        if str(path).endswith(".h"):
            common.update((ROOT / path).read_bytes())

    def key(unit):
        return hashlib.sha256(common.digest() + (ROOT / unit).read_bytes()).hexdigest()

    kept = WORK / "points.pickle"
    known = pickle.loads(kept.read_bytes()) if kept.exists() else {}
    units = [name for name in names if name.endswith(".cpp")]
    new = [unit for unit in units if key(unit) not in known]
    with multiprocessing.Pool(jobs) as pool:
        found = pool.map(instrument_unit, [(ROOT, names, unit, flags) for unit in new], 1)
    known.update({key(unit): result for unit, result in zip(new, found)})
    known = {key(unit): known[key(unit)] for unit in units}
    kept.write_bytes(pickle.dumps(known))
    return {name: result for unit in units for name, result in known[key(unit)].items()}


def tell_apart(mutants):
    """Numbers the changes of one file that are alike: `#2` is the second one."""
    seen = collections.Counter()
    for mutant in mutants:
        key = key_of(mutant)
        seen[key] += 1
        if seen[key] > 1:
            mutant.change += f" #{seen[key]}"


def write(path, text, encoding="utf-8"):
    """Writes a file when that changes it, so that what is built of it stays."""
    data = text.encode(encoding)
    if path.is_symlink():
        path.unlink()
    path.parent.mkdir(parents=True, exist_ok=True)
    if not path.exists() or path.read_bytes() != data:
        path.write_bytes(data)


def mirror(folder):
    """Makes `folder` of the copy a real one whose entries lead to the originals."""
    target = SHADOW / folder
    if target.is_symlink():
        target.unlink()
    target.mkdir(parents=True, exist_ok=True)
    for entry in (ROOT / folder).iterdir():
        link = target / entry.name
        if entry.name in ("build", ".git") or link.exists() or link.is_symlink():
            continue
        link.symlink_to(entry)


def write_copy(instrumented):
    for folder in (".", "cmake", "havcore", "inmem", *FOLDERS):
        mirror(folder)
    for folder in FOLDERS:  # what is gone
        for entry in (SHADOW / folder).iterdir():
            if entry.name != "Mutants.cpp" and not (ROOT / folder / entry.name).exists():
                entry.unlink()
    for name, (_, text) in instrumented.items():
        write(SHADOW / name, text, "latin-1")
    write(SHADOW / "havcore/src/Mutants.cpp", (ROOT / "tests/mutants/Mutants.cpp").read_text())
    own_main = ("find_package(GTest REQUIRED)\n"
                "add_library(mutants_main STATIC ${PROJECT_SOURCE_DIR}/tests/mutants/Main.cpp)\n"
                "target_link_libraries(mutants_main PUBLIC GTest::gtest hav::core)\n"
                "add_library(GTest::mutants_main ALIAS mutants_main)\n")
    write(SHADOW / "cmake/HavGoogleTest.cmake", own_main)
    # What reads past an end, or leaves a function without its value, ends the program.
    write(SHADOW / "cmake/HavTarget.cmake", (ROOT / "cmake/HavTarget.cmake").read_text() + """
macro(hav_target name)
  _hav_target(${name})
  if("${name}" MATCHES "^(havcore|inmem_objects)$")
    target_compile_options(${name} PRIVATE -D_GLIBCXX_ASSERTIONS -fsanitize=return
                           -fsanitize-trap=return)
  endif()
endmacro()
""")
    # The suites keep their CMakeLists.txt; only their main program is another one.
    shutil.rmtree(SHADOW / "tests", ignore_errors=True) if not (
        SHADOW / "tests").is_symlink() else (SHADOW / "tests").unlink()
    mirror("tests")
    for suite in ("havcore", "values", "model", "contract", "oracle"):
        mirror(f"tests/{suite}")
        path = f"tests/{suite}/CMakeLists.txt"
        write(SHADOW / path, (ROOT / path).read_text().replace(
            "GTest::gtest_main", "GTest::mutants_main"))


def build(jobs):
    flags = ("-w -Wno-c++11-narrowing -O1 -fno-strict-return "
             f"-I{SHADOW} -include {SHADOW}/tests/mutants/Mutants.h")
    log = WORK / "build.log"
    with log.open("w") as out:
        for command in (
                ["cmake", "-S", SHADOW, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                 "-DCMAKE_CXX_COMPILER=clang++", "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache",
                 f"-DCMAKE_CXX_FLAGS={flags}", "-DHAV_BUILD_HOST=OFF", "-DHAV_BUILD_FUZZ=OFF"],
                ["cmake", "--build", BUILD, "-j", str(jobs), "--target",
                 *(f"{suite}_tests" for suite in SUITES), "--", "-k", "0"]):
            if subprocess.run(command, stdout=out, stderr=out, stdin=subprocess.DEVNULL,
                              check=False).returncode:
                errors = [line for line in log.read_text().splitlines() if "error:" in line]
                sys.exit("\n".join(errors[:40]) + f"\nthe build failed; all of it: {log}")


def program(suite):
    return str(BUILD / "bin" / f"{suite}_tests")


def environment():
    return {**os.environ, **ENVIRONMENT}


def key_of(mutant):
    return mutant.file, mutant.text, mutant.change


def last_verdicts():
    """Returns {key: what runs so far have said of it last}."""
    log = WORK / "verdicts.txt"
    if not log.exists():
        return {}
    lines = [line.split("\t") for line in log.read_text().splitlines()]
    return {tuple(line[:3]): line[3] for line in lines if len(line) == 4}


# --- Running ---------------------------------------------------------------------------------

def record():
    """Returns {mutant: [(suite, test, microseconds)]}, the fastest tests first."""
    reached = collections.defaultdict(list)
    for rank, suite in enumerate(SUITES):
        log = WORK / f"{suite}.reached"
        run = subprocess.run([program(suite), "--record", log], env=environment(),
                             capture_output=True, text=True, check=False)
        if run.returncode:
            sys.exit(run.stdout[-4000:] + f"\n{suite} fails without a change")
        for line in log.read_text().splitlines():
            test, took, *numbers = line.split("\t")
            for number in numbers:
                reached[int(number)].append((rank == len(SUITES) - 1, int(took), rank, test))
    return {number: [(SUITES[rank], test, took) for _, took, rank, test in sorted(tests)]
            for number, tests in reached.items()}


class Servers:
    """One process of each suite, which forks a child for each change."""

    def __init__(self):
        self.servers = {}

    def ask(self, suite, mutant, tests):
        """Returns the verdict of these tests of a suite."""
        if suite not in self.servers:
            self.servers[suite] = subprocess.Popen(
                [program(suite), "--serve"], env=environment(), text=True,
                stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        server = self.servers[suite]
        limits = [limit_of(took) for _, took in tests]
        seconds = 60 + 4 * sum(took for _, took in tests) // 1_000_000 + max(limits) // 250_000
        words = [f"{test}:{limit}" for (test, _), limit in zip(tests, limits)]
        server.stdin.write(f"{mutant} {seconds} {' '.join(words)}\n")
        server.stdin.flush()
        return server.stdout.readline().strip()

    def verdict(self, mutant, tests):
        """Asks the tests in their order; those of one suite that follow each other at once."""
        at = 0
        while at < len(tests):
            suite = tests[at][0]
            end = at
            while end < len(tests) and tests[end][0] == suite:
                end += 1
            said = self.ask(suite, mutant, [(test, took) for _, test, took in tests[at:end]])
            if said != "survived":
                return f"{said} ({suite})"
            at = end
        return "survived"

    def end(self):
        for server in self.servers.values():
            server.stdin.close()
            server.wait()


def in_batches(tests):
    """The tests, the fast ones first, so that there are few changes of the suite."""
    batches = collections.defaultdict(list)
    for suite, test, took in tests:
        slowness = 0 if took < 3_000 else 1 if took < 50_000 else 2 if took < 1_000_000 else 3
        batches[(suite == "oracle", slowness, SUITES.index(suite))].append((suite, test, took))
    return [test for key in sorted(batches) for test in batches[key]]


def run_all(mutants, reached, jobs):
    """Returns {mutant: verdict}; writes each where the next run finds it."""
    kept = (WORK / "verdicts.txt").open("a")
    waiting = queue.Queue()
    # In no order, so that what has been run at any time stands for all.
    for mutant in random.Random(1).sample(mutants, len(mutants)):
        waiting.put(mutant)
    verdicts, begin = {}, time.time()

    def work():
        servers = Servers()
        while True:
            try:
                mutant = waiting.get_nowait()
            except queue.Empty:
                break
            tests = in_batches(reached.get(mutant.number, []))
            verdicts[mutant.number] = servers.verdict(mutant.number, tests) if tests \
                else "not reached"
            print(*key_of(mutant), verdicts[mutant.number], sep="\t", file=kept, flush=True)
            if len(verdicts) % 100 == 0:
                print(f"{len(verdicts)} of {len(mutants)} after {time.time() - begin:.0f} s",
                      file=sys.stderr, flush=True)
        servers.end()

    threads = [threading.Thread(target=work) for _ in range(jobs)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    return verdicts


# --- Equivalents -----------------------------------------------------------------------------

def read_equivalents():
    """Returns {(file, line's text, change): reason}.

    A line `FILE: TEXT OF THE LINE` begins an entry; the changes of that line follow, indented by
    two, and below them the reason, indented by four.
    """
    listed, place, changes, reason = {}, None, [], []

    def close():
        if changes and not reason:
            sys.exit(f"{EQUIVALENT}: no reason for {changes[0]}")
        for change in changes:
            listed[(*place, change)] = " ".join(reason)
        changes.clear()
        reason.clear()

    for line in EQUIVALENT.read_text(encoding="utf-8").splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        if line.startswith("    "):
            reason.append(line.strip())
        elif line.startswith("  "):
            if reason:
                close()
            changes.append(line.strip())
        else:
            close()
            place = tuple(line.split(": ", 1))
    close()
    return listed


# --- Telling ---------------------------------------------------------------------------------

def tell(mutants, verdicts, all_mutants, selected):
    """Prints the report; returns the exit status."""
    listed = read_equivalents()
    errors = []
    known = {key_of(mutant) for mutant in all_mutants}
    errors += [f"listed as equivalent, and no longer there: {': '.join(key)}"
               for key in listed if key not in known]
    by_file = collections.defaultdict(collections.Counter)
    survivors = []
    for mutant in mutants:
        verdict = verdicts[mutant.number]
        alive = verdict in ("survived", "not reached")
        kind = verdict if alive else "killed"
        if key_of(mutant) in listed:
            if alive:
                kind = "equivalent"
            else:
                errors.append(f"listed as equivalent, but {verdict}: {': '.join(key_of(mutant))}")
        by_file[mutant.file][kind] += 1
        if kind in ("survived", "not reached"):
            survivors.append((mutant, kind))

    for mutant, kind in survivors:
        print(f"{mutant.file}:{mutant.line}: {kind}: {mutant.change}   [{mutant.number}]")
    print()
    columns = ("killed", "survived", "not reached", "equivalent")
    width = max(len(name) for name in by_file)
    print(f"{'':{width}} {' '.join(f'{c:>11}' for c in columns)}        %")
    total = collections.Counter()
    for name, counts in [*sorted(by_file.items()), ("all", total)]:
        if name != "all":
            total.update(counts)
        meant = sum(counts.values()) - counts["equivalent"]
        share = 100 * counts["killed"] / meant if meant else 100.0
        print(f"{name:{width}} {' '.join(f'{counts[c]:11}' for c in columns)} {share:8.1f}")
    for error in errors:
        print(error)
    enough = share >= AT_LEAST
    print(f"\n{total['killed']} of {meant} changes noticed, {share:.2f} percent"
          f"{'' if enough else f': less than {AT_LEAST:.0f}'}"
          f"{f', {len(errors)} errors in the list of equivalents' if errors else ''}"
          f"{' (a part of them)' if selected else ''}")
    return 0 if enough and not errors else 1


def show(number, instrumented, reached):
    """One change: where, the lines before and after, which tests met it and what they said."""
    mutant = next((m for ms, _ in instrumented.values() for m in ms if m.number == number), None)
    if not mutant:
        sys.exit(f"there is no change {number}")
    text = (SHADOW / mutant.file).read_text(encoding="latin-1").splitlines()[mutant.line - 1]
    print(f"{mutant.file}:{mutant.line}: {mutant.change}\n")
    original = [f"{mutant.text}\n"]
    changed = [f"{re.sub(rf'hav::mutants::On<{number}>[(][)]', 'ON', text.strip())}\n"]
    sys.stdout.writelines(list(difflib.unified_diff(original, changed, n=0))[3:])
    tests = in_batches(reached.get(number, []))
    servers = Servers()
    print(f"\n{servers.verdict(number, tests) if tests else 'not reached'}")
    servers.end()
    for suite, test, took in tests:
        print(f"  {suite} {test} {took / 1000:.1f} ms")


def main():
    parser = argparse.ArgumentParser(
        prog="scripts/mutants", description=__doc__, usage=argparse.SUPPRESS,
        formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--only", metavar="FILE", action="append", default=[],
                        help="the changes in this source; may be given several times")
    parser.add_argument("--sample", metavar="N", type=int, help="so many of the changes")
    parser.add_argument("--seed", metavar="S", type=int, default=1, help="which sample; 1")
    parser.add_argument("--left", action="store_true",
                        help="those that no test noticed when they were run last, or never run")
    parser.add_argument("--quick", action="store_true",
                        help="without the tests that take a fifth of a second: what they alone "
                        "notice survives, and --left asks them")
    parser.add_argument("--jobs", metavar="N", type=int, default=os.cpu_count(),
                        help="so many at a time; as many as there are processors")
    parser.add_argument("--list", action="store_true", help="lists the changes and ends")
    parser.add_argument("--mutant", metavar="K", type=int,
                        help="one change: the line, the tests that meet it, what they say")
    options = parser.parse_args()

    WORK.mkdir(parents=True, exist_ok=True)
    names = sources()
    for name in options.only:
        if name not in names:
            parser.error(f"{name} is none of the sources in {', '.join(FOLDERS)}")
    print("finding the places ...", file=sys.stderr, flush=True)
    instrumented = instrument(names, options.jobs)
    for mutants, _ in instrumented.values():
        tell_apart(mutants)
    everything = [mutant for _, (mutants, _) in sorted(instrumented.items())
                  for mutant in mutants]
    chosen = [m for m in everything if not options.only or m.file in options.only]
    if options.left:
        said = last_verdicts()
        chosen = [m for m in chosen if said.get(key_of(m), "survived") in (
            "survived", "not reached")]
    if options.sample and options.sample < len(chosen):
        chosen = sorted(random.Random(options.seed).sample(chosen, options.sample),
                        key=lambda m: m.number)
    if options.list:
        for mutant in chosen:
            print(f"{mutant.number}\t{mutant.file}:{mutant.line}: {mutant.change}")
        return 0
    print("building ...", file=sys.stderr, flush=True)
    write_copy(instrumented)
    build(options.jobs)
    print("running without a change ...", file=sys.stderr, flush=True)
    reached = record()
    if options.quick:
        reached = {number: [test for test in tests if test[2] < 200_000]
                   for number, tests in reached.items()}
    if options.mutant:
        show(options.mutant, instrumented, reached)
        return 0
    verdicts = run_all(chosen, reached, options.jobs)
    return tell(chosen, verdicts, everything, len(chosen) < len(everything))


if __name__ == "__main__":
    sys.exit(main())
