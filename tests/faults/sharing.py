"""Two players with one program folder: the last one wins, whole."""

import os
import signal
import time

from stage import require

MEDIA = ("film1.mkv", "tone.flac")


def look(stage, home):
    """The settings are those of one of the two, to their last field."""
    current = stage.setting(home, "CurrentFile")
    require(current in [stage.medium(name) for name in MEDIA], "CurrentFile is \"%s\"" % current)
    recent = stage.setting(home, "RecentFiles")
    require(recent == current, "settings of both are mixed: %s, %s" % (current, recent))
    require(stage.setting(home, "SilentSizing") == "-1", "the last field is lost")
    more = [name for name in os.listdir(home) if name.startswith(".kestrelview-")]
    require(not more, "left behind: %s" % more)
    return os.path.basename(current)


def fill(stage, name="home"):
    path = stage.path("list.m3u")
    with open(path, "w", encoding="utf-8") as file:
        file.write("".join(stage.medium(medium) + "\r\n" for medium in MEDIA))
    return stage.home(name, SilentSizing=-1, AutoLoadLast=-1, SavePlaylist=-1, PlaylistFile=path)


def two(stage, times):
    """two players that do not see each other end at the same moment"""
    rounds = max(1, times // 10)
    winners = []
    for number in range(rounds):
        home = fill(stage)
        players = [stage.player(home, medium=stage.medium(name), runtime="runtime-%d" % i)
                   for i, name in enumerate(MEDIA)]
        for player, name in zip(players, MEDIA):
            player.wait_for("open", stage.medium(name))
        for player in stage.random.sample(players, 2):
            player.ask_to_end()
            time.sleep(stage.random.random() * 0.02)
        for player in players:
            player.end(5.0)
        winners.append(look(stage, home))
        with open(stage.path("list.m3u"), encoding="utf-8") as file:
            require(file.read().count("\n") >= len(MEDIA), "the playlist lost entries")
    return "%d rounds, last one wins: %s" % (
        rounds, ", ".join("%s %d" % (name, winners.count(name)) for name in MEDIA))


def stopped(stage, _times):
    """a start beside a player that has stopped answering"""
    home = fill(stage)
    first = stage.player(home, medium=stage.medium(MEDIA[0]))
    first.wait_for("open")
    first.process.send_signal(signal.SIGSTOP)
    begin = time.monotonic()
    second = stage.player(home, medium=stage.medium(MEDIA[1]))
    second.wait_for("open")
    taken = time.monotonic() - begin
    require(taken < 8.0, "the second start took %.1f s" % taken)
    second.end()
    look(stage, home)
    first.process.send_signal(signal.SIGCONT)
    first.stays_alive(2.0)
    require(not first.seen("open", stage.medium(MEDIA[1])), "both players play the second medium")
    first.end(5.0)
    return "plays after %.1f s; both end, the settings are those of %s" % (taken, look(stage, home))


CASES = {"share-two": two, "share-stopped": stopped}
