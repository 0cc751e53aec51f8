#!/usr/bin/env python3
"""havhost shell on a terminal: what the tabulator completes, and the history of the last time.

  check_shell.py HAVHOST MOF
"""
import os
import pathlib
import pty
import select
import sys
import tempfile

PROMPT = "havhost> "
# What is typed and what has to be seen of it before the next prompt.
FIRST = [
    ("cla\t--class Demo_St\t\n", "Demo_Station  class"),
    ("get Demo_Pump.\t1\t\n", "Uptime"),
    ("frob\n", "havhost: no such command: frob"),
    ("show Demo_Pump\n", "Superclass"),
]
SECOND = [("\x1b[A\x1b[A\x1b[A\x1b[A\n", "Uptime"), ("show demo_pu\t\n", "Superclass")]


class Terminal:
    def __init__(self, arguments, home):
        self.process, self.file = pty.fork()
        if self.process == 0:
            os.execve(arguments[0], arguments,
                      {"HOME": home, "TERM": "xterm", "PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8",
                       "LD_LIBRARY_PATH": os.environ.get("LD_LIBRARY_PATH", "")})

    def seen(self):
        """Up to the next prompt, or the end."""
        text = ""
        while not text.endswith(PROMPT):
            if not select.select([self.file], [], [], 30)[0]:
                return text + "(nothing more comes)"
            try:
                text += os.read(self.file, 4096).decode("utf-8", "replace")
            except OSError:  # the other end is closed
                return text
        return text

    def type(self, text):
        os.write(self.file, text.encode())
        return self.seen()

    def end(self):
        text = self.type("quit\n")
        return text, os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])


def session(name, arguments, home, script):
    """Returns how many steps did not show what they should."""
    terminal, failed = Terminal(arguments, home), 0
    terminal.seen()
    for typed, expected in script:
        text = terminal.type(typed)
        right = expected in text
        failed += not right
        print(f"[ RUN      ] Shell.{name}{script.index((typed, expected))}")
        if not right:
            print(f"{typed!r} shows {text!r} and not {expected!r}")
        print(f"[ {'OK' if right else 'FAILED':>8} ] Shell.{name}{script.index((typed, expected))} (0 ms)")
    text, status = terminal.end()
    if status != 0 or "havhost:" in text:
        print(f"the end shows {text!r}, status {status}")
        failed += 1
    return failed


def main(arguments):
    if len(arguments) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    command = [arguments[0], "shell", "--mof", arguments[1]]
    with tempfile.TemporaryDirectory(prefix="havhost-shell-") as home:
        failed = session("CompletesWhatIsTyped", command, home, FIRST)
        failed += session("RemembersTheLastTime", command, home, SECOND)
        history = pathlib.Path(home) / ".local/state/havhost/history"
        if not history.is_file():
            print("there is no history")
            failed += 1
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
