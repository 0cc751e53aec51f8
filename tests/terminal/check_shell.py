#!/usr/bin/env python3
"""havhost shell on a terminal: what the tabulator completes, and the history of the last time.

  check_shell.py HAVHOST MOF
"""
import pathlib
import sys
import tempfile
import unittest

import terminal

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import cases  # noqa: E402

PROMPT = "havhost> "


class Shell(unittest.TestCase):
    command, mof = None, None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="havhost-shell-")
        self.addCleanup(folder.cleanup)
        self.home = pathlib.Path(folder.name)

    def open(self):
        self.shell = terminal.Terminal(self.command, {"HOME": str(self.home), "NO_COLOR": "1"},
                                       (200, 100), self.home)
        self.shell.seen(PROMPT)

    def typed(self, text):
        """What is shown from the typing up to the next prompt."""
        self.shell.type(text)
        return self.shell.seen("\r\n" + PROMPT) if text.endswith("\n") else None

    def close(self):
        self.shell.type("quit\n")
        text, status = self.shell.end()
        self.assertNotIn("havhost:", text)
        self.assertEqual(status, 0)

    def test_CompletesCommandsClassesAndPaths(self):
        self.open()
        self.assertIn("Demo_Station  class", self.typed("cla\t--class Demo_St\t\n"))
        self.assertIn("Uptime", self.typed("get Demo_Pump.\t1\t\n"))
        self.assertIn("Superclass", self.typed("show demo_pu\t\n"))
        self.assertIn("Example:\r\n  show ORVSG_Processor", self.typed("help sho\t\n"))
        self.close()

    def test_CompletesOptionsTheirValuesAndProperties(self):
        self.open()
        self.assertIn("Name,Uptime\r\nP1,93784\r\n",
                      self.typed("instances Demo_Pump --wh\t'Uptime > 60' --fo\tcs\t"
                                 "--colu\tNa\t,Up\t\n"))
        self.close()

    def test_ListsWhatThereIs(self):
        self.open()
        self.typed("instances Demo_Pump --n")
        shown = self.typed("\t\t\n")
        self.assertIn("--names-only\r\n--no-pager", shown)
        self.close()

    def test_CompletesNamesOfFiles(self):
        (self.home / "folder").mkdir()
        self.open()
        self.typed("mof -o fol\tpumps.mof\n")
        self.assertIn("class Demo_Pump", (self.home / "folder/pumps.mof").read_text())
        self.close()

    def test_ErrorsDoNotEndIt(self):
        self.open()
        self.assertIn("havhost: no such command: frob", self.typed("frob\n"))
        self.assertIn("Superclass", self.typed("show Demo_Pump\n"))
        self.close()

    def test_RemembersTheLastTime(self):
        self.open()
        self.typed("get Demo_Pump.Name=\"P1\"\n")
        self.close()
        self.assertTrue((self.home / ".local/state/havhost/history").is_file())
        self.open()
        self.assertIn("Uptime", self.typed("\x1b[A\x1b[A\n"))
        self.close()


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    Shell.command = [pathlib.Path(sys.argv[1]).resolve(), "shell", "--mof",
                     pathlib.Path(sys.argv[2]).resolve()]
    sys.exit(cases.run(Shell))
