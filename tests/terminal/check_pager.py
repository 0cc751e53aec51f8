#!/usr/bin/env python3
"""What havhost shows on a terminal, and what it leaves to the pager.

  check_pager.py HAVHOST MOF
"""
import pathlib
import sys
import tempfile
import unittest

import terminal

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import cases  # noqa: E402

LISTED = """Demo_Element        abstract class
  Demo_Pump         class           2 instances
  Demo_Station      class           1 instance
Demo_PumpOfStation  association     2 instances
"""


class Pager(unittest.TestCase):
    havhost, mof = None, None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="havhost-pager-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def pager(self, script):
        """The path of a program that does this, and its arguments."""
        path = self.folder / "pager"
        path.write_text("#!/bin/sh\n" + script)
        path.chmod(0o755)
        return f"{path} --with 'arguments'"

    def run_on(self, size, *arguments, **environment):
        return terminal.Terminal([self.havhost, *arguments, "--mof", self.mof], environment,
                                 size).end()

    def test_TakesWhatIsLongerThanTheScreen(self):
        pager = self.pager("echo \"paged: $* $LESS\"; cat; echo end\n")
        self.assertEqual(self.run_on((4, 80), "classes", "--color", "never", PAGER=pager),
                         ("paged: --with arguments FRX\n" + LISTED + "end\n", 0))

    def test_IsLeftAloneWithWhatFits(self):
        pager = self.pager("echo paged\n")
        self.assertEqual(self.run_on((5, 80), "classes", "--color", "never", PAGER=pager),
                         (LISTED, 0))

    def test_IsNotAskedWhereTheUserSaysSo(self):
        pager = self.pager("echo paged\n")
        for environment in ({"PAGER": ""}, {"PAGER": "cat"}):
            self.assertEqual(self.run_on((4, 80), "classes", "--color", "never", **environment),
                             (LISTED, 0))
        self.assertEqual(
            self.run_on((4, 80), "classes", "--color", "never", "--no-pager", PAGER=pager),
            (LISTED, 0))

    def test_MayEndBeforeItHasReadAll(self):
        pager = self.pager("head -n 1 >/dev/null; echo enough\n")
        mof = self.folder / "many.mof"
        mof.write_text("Qualifier Key : boolean = false, Scope(property);\n" + "".join(
            f"class Demo_Long_Name_{number} {{ [Key] string Name; }};\n" for number in range(6000)))
        text, status = terminal.Terminal([self.havhost, "classes", "--mof", mof],
                                         {"PAGER": pager}).end()
        self.assertEqual((text, status), ("enough\n", 0))

    def test_ThatFailsIsNoFailureOfTheCommand(self):
        pager = self.pager("cat >/dev/null; echo failing; exit 3\n")
        self.assertEqual(self.run_on((4, 80), "classes", PAGER=pager), ("failing\n", 0))

    def test_ThatCannotBeStartedIsDoneWithout(self):
        text, status = self.run_on((4, 80), "classes", "--color", "never", PAGER="/no/pager")
        self.assertTrue(text.endswith(LISTED), text)
        self.assertEqual(status, 0)

    def test_OutlivesAnInterrupt(self):
        pager = self.pager("trap 'echo interrupted' INT; cat >/dev/null; echo reading; "
                           "read word </dev/tty; echo end\n")
        started = terminal.Terminal([self.havhost, "classes", "--mof", self.mof],
                                    {"PAGER": pager}, (4, 80))
        started.seen("reading")
        started.type("\x03")
        started.seen("interrupted")
        started.type("on\n")
        text, status = started.end()
        self.assertIn("end\n", text)
        self.assertEqual(status, 0)

    def test_KeepsTheStatusOfTheCommand(self):
        pager = self.pager("cat\n")
        other = self.folder / "other.mof"
        other.write_text("class Demo_Other {};\n")
        text, status = terminal.Terminal([self.havhost, "diff", self.mof, other],
                                         {"PAGER": pager, "NO_COLOR": "1"}, (4, 80)).end()
        self.assertEqual(status, 1)
        self.assertIn('- Demo_Pump.Name="P1"\n', text)


class Screen(unittest.TestCase):
    havhost, mof = None, None

    def shown(self, *arguments, size=(100, 80), **environment):
        return terminal.Terminal([self.havhost, *arguments, "--mof", self.mof], environment,
                                 size).end()

    def test_HasColourUnlessTheUserWantsNone(self):
        names = ("get", 'Demo_Station.Name="north"')
        coloured = '\x1b[1mDemo_Station.Name="north"\x1b[0m\n  \x1b[36mName\x1b[0m  north\n'
        plain = 'Demo_Station.Name="north"\n  Name  north\n'
        self.assertEqual(self.shown(*names), (coloured, 0))
        self.assertEqual(self.shown(*names, NO_COLOR="1"), (plain, 0))
        self.assertEqual(self.shown(*names, TERM="dumb"), (plain, 0))
        self.assertEqual(self.shown(*names, NO_COLOR=""), (coloured, 0))
        self.assertEqual(self.shown(*names, "--color", "always", NO_COLOR="1"), (coloured, 0))

    def test_NoLineIsLongerThanItIsWide(self):
        for width in (40, 60, 80, 120):
            for command in (("show", "Demo_Pump"), ("instances", "Demo_Pump", "--raw"),
                            ("classes",), ("instances", "Demo_Pump", "--columns", "Name,Uptime"),
                            ("instances", "--help"), ("--help",)):
                text, status = self.shown(*command, size=(500, width), NO_COLOR="1")
                self.assertEqual(status, 0, text)
                for line in text.split("\nExample:")[0].splitlines():
                    self.assertLessEqual(len(line), width, (command, line))

    def test_TreesAreDrawnAsTheLocaleAllows(self):
        for locale, branch in (("C.UTF-8", "└─"), ("C", "`-"), ("en_US.utf8", "└─"), ("POSIX", "`-")):
            text, status = self.shown("inventory", "--all", LC_ALL=locale)
            self.assertEqual(status, 0)
            self.assertIn(branch, text)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    for case in (Pager, Screen):
        case.havhost, case.mof = (pathlib.Path(name).resolve() for name in sys.argv[1:])
    sys.exit(cases.run(Pager, Screen))
