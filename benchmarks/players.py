"""What the benchmarks that compare whole players share: the film, the two players, the screen.

Both players are watched alike, from outside, on one X screen. Times are CLOCK_MONOTONIC seconds.
"""

import argparse
import ctypes
import os
import platform
import re
import shutil
import statistics
import subprocess
import sys
import threading
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
RUNS = 5
FILM_WIDTH, FILM_HEIGHT = 1920, 1080
OPEN_SECONDS = 20  # a player that shows nothing for this long has failed
POLL_SECONDS = 0.001
PICTURE = (1280, 720)  # of both players while they are compared at playing
SETTLE_SECONDS = 1.5


def on_a_desktop(script):
    """Starts the script again on a desktop of its own, unless it is on one already."""
    if os.environ.get("KESTRELVIEW_BENCH_DESKTOP") != "1":
        os.environ["KESTRELVIEW_BENCH_DESKTOP"] = "1"
        wrapper = os.path.join(ROOT, "tools", "with_desktop")
        os.execv(wrapper, [wrapper, sys.executable, script] + sys.argv[1:])


def read_arguments(description):
    parser = argparse.ArgumentParser(description=description)
    parser.add_argument(
        "--program",
        default=os.path.join(ROOT, "build", "bench", "kestrelview"),
        help="the player to measure (default: build/bench/kestrelview)",
    )
    program = os.path.abspath(parser.parse_args().program)
    if not os.access(program, os.X_OK):
        sys.exit(program + " is missing: cmake --preset bench && cmake --build --preset bench")
    return program


def beside(program, name):
    """A tool of the benchmarks, which is built into the same folder as the player."""
    path = os.path.join(os.path.dirname(program), name)
    if not os.access(path, os.X_OK):
        sys.exit(path + " is missing: cmake --preset bench && cmake --build --preset bench")
    return path


def make_home(program, kind, playlist=""):
    """A new program folder, "plain" or "full"; prepare_home says what that means."""
    folder = os.path.join(os.environ["KESTRELVIEW_HOME"], "%s-%f" % (kind, time.monotonic()))
    os.makedirs(folder, mode=0o700)
    installed = os.path.join(ROOT, "data", "config.dat")
    subprocess.run(
        [beside(program, "prepare_home"), folder, installed, kind, playlist], check=True
    )
    return folder


def bench_film():
    """The path of a 20 s film, 1080p at 30 frames a second, H.264 and AAC, made once.

    Its moving picture and noise cost a decoder what a camera's would; a magenta frame and a green
    field in the middle let the benchmarks find it on the screen.
    """
    path = os.path.join(ROOT, "build", "bench-media", "film1080p30.mp4")
    if not os.path.exists(path):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        part = path + ".%d.part.mp4" % os.getpid()
        picture = (
            "testsrc2=s=1920x1080:r=30:d=20,noise=alls=12:allf=t,"
            "drawbox=c=magenta:t=32,drawbox=x=800:y=450:w=320:h=180:c=0x00C040:t=fill"
        )
        sound = "aevalsrc=0.1*sin(2*PI*440*t)|0.1*sin(2*PI*660*t):s=48000:d=20"
        print("Making the film, once ...", flush=True)
        subprocess.run(
            ["ffmpeg", "-nostdin", "-loglevel", "error", "-y", "-f", "lavfi", "-i", picture]
            + ["-f", "lavfi", "-i", sound, "-pix_fmt", "yuv420p", "-c:v", "libx264"]
            + ["-preset", "veryfast", "-b:v", "8M", "-maxrate", "10M", "-bufsize", "16M"]
            + ["-g", "60", "-c:a", "aac", "-b:a", "128k", "-movflags", "+faststart", part],
            check=True,
        )
        os.rename(part, path)
    return path


def bench_playlist():
    """The path of a playlist of 9999 songs that are there, made once.

    They are one short song with tags under 9999 names.
    """
    folder = os.path.join(ROOT, "build", "bench-media", "songs")
    playlist = os.path.join(folder, "all.m3u")
    if not os.path.exists(playlist):
        print("Making the songs, once ...", flush=True)
        shutil.rmtree(folder, ignore_errors=True)
        os.makedirs(folder)
        song = os.path.join(folder, "0000 Song.mp3")
        tags = {"title": "A Song", "artist": "Some Artist", "album": "An Album", "genre": "Rock"}
        subprocess.run(
            ["ffmpeg", "-nostdin", "-loglevel", "error", "-f", "lavfi"]
            + ["-i", "aevalsrc=0.1*sin(2*PI*440*t)|0.1*sin(2*PI*660*t):s=44100:d=4"]
            + [part for tag in tags.items() for part in ("-metadata", "%s=%s" % tag)]
            + ["-write_id3v1", "1", "-c:a", "libmp3lame", "-b:a", "192k", song],
            check=True,
        )
        names = ["%04d Song.mp3" % number for number in range(1, 10000)]
        for name in names:
            os.link(song, os.path.join(folder, name))
        with open(playlist, "w", encoding="utf-8") as lines:
            lines.write("".join(name + "\r\n" for name in names))
    return playlist


class Screen:
    """Reads pixels off the screen, one request for each look, without a process of its own."""

    class Image(ctypes.Structure):
        _fields_ = [
            ("width", ctypes.c_int),
            ("height", ctypes.c_int),
            ("xoffset", ctypes.c_int),
            ("format", ctypes.c_int),
            ("data", ctypes.c_void_p),
            ("byte_order", ctypes.c_int),
            ("bitmap_unit", ctypes.c_int),
            ("bitmap_bit_order", ctypes.c_int),
            ("bitmap_pad", ctypes.c_int),
            ("depth", ctypes.c_int),
            ("bytes_per_line", ctypes.c_int),
        ]

    ALL_PLANES = ctypes.c_ulong(-1)
    Z_PIXMAP = 2

    def __init__(self):
        x = ctypes.CDLL("libX11.so.6")
        x.XOpenDisplay.restype = ctypes.c_void_p
        x.XDefaultRootWindow.restype = ctypes.c_ulong
        x.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        coordinates = [ctypes.c_int, ctypes.c_int, ctypes.c_uint, ctypes.c_uint]
        x.XGetImage.restype = ctypes.POINTER(self.Image)
        x.XGetImage.argtypes = (
            [ctypes.c_void_p, ctypes.c_ulong] + coordinates + [ctypes.c_ulong, ctypes.c_int]
        )
        x.XFree.argtypes = [ctypes.c_void_p]
        self.x = x
        self.display = x.XOpenDisplay(None)
        if not self.display:
            sys.exit("The benchmark found no X screen")
        self.root = x.XDefaultRootWindow(self.display)

    def grab(self, left, top, width, height):
        """The pixels of a rectangle as rows of bytes: blue, green, red, unused."""
        image = self.x.XGetImage(
            self.display, self.root, left, top, width, height, self.ALL_PLANES, self.Z_PIXMAP
        )
        data = ctypes.string_at(image.contents.data, image.contents.bytes_per_line * height)
        self.x.XFree(image.contents.data)
        self.x.XFree(image)
        return data

    def shows_film_at(self, spot):
        """True when the film's green field is on this spot."""
        blue, green, red = self.grab(spot[0], spot[1], 1, 1)[:3]
        return green > 140 and red < 90 and blue < 130

    def film_box(self):
        """Left, top, width and height of the film on the screen, found by its magenta frame."""
        data = self.grab(0, 0, FILM_WIDTH, FILM_HEIGHT)

        def magenta(left, top):
            at = (top * FILM_WIDTH + left) * 4
            return data[at] > 170 and data[at + 1] < 90 and data[at + 2] > 170

        # Lines that are magenta for long enough belong to the frame, whatever else is magenta.
        rows = [
            y
            for y in range(FILM_HEIGHT)
            if sum(magenta(x, y) for x in range(0, FILM_WIDTH, 16)) > 10
        ]
        if not rows:
            return None
        columns = [
            x
            for x in range(FILM_WIDTH)
            if sum(magenta(x, y) for y in range(rows[0], rows[-1], 16)) > (rows[-1] - rows[0]) / 40
        ]
        if not columns:
            return None
        return columns[0], rows[0], columns[-1] - columns[0] + 1, rows[-1] - rows[0] + 1


class Player:
    """One run of a player. The class methods say how each of the two is started."""

    def __init__(self, name, command, environment=None, trace=None):
        self.name = name
        self.trace = trace
        self.told = None  # when the player itself says that its first frame was shown
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            command,
            env={**os.environ, **(environment or {})},
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL if trace else subprocess.PIPE,
            stderr=subprocess.DEVNULL,
        )
        self.reader = None
        if not trace:
            self.reader = threading.Thread(target=self.read_messages, daemon=True)
            self.reader.start()

    @classmethod
    def kestrelview(cls, program, film, home=None, traced=True):
        """`film` None: nothing is opened. `home`: a folder of make_home."""
        home = home or make_home(program, "plain")
        environment = {"KESTRELVIEW_HOME": home}
        trace = os.path.join(home, "bench-trace")
        if traced:
            environment["KESTRELVIEW_TRACE"] = trace
        return cls("kestrelview", [program] + ([film] if film else []), environment, trace)

    @classmethod
    def mpv(cls, film, box):
        """mpv without settings on the plain X output, its picture in this box of the screen."""
        left, top, width, height = box
        return cls(
            "mpv",
            ["mpv", "--no-config", "--vo=x11", "--no-border", "--msg-level=all=no,cplayer=v"]
            + ["--geometry=%dx%d+%d+%d" % (width, height, left, top), film],
        )

    def read_messages(self):
        """mpv flushes each message as it writes it, so the time of reading is the time of it."""
        for line in self.process.stdout:
            if self.told is None and b"first video frame after restart shown" in line:
                self.told = time.monotonic()

    def told_first_frame(self):
        """Seconds from the start of the process to the player's own word, or None."""
        if self.trace and os.path.exists(self.trace):
            with open(self.trace, encoding="utf-8", errors="replace") as lines:
                for line in lines:
                    fields = line.rstrip("\n").split("\t")
                    if fields[1:2] == ["first-frame"]:
                        self.told = float(fields[0])
                        break
        return None if self.told is None else self.told - self.started

    def wait_for_film(self, look):
        """Waits until `look()` gives something true; returns that and the seconds since start."""
        while True:
            found = look()
            now = time.monotonic()
            if found:
                return found, now - self.started
            if self.process.poll() is not None or now - self.started > OPEN_SECONDS:
                self.stop()
                sys.exit(self.name + " did not show the film")
            time.sleep(POLL_SECONDS)

    def cpu_seconds(self):
        """Processor time of all its threads so far, user and system."""
        with open("/proc/%d/stat" % self.process.pid, encoding="utf-8") as stat:
            fields = stat.read().rpartition(")")[2].split()
        return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")

    def running_seconds(self):
        """The same, to the nanosecond, of the threads that there are now."""
        tasks = "/proc/%d/task" % self.process.pid
        total = 0
        for task in os.listdir(tasks):
            with open(os.path.join(tasks, task, "schedstat"), encoding="utf-8") as times:
                total += int(times.read().split()[0])
        return total / 1e9

    def windows(self):
        """Identifiers of its visible windows, the main window among them."""
        return subprocess.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(self.process.pid), "--name", "."],
            capture_output=True, text=True, check=False,
        ).stdout.split()

    def wait_for_window(self):
        return self.wait_for_film(self.windows)[0]

    def call(self, method, *arguments):
        """Asks our player over the session bus, as a desktop's media keys do, once it listens."""
        limit = time.monotonic() + OPEN_SECONDS
        command = ["dbus-send", "--session", "--print-reply", "--type=method_call"]
        command += ["--dest=org.mpris.MediaPlayer2.kestrelview", "/org/mpris/MediaPlayer2"]
        while time.monotonic() < limit:
            answer = subprocess.run(
                command + [method] + list(arguments), capture_output=True, text=True, check=False
            )
            if answer.returncode == 0:
                return answer.stdout
            time.sleep(0.2)
        self.stop()
        sys.exit("The player does not answer on the bus: " + method)

    def pause(self):
        limit = time.monotonic() + OPEN_SECONDS
        state = ""
        while "Paused" not in state:
            if time.monotonic() > limit:
                self.stop()
                sys.exit("The player does not pause: " + state)
            self.call("org.mpris.MediaPlayer2.Player.Pause")
            time.sleep(0.5)
            state = self.call(
                "org.freedesktop.DBus.Properties.Get",
                "string:org.mpris.MediaPlayer2.Player", "string:PlaybackStatus",
            )

    def peak_megabytes(self):
        """The most memory that was resident at once."""
        with open("/proc/%d/status" % self.process.pid, encoding="utf-8") as status:
            return int(re.search(r"VmHWM:\s+(\d+)", status.read()).group(1)) / 1024

    def stop(self):
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        if self.reader:
            self.reader.join()
            self.process.stdout.close()


def resize(player, width, height):
    for window in player.windows():
        subprocess.run(
            ["xdotool", "windowmove", window, "20", "20", "windowsize", window,
             str(width), str(height)],
            check=True,
        )
    time.sleep(0.5)


def find_window_size(program, film, screen):
    """The size of our window at which its picture is exactly PICTURE.

    What stands beside the picture is told by a tall window, whose picture fills its width, and a
    wide one, whose picture fills its height.
    """
    player = Player.kestrelview(program, film)
    player.wait_for_film(screen.film_box)
    resize(player, 1000, 1000)
    tall = screen.film_box()
    resize(player, 1800, 600)
    wide = screen.film_box()
    player.stop()
    if not tall or not wide:
        sys.exit("The picture of %s was lost while its window was sized" % player.name)
    size = PICTURE[0] + 1000 - tall[2], PICTURE[1] + 600 - wide[3]
    print("Picture     %dx%d, our window %dx%d" % (PICTURE + size), flush=True)
    return size


def settle_picture(player, screen, window_size):
    """Gives the window this size, if any, and ends the program when the picture is not PICTURE."""
    if window_size:
        resize(player, *window_size)
    time.sleep(SETTLE_SECONDS)
    box = screen.film_box()
    if not box or max(abs(box[2] - PICTURE[0]), abs(box[3] - PICTURE[1])) > 2:
        player.stop()
        sys.exit("The picture of %s is not %dx%d: %s" % ((player.name,) + PICTURE + (box,)))


def print_machine(program, runs=RUNS):
    with open("/proc/cpuinfo", encoding="utf-8") as info:
        model = re.search(r"model name\s*: (.*)", info.read())
    with open("/etc/os-release", encoding="utf-8") as release:
        system = re.search(r'PRETTY_NAME="?([^"\n]*)', release.read()).group(1)
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    mpv = subprocess.run(["mpv", "--version"], capture_output=True, text=True, check=True).stdout
    version = "?"
    cache = os.path.join(os.path.dirname(program), "CMakeCache.txt")
    if os.path.exists(cache):
        with open(cache, encoding="utf-8") as lines:
            found = re.search(r"CMAKE_PROJECT_VERSION:STATIC=(.*)", lines.read())
            version = found.group(1) if found else "?"
    print("Machine     %s, %d cores, %.0f GB, %s, Linux %s" % (
        model.group(1) if model else platform.machine(),
        len(os.sched_getaffinity(0)), memory, system, platform.release()))
    print("Players     kestrelview %s, %s" % (version, mpv.split(" Copyright")[0]))
    print("Screen      Xvfb 1920x1080x24, openbox, pulseaudio with a null sink; %d runs each, in turn"
          % runs, flush=True)


def print_alone(what, unit, values, decimals=2):
    """Median, smallest and largest of our own."""
    print("\n%s, %s" % (what, unit))
    print("  %-12s median %8.*f   min %8.*f   max %8.*f" % (
        "kestrelview", decimals, statistics.median(values), decimals, min(values), decimals,
        max(values)), flush=True)


def print_pair(what, unit, ours, theirs, decimals=0):
    """Medians, smallest and largest of both players, and the ratio of the medians."""
    print("\n%s, %s" % (what, unit))
    for name, values in (("kestrelview", ours), ("mpv", theirs)):
        print("  %-12s median %8.*f   min %8.*f   max %8.*f" % (
            name, decimals, statistics.median(values), decimals, min(values), decimals, max(values)))
    print("  ratio        %.2f" % (statistics.median(ours) / statistics.median(theirs)), flush=True)
