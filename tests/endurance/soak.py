"""The soak: thousands of opens, and every window opened and closed a thousand times.

What must stay flat is measured all along: resident memory, threads, open files, streams on the
sound server. The last quarter is held against the second; the first may still fill caches.
"""

import collections
import os
import random
import shutil
import statistics
import subprocess
import time

from house import House, patience
from screen import KEY_ALT, KEY_CTRL, KEY_SHIFT, Screen
from stage import Fault, read, wait_until, write

ROUNDS_OF_SAMPLES = 20
# What may not grow, its unit, which of the samples counts, and by how much it may from the second
# quarter to the last: memory as a factor. Files and the stream are there or not with the sound of
# the moment, so the most of them tells; threads come and go.
GROWTH = (("memory", " MB", statistics.mean, 1.04), ("threads", "", statistics.mean, 2.0),
          ("files", "", max, 2.0), ("streams", "", max, 0.0))
OWN_END = 0.1  # of the media are heard to their end
HEARD_SECONDS = 2.0  # when the longest of them has ended and the next is there
STEP_SECONDS = 0.25
OPEN_SECONDS = 10.0
WINDOW_SECONDS = 5.0

Sample = collections.namedtuple("Sample", "done memory threads files streams")


def measure(player, done):
    with open("/proc/%d/status" % player.pid, encoding="ascii", errors="replace") as file:
        status = dict(line.split(":", 1) for line in file if ":" in line)
    answer = subprocess.run(["pactl", "list", "short", "sink-inputs"], capture_output=True,
                            text=True)
    return Sample(done, int(status["VmRSS"].split()[0]) / 1024.0, int(status["Threads"]),
                  len(os.listdir("/proc/%d/fd" % player.pid)), len(answer.stdout.splitlines()))


def verdict(samples):
    """Words for a table; the second is false when something grows."""
    quarter = max(1, len(samples) // 4)
    early, late = samples[quarter:2 * quarter] or samples, samples[-quarter:]
    words, flat = [], True
    for field, unit, of_some, growth in GROWTH:
        before = of_some(getattr(sample, field) for sample in early)
        after = of_some(getattr(sample, field) for sample in late)
        grows = after > before * growth if field == "memory" else after > before + growth
        flat = flat and not grows
        words.append("%s %.1f to %.1f%s%s" % (field, before, after, unit, " GROWS" * grows))
    return ", ".join(words), flat


class Soak:
    def __init__(self, stage, seed):
        self.stage = stage
        self.random = random.Random(seed)
        self.screen = Screen()
        self.house = House(stage)
        self.media = stage.make_folder("media")
        self.fill()
        self.trace_read = 0
        self.opens = 0

    # --- Media

    def fill(self):
        """Forty media of a fifth of a second to one second; every tenth of them is bad."""
        self.entries = []
        work = self.stage.make_folder("work")
        for number in range(9):
            seconds = 0.2 + 0.1 * number
            sound = os.path.join(work, "sound.wav")
            self.encode("sine=frequency=%d:sample_rate=48000:duration=%.1f" % (200 + number, seconds),
                        None, sound, "-ac", "2", "-c:a", "pcm_s16le")
            film = os.path.join(work, "film.mkv")
            self.encode("sine=frequency=440:sample_rate=48000:duration=%.1f" % seconds,
                        "testsrc2=size=%dx120:rate=25:duration=%.1f" % (160 + 16 * number, seconds),
                        film, "-c:v", "libx264", "-preset", "ultrafast", "-c:a", "libvorbis")
            for name, source in (("tone%d.wav", sound), ("film%d.mkv", film)):
                self.add(name % number, source)
            tune = os.path.join(self.media, "tune%d.mp3" % number)
            self.encode("sine=frequency=%d:sample_rate=44100:duration=%.1f" % (300 + number, seconds),
                        None, tune, "-c:a", "libmp3lame")
            self.entries.append(tune)
        for name, data in (("empty.wav", b""), ("noise.mp3", bytes(range(256)) * 100),
                           ("half.mkv", (read(os.path.join(self.media, "film8.mkv")) or b"")[:3000])):
            write(os.path.join(self.media, name), data)
            self.entries.insert(self.random.randrange(len(self.entries)),
                                os.path.join(self.media, name))

    def encode(self, sound, picture, path, *options):
        inputs = ["-f", "lavfi", "-i", sound] + (["-f", "lavfi", "-i", picture] if picture else [])
        subprocess.run(["ffmpeg", "-nostdin", "-loglevel", "error", "-y", *inputs, *options, path],
                       check=True)

    def add(self, name, source):
        path = os.path.join(self.media, name)
        shutil.copy(source, path)
        self.entries.append(path)

    # --- The player

    def start(self, **settings):
        shutil.rmtree(self.house.home, ignore_errors=True)
        os.makedirs(self.house.home, 0o700)
        self.house.configure(AutoNext=-1, SavePlaylist=-1, AutoStart=-1, AutoPlayPlaylist=-1,
                             DragDropAddsToPlaylist=-1, LastOpenFolder=self.media, **settings)
        write(os.path.join(self.house.home, "playlist.m3u"),
              b"".join(os.fsencode(entry) + b"\r\n" for entry in self.entries))
        self.house.start()
        self.trace_read = self.opens = 0
        self.windows_of("main")

    def end(self):
        self.house.end(lambda _count: self.answer_boxes())

    def count_opens(self):
        """The media that were opened, or could not be, since the start."""
        with open(self.house.player.trace, "rb") as file:
            file.seek(self.trace_read)
            text = file.read()
        whole = text[:text.rfind(b"\n") + 1]
        self.trace_read += len(whole)
        self.opens += whole.count(b"\topen\t") + whole.count(b"\tfailed\t")
        return self.opens

    def answer_boxes(self):
        for window in self.screen.windows():
            if window.kind == "dialog":
                self.focus(window)
                self.screen.key("Return")

    def windows_of(self, kind, seconds=WINDOW_SECONDS):
        """The first visible window of this kind or title; it is waited for."""
        found = wait_until(lambda: [window for window in self.screen.windows()
                                    if kind in (window.kind, window.title)], patience(seconds))
        if not found:
            raise Fault("no window \"%s\" but %s" % (
                kind, ", ".join(str(window) for window in self.screen.windows())))
        return found[0]

    def focus(self, window):
        if self.screen.focused() != window.number:
            self.screen.activate(window.number)
            wait_until(lambda: self.screen.focused() == window.number, 1.0)

    # --- Opens

    def play(self, count, told):
        """Steps through the list until that many media were opened; the samples."""
        self.start()
        samples = []
        every = max(1, count // ROUNDS_OF_SAMPLES)
        while self.opens < count:
            before = self.count_opens()
            if before >= every * (len(samples) + 1):
                samples.append(measure(self.house.player, before))
                told(samples[-1])
            self.open_another(before)
        self.end()
        return samples

    def open_another(self, before):
        to_the_end = self.random.random() < OWN_END
        self.press("Return" if to_the_end else "Next")  # a bad medium has stopped it, perhaps
        begin = time.monotonic()
        asked = begin + (HEARD_SECONDS if to_the_end else STEP_SECONDS)
        while self.count_opens() == before:
            now = time.monotonic()
            if self.house.player.process.poll() is not None:
                self.house.check_end()
                raise Fault("ended by itself")
            if now - begin > patience(OPEN_SECONDS):
                raise Fault("nothing was opened after %d opens" % before)
            if now > asked:  # a bad medium has been told of, or this was the last one
                asked = now + STEP_SECONDS
                self.answer_boxes()
                self.press(self.random.choice(("Home", "Next")))
            time.sleep(0.005)

    # --- Windows

    def toggle(self, count, told, case):
        """Opens and closes one window that many times; the samples."""
        self.start()
        samples = []
        every = max(1, count // ROUNDS_OF_SAMPLES)
        for number in range(count):
            if number % every == 0:
                samples.append(measure(self.house.player, number))
                told(samples[-1])
            case(self)
        samples.append(measure(self.house.player, count))
        self.end()
        return samples

    def press(self, name, *modifiers, on="main"):
        self.focus(self.windows_of(on))
        self.screen.key(name, modifiers)

    def gone(self, kind):
        if not wait_until(lambda: not any(kind in (window.kind, window.title)
                                          for window in self.screen.windows()),
                          patience(WINDOW_SECONDS)):
            raise Fault("\"%s\" does not close" % kind)

    def settle(self):
        """Until the player has heard what the window manager has done."""
        self.screen.flush()
        for _ in range(2):
            self.house.player.answer_seconds()
            time.sleep(0.05)

    def is_full_screen(self):
        window = self.windows_of("main")
        return self.screen.atom("_NET_WM_STATE_FULLSCREEN") in self.screen.property(
            window.number, "_NET_WM_STATE")


def key_case(kind, opening, closing=("Escape",), on="main"):
    """A window that one key opens, and another one pressed in it closes."""
    def case(soak):
        soak.press(*opening, on=on)
        window = soak.windows_of(kind)
        if window.kind != "menu":
            soak.focus(window)
        soak.screen.key(closing[0], closing[1:])
        soak.gone(kind)
    return case


def switch_case(kind, *keys):
    """A window that one key of the main window opens and closes."""
    def case(soak):
        soak.press(*keys)
        soak.focus(soak.windows_of(kind))
        soak.settle()
        soak.press(*keys)
        soak.gone(kind)
        soak.settle()
    return case


def within_list(case):
    def with_list(soak):
        if not any(window.kind == "list" for window in soak.screen.windows()):
            soak.press("p")
            soak.windows_of("list")
        case(soak)
    return with_list


def full_screen(soak):
    for wanted in (True, False):
        soak.press("Return", KEY_ALT)
        if not wait_until(lambda: soak.is_full_screen() == wanted, patience(WINDOW_SECONDS)):
            raise Fault("full screen does not follow its key")
        soak.settle()


def about(soak):
    """The third entry of the menu from below."""
    soak.press("F12")
    soak.windows_of("menu")
    for key in ("Up", "Up", "Up", "Return"):
        soak.screen.key(key)
    soak.focus(soak.windows_of("about"))
    soak.screen.key("Escape")
    soak.gone("about")


def scan(soak):
    """A folder is dropped on the list, which reads it; then the list is emptied."""
    window = soak.windows_of("list")
    uri = b"file://" + os.fsencode(soak.stage.path("work")) + b"\r\n"
    soak.focus(window)
    soak.screen.drop(window.number, window.x + 100, window.y + 150, {"text/uri-list": uri})
    soak.press("Delete", KEY_SHIFT, on="list")
    wait_until(lambda: any(window.kind == "dialog" for window in soak.screen.windows()), 0.3)
    soak.answer_boxes()
    soak.gone("dialog")


CASES = {
    "menu": key_case("menu", ("F12",)),
    "options": key_case("options", ("k", KEY_CTRL)),
    "colours": key_case("colours", ("c", KEY_CTRL)),
    "help": key_case("help", ("F1",)),
    "list": switch_case("list", "p"),
    "search": within_list(key_case("search", ("f", KEY_CTRL), on="list")),
    "quick-search": key_case("search", ("q", KEY_CTRL)),
    "address": key_case("Open URL - Kestrelview", ("u", KEY_CTRL)),
    "file-dialog": key_case("dialog", ("o", KEY_CTRL)),
    "plug-ins": key_case("plugins", ("p", KEY_ALT)),
    "meter": key_case("meter", ("s",)),
    "about": about,
    "full-screen": full_screen,
    "scan": within_list(scan),
}
