"""The installed program or, with VESK_E2E_PACKAGE, the one of that Debian package, started through
a link by a user who may write nothing there."""

import os
import subprocess

from game import PROGRAM, Game
from test_plays import SHIP, START

PACKAGE = os.environ.get("VESK_E2E_PACKAGE")
NOBODY = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}


def test_installed(folder, tmp_path):
    if PACKAGE:
        subprocess.run(["dpkg-deb", "--extract", PACKAGE, folder], check=True)
        # The configuration's link leads to /etc, where an unpacked package has nothing.
        configuration = folder / "usr/lib/vesk/vesk.ini"
        assert os.readlink(configuration) == "/etc/vesk/vesk.ini"
        configuration.unlink()
        configuration.symlink_to("../../../etc/vesk/vesk.ini")
    else:
        prefix = folder / "a prefix"
        subprocess.run(["cmake", "--install", PROGRAM.parents[1], "--prefix", prefix], check=True)
        (folder / "usr/games").mkdir(parents=True)
        (folder / "usr/games/vesk").symlink_to(prefix / "bin/vesk")
    subprocess.run(["chmod", "-R", "a-w,a+rX", folder], check=True)
    with Game(tmp_path, folder / "usr/games/vesk", **NOBODY) as game:
        game.wait(lambda picture: SHIP.is_at(picture, START), "the ship lies off an island")
        game.hold("Escape")
        assert game.end() == (0, ""), "every image and the typeface were found"
