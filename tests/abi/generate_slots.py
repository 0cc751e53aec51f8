#!/usr/bin/env python3
"""Turns the committed table of slots into C++.

  generate_slots HEADER SOURCE

HEADER gets a class for every interface whose n-th virtual function has the signature that the
table gives to slot n, so that an object of the interface can be called by number. SOURCE gets
a pointer to every listed operation, which compiles when the headers declare it with exactly
the listed types.
"""
import pathlib
import sys

import slot_table

HERE = pathlib.Path(__file__).resolve().parent
NOTICE = "// Made from slots.txt by generate_slots.py.\n"


def slots_class(interface, slots):
    lines = ["template <>", f"class TSlots<{interface}> {{", " public:",
             "  virtual ~TSlots() = default;"]
    for slot in slots[1:]:
        parts = slot.match()
        lines.append(f"  virtual {parts['result']} s{slot.number}({parts['parameters']})"
                     f"{parts['const'] or ''} = 0;")
    return "\n".join([*lines, "};\n"])


def header(tables):
    classes = [slots_class(table, slots) for table, slots in tables.items() if "/" not in table]
    entries = [f'    {{"{table}", {len(slots)}}},' for table, slots in tables.items()]
    return "\n".join([
        NOTICE + "#pragma once\n", '#include "havcore/havcore.h"\n', "namespace havtest {\n",
        "using namespace NORVHAV20;\n", "template <class Interface>", "class TSlots;\n", *classes,
        "struct TSlotTable {", "  const char* name;", "  int slots;", "};",
        "inline constexpr TSlotTable kSlotTables[] = {", *entries, "};\n",
        "}  // namespace havtest\n"])


def source(tables):
    lines = [NOTICE + '#include "havcore/havcore.h"\n', "using namespace NORVHAV20;\n"]
    for table, slots in tables.items():
        for slot in slots[1:]:
            parts = slot.match()
            name = f"k{table.replace('/', '')}{slot.number}"
            lines.append(f"[[maybe_unused]] static {parts['result']} ({slot.interface}::*{name})"
                         f"({parts['parameters']}){parts['const'] or ''} =\n"
                         f"    &{slot.interface}::{parts['name']};")
    return "\n".join([*lines, ""])


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    tables = slot_table.read(HERE / "slots.txt")
    for path, text in zip(arguments, (header(tables), source(tables))):
        pathlib.Path(path).parent.mkdir(parents=True, exist_ok=True)
        pathlib.Path(path).write_text(text)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
