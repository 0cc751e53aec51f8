"""The committed table of slots, read into memory."""
import dataclasses
import pathlib
import re

DECLARATION = re.compile(r"(?:(?P<result>.+?)\s*)??(?P<name>~?\w+|operator\W+?)"
                         r"\((?P<parameters>.*)\)(?P<const> const)?")


class TableError(Exception):
    """The table does not read."""


@dataclasses.dataclass(frozen=True)
class Slot:
    """One line: `table` is the interface, or "interface/base" for a second table."""
    table: str
    number: int
    text: str

    def match(self):
        return DECLARATION.fullmatch(self.text)

    @property
    def interface(self):
        return self.table.split("/")[0]

    @property
    def base(self):
        """The base whose table a second table is, else the interface itself."""
        return self.table.split("/")[-1]

    @property
    def is_destructor(self):
        return self.text.startswith("~")


def read(path):
    """Returns {table: [Slot, ...]} in the order of the file."""
    tables = {}
    for number, line in enumerate(pathlib.Path(path).read_text().splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        fields = line.split(None, 2)
        if len(fields) != 3 or not fields[1].isdigit() or not DECLARATION.fullmatch(fields[2]):
            raise TableError(f"{path}:{number}: expected interface, number, declaration")
        slot = Slot(fields[0], int(fields[1]), fields[2])
        slots = tables.setdefault(slot.table, [])
        if slot.number != len(slots):
            raise TableError(f"{path}:{number}: slot {len(slots)} of {slot.table} is next")
        if slot.is_destructor != (slot.number == 0):
            raise TableError(f"{path}:{number}: the destructor is slot 0")
        slots.append(slot)
    if not tables:
        raise TableError(f"{path}: no slots")
    return tables
