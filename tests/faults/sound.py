"""The sound server absent, mute, stopped in the middle, killed and started again."""

import os
import signal
import socket
import subprocess
import time

from stage import Server, require, wait_until

HEARD_SECONDS = 12.0  # until sound is back behind a server that came back


class SoundServer:
    """A sound server of the case's own, which it may kill."""

    def __init__(self, stage):
        self.stage = stage
        self.socket = stage.path("sound.socket")
        self.environment = {"PULSE_SERVER": "unix:" + self.socket,
                            "PULSE_RUNTIME_PATH": stage.make_folder("sound-runtime"),
                            "PULSE_STATE_PATH": stage.make_folder("sound-state")}
        # Only one sound server may have the name on the session bus.
        self.server_environment = {**os.environ, **self.environment,
                                   "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
        self.server = None

    def start(self):
        if os.path.exists(self.socket):
            os.unlink(self.socket)
        self.server = Server(
            self.stage,
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
             "--realtime=no", "--high-priority=no", "--disable-shm=yes",
             "--load=module-null-sink sink_name=silence rate=48000",
             "--load=module-native-protocol-unix auth-anonymous=1 socket=" + self.socket],
            env=self.server_environment)
        require(wait_until(lambda: os.path.exists(self.socket), 20.0), "no sound server")
        return self

    def kill(self):
        self.server.kill()

    def hears(self, player):
        """Whether the player has a stream here that runs."""
        answer = subprocess.run(["pactl", "list", "sink-inputs"], capture_output=True, text=True,
                                env={**os.environ, **self.environment}, timeout=10)
        streams = answer.stdout.split("Sink Input #")
        return any('application.process.id = "%d"' % player.pid in stream and "Corked: no" in stream
                   for stream in streams)

    def wait_for(self, player, seconds=HEARD_SECONDS):
        begin = time.monotonic()
        require(wait_until(lambda: self.hears(player), seconds),
                "no sound within %.0f s" % seconds)
        return time.monotonic() - begin


def goes_on(player, seconds=2.0):
    """The medium moves on and the window answers."""
    begin = player.position()
    worst = player.stays_alive(seconds + 1.0)
    require(player.position() > begin + seconds * 0.4,
            "the position stands at %.2f" % player.position())
    return worst


def absent(stage, _times):
    """no sound server at all, then one that comes"""
    sound = SoundServer(stage)
    player = stage.player(stage.home(), medium=stage.long_sound(60),
                          environment=sound.environment)
    player.wait_for_position(1.0)
    worst = goes_on(player)
    sound.start()
    heard = sound.wait_for(player)
    return "plays on silently, window within %.2f s; heard %.1f s after one came, ends in %.1f s" % (
        worst, heard, player.end())


def mute(stage, _times):
    """a sound server that accepts and never answers"""
    sound = SoundServer(stage)
    listener = socket.socket(socket.AF_UNIX)
    listener.bind(sound.socket)
    listener.listen(50)
    stage.at_end(listener.close)
    player = stage.player(stage.home(), medium=stage.long_sound(60),
                          environment=sound.environment)
    player.wait_for_position(1.0)
    worst = goes_on(player)
    opened = player.opens(stage.medium("tone.flac"))
    return "plays silently, window within %.2f s, next medium in %.1f s, ends in %.1f s" % (
        worst, opened, player.end())


def killed(stage, _times):
    """the sound server killed in mid-play and started again, twice"""
    sound = SoundServer(stage).start()
    player = stage.player(stage.home(), medium=stage.long_film(60), environment=sound.environment)
    sound.wait_for(player)
    heard = []
    for _ in range(2):
        sound.kill()
        goes_on(player)
        sound.start()
        heard.append(sound.wait_for(player))
        goes_on(player)
    return "plays on, heard again after %.1f and %.1f s, ends in %.1f s" % (*heard, player.end())


def killed_next(stage, _times):
    """the sound server killed, another medium opened, and the server started again"""
    sound = SoundServer(stage).start()
    player = stage.player(stage.home(), medium=stage.long_sound(60), environment=sound.environment)
    sound.wait_for(player)
    sound.kill()
    goes_on(player)
    begin = player.cpu_seconds()
    time.sleep(4.0)
    busy = (player.cpu_seconds() - begin) / 4.0
    require(busy < 0.5, "busy at %.0f %% without a sound server" % (100 * busy))
    opened = player.opens(stage.medium("tone.flac"))
    sound.start()
    player.opens(stage.path("long.wav"))
    heard = sound.wait_for(player)
    return "%.0f %% of a processor meanwhile, next medium in %.1f s, heard %.1f s after its return" % (
        100 * busy, opened, heard)


def stopped(stage, _times):
    """the sound server stops answering in mid-play, and goes on later"""
    sound = SoundServer(stage).start()
    player = stage.player(stage.home(), medium=stage.long_sound(60), environment=sound.environment)
    sound.wait_for(player)
    player.wait_for_position(1.0)
    sound.server.process.send_signal(signal.SIGSTOP)
    worst = player.stays_alive(3.0)
    opened = player.opens(stage.medium("film25.mkv"), 6.0)
    worst = max(worst, player.stays_alive(1.0))
    sound.server.process.send_signal(signal.SIGCONT)
    player.opens(stage.path("long.wav"), 6.0)
    heard = sound.wait_for(player)
    return "window within %.2f s, next medium in %.1f s, heard %.1f s after its return, ends in %.1f s" \
        % (worst, opened, heard, player.end())


def stopped_to_the_end(stage, _times):
    """the player ends while the sound server does not answer"""
    sound = SoundServer(stage).start()
    player = stage.player(stage.home(), medium=stage.long_sound(60), environment=sound.environment)
    sound.wait_for(player)
    sound.server.process.send_signal(signal.SIGSTOP)

    time.sleep(1.0)
    return "ends in %.1f s" % player.end()


CASES = {
    "sound-absent": absent,
    "sound-mute": mute,
    "sound-killed": killed,
    "sound-killed-next": killed_next,
    "sound-stopped": stopped,
    "sound-stopped-end": stopped_to_the_end,
}
