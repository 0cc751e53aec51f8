"""Many clients at a time on a namespace of 10,000 instances; one that is killed in the middle
of an answer, and some that never read, cost the others nothing.

  check_load.py HAVHOST [SECONDS]     5 seconds, or as many as are given
"""
import random
import sys
import threading
import time
import unittest

from server import Server, of_class, request

PROGRAM = sys.argv[1]
SECONDS = float(sys.argv[2]) if len(sys.argv) > 2 else 5
CLIENTS = 64
INSTANCES = 10_000


def model():
    lines = ["Qualifier Key : boolean = false, Scope(property, reference), "
             "Flavor(DisableOverride, ToSubclass);",
             "class T_Item { [Key] string Name; uint32 Number; string Text; boolean Flag; };"]
    lines += [f'instance of T_Item {{ Name = "item {i}"; Number = {i}; Text = "the text of {i}"; }};'
              for i in range(INSTANCES)]
    return "\n".join(lines)


def get_instance(number):
    return request("GetInstance", '<IPARAMVALUE NAME="InstanceName"><INSTANCENAME '
                   'CLASSNAME="T_Item"><KEYBINDING NAME="Name"><KEYVALUE>'
                   f"item {number}</KEYVALUE></KEYBINDING></INSTANCENAME></IPARAMVALUE>")


ALL = request("EnumerateInstances", of_class("T_Item"))


class Reader:
    """Answers of one connection, one after the other."""

    def __init__(self, connection):
        self.stream = connection.makefile("rb")

    def answer(self):
        first = self.stream.readline().decode()
        if not first.startswith("HTTP/1.1 200 "):
            raise RuntimeError(f"not answered: {first}")
        headers = {}
        while line := self.stream.readline().decode().strip():
            name, value = line.split(": ", 1)
            headers[name.lower()] = value
        if "content-length" in headers:
            return self.stream.read(int(headers["content-length"]))
        pieces = []
        while size := int(self.stream.readline(), 16):
            pieces.append(self.stream.read(size))
            self.stream.readline()
        self.stream.readline()
        return b"".join(pieces)


class LoadTest(unittest.TestCase):
    def setUp(self):
        self.server = Server(PROGRAM, "--timeout", "5", model=model())
        self.addCleanup(self.server.__exit__)
        self.errors = []

    def client(self, end, seed):
        """Asks for single instances, and now and then for all of them."""
        chance = random.Random(seed)
        count = 0
        try:
            with self.server.connect() as connection:
                reader = Reader(connection)
                while time.monotonic() < end:
                    if chance.random() < 0.002:
                        connection.sendall(ALL)
                        found = reader.answer().count(b"<VALUE.NAMEDINSTANCE>")
                        if found != INSTANCES:
                            raise RuntimeError(f"{found} instances")
                    else:
                        number = chance.randrange(INSTANCES)
                        connection.sendall(get_instance(number))
                        if f"<VALUE>the text of {number}</VALUE>".encode() not in reader.answer():
                            raise RuntimeError(f"not instance {number}")
                    count += 1
        except (OSError, RuntimeError, ValueError) as failure:
            self.errors.append(repr(failure))
        self.counts.append(count)

    def run_clients(self, seconds):
        self.counts = []
        end = time.monotonic() + seconds
        threads = [threading.Thread(target=self.client, args=(end, seed))
                   for seed in range(CLIENTS)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual([], self.errors)
        self.assertEqual(CLIENTS, len(self.counts))
        self.assertGreater(min(self.counts), 0)

    def test_many_clients_and_a_memory_that_stays(self):
        self.run_clients(SECONDS / 2)  # what it takes to serve them all is taken now
        before = self.server.memory()
        self.run_clients(SECONDS)
        after = self.server.memory()
        print(f"{sum(self.counts)} requests of {CLIENTS} clients, {before} KiB, then {after} KiB")
        self.assertLess(after, before + 16 * 1024)

    def test_clients_that_leave_or_never_read_cost_nobody_else_anything(self):
        lazy = [self.server.connect() for _ in range(8)]
        for connection in lazy:
            connection.sendall(ALL * 4)
        for _ in range(20):
            with self.server.connect() as killed:
                killed.sendall(ALL)
                killed.recv(1000)  # and closes, with most of the answer under way
        before = self.server.memory()
        self.run_clients(2)
        # Eight answers of megabytes each that nobody takes do not stand in memory.
        self.assertLess(self.server.memory(), before + 16 * 1024)
        time.sleep(5)
        for connection in lazy:
            connection.settimeout(10)
            with self.assertRaises(OSError):  # their time is over
                while True:
                    connection.sendall(b" " * 65536)
            connection.close()


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
