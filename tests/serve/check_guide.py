"""The calls of docs/serve.md and their answers, against a running server.

  check_guide.py HAVHOST WBEMCLI GUIDE
"""
import pathlib
import shlex
import subprocess
import sys

from server import Server

PROGRAM, CLIENT, GUIDE = sys.argv[1:]


def calls(guide):
    """Returns (command, answer) of every call between the marks."""
    text = guide.split("<!-- checked: begin -->")[1].split("<!-- checked: end -->")[0]
    found = []
    for line in (line.removeprefix("    ") for line in text.splitlines() if line.strip()):
        if line.startswith("$ "):
            found.append((line[2:], ""))
        else:
            command, answer = found[-1]
            found[-1] = (command, f"{answer}{line}\n")
    return found


def main():
    wrong = 0
    checked = calls(pathlib.Path(GUIDE).read_text(encoding="utf-8"))
    with Server(PROGRAM) as server:
        for command, answer in checked:
            words = shlex.split(command.replace(":5988", f":{server.port}"))
            done = subprocess.run(words, executable=CLIENT, capture_output=True, text=True,
                                  timeout=60, check=False)
            said = (done.stdout + done.stderr).replace(f":{server.port}", ":5988")
            said = "".join(f"{line}\n" for line in said.splitlines() if line.strip())
            if said != answer:
                print(f"{command}\nsays\n{said}and not\n{answer}")
                wrong += 1
    print(f"{len(checked)} calls of the guide, {wrong} wrong")
    return 1 if wrong or len(checked) < 4 else 0


sys.exit(main())
