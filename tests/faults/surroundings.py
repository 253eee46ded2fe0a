"""The screen goes away, the clock of the wall is set, and the first start is cut short."""

import os
import signal
import subprocess
import time

from stage import END_SECONDS, Fault, Server, require, write

HOUR = 3600


def screen_gone(stage, _times):
    """the display server dies while a medium plays"""
    reading, writing = os.pipe()
    screen = Server(stage, ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1024x768x24",
                            "-nolisten", "tcp", "-noreset"], pass_fds=[writing])
    os.close(writing)
    with os.fdopen(reading) as pipe:
        display = ":" + pipe.readline().strip()
    home = stage.home(Volume=70, RecentFiles="/an/older.mkv", AutoLoadLast=-1, StorePos=-1)
    path = stage.long_film(30)
    player = stage.player(home, medium=path, environment={"DISPLAY": display})
    player.wait_for_position(2.0)
    screen.kill()
    begin = time.monotonic()
    try:
        status = player.process.wait(10.0)
    except subprocess.TimeoutExpired:
        raise Fault("the player does not end, %.1f s of processor time" %
                    player.cpu_seconds()) from None
    taken = time.monotonic() - begin
    require(status >= 0, "the player crashed with signal %d: %s" % (-status, player.said()[-300:]))
    require(taken < 3.0, "the player took %.1f s to end" % taken)
    require(stage.setting(home, "Volume") == "70", "the settings are damaged")
    saved = stage.setting(home, "CurrentFile")
    require(saved == path, "the run was not saved: CurrentFile is \"%s\"" % saved)
    position = float(stage.setting(home, "LastPosition"))
    require(position > 1.0, "the position was not saved: %.2f" % position)
    again = stage.player(home)
    again.wait_for("open", path)
    again.end()
    return "ends in %.1f s with status %d, position %.1f saved, next start returns to it" % (
        taken, status, position)


def clock_set(hours, text):
    def run(stage, _times):
        clock = stage.path("clock")
        write(clock, b"0")
        player = stage.player(stage.home(), medium=stage.long_film(60),
                              environment={"LD_PRELOAD": stage.build.shim,
                                           "KV_FAULT_CLOCK": clock})
        player.wait_for_position(2.0)
        write(clock, b"%d" % (hours * HOUR))
        begin, start = player.position(), time.monotonic()
        worst = player.stays_alive(5.0)
        pace = (player.position() - begin) / (time.monotonic() - start)
        require(0.5 < pace < 1.5, "the medium runs at %.2f of its pace" % pace)
        used = player.cpu_seconds()
        time.sleep(2.0)
        busy = (player.cpu_seconds() - used) / 2.0
        require(busy < 0.9, "busy at %.0f %%" % (100 * busy))
        opened = player.opens(stage.medium("tone.flac"))
        return "goes on at %.2f of its pace, %.0f %% of a processor, window within %.2f s, next " \
            "medium in %.1f s, ends in %.1f s" % (pace, 100 * busy, worst, opened, player.end())
    run.__doc__ = text
    return run


def first_start_ended(stage, times):
    """asked to end at random moments of a first start, of its greeting and of its welcome sound"""
    worst, before_all = 0.0, 0
    for number in range(max(4, times // 10)):
        player = stage.player(stage.make_folder("home-%d" % number), ready=None)
        time.sleep(stage.random.uniform(0.0, 3.0))
        player.ask_to_end()
        begin = time.monotonic()
        try:
            status = player.process.wait(10.0)
        except subprocess.TimeoutExpired:
            raise Fault("the player does not end") from None
        worst = max(worst, time.monotonic() - begin)
        require(status in (0, -signal.SIGTERM), "status %d: %s" % (status, player.said()[-300:]))
        before_all += status != 0
    require(worst <= END_SECONDS, "the player took %.1f s to end" % worst)
    return "ends within %.2f s, %d times before it had begun" % (worst, before_all)


CASES = {
    "first-start-ended": first_start_ended,
    "screen-gone": screen_gone,
    "clock-back": clock_set(-1, "the clock is set back by an hour while a film plays"),
    "clock-forth": clock_set(1, "the clock is set forth by an hour while a film plays"),
}
