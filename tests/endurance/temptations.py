"""What the monkey finds: keys to press, names to type, things to drop, media good and bad."""

import http.server
import os
import re
import shutil
import socket
import threading
import time

from screen import KEY_ALT, KEY_CTRL, KEY_SHIFT

# As the tables of the player name them, and as the keyboard does.
KEY_NAMES = {
    "kKeyBackspace": "BackSpace", "kKeyEnter": "Return", "kKeyShift": "Shift_L",
    "kKeyCtrl": "Control_L", "kKeyEsc": "Escape", "kKeySpace": "space", "kKeyPageUp": "Prior",
    "kKeyPageDown": "Next", "kKeyEnd": "End", "kKeyHome": "Home", "kKeyLeft": "Left",
    "kKeyRight": "Right", "kKeyDelete": "Delete", "kKeyF1": "F1", "kKeyF12": "F12",
    "kKeypadAdd": "KP_Add", "kKeypadSubtract": "KP_Subtract", "Del": "Delete", "Esc": "Escape",
    "Enter": "KP_Enter",
}
MODIFIERS = {"kNone": (), "kShiftKey": (KEY_SHIFT,), "kCtrlKey": (KEY_CTRL,), "kAltKey": (KEY_ALT,),
             "kShiftCtrl": (KEY_SHIFT, KEY_CTRL), "Ctrl": (KEY_CTRL,), "Shift": (KEY_SHIFT,),
             "Alt": (KEY_ALT,)}
PLAIN_KEYS = ("Tab", "Up", "Down", "Left", "Right", "Return", "space", "Home", "End", "Prior",
              "Next", "Menu", "BackSpace", "Insert", "F2", "F4", "F6", "F8", "F10", "a", "e", "m",
              "x", "5", "0", "plus", "minus", "comma", "Shift_L", "Alt_L")


def main_keys(root):
    """The keys of the main window, each with its modifiers, from the player's own table."""
    with open(os.path.join(root, "src", "view", "key_table.cpp"), encoding="utf-8") as file:
        text = file.read()
    rows = re.findall(r"\b(kNone|kShiftKey|kCtrlKey|kShiftCtrl|kAltKey), ('.'|k\w+)", text)
    rows += [("kNone", key) for key in re.findall(r"FlipItem\(('.')", text)]
    keys = [(KEY_NAMES.get(key, key.strip("'").lower()), MODIFIERS[shift]) for shift, key in rows]
    if len(keys) < 40:
        raise ValueError("the table of keys is not where it was")
    return keys


def list_keys(root):
    """The keys of the list's window."""
    path = os.path.join(root, "src", "playlist", "playlist_commands.h")
    with open(path, encoding="utf-8") as file:
        rows = re.findall(r'\{"([\w+]+)", ListCommand::k', file.read().partition("kListKeys")[2])
    if len(rows) < 15:
        raise ValueError("the table of the list's keys is not where it was")
    keys = []
    for row in rows:
        *modifiers, key = row.split("+")
        name = KEY_NAMES.get(key, key.lower() if len(key) == 1 else key)
        keys.append((name, tuple(MODIFIERS[each][0] for each in modifiers)))
    return keys


ODD_NAMES = (b"blank name.mp3", b"per%20cent.wav", b"hash#mark.ogg", b"not\xff\xfeutf8.mp3",
             b"new\nline.wav", b"quote'\".flac", "überlänge ☃.mkv".encode(), b"-dash.mp3",
             b"UPPER.MP3", b"a" * 200 + b".wav")
HOSTILE_TEXTS = (
    b"", b"\0", b"\xff\xfe\xfd", b"file://", b"file:///", b"file://elsewhere/etc/passwd",
    b"file:///%00", b"file:///dev/zero", b"file:///dev/stdin", b"file:///proc/self/mem",
    b"av://lavfi:testsrc", b"edl:///etc/passwd", b"memory://x", b"fd://0", b"javascript:alert(1)",
    b"http://", b"http://[::1", b"data:audio/wav;base64,AAAA", b"\r\n" * 500,
    b"file:///" + b"a/" * 3000, b"%s%n%x" * 30, "file:///☃\u202egpj.mp3".encode(),
)


class Larder:
    """A folder of media and lists that is filled up again whenever the monkey has eaten from it."""

    def __init__(self, folder, media, port):
        self.folder, self.media, self.port = os.fsencode(folder), os.fsencode(media), port
        self.names = []
        self.fill()

    def fill(self):
        os.makedirs(os.path.join(self.folder, b"more"), exist_ok=True)
        names = sorted(name for name in os.listdir(self.media) if not name.endswith(b".tsv"))
        sources = [(name, name) for name in names]
        by_ending = {os.path.splitext(name)[1]: name for name in names}
        for odd in ODD_NAMES:
            source = by_ending.get(os.path.splitext(odd)[1].lower(), names[0])
            sources.append((source, odd))
        sources += [(name, os.path.join(b"more", name)) for name in names[::3]]
        self.names = [name for _, name in sources]
        for source, name in sources:
            self.put(name, lambda path, source=source: shutil.copy(
                os.path.join(self.media, source), path))
        self.put(b"noise.mp3", lambda path: self.write(path, bytes(range(256)) * 300))
        self.put(b"empty.wav", lambda path: self.write(path, b""))
        self.names += [b"noise.mp3", b"empty.wav", b"missing.mp3", b"more/missing.mkv"]
        for folder, _, files in os.walk(self.folder):
            for name in files:
                path = os.path.join(folder, name)
                if not os.path.islink(path):
                    os.chmod(path, 0o600)

    def put(self, name, make):
        path = os.path.join(self.folder, name)
        if os.path.lexists(path):
            return
        try:
            make(path)
        except OSError:
            pass  # the monkey may have made a folder of that name

    @staticmethod
    def write(path, data):
        with open(path, "wb") as file:
            file.write(data)

    def lists(self, folder):
        """Lists of many kinds, hostile ones among them, in a folder of their own."""
        media = [os.path.join(self.folder, name) for name in self.names if b"\n" not in name]
        address = b"http://127.0.0.1:%d/" % self.port
        for name, data in (
                (b"good.m3u", b"#EXTM3U\n" + b"\n".join(media)),
                (b"relative.m3u8", b"\r\n".join(b"../media/" + os.path.basename(x) for x in media)),
                (b"radio.m3u", address + b"tone.mp3\n" + address + b"hang\n" + address + b"none\n"),
                (b"hostile.m3u", b"\n".join(HOSTILE_TEXTS)),
                (b"self.m3u", b"self.m3u\n" * 50),
                (b"long.m3u", b"\n".join(b"/nowhere/%d.mp3" % i for i in range(10050))),
                (b"nul.m3u", bytes(2000)), (b"utf16.m3u", "\ufeff/x.mp3\n".encode("utf-16")),
                (b"list.asx", b'<asx version="3"><entry><ref href="' + address + b'tone.wav"/>'),
                (b"list.pls", b"[playlist]\nFile1=" + media[0] + b"\nNumberOfEntries=1\n")):
            self.write(os.path.join(os.fsencode(folder), name), data)

    def path(self, draw):
        return os.path.join(self.folder, draw.choice(self.names))


class Web(http.server.BaseHTTPRequestHandler):
    """A server that is well for some addresses and ill for others."""

    folder = b""
    protocol_version = "HTTP/1.0"

    def do_GET(self):
        name = self.path.strip("/")
        try:
            if name == "hang":
                time.sleep(20)
            elif name == "cut":
                self.send_response(200)
                self.send_header("Content-Length", "1000000")
                self.end_headers()
                self.wfile.write(b"RIFF" + bytes(3000))
            elif "/" not in name and os.path.isfile(os.path.join(self.folder, name.encode())):
                with open(os.path.join(self.folder, name.encode()), "rb") as file:
                    data = file.read()
                self.send_response(200)
                self.send_header("Content-Length", str(len(data)))
                self.end_headers()
                self.wfile.write(data)
            else:
                self.send_error(404)
        except OSError:
            pass  # the player has hung up

    def log_message(self, *_):
        pass


def serve(folder):
    """Starts the server on the loopback; its port."""
    Web.folder = os.fsencode(folder)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Web)
    server.daemon_threads = True
    server.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]
