"""A program on a terminal of its own, and a suite that reports as GoogleTest does."""
import fcntl
import os
import pty
import select
import signal
import struct
import termios
import time

# What a program on it may wait for at most, in seconds.
PATIENCE = 30


class Terminal:
    """Runs the arguments on a terminal, 24 lines of 80 columns unless `size` says otherwise."""

    def __init__(self, arguments, environment, size=(24, 80), folder=None):
        self.process, self.file = pty.fork()
        if self.process == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", *size, 0, 0))
            if folder:
                os.chdir(folder)
            os.execvpe(arguments[0], [str(argument) for argument in arguments],
                       {"PATH": os.environ["PATH"], "TERM": "xterm", "LC_ALL": "C.UTF-8",
                        "LD_LIBRARY_PATH": os.environ.get("LD_LIBRARY_PATH", ""), **environment})
        self.text = ""

    def seen(self, until):
        """What is shown up to and with the text `until`, or up to the end when that is None."""
        end = time.monotonic() + PATIENCE
        while until is None or until not in self.text:
            if not select.select([self.file], [], [], max(0, end - time.monotonic()))[0]:
                return self.taken(len(self.text)) + "(nothing more comes)"
            try:
                self.text += os.read(self.file, 4096).decode("utf-8", "replace")
            except OSError:  # the other end is closed
                return self.taken(len(self.text))
        return self.taken(self.text.index(until) + len(until))

    def comes(self, seconds):
        """Whether anything is shown within the time."""
        return bool(self.text or select.select([self.file], [], [], seconds)[0])

    def taken(self, size):
        taken, self.text = self.text[:size], self.text[size:]
        return taken

    def type(self, text):
        os.write(self.file, text.encode())

    def end(self):
        """What is shown up to the end, with the lines' ends of a file, and the exit status."""
        text = self.seen(None).replace("\r\n", "\n")
        status = os.waitstatus_to_exitcode(os.waitpid(self.process, 0)[1])
        os.close(self.file)
        return text, status

    def kill(self):
        os.kill(self.process, signal.SIGKILL)
        self.end()
