"""Media that change under the player."""

import os
import shutil

from stage import read, require, write


def change(text, action):
    def run(stage, _times):
        folder = stage.make_folder("media")
        path = stage.long_film(20, os.path.join("media", "film.mkv"))
        other = stage.medium("film.mp4")
        player = stage.player(stage.home(), medium=path)
        player.wait_for_position(2.0)
        action(path, folder, other)
        worst = player.stays_alive(3.0)
        begin = player.position()
        # It may have come to its end, where Stop holds it at its start.
        require(begin >= 2.0 or begin == 0.0, "the position went back to %.2f" % begin)
        opened = player.opens(stage.medium("tone.flac"), 3.0)
        return "at %.1f s; window within %.2f s, next medium in %.1f s, ends in %.1f s" % (
            begin, worst, opened, player.end())
    run.__doc__ = "the medium is " + text + " while it plays"
    return run


def cut_to(part):
    return lambda path, folder, other: os.truncate(path, int(os.path.getsize(path) * part))


def replace(path, _folder, other):
    shutil.copy(other, path + ".new")
    os.rename(path + ".new", path)


def overwrite(path, _folder, other):
    """In place, by a medium of another kind."""
    content = read(other)
    with open(path, "r+b") as file:
        file.write((content * (os.path.getsize(path) // len(content) + 1))[:os.path.getsize(path)])


def remove_folder(_path, folder, _other):
    shutil.rmtree(folder)


CASES = {
    "media-" + name: change(text, action) for name, text, action in (
        ("truncated", "cut to a tenth", cut_to(0.1)),
        ("emptied", "cut to nothing", cut_to(0)),
        ("replaced", "replaced by another", replace),
        ("overwritten", "overwritten in place by another kind", overwrite),
        ("garbage", "overwritten in place by noise",
         lambda path, folder, other: write(path, os.urandom(os.path.getsize(path)))),
        ("deleted", "deleted", lambda path, folder, other: os.unlink(path)),
        ("folder-gone", "deleted with its folder", remove_folder),
    )
}
