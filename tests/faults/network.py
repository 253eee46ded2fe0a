"""Servers that hang, cut, crawl and lie, on the loopback."""

import socket
import threading
import time

from saving import close_box
from stage import ANSWER_SECONDS, read, require

PIECE = 16384


class LyingServer:
    """Answers each request by `tell(connection, body)`, on a thread of its own."""

    def __init__(self, stage, tell):
        self.body = read(stage.medium("film25.mkv"))
        self.tell = tell
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.connections = []
        self.open = True
        stage.at_end(self.close)
        threading.Thread(target=self.accept, daemon=True).start()

    def url(self):
        return "http://127.0.0.1:%d/film.mkv" % self.listener.getsockname()[1]

    def accept(self):
        while self.open:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            self.connections.append(connection)
            threading.Thread(target=self.serve, args=[connection], daemon=True).start()

    def serve(self, connection):
        try:
            request = b""
            while b"\r\n\r\n" not in request:
                piece = connection.recv(PIECE)
                if not piece:
                    return
                request += piece
            self.tell(self, connection)
            connection.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass  # the player has gone
        finally:
            connection.close()

    def head(self, connection, length, status="200 OK", more=""):
        connection.sendall(("HTTP/1.1 %s\r\nContent-Type: video/x-matroska\r\n"
                            "Content-Length: %s\r\nConnection: close\r\n%s\r\n" %
                            (status, length, more)).encode())

    def wait(self):
        while self.open:
            time.sleep(0.05)

    def close(self):
        self.open = False
        self.listener.close()
        for connection in self.connections:
            connection.close()


def says_nothing(server, _connection):
    server.wait()


def hangs(server, connection):
    server.head(connection, len(server.body))
    server.wait()


def hangs_in_the_middle(server, connection):
    server.head(connection, len(server.body))
    connection.sendall(server.body[:len(server.body) // 3])
    server.wait()


def is_cut(server, connection):
    server.head(connection, len(server.body))
    connection.sendall(server.body[:len(server.body) // 2])


def crawls(server, connection):
    server.head(connection, len(server.body))
    for begin in range(0, len(server.body), 100):
        if not server.open:
            return
        connection.sendall(server.body[begin:begin + 100])
        time.sleep(0.1)


def tells_length(length):
    def tell(server, connection):
        server.head(connection, length(len(server.body)))
        connection.sendall(server.body)
    return tell


def redirects_forever(server, connection):
    server.head(connection, 0, "302 Found", "Location: %s\r\n" % server.url())


def never_ends_its_header(server, connection):
    connection.sendall(b"HTTP/1.1 200 OK\r\n")
    number = 0
    while server.open:
        number += 1
        connection.sendall(b"".join(b"X-%d-%d: %s\r\n" % (number, i, b"x" * 200)
                                    for i in range(50)))
        time.sleep(0.01)


def sends_a_header_line_without_end(server, connection):
    connection.sendall(b"HTTP/1.1 200 OK\r\nX: ")
    while server.open:
        connection.sendall(b"x" * PIECE)
        time.sleep(0.01)


def in_trouble(tell, text):
    def run(stage, _times):
        server = LyingServer(stage, tell)
        player = stage.player(stage.home())
        player.hand_over(server.url())
        worst = player.stays_alive(3.0)
        close_box()  # what could not be opened is told
        opened = player.opens(stage.medium("tone.flac"), 3.0)
        player.hand_over(server.url())
        time.sleep(1.0)
        require(player.answer_seconds() < ANSWER_SECONDS, "the window does not answer")
        taken = player.end()
        return "window within %.2f s, next medium in %.1f s, ends in %.1f s" % (
            worst, opened, taken)
    run.__doc__ = "a server that " + text
    return run


CASES = {
    "net-" + name: in_trouble(tell, text) for name, tell, text in (
        ("silent", says_nothing, "accepts and says nothing"),
        ("hang", hangs, "sends a header and nothing more"),
        ("hang-middle", hangs_in_the_middle, "stops in the middle"),
        ("cut", is_cut, "cuts the connection in the middle"),
        ("slow", crawls, "sends 1 kB a second"),
        ("length-long", tells_length(lambda size: 2 * size), "promises twice as much"),
        ("length-short", tells_length(lambda size: size // 2), "promises half"),
        ("length-negative", tells_length(lambda size: -size), "promises a negative length"),
        ("length-huge", tells_length(lambda size: 10 ** 30), "promises 10 to the 30th"),
        ("redirect", redirects_forever, "redirects to itself"),
        ("header", never_ends_its_header, "never ends its header"),
        ("header-line", sends_a_header_line_without_end, "never ends a line of its header"),
    )
}
