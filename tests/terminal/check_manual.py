#!/usr/bin/env python3
"""The manual page as man shows it, and the scripts for completion as their shells read them.

  check_manual.py HAVHOST FOLDER    FOLDER holds what the build has made for the package
"""
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import cases  # noqa: E402


class Manual(unittest.TestCase):
    havhost, folder = None, None

    def run_program(self, *command):
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                              env={"PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "MANWIDTH": "100"})
        self.assertEqual((done.returncode, done.stderr), (0, ""), command)
        return done.stdout

    def need(self, program):
        if not shutil.which(program):
            self.skipTest(f"there is no {program} on this machine")

    def test_WhatIsInstalledIsWhatTheProgramSays(self):
        for name, command in (("havhost.1", ["manual"]), ("havhost", ["completion", "bash"]),
                              ("_havhost", ["completion", "zsh"])):
            self.assertEqual((self.folder / name).read_text(),
                             self.run_program(self.havhost, *command))

    def test_ManHasNothingToWarnOf(self):
        self.need("man")
        page = self.run_program("man", "--warnings", "--local-file", self.folder / "havhost.1")
        for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "COMMON OPTIONS",
                        "OBJECT PATHS", "EXIT STATUS", "ENVIRONMENT", "FILES", "SEE ALSO"):
            self.assertIn(f"\n{heading}\n", page)
        self.assertNotIn("\\", page.replace("\\n, \\r, \\t and \\xHH", ""))

    def test_ShowsEveryCommandAndOptionOfTheHelp(self):
        self.need("man")
        page = self.run_program("man", "--local-file", self.folder / "havhost.1")
        helped = self.run_program(self.havhost, "--help")
        commands = re.findall(r"^  ([a-z]+) +[A-Z]", helped.split("\nOptions:")[0], re.MULTILINE)
        self.assertIn("watch", commands)
        for command in commands:
            self.assertRegex(page, f"(?m)^   havhost {command} ")
            for option in re.findall(r"^  (?:-.,)?(--[a-z-]+)",
                                     self.run_program(self.havhost, command, "--help"),
                                     re.MULTILINE):
                self.assertRegex(page, rf"(?m)^       (-., )?{option}( |$)")

    def test_ShellsTakeTheScripts(self):
        for shell, name in (("bash", "havhost"), ("zsh", "_havhost")):
            self.need(shell)
            self.run_program(shell, "-n", self.folder / name)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    Manual.havhost, Manual.folder = map(pathlib.Path, sys.argv[1:])
    sys.exit(cases.run(Manual))
