"""The monkey: somebody who presses, clicks, drags, drops and answers anything, for hours.

What event number n does is drawn from the seed and n alone, and a window is chosen by its kind and
age, so the same seed does the same; how far the player has come meanwhile is up to the machine.

The player is ended and started again after some hundreds of events. In every fourth of these
sessions nothing is done that removes entries or replaces the list: then all that were on the list
have to be in the file at its end.
"""

import collections
import os
import random
import shutil
import time

from house import House, START_SECONDS
from screen import (KEY_ALT, KEY_CTRL, KEY_SHIFT, LEFT, MIDDLE, RIGHT, WHEEL_DOWN, WHEEL_UP, Screen)
from stage import Fault, read, wait_until, write
from temptations import HOSTILE_TEXTS, Larder, PLAIN_KEYS, list_keys, main_keys, serve

SESSION_EVENTS = 1000
KEEPING_EVERY = 4
FRESH_EVERY = 8  # sessions with one program folder
PULSE_EVERY = 10  # events
LOG_EVENTS = 200
NO_WINDOW_SECONDS = 20.0
FOCUS_SECONDS = 0.08  # a window behind a question does not get it at all

KIND_WEIGHTS = {"main": 6, "menu": 14, "dialog": 10, "list": 5, "search": 3}
OTHER_WEIGHT = 3
ACTIONS = {"key": 40, "click": 24, "double": 3, "wheel": 5, "drag": 9, "drop": 4, "type": 3,
           "answer": 9, "hand over": 2, "menu": 2, "resize": 1, "close": 0.4}
# What ends the program is done now and then only, or nothing else would come to pass.
RARE = 0.04
ANSWERED = 0.5  # of what is done to a dialog, or nothing else would come to pass either
# In sessions that keep the list
REMOVING_KEYS = {"Delete"}
ROWS_TOP, ROWS_BOTTOM = 0.45, 0.8  # of the list's window: neither buttons nor what else drops down


class Monkey:
    def __init__(self, stage, root, seed, events, session_events=SESSION_EVENTS, first=0):
        self.stage, self.seed, self.events = stage, seed, events
        self.session_events = session_events
        self.screen = Screen()
        self.port = serve(stage.build.media)
        self.house = House(stage, [self.port])
        self.media = stage.make_folder("media")
        self.larder = Larder(self.media, stage.build.media, self.port)
        self.keys = {"main": main_keys(root), "list": list_keys(root)}
        self.log = collections.deque(maxlen=LOG_EVENTS)
        self.counts = collections.Counter()
        self.faults = []
        self.done = first
        self.session = 0
        self.keeping = False
        self.unseen_since = None

    # --- Sessions

    def run(self, report):
        """All events; `report` is told of each fault. True when there was none."""
        while self.done < self.events:
            try:
                self.run_session()
            except Fault as fault:
                self.faults.append((self.done, str(fault)))
                report(self, str(fault))
                self.screen.release_all()
                if self.house.player:
                    self.house.player.kill()
                for left in self.house.sanitizer_reports():
                    os.unlink(left)
            self.session += 1
            print("%d events, %d starts, %d faults" %
                  (self.done, self.counts["starts"], len(self.faults)), flush=True)
        return not self.faults

    def prepare(self):
        self.keeping = self.session % KEEPING_EVERY == KEEPING_EVERY - 1
        if self.keeping or self.session % FRESH_EVERY == 0:
            shutil.rmtree(self.house.home, ignore_errors=True)
            os.makedirs(self.house.home, 0o700)
            self.house.configure(
                SavePlaylist=-1, AutoNext=-1, LastOpenFolder=self.media, PlaylistVisible=-1,
                LastSaveFolder=self.media, ShowVuMeter=-1, AutoLoadLast=-1, AutoStart=-1,
                DragDropAddsToPlaylist=-1 if self.keeping else 0)
            lists = self.stage.make_folder("home/lists")
            self.larder.lists(lists)
        self.larder.fill()
        self.kept = [os.path.join(self.larder.folder, name) for name in self.larder.names] * 2
        self.list_file = os.path.join(self.house.home, "playlist.m3u")
        if self.keeping or not os.path.exists(self.list_file):
            write(self.list_file, b"".join(entry + b"\r\n" for entry in self.kept))

    def run_session(self):
        self.prepare()
        self.log.append("-- session %d%s" % (self.session, ", keeping the list" * self.keeping))
        self.house.start()
        self.counts["starts"] += 1
        self.unseen_since = None
        last = min(self.events, self.done + self.session_events)
        while self.done < last and self.house.player.process.poll() is None:
            draw = random.Random("%s/%d" % (self.seed, self.done))
            self.done += 1
            self.step(draw)
            if self.done % PULSE_EVERY == 0:
                self.house.check_pulse()
        if self.house.player.process.poll() is not None:
            self.counts["ended by its keys"] += 1
            print("    ended after: " + " | ".join(line[:70] for line in list(self.log)[-14:]), flush=True)
        self.screen.release_all()
        self.house.end(self.answer_at_end)
        self.check_list()

    def answer_at_end(self, count):
        """Says no to what is asked while the program ends, and yes or Escape if that does not do."""
        for window in self.screen.windows():
            if window.kind in ("dialog", "menu"):
                self.focus(window)
                self.screen.key("n", [KEY_ALT])
                self.screen.key(("Escape", "Return")[count % 2])

    def check_list(self):
        data = read(self.list_file)
        if data is None:
            raise Fault("lost list: the file has gone")
        if data and not data.endswith(b"\r\n"):
            raise Fault("lost list: its last line is cut: %r" % data[-80:])
        if not self.keeping:
            return
        have = collections.Counter(data.split(b"\r\n"))
        lost = collections.Counter(self.kept) - have
        self.counts["entries kept"] += len(self.kept)
        if lost:
            raise Fault("lost list: %d of %d entries have gone, as %r" %
                        (sum(lost.values()), len(self.kept), next(iter(lost))))

    # --- Events

    def step(self, draw):
        window = self.choose(draw)
        if window is None:
            return
        action = draw.choices(list(ACTIONS), list(ACTIONS.values()))[0]
        if window.kind == "menu" and action in ("drop", "resize", "close", "drag", "menu"):
            action = "click"
        if self.keeping and window.kind == "dialog" and action not in ("hand over", "resize"):
            action = "type" if action == "type" else "refuse"
        elif window.kind == "dialog" and draw.random() < ANSWERED:
            action = "answer"
        self.counts[action] += 1
        detail = getattr(self, "do_" + action.replace(" ", "_"))(draw, window)
        self.log.append("%d %s on %s: %s" % (self.done, action, window, detail))
        time.sleep(draw.choice((0, 0, 0, 0.01, 0.01, 0.03, 0.1)))

    def choose(self, draw):
        """A window of the player, the more often the more it stands in the way of the others."""
        windows = self.screen.windows()
        if not windows:
            self.wait_for_window()
            return None
        self.unseen_since = None
        weights = [KIND_WEIGHTS.get(window.kind, OTHER_WEIGHT) for window in windows]
        return draw.choices(windows, weights)[0]

    def wait_for_window(self):
        """Windows may be away for a moment or as icons, but not for long."""
        now = time.monotonic()
        self.unseen_since = self.unseen_since or now
        for window in self.screen.property(self.screen.root.value, "_NET_CLIENT_LIST"):
            self.screen.activate(window)
        time.sleep(0.1)
        player = self.house.player
        if now - self.unseen_since > NO_WINDOW_SECONDS + START_SECONDS * player.seen("quit"):
            if player.process.poll() is None:
                raise Fault("no window for %.0f s" % (now - self.unseen_since))

    def focus(self, window):
        if window.kind == "menu" or self.screen.focused() == window.number:
            return
        self.screen.activate(window.number)
        wait_until(lambda: self.screen.focused() == window.number, FOCUS_SECONDS)

    def do_key(self, draw, window):
        keys = self.keys.get(window.kind, self.keys["main"] if draw.random() < 0.2 else None)
        if keys is None or draw.random() < 0.25:
            name = draw.choice(PLAIN_KEYS)
            modifiers = draw.choice(((), (), (), (KEY_SHIFT,), (KEY_CTRL,), (KEY_ALT,)))
        else:
            name, modifiers = draw.choice(keys)
        times = draw.choice((1, 1, 1, 1, 2, 5))
        rare = draw.random() < RARE
        ends = name == "Escape" and window.kind == "main" or name == "F4" and KEY_ALT in modifiers
        manager = KEY_ALT in modifiers and name in ("space", "Escape", "Tab")
        if ends and not rare or manager or self.keeping and name in REMOVING_KEYS:
            name, modifiers = "Down", ()
        # On the list's window Ctrl+O, and in the main one Ctrl+O and an address, lead to dialogs,
        # which are refused where the list is to be kept.
        self.focus(window)
        for _ in range(times):
            self.screen.key(name, modifiers)
        return "%s%s x%d" % ("+".join((*modifiers, "")), name, times)

    def place(self, draw, window):
        x, y = draw.random(), draw.random()
        if self.keeping and window.kind == "list":
            y = ROWS_TOP + y * (ROWS_BOTTOM - ROWS_TOP)
        elif draw.random() < 0.3:
            y = 1.0 - y * y * 0.3  # the panels of the main window
        return (window.x + int(x * max(1, window.width - 1)),
                window.y + int(y * max(1, window.height - 1)))

    def aim(self, draw, window):
        """Points into a window; false when something else is in front of it there."""
        self.focus(window)
        x, y = self.place(draw, window)
        width, height = self.screen.size()
        if not (0 <= x < width and 0 <= y < height):
            return None
        self.screen.point(x, y)
        return (x - window.x, y - window.y) if self.screen.is_on_top(window.number, x, y) else None

    def button(self, draw, window):
        button = draw.choices((LEFT, RIGHT, MIDDLE), (12, 4, 1))[0]
        return LEFT if self.keeping and window.kind == "list" else button

    def do_click(self, draw, window, times=1):
        button = self.button(draw, window)
        at = self.aim(draw, window)
        if at is None:
            return "covered"
        modifiers = draw.choice(((), (), (), (), (KEY_SHIFT,), (KEY_CTRL,)))
        for name in modifiers:
            self.screen.hold(name, True)
        self.screen.click(button, times)
        for name in modifiers:
            self.screen.hold(name, False)
        return "button %d at %s" % (button, at)

    def do_double(self, draw, window):
        return self.do_click(draw, window, 2)

    def do_wheel(self, draw, window):
        at = self.aim(draw, window)
        if at is None:
            return "covered"
        button = draw.choice((WHEEL_UP, WHEEL_DOWN))
        self.screen.click(button, draw.choice((1, 2, 10)))
        return "%d at %s" % (button, at)

    def do_drag(self, draw, window):
        button = self.button(draw, window)
        if draw.random() < 0.1 and not self.keeping:  # an edge of its frame
            self.focus(window)
            self.screen.point(window.x + window.width, window.y + window.height)
            button = LEFT
            at = "edge"
        else:
            at = self.aim(draw, window)
            if at is None:
                return "covered"
        self.screen.press(button, True)
        x, y = self.place(draw, window)
        for part in range(1, draw.choice((2, 4, 12))):
            self.screen.point(x + part * draw.randint(-20, 20), y + part * draw.randint(-8, 8))
            time.sleep(draw.choice((0, 0.002)))
        if draw.random() < 0.05:
            self.screen.key("Escape" if window.kind != "main" else "Tab")
        self.screen.press(button, False)
        return "button %d from %s" % (button, at)

    def uri(self, draw):
        path = self.larder.path(draw)
        return b"file://" + b"".join(
            b"%c" % byte if chr(byte).isalnum() and byte < 128 or byte in b"/._-" else b"%%%02X" % byte
            for byte in path)

    def do_drop(self, draw, window):
        kind = draw.random()
        if kind < 0.6 or self.keeping:
            lines = [self.uri(draw) for _ in range(draw.choice((1, 1, 2, 10, 60)))]
            formats = {"text/uri-list": b"\r\n".join(lines) + b"\r\n"}
        elif kind < 0.7:
            folder = draw.choice((self.media, self.stage.path("home", "lists"), "/nowhere"))
            formats = {"text/uri-list": b"file://" + folder.encode() + b"\r\n"}
        else:
            text = draw.choice(HOSTILE_TEXTS)
            if draw.random() < 0.3:
                text = b"http://127.0.0.1:%d/" % self.port + draw.choice(
                    (b"tone.mp3", b"hang", b"cut", b"none"))
            formats = {draw.choice(("text/uri-list", "text/plain", "UTF8_STRING")): text}
        self.focus(window)
        x, y = self.place(draw, window)
        self.screen.point(max(0, x), max(0, y))
        taken = self.screen.drop(window.number, x, y, formats)
        return "%s %s" % (dict(list(formats.items())[:1]), "" if taken else "unanswered")

    def do_hand_over(self, draw, window):
        text = b'"%s"' % self.larder.path(draw)
        if draw.random() < 0.3 and not self.keeping:
            text = draw.choice(HOSTILE_TEXTS)
        self.house.hand_over(text)
        return repr(text[:80])

    def name(self, draw):
        name = os.fsdecode(draw.choice(self.larder.names))
        if self.keeping:
            return os.path.join(self.media, name)
        return draw.choice((
            name, os.path.join(self.media, name), "new%d.m3u" % draw.randint(0, 5),
            os.path.join(self.house.home, "lists", draw.choice(
                ("good.m3u", "relative.m3u8", "radio.m3u", "hostile.m3u", "long.m3u", "nul.m3u",
                 "utf16.m3u", "list.asx", "list.pls", "self.m3u"))),
            "http://127.0.0.1:%d/%s" % (self.port, draw.choice(("tone.mp3", "hang", "none"))),
            "..", "/", "%s%n", "-1", "99999999999", "*", "~/x", "/dev/null", ""))

    def do_type(self, draw, window):
        name = self.name(draw).split("\n")[0]
        self.focus(window)
        if window.kind in ("main", "menu"):
            return "left out"
        if draw.random() < 0.7:
            self.screen.key("a", [KEY_CTRL])
        if self.keeping and window.kind == "list":
            return "left out"
        self.screen.type(name[:120])
        if draw.random() < 0.7:
            self.screen.key("Return")
        return name

    def do_answer(self, draw, window):
        """What closes boxes and menus: their own keys."""
        if window.kind == "main":
            return self.do_key(draw, window)
        self.focus(window)
        name, modifiers = draw.choice((
            ("Return", ()), ("Return", ()), ("Escape", ()), ("Escape", ()), ("y", (KEY_ALT,)),
            ("n", (KEY_ALT,)), ("o", (KEY_ALT,)), ("c", (KEY_ALT,)), ("Tab", ()), ("Down", ())))
        self.screen.key(name, modifiers)
        return "%s%s" % ("+".join((*modifiers, "")), name)

    def do_menu(self, draw, window):
        """The menu of the player, from where it stands in the panel or in the list."""
        if window.kind == "list":
            return self.do_click(draw, window)
        self.focus(window)
        self.screen.key("F12")
        return "F12"

    def do_refuse(self, draw, window):
        self.focus(window)
        if draw.random() < 0.5:
            self.screen.key("n", [KEY_ALT])
        self.screen.key("Escape")
        return "no"

    def do_resize(self, draw, window):
        width, height = self.screen.size()
        box = (draw.randint(-50, width - 100), draw.randint(-20, height - 100),
               draw.randint(1, width), draw.randint(1, height))
        self.screen.move_resize(window.number, *box)
        return str(box)

    def do_close(self, draw, window):
        if window.kind == "main" and draw.random() > 0.2:
            return "left out"
        self.screen.close(window.number)
        return "by the window manager"
