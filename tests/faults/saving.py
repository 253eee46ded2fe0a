"""Killed while saving: what was there is old or new to the last byte, never less.

Each kind of file is saved once undisturbed, which tells the new content and the calls that a save
is made of. Then the player is killed in front of every one of these calls, in the middle of every
write, and at random moments; each start is the next start after a kill.
"""

import os
import re
import shutil
import subprocess
import time

from stage import Fault, read, require, wait_until, write

KILLED = -9
KEY_SECONDS = 5.0


def xdotool(*words):
    return subprocess.run(["xdotool", *words], capture_output=True, text=True).stdout.split()


def window(title=None):
    """Waits for the player's window of this title, or its first, and gives it the keyboard."""
    by = ("--name", title) if title else ("--class", "kestrelview")
    windows = wait_until(lambda: xdotool("search", "--onlyvisible", *by), KEY_SECONDS)
    require(windows, "no window \"%s\"" % title)
    wait_until(lambda: xdotool("windowfocus", windows[-1], "getwindowfocus")[-1:] == windows[-1:],
               KEY_SECONDS)


def close_box():
    """Answers a message box, if one stands there."""
    if xdotool("search", "--onlyvisible", "--name", "^Kestrelview$"):
        window("^Kestrelview$")
        keys("Return")


def keys(*names):
    xdotool("key", "--delay", "5", *names)


def enter_name(title, name, after):
    """Answers a file dialog, which the window `after` follows."""
    window(title)
    keys("ctrl+a")
    xdotool("type", "--delay", "1", name)

    def follows():
        # The dialog may take a key for the list of names that it offers.
        keys("Return")
        return wait_until(lambda: xdotool("search", "--onlyvisible", "--name", after), 0.5)
    require(wait_until(follows, KEY_SECONDS), "no window \"%s\" follows" % after)
    window(after)


class Settings:
    """Written when the login session ends."""
    medium = None

    def prepare(self, stage):
        home = stage.home(CurrentFile="/nowhere/" + "long" * 500)
        return home, {os.path.join(home, "config.dat"): read(os.path.join(home, "config.dat"))}

    def lead_up(self, player):
        pass

    def trigger(self, player):
        player.ask_to_end()

    def is_new(self, content, expected):
        return content == expected

    ends = True


class Playlist(Settings):
    """Saved at the end without a question; what is no entry goes."""

    def prepare(self, stage):
        media = stage.make_folder("media")
        lines = ["#EXTM3U\r\n"]
        for number in range(400):
            path = os.path.join(media, "song with a long name %04d.mp3" % number)
            write(path, b"")
            lines.append("# a note\r\n%s\r\n" % path)
        path = stage.path("list.m3u")
        write(path, "".join(lines).encode())
        home = stage.home(PlaylistFile=path, AutoLoadLast=-1, SavePlaylist=-1)
        config = os.path.join(home, "config.dat")
        return home, {path: read(path), config: read(config)}


class Resume(Settings):
    """Saved by Ctrl+R over one that is there."""
    ends = False

    def prepare(self, stage):
        self.medium = stage.medium("film1.mkv")
        path = stage.path("spot.kvr")
        self.path = path
        write(path, b"[RESUME_FILE]\r\nPath=/a/film.mkv\r\nPOS=12.5\r\nENDPOS=40\r\nNote=mine\r\n")
        return stage.home(), {path: read(path)}

    def lead_up(self, player):
        player.wait_for("open")
        window()
        keys("ctrl+r")
        enter_name("Set Kestrelview Resume File", self.path, "^Kestrelview$")

    def is_new(self, content, expected):
        """The position is that of the moment."""
        form = rb"(\r\nPOS=)[0-9.]+(\r\n)"
        return re.fullmatch(rb"(?s).*%s.*" % form, content) is not None and \
            re.sub(form, rb"\1\2", content) == re.sub(form, rb"\1\2", expected)

    def trigger(self, player):
        keys("Return")


class Scheme(Settings):
    """Saved when a colour is picked."""
    ends = False

    def prepare(self, stage):
        home = stage.home(ColorScheme="mine.dat")
        folder = stage.make_folder(os.path.join("home", "colorscemes"))
        path = os.path.join(folder, "mine.dat")
        write(path, bytes(range(132)) + b"what a later version adds" * 100)
        return home, {path: read(path)}

    def lead_up(self, player):
        window()
        keys("ctrl+c")
        window("[Cc]olor")
        keys("Alt+l", "Down", "Down")
        keys("Alt+o")
        window("Select Color")

    def trigger(self, player):
        keys("Return")


class Copy(Settings):
    """The medium saved over a file that is there, 16 MB."""
    ends = False

    def prepare(self, stage):
        # The copy keeps what follows the film's own end, too.
        source = stage.path("film.mkv")
        write(source, read(stage.medium("film1.mkv")) + bytes(16_000_000))
        self.medium = source
        self.path = stage.path("copy.mkv")
        write(self.path, b"old" * 1000)
        return stage.home(), {self.path: read(self.path), source: read(source)}

    def lead_up(self, player):
        player.wait_for("open")
        window()
        keys("ctrl+s")
        enter_name("Save file as", self.path, "Overwrite")

    def trigger(self, player):
        keys("Return")


KINDS = {"settings": Settings, "playlist": Playlist, "resume": Resume, "scheme": Scheme,
         "copy": Copy}


class Killing:
    def __init__(self, stage, kind):
        self.stage = stage
        self.kind = kind
        self.home, self.old = kind.prepare(stage)
        self.arm = stage.path("arm")
        self.worst_left_over = 0
        self.outcomes = {"old": 0, "new": 0}
        self.rehearse()

    def run(self, **variables):
        """One start and one save, up to the death of the player or the end of the save."""
        for attempt in range(4):
            player = self.start(variables)
            try:
                self.kind.lead_up(player)
            except Fault:
                # On a busy machine a key gets lost between two windows.
                if attempt == 3 or player.process.poll() is not None:
                    raise
                player.kill()
                continue
            write(self.arm, b"")
            self.kind.trigger(player)
            return player

    def start(self, variables):
        for path, content in self.old.items():
            write(path, content)
        if os.path.exists(self.arm):
            os.unlink(self.arm)
        environment = {"LD_PRELOAD": self.stage.build.shim, "KV_FAULT_FOLDER": self.stage.folder,
                       "KV_FAULT_ARM": self.arm}
        environment.update((name, str(value)) for name, value in variables.items())
        return self.stage.player(self.home, medium=self.kind.medium, environment=environment)

    def files(self):
        found = {}
        for folder, _, names in os.walk(self.stage.folder):
            if os.path.basename(folder) in ("media", "runtime"):
                continue
            for name in names:
                path = os.path.join(folder, name)
                if not name.startswith(("trace-", "log-", "arm", "calls")):
                    found[path] = read(path)
        return found

    def finish(self, player):
        """The player has saved undisturbed and goes."""
        if not self.kind.ends:
            def saved():
                return all(read(path) != content for path, content in self.old.items()
                           if path not in (self.kind.medium, os.path.join(self.home, "config.dat")))
            def tried():
                self.kind.trigger(player)
                return wait_until(saved, 2.0)
            require(wait_until(saved, 2.0) or wait_until(tried, 20.0), "nothing was saved")
            time.sleep(0.3)
            player.ask_to_end()
        require(player.process.wait(20.0) == 0, "the player ended badly: " + player.said()[-300:])

    def rehearse(self):
        log = self.stage.path("calls")
        self.finish(self.run(KV_FAULT_LOG=log))
        calls = [line.split("\t") for line in read(log).decode().splitlines()]
        if not self.kind.ends:
            # What belongs to the end of the player is the settings' case.
            calls = [call for call in calls if "colorscemes" in call[2] or
                     not call[2].startswith((self.home, self.stage.path("runtime")))]
        self.points = len(calls)
        self.writes = [number for number, call in enumerate(calls, 1)
                       if call[1] in ("write", "copy_file_range")]
        self.microseconds = int(calls[-1][0])
        self.expected = self.files()
        for path in self.old:
            require(path in self.expected, "%s is gone" % path)

    def die(self, **variables):
        """One start that is killed inside its save."""
        player = self.run(**variables)
        status = self.wait_for_death(player)
        require(status == KILLED or (self.kind.ends and status == 0),
                "the player ended with %d: %s" % (status, player.said()[-300:]))
        self.look()
        player.process = Dead()

    def wait_for_death(self, player):
        for _ in range(10):
            try:
                return player.process.wait(2.0)
            except subprocess.TimeoutExpired:
                self.kind.trigger(player)  # a key can get lost on the way to a new window
        raise Fault("nothing was saved")

    def look(self):
        left_over = 0
        for path, content in self.files().items():
            if path in self.old:
                name = ("new" if self.kind.is_new(content, self.expected[path]) else
                        "old" if content == self.old[path] else None)
                if name is None:
                    shutil.copy(path, "/tmp/kv-fault-evidence")
                    raise Fault("%s is neither old nor new: %d bytes, kept in "
                                "/tmp/kv-fault-evidence" % (path, len(content)))
                self.outcomes[name] += 1
            elif path not in self.expected:
                left_over += 1
        missing = [path for path in self.old if not os.path.exists(path)]
        require(not missing, "%s is gone" % missing)
        self.worst_left_over = max(self.worst_left_over, left_over)
        require(left_over <= len(self.old), "%d left-over files" % left_over)

    def last_start(self):
        """The next undisturbed save works, and tidies up what the kills left."""
        self.finish(self.run())
        more = [path for path in self.files() if path not in self.expected]
        require(not more, "left behind: %s" % more)
        for path in self.old:
            require(self.kind.is_new(read(path), self.expected[path]),
                    "%s was not saved at last" % path)


class Dead:
    """Stands for a process that is gone, so that many need not be kept."""

    def poll(self):
        return KILLED


def kill_while_saving(kind):
    def run(stage, times):
        killing = Killing(stage, KINDS[kind]())
        moments = [(point, torn) for torn, points in
                   ((0, range(1, killing.points + 1)), (1, killing.writes)) for point in points]
        if times < len(moments):
            moments = stage.random.sample(moments, times)
        for point, torn in moments:
            killing.die(KV_FAULT_POINT=point, KV_FAULT_TORN=torn)
        for _ in range(times):
            moment = stage.random.randint(0, killing.microseconds)
            killing.die(KV_FAULT_AFTER_US=moment)
        killing.last_start()
        return "%d points and %d random moments: %d old, %d new, at most %d left over" % (
            len(moments), times, killing.outcomes["old"], killing.outcomes["new"],
            killing.worst_left_over)
    run.__doc__ = "killed while saving: " + KINDS[kind].__doc__
    return run


CASES = {"kill-" + kind: kill_while_saving(kind) for kind in KINDS}
