#!/usr/bin/env python3
"""Compares what the compiler lays out with the committed tables, for both ABIs.

  check_layout CLANG INCLUDE_FOLDER     CLANG may be empty: then the check is skipped

slots.txt holds the virtual tables of the interfaces, types.txt the sizes and offsets of the
types that cross library borders. Clang prints both for any target. For the MSVC ABI no
Windows SDK is needed: the folder standin/ has as much of the standard library and of Boost
as the contract headers use.
"""
import dataclasses
import pathlib
import re
import subprocess
import sys
import tempfile

import slot_table

HERE = pathlib.Path(__file__).resolve().parent

TABLE_HEAD = {
    "Itanium": re.compile(r"Vtable for '(?P<interface>[\w:<>, ]+)' \(\d+ entries\)\."),
    "MSVC": re.compile(r"VFTable for (?:'(?P<base>[\w:]+)' in )?'(?P<interface>[\w:<>, ]+)'"
                       r" \(\d+ entr(?:y|ies)\)\."),
}
# Under the Itanium ABI the destructor has two entries; it counts as the first.
IS_NO_SLOT = {"Itanium": (" RTTI", " [deleting]"), "MSVC": (" RTTI",)}
ENTRY = re.compile(r" *\d+ \| (?P<text>.*)")
ADDRESS = re.compile(r" *-- \((?P<base>[\w:]+), \d+\) (?:vtable|vftable) address --")
QUALIFIED_NAME = re.compile(r"\w+::(?=(?:~?\w+|operator\W+?)\()")


@dataclasses.dataclass(frozen=True)
class Target:
    """One ABI, and how Clang is told to use it."""
    abi: str
    options: tuple
    triple: str


def targets(clang, include):
    native = subprocess.run([clang, "-dumpmachine"], check=True, capture_output=True,
                            text=True).stdout.strip()
    windows = "x86_64-pc-windows-msvc"
    common = ("-std=c++17", "-I", str(include), "-Wall", "-Wextra", "-Wpedantic", "-Werror")
    return (Target("Itanium", common, native),
            Target("MSVC", (f"--target={windows}", "-nostdinc", "-isystem",
                            str(HERE / "standin"), "-fcxx-exceptions", *common), windows))


def run_clang(clang, target, source, *options):
    """Compiles the text `source` and returns what Clang printed. Exits when it fails."""
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "source.cpp"
        path.write_text(source)
        result = subprocess.run([clang, *target.options, *options, str(path)],
                                capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"{target.abi} ABI: {clang} failed:\n{result.stderr}")
    return result.stdout


def plain(text):
    """A declaration as the table spells it."""
    text = re.sub(r" \[(?:pure|complete|deleting|scalar deleting|vector deleting)\]", "", text)
    text = text.replace("NORVHAV20::", "").replace("bool (", "bool(")
    text = re.sub(r" ([&*])", r"\1", QUALIFIED_NAME.sub(" ", text, count=1))
    return re.sub(r"([&*])(?=\w)", r"\1 ", re.sub(r" +", " ", text)).strip()


def laid_out(abi, dump):
    """Returns {table: [declaration, ...]} of all tables in a dump."""
    tables, interface, slots = {}, None, None
    for line in dump.splitlines():
        if head := TABLE_HEAD[abi].fullmatch(line):
            interface, slots = head["interface"].replace("NORVHAV20::", ""), None
            if abi == "MSVC":
                slots = begin_table(tables, interface, head["base"])
        elif interface and not line.strip():
            interface = None
        elif interface and (address := ADDRESS.fullmatch(line)) and abi == "Itanium":
            # Bases that share a table are named one after the other; the first is the widest.
            if slots is None:
                slots = begin_table(tables, interface, address["base"])
        elif interface and (entry := ENTRY.fullmatch(line)):
            if entry["text"].startswith("offset_to_top"):
                slots = None  # a table begins; its address is two entries further
            elif not entry["text"].endswith(IS_NO_SLOT[abi]):
                slots.append(plain(entry["text"]))
    return tables


def begin_table(tables, interface, base):
    """Enters an empty table; the primary one goes by the interface alone."""
    base = (base or interface).replace("NORVHAV20::", "")
    primary = interface not in tables
    return tables.setdefault(interface if primary else f"{interface}/{base}", [])


def check_slots(clang, target, listed):
    """Prints where the compiler's tables differ from those listed; returns how often."""
    interfaces = sorted({slots[0].interface for slots in listed.values()})
    # A constructor that is not inline puts the tables of its bases into the program.
    source = "\n".join(
        ['#include "havcore/havcore.h"',
         "template <class Interface> struct TMade : Interface { TMade(); };",
         "template <class Interface> TMade<Interface>::TMade() {}",
         *(f"template struct TMade<NORVHAV20::{interface}>;" for interface in interfaces)])
    dump = run_clang(clang, target, source, "-Xclang", "-fdump-vtable-layouts", "-S", "-emit-llvm",
                     "-o", "-")
    found = laid_out(target.abi, dump)
    wrong = 0
    for table, slots in listed.items():
        actual = found.get(table, [])
        for number in range(max(len(slots), len(actual))):
            expected = slots[number].text if number < len(slots) else "nothing"
            real = actual[number] if number < len(actual) else "nothing"
            if expected != real:
                wrong += 1
                print(f"{target.abi} ABI: {table} slot {number}: listed {expected}, is {real}")
    for table in sorted(set(found) - set(listed)):
        if table.split("/")[0] in interfaces:
            wrong += 1
            print(f"{target.abi} ABI: {table} is laid out and not listed")
    return wrong


def read_types(abi):
    """Returns {type: layout} of types.txt for one ABI, as records() returns it."""
    types = {}
    for line in (HERE / "types.txt").read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            name, abis, layout = line.split(None, 2)
            if abi in abis.split(","):
                types[name] = layout
    if not types:
        sys.exit(f"types.txt lists no type for the {abi} ABI")
    return types


def records(dump):
    """Returns {type: "size alignment member@offset ..."} of all records in a dump."""
    found = {}
    for block in dump.split("*** Dumping AST Record Layout")[1:]:
        head = re.search(r"^ *0 \| (?:class|struct|union) NORVHAV20::([\w:]+)(?: \(empty\))?$",
                         block, re.M)
        size = re.search(r"sizeof=(\d+),[^=]*(?:=\d+,\s*)?.*?align=(\d+)", block, re.S)
        if not head or not size:
            continue
        members = []
        for offset, text in re.findall(r"^ *(\d+) \|   (\S.*)$", block, re.M):
            text = re.sub(r"\(empty\)|\(primary base\)|\(base\)", "", text).strip()
            text = re.sub(r".*vf?table pointer\)", "vptr", text)
            members.append(f"{text.split(' ')[-1].replace('NORVHAV20::', '')}@{offset}")
        found[head[1]] = " ".join([size[1], size[2], *members])
    return found


def check_types(clang, target):
    listed = read_types(target.abi)
    source = "\n".join(['#include "havcore/havcore.h"', "constexpr std::size_t sizes[] = {",
                        *(f"sizeof(NORVHAV20::{name})," for name in listed), "};"])
    found = records(run_clang(clang, target, source, "-fsyntax-only", "-Wno-unused-const-variable",
                              "-Xclang", "-fdump-record-layouts"))
    wrong = 0
    for name, layout in listed.items():
        if found.get(name) != layout:
            wrong += 1
            print(f"{target.abi} ABI: {name}: listed {layout}, is {found.get(name, 'missing')}")
    return wrong, len(listed)


def check_headers(clang, target, include):
    """Compiles every contract header by itself; returns how many there are."""
    headers = sorted(path.relative_to(include).as_posix() for path in include.rglob("*.h"))
    for header in headers:
        run_clang(clang, target, f'#include "{header}"\n', "-fsyntax-only")
    return len(headers)


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    clang, include = arguments[0], pathlib.Path(arguments[1])
    if not clang:
        # As GoogleTest says it, so that it is counted among the skips.
        print("[ RUN      ] AbiLayout.SlotsAndTypes\n"
              "there is no clang++ on this machine\n"
              "[  SKIPPED ] AbiLayout.SlotsAndTypes (0 ms)")
        return 0
    listed = slot_table.read(HERE / "slots.txt")
    slot_count = sum(map(len, listed.values()))
    wrong = 0
    for target in targets(clang, include):
        wrong += check_slots(clang, target, listed)
        wrong_types, types = check_types(clang, target)
        wrong += wrong_types
        print(f"{target.abi} ABI ({target.triple}): {slot_count} slots in {len(listed)} tables, "
              f"{types} types checked")
        if target.abi == "MSVC":
            print(f"{check_headers(clang, target, include)} headers compile for {target.triple}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
