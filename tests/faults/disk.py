"""The disk full, the program folder read-only or gone."""

import os
import shutil
import subprocess

from saving import enter_name, keys, window
from stage import Skip, read, require, wait_until, write

LEFT_OVER = ".kestrelview-"


def mounted(stage, name, *options):
    """A file system of the case's own at a folder of this name."""
    folder = stage.make_folder(name)
    done = subprocess.run(["mount", *options, folder], capture_output=True, text=True)
    if done.returncode != 0:
        raise Skip("cannot mount: " + done.stderr.strip())
    stage.at_end(lambda: subprocess.run(["umount", "-l", folder], capture_output=True))
    return folder


def fill(folder):
    """Takes all room that is left, to the last byte."""
    with open(os.path.join(folder, "filling"), "wb", buffering=0) as file:
        for size in (4096, 1):
            try:
                while file.write(b"x" * size):
                    pass
            except OSError:
                pass


def left_over(folder):
    return [name for name in os.listdir(folder) if name.startswith(LEFT_OVER) or ".tmp" in name]


def full(stage, _times):
    """the disk with the program folder fills up while the player runs"""
    disk = mounted(stage, "disk", "-t", "tmpfs", "-o", "size=256k,mode=700", "none")
    home = stage.home(os.path.join("disk", "home"), CurrentFile="/an/old.mkv")
    before = read(os.path.join(home, "config.dat"))
    player = stage.player(home, medium=stage.medium("film25.mkv"))
    player.wait_for("open")
    fill(disk)
    taken = player.end()
    require(read(os.path.join(home, "config.dat")) == before, "the settings are damaged")
    require(not left_over(home), "left behind: %s" % left_over(home))
    os.unlink(os.path.join(disk, "filling"))
    again = stage.player(home)
    again.end()
    return "ends in %.1f s, old settings whole, next start works" % taken


def full_at(stage, times):
    """the disk takes only a part of what is saved, any part"""
    home = stage.home(CurrentFile="/an/old.mkv" * 200)
    config = os.path.join(home, "config.dat")
    before = read(config)
    arm = stage.path("arm")
    rounds = max(3, times // 10)
    for _ in range(rounds):
        player = stage.player(home, environment={
            "LD_PRELOAD": stage.build.shim, "KV_FAULT_FOLDER": home, "KV_FAULT_ARM": arm,
            "KV_FAULT_SPACE": str(stage.random.randint(0, 500))})
        write(arm, b"")
        player.end()
        os.unlink(arm)
        require(read(config) == before, "the settings are damaged")
        require(not left_over(home), "left behind: %s" % left_over(home))
    return "%d times, old settings whole, nothing left over" % rounds


def full_target(stage, _times):
    """the medium is saved, and the list's resume point, to a disk that is full"""
    disk = mounted(stage, "disk", "-t", "tmpfs", "-o", "size=256k,mode=700", "none")
    spot = os.path.join(disk, "spot.kvr")
    old = b"[RESUME_FILE]\r\nPath=/a/film.mkv\r\nPOS=12.5\r\n"
    write(spot, old)
    fill(disk)
    player = stage.player(stage.home(), medium=stage.medium("film1.mkv"))
    player.wait_for("open")
    window()
    keys("BackSpace", "ctrl+r")
    enter_name("Set Kestrelview Resume File", spot, "^Kestrelview$")
    keys("Return")  # overwrite
    wait_until(lambda: False, 0.5)
    window("^Kestrelview$")
    keys("Return")  # it could not be saved
    require(read(spot) == old, "the resume file is damaged")
    wait_until(lambda: False, 0.3)
    window()
    keys("ctrl+s")
    enter_name("Save file as", os.path.join(disk, "copy.mkv"), "Save file - Kestrelview")
    wait_until(lambda: False, 1.0)
    require(not os.path.exists(os.path.join(disk, "copy.mkv")), "a copy that cannot be whole")
    require(not left_over(disk), "left behind: %s" % left_over(disk))
    worst = player.stays_alive(1.0)
    return "old resume file whole, no part of a copy, window within %.2f s, ends in %.1f s" % (
        worst, player.end())


def read_only(stage, _times):
    """the program folder becomes read-only"""
    home = mounted(stage, "home", "-t", "tmpfs", "-o", "size=256k,mode=700", "none")
    stage.configure(os.path.join(home, "config.dat"), CurrentFile="/an/old.mkv")
    before = read(os.path.join(home, "config.dat"))
    subprocess.run(["mount", "-o", "remount,ro", home], check=True)
    player = stage.player(home, medium=stage.medium("film25.mkv"))
    player.wait_for_position(1.0)
    worst = player.stays_alive(1.0)
    taken = player.end()
    require(read(os.path.join(home, "config.dat")) == before, "the settings have changed")
    return "starts and plays, window within %.2f s, ends in %.1f s" % (worst, taken)


def other_user(stage, _times):
    """the program folder belongs to somebody else"""
    if os.geteuid() != 0 or shutil.which("setpriv") is None:
        raise Skip("only root can become somebody else")
    home = stage.home(CurrentFile="/an/old.mkv")
    before = read(os.path.join(home, "config.dat"))
    os.chmod(home, 0o755)
    os.chmod(os.path.join(home, "config.dat"), 0o644)
    nobody = 65534
    runtime = stage.make_folder("runtime")
    os.chown(runtime, nobody, nobody)
    trace = stage.make_folder("traces")
    os.chmod(trace, 0o777)
    player = stage.player(home, medium=stage.medium("film25.mkv"), ready=None, wrap=(
        "setpriv", "--reuid", str(nobody), "--regid", str(nobody), "--clear-groups", "env",
        "KESTRELVIEW_TRACE=" + os.path.join(trace, "trace"), "HOME=" + runtime))
    player.trace = os.path.join(trace, "trace")
    player.wait_for_position(1.0)
    taken = player.end()
    require(read(os.path.join(home, "config.dat")) == before, "the settings have changed")
    require(not left_over(home), "left behind: %s" % left_over(home))
    return "starts and plays, ends in %.1f s" % taken


def gone(stage, _times):
    """the program folder is deleted while the player runs"""
    home = stage.home()
    player = stage.player(home, medium=stage.medium("film25.mkv"))
    player.wait_for_position(1.0)
    shutil.rmtree(home)
    worst = player.stays_alive(1.0)
    taken = player.end()
    again = stage.player(home)
    again.end()
    return "window within %.2f s, ends in %.1f s, next start works" % (worst, taken)


CASES = {
    "disk-full": full,
    "disk-full-part": full_at,
    "disk-full-target": full_target,
    "folder-read-only": read_only,
    "folder-of-other": other_user,
    "folder-gone": gone,
}
