"""Where the player lives while it is being worn out: its folders, its fence, its window's pulse."""

import collections
import glob
import os
import struct
import subprocess
import sys

import fence
from stage import Fault, wait_until

HERE = os.path.dirname(os.path.abspath(__file__))
ANSWER_SECONDS = 5.0  # what the window may take to answer, on a machine that has nothing else to do
START_SECONDS = 180.0
END_SECONDS = 60.0


def patience(seconds=ANSWER_SECONDS):
    """As much longer as more programs want to run than there are processors, within bounds."""
    return seconds * min(4.0, max(1.0, os.getloadavg()[0] / (os.cpu_count() or 1)))


class House:
    """A program folder and the players that live in it one after the other."""

    def __init__(self, stage, ports=()):
        self.stage = stage
        self.ports = ports
        self.home = stage.make_folder("home")
        self.log = stage.path("player.log")
        self.player = None
        self.hanging = collections.deque(maxlen=8)  # calls whose answer nobody waits for
        self.slowest = 0.0
        self.write_helpers()

    def write_helpers(self):
        """Programs that the player would start are there and do nothing."""
        self.bin = self.stage.make_folder("bin")
        for name in ("xdg-open", "xdg-mime", "gio", "x-www-browser", "www-browser", "firefox"):
            path = os.path.join(self.bin, name)
            with open(path, "w", encoding="ascii") as file:
                file.write("#!/bin/sh\nexit 0\n")
            os.chmod(path, 0o700)

    def configure(self, **settings):
        self.stage.configure(os.path.join(self.home, "config.dat"), **settings)

    def environment(self):
        folder = self.stage.make_folder
        report = self.stage.path("sanitizer")
        return {
            "HOME": folder("user"), "TMPDIR": folder("tmp"), "XDG_DATA_HOME": folder("share"),
            "XDG_CONFIG_HOME": folder("config"), "XDG_CACHE_HOME": folder("cache"),
            "XDG_STATE_HOME": folder("state"), "PATH": self.bin + ":" + os.environ["PATH"],
            "ASAN_OPTIONS": "detect_leaks=1:exitcode=99:log_path=" + report,
            "UBSAN_OPTIONS": "print_stacktrace=1:log_path=" + report,
        }

    def start(self, medium=None):
        wrap = []
        if fence.available():
            folders = [self.stage.folder, "/dev", "/proc/self"]
            wrap = [sys.executable, os.path.join(HERE, "fence.py"), ":".join(folders),
                    ",".join(str(port) for port in self.ports)]
        self.player = self.stage.player(self.home, medium=medium, environment=self.environment(),
                                        wrap=wrap, ready=None)
        self.player.wait_for("window", seconds=START_SECONDS)
        return self.player

    def sanitizer_reports(self):
        return glob.glob(self.stage.path("sanitizer") + ".*")

    def check_pulse(self):
        """Whether the window answers; a Fault with the stacks of all threads when it does not."""
        player = self.player
        limit = patience()
        try:
            self.slowest = max(self.slowest, player.answer_seconds(limit))
            return
        except (Fault, OSError):
            if player.process.poll() is not None or player.seen("quit"):
                return  # it is going down, which `end` watches
        stacks = self.stacks()
        try:
            seconds = limit + player.answer_seconds(patience(30.0))
        except (Fault, OSError):
            if player.process.poll() is not None or player.seen("quit"):
                return
            raise Fault("stuck: no answer for %.0f s\n%s" % (limit, stacks)) from None
        raise Fault("slow: an answer took %.1f s\n%s" % (seconds, stacks))

    def stacks(self):
        try:
            return subprocess.run(
                ["gdb", "-batch", "-p", str(self.player.pid), "-ex", "thread apply all bt 40"],
                capture_output=True, text=True, errors="replace", timeout=120).stdout
        except (OSError, subprocess.TimeoutExpired) as error:
            return "no stacks: %s" % error

    def hand_over(self, text):
        """As a second start does; the call is held as long as a patient caller would."""
        try:
            connection = self.player.connect(1.0)
            connection.sendall(struct.pack("<I", len(text)) + text)
            self.hanging.append(connection)
        except (Fault, OSError):
            pass  # it is going down

    def check_end(self):
        """After the process has ended: that it ended well."""
        self.hanging.clear()
        status = self.player.process.wait()
        reports = self.sanitizer_reports()
        if status == 0 and not reports:
            return
        text = ""
        for report in reports:
            with open(report, errors="replace") as file:
                text += file.read()
            os.unlink(report)
        raise Fault("ended with %d\n%s\n%s" % (status, text, self.player.said()[-4000:]))

    def end(self, answer):
        """Asks the player to end, as the end of a session does, and answers what it asks."""
        if self.player.process.poll() is None:
            self.player.ask_to_end()
        count = 0
        while not wait_until(lambda: self.player.process.poll() is not None, 2.0):
            answer(count)
            count += 1
            if count * 2.0 > patience(END_SECONDS):
                stacks = self.stacks()
                self.player.kill()
                raise Fault("does not end\n" + stacks)
        self.check_end()
