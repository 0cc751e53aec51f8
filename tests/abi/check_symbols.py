#!/usr/bin/env python3
"""Compares the symbols that the plug-in exports, or imports from the host core, with the
committed list.

  check_symbols {exported|imported} LIST LIBRARY PLATFORM OBJDUMP CXXFILT

Symbols are listed demangled, with the two long types of the standard library that every
signature is full of by their short names. The variants of a constructor or destructor, which
demangle to the same text, count once.
"""
import pathlib
import re
import subprocess
import sys

STRING = re.compile(r"std::(?:__\w+::)?basic_string<char, std::char_traits<char>, "
                    r"std::allocator<char> ?>")
OPTIONS = re.compile(r"std::map<std::string, NORVHAV20::TCIMValue, std::less<std::string ?>, "
                     r"std::allocator<std::pair<std::string const, NORVHAV20::TCIMValue> ?> ?>")


def run(*command, text=None):
    return subprocess.run(command, check=True, capture_output=True, text=True, input=text).stdout


def exported(library, objdump):
    """Returns the mangled names that a library exports."""
    if library.endswith(".dll"):
        table = run(objdump, "-p", library).partition("[Ordinal/Name Pointer] Table")[2]
        return [line.split()[-1] for line in table.partition("\n\n")[0].splitlines()[1:]]
    # Defined is what has a section; absolute symbols are the linker's own.
    return [name for name, section in dynamic_symbols(library, objdump)
            if section not in ("*UND*", "*ABS*")]


def imported(library, objdump):
    """Returns the mangled names that a library takes from the host core: of all that it
    imports, those of the contract's namespace."""
    if library.endswith(".dll"):
        table = run(objdump, "-p", library).partition("The Import Tables")[2]
        names = re.findall(r"^\t[0-9a-f]+\t +\d+ +(\S+)$", table, re.MULTILINE)
    else:
        names = [name for name, section in dynamic_symbols(library, objdump)
                 if section == "*UND*"]
    return [name for name in names if "9NORVHAV20" in name]


def dynamic_symbols(library, objdump):
    """Returns (mangled name, section) of every dynamic symbol of an ELF library."""
    lines = [line.split() for line in run(objdump, "-T", library).splitlines()
             if re.match(r"[0-9a-f]{16} ", line)]
    return [(line[-1], next(part for part in line if re.match(r"[*.]", part)))
            for line in lines]


def plain(name):
    return OPTIONS.sub("TOptions", STRING.sub("std::string", name)).replace("NORVHAV20::", "")


def main(arguments):
    if len(arguments) != 6 or arguments[0] not in ("exported", "imported"):
        print(__doc__, file=sys.stderr)
        return 2
    kind, path, library, platform, objdump, cxxfilt = arguments
    listed = {line for line in pathlib.Path(path).read_text().splitlines()
              if line.strip() and not line.startswith("#")}
    names = (exported if kind == "exported" else imported)(library, objdump)
    found = {plain(name) for name in run(cxxfilt, text="\n".join(names)).splitlines() if name}
    for name in sorted(found - listed):
        print(f"{kind} and not listed: {name}")
    for name in sorted(listed - found):
        print(f"listed and not {kind}: {name}")
    print(f"{platform}: {len(names)} {kind} symbols checked against the {len(listed)} names "
          f"of {pathlib.Path(path).name}")
    return 0 if found and found == listed else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
