#!/usr/bin/env python3
"""What `havhost watch` shows on a terminal of a machine that changes between two looks.

  check_watch.py HAVHOST MACHINE
"""
import json
import pathlib
import shutil
import sys
import tempfile
import unittest

import terminal

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import cases  # noqa: E402

TIME = r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d"


class Watch(unittest.TestCase):
    havhost, machine = None, None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="havhost-watch-")
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name) / "machine"
        shutil.copytree(self.machine, self.root)
        self.unit = 2000

    def watch(self, *arguments, **environment):
        return terminal.Terminal(
            [self.havhost, "watch", "--root", self.root, "--interval", "0.05", *arguments],
            environment, (24, 120))

    def watched(self, *arguments, **environment):
        started = self.watch(*arguments, **environment)
        self.addCleanup(started.kill)
        return started

    def change(self):
        """Gives the network port another unit; in one step, for it may be read at any time."""
        self.unit += 1
        beside = self.root / "mtu"
        beside.write_text(f"{self.unit}\n")
        beside.rename(self.root / "sys/class/net/eth0/mtu")

    def first_lines(self, started, count):
        """What is shown first: nothing tells when the machine was looked at before."""
        for _ in range(200):
            self.change()
            if started.comes(0.2):
                return "".join(started.seen("\n") for _ in range(count)).replace("\r\n", "\n")
        self.fail("no change is shown")

    def test_ShowsOldTextBesideNewInColour(self):
        self.assertRegex(
            self.first_lines(self.watched(), 3),
            "^\x1b\\[1m" + TIME + "\x1b\\[0m\n"
            "\x1b\\[33m~ ORVSG_PhysicalNetworkPort.Name=\"eth0\"\x1b\\[0m\n"
            "    \x1b\\[36mMaximumTransmissionUnit\x1b\\[0m  \x1b\\[31m\\d{4}\x1b\\[0m  "
            "\x1b\\[2m->\x1b\\[0m  \x1b\\[32m20\\d\\d\x1b\\[0m\n$")

    def test_ShowsWhatAppearsAndDisappears(self):
        started = self.watched()
        self.first_lines(started, 3)
        beside, disk = self.root / "beside", self.root / "sys/block/vdb"
        shutil.copytree(self.root / "sys/block/vda", beside)
        (beside / "dev").write_text("254:16\n")
        beside.rename(disk)
        self.assertIn("\x1b[32m+ ORVSG_DiskDrive.Name=\"/dev/vdb\"\x1b[0m",
                      started.seen("/dev/vdb\"\x1b[0m"))
        disk.rename(beside)
        self.assertIn("\x1b[31m- ORVSG_DiskDrive.Name=\"/dev/vdb\"\x1b[0m",
                      started.seen("/dev/vdb\"\x1b[0m"))

    def test_HasNoColourWhereTheUserWantsNone(self):
        self.assertRegex(
            self.first_lines(self.watched(NO_COLOR="1"), 3),
            "^" + TIME + "\n~ ORVSG_PhysicalNetworkPort.Name=\"eth0\"\n"
            "    MaximumTransmissionUnit  \\d{4}  ->  20\\d\\d\n$")

    def test_WritesALineForEachLookForPrograms(self):
        document = json.loads(self.first_lines(self.watched("--format", "json"), 1))
        self.assertRegex(document["time"], f"^{TIME}$")
        self.assertEqual((document["appeared"], document["disappeared"]), ([], []))
        (change,) = document["changed"]
        self.assertEqual(change["path"], 'ORVSG_PhysicalNetworkPort.Name="eth0"')
        self.assertEqual(list(change["properties"]), ["MaximumTransmissionUnit"])

    def test_EndsWhenItIsInterrupted(self):
        started = self.watch()
        self.first_lines(started, 3)
        started.type("\x03")
        self.assertEqual(started.end()[1], -2)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    Watch.havhost, Watch.machine = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    sys.exit(cases.run(Watch))
