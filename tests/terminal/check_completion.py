#!/usr/bin/env python3
"""Types on a command line of bash or zsh, and looks at what the tabulator makes of it.

  check_completion.py HAVHOST MOF bash|zsh
"""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import terminal

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import cases  # noqa: E402

PROMPT = "ready> "


class Completion(unittest.TestCase):
    """What is typed, and the words that the command then gets."""
    havhost, mof, shell = None, None, None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="havhost-completion-")
        cls.addClassCleanup(cls.folder.cleanup)
        place = pathlib.Path(cls.folder.name)
        cls.tools, cls.work = place / "bin", place / "work"
        cls.tools.mkdir()
        cls.work.mkdir()
        (cls.tools / "havhost").symlink_to(cls.havhost)
        for name in ("pumps.json", "two words.json"):
            (cls.work / name).touch()
        (cls.work / "folder").mkdir()
        cls.script = place / "_havhost"
        cls.script.write_bytes(subprocess.run(
            [cls.havhost, "completion", cls.shell], check=True, stdout=subprocess.PIPE).stdout)

    def setUp(self):
        if not shutil.which(self.shell):
            self.skipTest(f"there is no {self.shell} on this machine")
        environment = {"PATH": f"{self.tools}:/usr/bin:/bin", "HOME": str(self.work), "PS1": PROMPT,
                       "INPUTRC": "/dev/null", "ZDOTDIR": str(self.work)}
        command = {"bash": ["bash", "--norc", "--noprofile", "-i"], "zsh": ["zsh", "-f", "-i"]}
        self.line = terminal.Terminal(command[self.shell], environment, (50, 200), self.work)
        self.addCleanup(self.line.kill)
        self.line.seen(PROMPT)
        for setting in self.settings():
            self.line.type(setting + "\n")
            self.line.seen("\n")
            self.line.seen(PROMPT)

    def settings(self):
        if self.shell == "bash":
            return ["bind 'set enable-bracketed-paste off'", "bind 'set bell-style none'",
                    f"source {self.script}"]
        return ["unset zle_bracketed_paste; unsetopt prompt_sp; bindkey -e",
                "autoload -Uz compinit; compinit -u -D", f"source {self.script}"]

    def typed(self, text):
        """The words of the line after what is typed, the program's name not among them."""
        self.line.type("havhost " + text)
        self.line.type("\x01printf '<%s>' \x05; echo E''ND\n")
        shown = self.line.seen("END\r\n")
        self.assertIn("<havhost>", shown)
        return shown[shown.rindex("<havhost>") + 9:].removesuffix("END\r\n")

    def shown(self, text):
        """What is listed below the line."""
        self.line.type("havhost " + text)
        self.line.type("\x01: \x05; echo E''ND\n")
        return self.line.seen("END\r\n")

    def test_CommandsAndTheirOptions(self):
        self.assertEqual(self.typed("insta\t--wh\tx"), "<instances><--where><x>")
        self.assertEqual(self.typed("ref\t--result-c\tx"), "<references><--result-class><x>")

    def test_SeveralPossibilitiesAreListed(self):
        listed = self.shown("in\t\t")
        self.assertIn("instances", listed)
        self.assertIn("inventory", listed)
        listed = self.shown("instances --format \t\t")
        for value in ("csv", "json", "mof", "text"):
            self.assertIn(value, listed)

    def test_FixedValues(self):
        self.assertEqual(self.typed("inventory --format h\tx"), "<inventory><--format><html><x>")
        self.assertEqual(self.typed("inventory --color=ne\tx"), "<inventory><--color=never><x>")

    def test_FilesWithBlanksAndFolders(self):
        self.assertEqual(self.typed("diff pu\ttwo\t"), "<diff><pumps.json><two words.json>")
        self.assertEqual(self.typed("inventory -o fol\tx"), "<inventory><-o><folder/x>")
        self.assertEqual(self.typed("inventory --root p\tx"), "<inventory><--root><px>")
        self.assertEqual(self.typed("inventory --root f\tx"),
                         "<inventory><--root><folder/x>")

    def test_ClassesOfTheFileInAnySpelling(self):
        self.assertEqual(self.typed(f"show -m {self.mof} -r demo_st\tx"),
                         f"<show><-m><{self.mof}><-r><Demo_Station><x>")

    def test_PathsWithTheirQuotes(self):
        begin = f"<get><-m><{self.mof}><-r>"
        path = '<Demo_Station.Name="north">'
        self.assertEqual(self.typed(f"get -m {self.mof} -r Demo_Station.\t"), begin + path)
        self.assertEqual(self.typed(f"get -m {self.mof} -r Demo_Station.Name=\t"), begin + path)
        self.assertEqual(self.typed(f"get -m {self.mof} -r 'Demo_Station.Na\t"), begin + path)
        self.assertEqual(self.typed(f'get -m {self.mof} -r Demo_Pump.\t1\t'),
                         begin + '<Demo_Pump.Name="P1">')

    def test_PropertiesOneAfterTheOther(self):
        self.assertEqual(
            self.typed(f"instances Demo_Pump -m {self.mof} --columns Na\t,Up\t --raw"),
            f"<instances><Demo_Pump><-m><{self.mof}><--columns><Name,Uptime><--raw>")

    def test_NothingIsSaidOfWhatIsWrong(self):
        self.assertEqual(self.typed("show -m gone.mof -r T\tx"), "<show><-m><gone.mof><-r><Tx>")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    Completion.havhost, Completion.mof = (pathlib.Path(name).resolve() for name in sys.argv[1:3])
    Completion.shell = sys.argv[3]
    sys.exit(cases.run(Completion))
