"""What the fault tests stand on: the real program in a folder of its own, watched from outside.

What the player does is read from its trace (KESTRELVIEW_TRACE), whether its window is alive from
the answer of its hand-over socket, which the interface thread gives. Nothing here knows a case.
"""

import os
import random
import shutil
import signal
import socket
import struct
import subprocess
import tempfile
import time

START_SECONDS = 30.0
END_SECONDS = 2.0  # what the player may take to end, whatever goes wrong around it
ANSWER_SECONDS = 1.0  # what its window may take to answer


class Fault(Exception):
    """The player did not do what it owes its user."""


class Skip(Exception):
    """This machine cannot make the fault."""


def require(condition, text):
    if not condition:
        raise Fault(text)


def wait_until(condition, seconds):
    """What `condition` answers at last; false when it stays false for `seconds`."""
    limit = time.monotonic() + seconds
    while True:
        result = condition()
        if result or time.monotonic() > limit:
            return result
        time.sleep(0.01)


def read(path):
    try:
        with open(path, "rb") as file:
            return file.read()
    except FileNotFoundError:
        return None


def write(path, data):
    with open(path, "wb") as file:
        file.write(data)


class Build:
    """The built program and what was built for these tests."""

    def __init__(self, folder):
        self.program = os.path.join(folder, "kestrelview")
        self.shim = os.path.join(folder, "tests", "kv_fault_shim.so")
        self.config = os.path.join(folder, "tests", "kv_fault_config")
        self.media = os.path.join(folder, "tests", "media")


class Stage:
    """One case's share of the machine: folders, players and servers, gone at its end."""

    def __init__(self, build, seed):
        self.build = build
        self.random = random.Random(seed)
        self.folder = tempfile.mkdtemp(prefix="kv-fault-")
        os.chmod(self.folder, 0o755)
        self.endings = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for ending in reversed(self.endings):
            ending()
        shutil.rmtree(self.folder, ignore_errors=True)

    def at_end(self, action):
        self.endings.append(action)

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def make_folder(self, name):
        os.makedirs(self.path(name), 0o700, exist_ok=True)
        return self.path(name)

    def medium(self, name):
        return os.path.join(self.build.media, name)

    def home(self, name="home", **settings):
        """A program folder with these settings, past its first run."""
        folder = self.make_folder(name)
        self.configure(os.path.join(folder, "config.dat"), **settings)
        return folder

    def configure(self, path, **settings):
        words = ["%s=%s" % pair for pair in settings.items()]
        subprocess.run([self.build.config, path, *words], check=True)

    def setting(self, home, field):
        answer = subprocess.run(
            [self.build.config, os.path.join(home, "config.dat"), field],
            check=True, capture_output=True, text=True)
        return answer.stdout.rstrip("\n")

    def player(self, home, **options):
        return Player(self, home, **options)

    def long_sound(self, seconds, name="long.wav"):
        """A tone in a file that takes 192,000 bytes a second."""
        path = self.path(name)
        subprocess.run(
            ["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-f", "lavfi", "-i",
             "sine=frequency=440:sample_rate=48000:duration=%d" % seconds, "-ac", "2",
             "-c:a", "pcm_s16le", path], check=True)
        return path

    def long_film(self, seconds, name="long.mkv"):
        path = self.path(name)
        subprocess.run(
            ["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-f", "lavfi", "-i",
             "testsrc2=size=320x240:rate=25:duration=%d" % seconds, "-f", "lavfi", "-i",
             "sine=frequency=440:sample_rate=48000:duration=%d" % seconds,
             "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "libvorbis", path], check=True)
        return path


class Player:
    """One run of the program."""

    def __init__(self, stage, home, medium=None, environment=None, runtime="runtime", wrap=(),
                 ready="window"):
        self.stage = stage
        self.home = home
        self.runtime = stage.make_folder(runtime)
        number = len(stage.endings)
        self.trace = stage.path("trace-%d" % number)
        self.log = stage.path("log-%d" % number)
        variables = dict(os.environ)
        variables.update(KESTRELVIEW_HOME=home, XDG_RUNTIME_DIR=self.runtime,
                         KESTRELVIEW_TRACE=self.trace, **(environment or {}))
        command = [*wrap, stage.build.program] + ([medium] if medium else [])
        with open(self.log, "wb") as log:
            self.process = subprocess.Popen(command, env=variables, stdin=subprocess.DEVNULL,
                                            stdout=log, stderr=log)
        stage.at_end(self.kill)
        self.pid = self.process.pid
        self.asked = False
        if ready:
            self.wait_for(ready)

    # --- The trace

    def lines(self):
        text = (read(self.trace) or b"").decode(errors="surrogateescape")
        return [line.split("\t") for line in text.splitlines() if line.count("\t") == 2]

    def seen(self, event, value=None):
        return any(line[1] == event and value in (None, line[2]) for line in self.lines())

    def wait_for(self, event, value=None, seconds=START_SECONDS):
        """Seconds until the event stood in the trace."""
        begin = time.monotonic()
        wait_until(lambda: self.seen(event, value) or self.process.poll() is not None, seconds)
        require(self.seen(event, value),
                "no \"%s\" within %.0f s, status %s: %s" %
                (event, seconds, self.process.poll(), self.said()[-300:]))
        return time.monotonic() - begin

    def position(self):
        positions = [float(line[2]) for line in self.lines() if line[1] == "position"]
        return positions[-1] if positions else -1.0

    def wait_for_position(self, seconds, patience=START_SECONDS):
        require(wait_until(lambda: self.position() >= seconds, patience),
                "the position stands at %.2f" % self.position())

    def said(self):
        return (read(self.log) or b"").decode(errors="replace")

    # --- Its window

    def connect(self, seconds):
        for name in os.listdir(self.runtime):
            if name.startswith("kestrelview-") and not name.endswith(".lock"):
                connection = socket.socket(socket.AF_UNIX)
                connection.settimeout(seconds)
                connection.connect(os.path.join(self.runtime, name))
                return connection
        raise Fault("the player does not listen")

    def answer_seconds(self, patience=10.0):
        """How long the interface thread takes to refuse a malformed request."""
        begin = time.monotonic()
        try:
            with self.connect(patience) as connection:
                connection.sendall(struct.pack("<I", 0))
                connection.recv(1)
        except ConnectionError:
            pass
        except TimeoutError:
            raise Fault("the window does not answer within %.0f s" % patience) from None
        return time.monotonic() - begin

    def hand_over(self, path):
        """As a second start with a path does; the answer is not waited for."""
        text = ('"%s"' % path).encode()
        connection = self.connect(10.0)
        connection.sendall(struct.pack("<I", len(text)) + text)
        self.stage.at_end(connection.close)

    def stays_alive(self, seconds):
        """The longest time that the window took to answer meanwhile."""
        worst = 0.0
        limit = time.monotonic() + seconds
        while time.monotonic() < limit:
            require(self.process.poll() is None, "the player ended: %s" % self.said()[-300:])
            worst = max(worst, self.answer_seconds())
            time.sleep(0.05)
        require(worst <= ANSWER_SECONDS, "the window took %.1f s to answer" % worst)
        return worst

    def opens(self, path, seconds=3.0):
        """Seconds until another medium has been opened."""
        before = sum(line[1] == "open" and line[2] == path for line in self.lines())
        begin = time.monotonic()
        self.hand_over(path)
        opened = wait_until(
            lambda: sum(line[1] == "open" and line[2] == path for line in self.lines()) > before,
            seconds)
        require(opened, "another medium was not opened within %.0f s" % seconds)
        return time.monotonic() - begin

    # --- Its end

    def ask_to_end(self):
        self.asked = True
        self.process.send_signal(signal.SIGTERM)

    def end(self, seconds=END_SECONDS):
        """Asks the player to end, and answers how long it took."""
        begin = time.monotonic()
        if not self.asked:
            self.ask_to_end()
        try:
            status = self.process.wait(30.0)
        except subprocess.TimeoutExpired:
            raise Fault("the player does not end") from None
        taken = time.monotonic() - begin
        require(status == 0, "the player ended with %d: %s" % (status, self.said()[-300:]))
        require(taken <= seconds, "the player took %.1f s to end" % taken)
        return taken

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()

    def cpu_seconds(self):
        with open("/proc/%d/stat" % self.pid, encoding="ascii", errors="replace") as file:
            fields = file.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


class Server:
    """A process that stands beside the player: a sound server, a screen."""

    def __init__(self, stage, command, **options):
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                        **options)
        stage.at_end(self.kill)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
