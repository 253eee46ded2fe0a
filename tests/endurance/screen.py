"""The screen as a user has it: the player's windows, a keyboard and a pointer.

Real events by the XTEST extension, so that they go through the X server, the window manager and
the toolkit like anybody's. One connection, no program for each event.
"""

import ctypes
import os
import time

KEY_SHIFT, KEY_CTRL, KEY_ALT = "Shift_L", "Control_L", "Alt_L"
LEFT, MIDDLE, RIGHT, WHEEL_UP, WHEEL_DOWN = 1, 2, 3, 4, 5
SMALLEST_MENU = 10  # pixels; the toolkit has windows of its own, too

Window = ctypes.c_ulong
Atom = ctypes.c_ulong


class ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", Window), ("message_type", Atom),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5)]


class SelectionRequest(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("owner", Window), ("requestor", Window),
                ("selection", Atom), ("target", Atom), ("property", Atom), ("time", ctypes.c_ulong)]


class SelectionNotify(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("requestor", Window), ("selection", Atom),
                ("target", Atom), ("property", Atom), ("time", ctypes.c_ulong)]


class Event(ctypes.Union):
    _fields_ = [("type", ctypes.c_int), ("client", ClientMessage), ("request", SelectionRequest),
                ("notify", SelectionNotify), ("pad", ctypes.c_long * 24)]


class Attributes(ctypes.Structure):
    _fields_ = [("x", ctypes.c_int), ("y", ctypes.c_int), ("width", ctypes.c_int),
                ("height", ctypes.c_int), ("border_width", ctypes.c_int), ("depth", ctypes.c_int),
                ("visual", ctypes.c_void_p), ("root", Window), ("class_", ctypes.c_int),
                ("bit_gravity", ctypes.c_int), ("win_gravity", ctypes.c_int),
                ("backing_store", ctypes.c_int), ("backing_planes", ctypes.c_ulong),
                ("backing_pixel", ctypes.c_ulong), ("save_under", ctypes.c_int),
                ("colormap", ctypes.c_ulong), ("map_installed", ctypes.c_int),
                ("map_state", ctypes.c_int), ("all_event_masks", ctypes.c_long),
                ("your_event_mask", ctypes.c_long), ("do_not_propagate_mask", ctypes.c_long),
                ("override_redirect", ctypes.c_int), ("screen", ctypes.c_void_p)]


MAPPED = 2


class PlayerWindow:
    """One visible window: its number on the server, title, kind and where it stands."""

    def __init__(self, number, title, kind, x, y, width, height):
        self.number, self.title, self.kind = number, title, kind
        self.x, self.y, self.width, self.height = x, y, width, height

    def __str__(self):
        return "%s \"%s\"" % (self.kind, self.title)


def kind_of(overlay, dialog, title):
    """Which room of the player a window is; what the choice of a target goes by."""
    if overlay:
        return "menu"
    for beginning, kind in (("Kestrelview - Playlist", "list"), ("Search in", "search"),
                            ("Kestrelview - Quick", "search"), ("Options", "options"),
                            ("ColorChanger", "colours"), ("Help -", "help"), ("About", "about"),
                            ("Kestrelview - Plugin", "plugins"), ("Kestrelview - Adding", "scan")):
        if title.startswith(beginning):
            return kind
    if dialog:
        return "dialog"
    return "meter" if title.endswith(" - Kestrelview") else "main"


class Screen:
    def __init__(self):
        self.x11 = ctypes.CDLL("libX11.so.6")
        self.xtst = ctypes.CDLL("libXtst.so.6")
        for name in ("XOpenDisplay", "XDefaultRootWindow", "XInternAtom", "XStringToKeysym",
                     "XCreateSimpleWindow"):
            getattr(self.x11, name).restype = ctypes.c_ulong
        self.x11.XOpenDisplay.restype = ctypes.c_void_p
        self.display = ctypes.c_void_p(self.x11.XOpenDisplay(None))
        if not self.display:
            raise OSError("no X server")
        # Windows come and go while they are asked about: an answer that does not come is none.
        handler = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)
        self.ignore = handler(lambda _display, _error: 0)
        self.x11.XSetErrorHandler(self.ignore)
        self.root = Window(self.x11.XDefaultRootWindow(self.display))
        self.atoms = {}

    # --- Windows

    def atom(self, name):
        if name not in self.atoms:
            self.atoms[name] = self.x11.XInternAtom(self.display, name.encode(), 0)
        return self.atoms[name]

    def property(self, window, name):
        """Its value as a tuple of numbers, or as bytes where it is of bytes; () without it."""
        kind, form = Atom(), ctypes.c_int()
        count, rest, data = ctypes.c_ulong(), ctypes.c_ulong(), ctypes.c_void_p()
        failed = self.x11.XGetWindowProperty(
            self.display, Window(window), Atom(self.atom(name)), ctypes.c_long(0),
            ctypes.c_long(4096), 0, Atom(0), ctypes.byref(kind), ctypes.byref(form),
            ctypes.byref(count), ctypes.byref(rest), ctypes.byref(data))
        if failed or not data.value:
            return ()
        try:
            if form.value == 8:
                return ctypes.string_at(data, count.value)
            return tuple(ctypes.cast(data, ctypes.POINTER(ctypes.c_ulong))[:count.value])
        finally:
            self.x11.XFree(data)

    def text(self, window, name):
        value = self.property(window, name)
        return value.decode(errors="replace") if isinstance(value, bytes) else ""

    def attributes(self, window):
        result = Attributes()
        if not self.x11.XGetWindowAttributes(self.display, Window(window), ctypes.byref(result)):
            return None
        return result

    def children(self, window):
        root, parent, count = Window(), Window(), ctypes.c_uint()
        list_ = ctypes.POINTER(Window)()
        if not self.x11.XQueryTree(self.display, window, ctypes.byref(root), ctypes.byref(parent),
                                   ctypes.byref(list_), ctypes.byref(count)):
            return []
        result = list(list_[:count.value])
        if list_:
            self.x11.XFree(list_)
        return result

    def windows(self):
        """The player's visible windows, the oldest first, its open menus last."""
        managed = [(window, False) for window in self.property(self.root.value, "_NET_CLIENT_LIST")]
        menus = [(window, True) for window in self.children(self.root)]
        tip = self.atom("_NET_WM_WINDOW_TYPE_TOOLTIP")
        dialog = self.atom("_NET_WM_WINDOW_TYPE_DIALOG")
        result = []
        for window, overlay in managed + menus:
            about = self.attributes(window)
            if not about or about.map_state != MAPPED or overlay != bool(about.override_redirect):
                continue
            if "kestrelview" not in self.text(window, "WM_CLASS"):
                continue
            types = self.property(window, "_NET_WM_WINDOW_TYPE")
            if overlay and (tip in types or about.height < SMALLEST_MENU):
                continue
            title = self.text(window, "_NET_WM_NAME")
            x, y = self.position(window)
            result.append(PlayerWindow(window, title, kind_of(overlay, dialog in types, title),
                                       x, y, about.width, about.height))
        return result

    def position(self, window):
        x, y, child = ctypes.c_int(), ctypes.c_int(), Window()
        self.x11.XTranslateCoordinates(self.display, Window(window), self.root, 0, 0,
                                       ctypes.byref(x), ctypes.byref(y), ctypes.byref(child))
        return x.value, y.value

    def is_on_top(self, window, x, y):
        """Whether what is at a place of the screen belongs to this window."""
        at, child = self.root, Window()
        a, b = ctypes.c_int(), ctypes.c_int()
        for _ in range(8):
            self.x11.XTranslateCoordinates(self.display, self.root, at, x, y, ctypes.byref(a),
                                           ctypes.byref(b), ctypes.byref(child))
            if child.value == window:
                return True
            if not child.value:
                return False
            at = Window(child.value)
        return False

    def tell_manager(self, window, message, *values):
        self.send_message(self.root.value, 0x180000, window, message, values)

    def send_message(self, receiver, mask, window, message, values):
        event = Event()
        event.client.type = 33
        event.client.window = window
        event.client.message_type = self.atom(message)
        event.client.format = 32
        for i, value in enumerate(values):
            event.client.data[i] = value
        self.x11.XSendEvent(self.display, Window(receiver), 0, ctypes.c_long(mask),
                            ctypes.byref(event))
        self.flush()

    def activate(self, window):
        self.tell_manager(window, "_NET_ACTIVE_WINDOW", 2, 0, 0)

    def close(self, window):
        self.tell_manager(window, "_NET_CLOSE_WINDOW", 0, 2)

    def move_resize(self, window, x, y, width, height):
        self.x11.XMoveResizeWindow(self.display, Window(window), x, y, width, height)
        self.flush()

    def focused(self):
        return (self.property(self.root.value, "_NET_ACTIVE_WINDOW") or (0,))[0]

    def size(self):
        about = self.attributes(self.root.value)
        return about.width, about.height

    def flush(self):
        self.x11.XSync(self.display, 0)

    # --- Keyboard and pointer

    def key_code(self, name):
        symbol = self.x11.XStringToKeysym(os.fsencode(name))
        if not symbol:
            return 0
        return self.x11.XKeysymToKeycode(self.display, ctypes.c_ulong(symbol)) & 0xFF

    def key(self, name, modifiers=()):
        code = self.key_code(name)
        if not code:
            return
        held = [self.key_code(modifier) for modifier in modifiers]
        for each in held + [code]:
            self.xtst.XTestFakeKeyEvent(self.display, each, 1, ctypes.c_ulong(0))
        for each in [code] + held[::-1]:
            self.xtst.XTestFakeKeyEvent(self.display, each, 0, ctypes.c_ulong(0))
        self.flush()

    def hold(self, name, down):
        self.xtst.XTestFakeKeyEvent(self.display, self.key_code(name), int(down), ctypes.c_ulong(0))

    def type(self, text):
        """Plain characters of the keyboard; others are left out."""
        names = {" ": "space", "/": "slash", ".": "period", "-": "minus", "_": "underscore",
                 ":": "colon", "*": "asterisk", "?": "question", "%": "percent", "~": "asciitilde",
                 "\\": "backslash", ",": "comma", "'": "apostrophe", '"': "quotedbl"}
        for character in text:
            shift = character.isupper() or character in ':_*?%~"'
            self.key(names.get(character, character), [KEY_SHIFT] if shift else [])

    def point(self, x, y):
        self.xtst.XTestFakeMotionEvent(self.display, -1, x, y, ctypes.c_ulong(0))
        self.flush()

    def press(self, button, down):
        self.xtst.XTestFakeButtonEvent(self.display, button, int(down), ctypes.c_ulong(0))
        self.flush()

    def click(self, button, times=1):
        for _ in range(times):
            self.press(button, True)
            self.press(button, False)

    def release_all(self):
        """Nothing stays pressed, whatever was going on."""
        for button in (LEFT, MIDDLE, RIGHT):
            self.press(button, False)
        for name in (KEY_SHIFT, KEY_CTRL, KEY_ALT):
            self.xtst.XTestFakeKeyEvent(self.display, self.key_code(name), 0, ctypes.c_ulong(0))
        self.flush()

    # --- Dragging from another program (XDND version 5)

    def drop(self, window, x, y, formats, patience=1.0):
        """Drags `formats`, a table of type and bytes, over a window and drops it there.

        True when the window took it, or let go of it, in time.
        """
        source = self.x11.XCreateSimpleWindow(self.display, self.root, 0, 0, 1, 1, 0,
                                              ctypes.c_ulong(0), ctypes.c_ulong(0))
        try:
            return self.drop_from(source, window, x, y, formats, patience)
        finally:
            self.x11.XDestroyWindow(self.display, Window(source))
            self.flush()

    def drop_from(self, source, window, x, y, formats, patience):
        selection = self.atom("XdndSelection")
        self.x11.XSetSelectionOwner(self.display, Atom(selection), Window(source),
                                    ctypes.c_ulong(0))
        types = [self.atom(name) for name in formats][:3]
        self.send(window, "XdndEnter", source, 5 << 24, *types)
        self.send(window, "XdndPosition", source, 0, x << 16 | y, 0, self.atom("XdndActionCopy"))
        status = self.serve(source, "XdndStatus", formats, patience)
        if status is None or not status.data[1] & 1:
            self.send(window, "XdndLeave", source, 0)
            return status is not None
        self.send(window, "XdndDrop", source, 0, 0)
        return self.serve(source, "XdndFinished", formats, patience) is not None

    def send(self, window, message, *values):
        self.send_message(window, 0, window, message, values)

    def serve(self, source, awaited, formats, patience):
        """Hands out what is dragged until `awaited` comes; None when it does not."""
        limit = time.monotonic() + patience
        event = Event()
        while time.monotonic() < limit:
            if not self.x11.XPending(self.display):
                time.sleep(0.002)
                continue
            self.x11.XNextEvent(self.display, ctypes.byref(event))
            if event.type == 30 and event.request.owner == source:
                self.hand_out(event.request, formats)
            elif event.type == 33 and event.client.message_type == self.atom(awaited):
                return event.client
        return None

    def hand_out(self, request, formats):
        answer = Event()
        answer.notify.type = 31
        answer.notify.requestor = request.requestor
        answer.notify.selection = request.selection
        answer.notify.target = request.target
        for name, data in formats.items():
            if request.target == self.atom(name):
                self.x11.XChangeProperty(self.display, Window(request.requestor),
                                         Atom(request.property), Atom(request.target), 8, 0,
                                         data, len(data))
                answer.notify.property = request.property
        self.x11.XSendEvent(self.display, Window(request.requestor), 0, ctypes.c_long(0),
                            ctypes.byref(answer))
        self.flush()
