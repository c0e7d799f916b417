"""A terminal of its own for a program under Wine, which has a console only there."""

import os
import pty
import re
import select
import time
import tty

ESCAPES = re.compile(r"\x1b\[[?0-9;]*[A-Za-z]")
LONG = 60  # seconds


class Terminal:
    def __init__(self, site, *command):
        environment = os.environ | site.system.variables() | site.environment | {"TERM": "xterm"}
        self.child, self.master = pty.fork()
        if self.child == 0:
            os.chdir(site.folder)
            os.execvpe(command[0], command, environment)
        self.output = b""

    def _read(self):
        """Returns False at the end."""
        if not select.select([self.master], [], [], 0.1)[0]:
            return True
        try:
            part = os.read(self.master, 65536)
        except OSError:  # the program has ended
            part = b""
        self.output += part
        return bool(part)

    def _wait(self, condition, what):
        end = time.monotonic() + LONG
        while not condition():
            if not self._read() or time.monotonic() > end:
                raise AssertionError(f"{what} did not come. The terminal shows: {self.text()}")

    def wait_for(self, path):
        self._wait(path.exists, path)

    def wait_for_text(self, text):
        self._wait(lambda: text in self.text(), text)

    def type(self, keys):
        """Wine takes the keys themselves: b"\\r" is Enter."""
        tty.setraw(self.master)
        os.write(self.master, keys)

    def press_ctrl_c(self):
        os.write(self.master, b"\x03")

    def text(self):
        """Without escapes. Wine draws each character by itself, with an escape for a blank, and begins lines at the right edge."""
        shown = self.output.decode("utf-8", "replace").replace("\x1b[K\x1b[1C", " ")
        return ESCAPES.sub("", shown).replace("\r", "").replace("\n", "")

    def end(self):
        """Returns the exit status. Wine's services may keep the terminal open."""
        end = time.monotonic() + LONG
        ended, status = 0, 0
        while not ended:
            self._read()
            if time.monotonic() > end:
                raise AssertionError(f"The program does not end. The terminal shows: {self.text()}")
            ended, status = os.waitpid(self.child, os.WNOHANG)
        while select.select([self.master], [], [], 0)[0] and self._read():
            pass
        os.close(self.master)
        return os.waitstatus_to_exitcode(status)
