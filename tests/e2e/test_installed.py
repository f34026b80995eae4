"""The program where it was built, and the installed one or, with VESK_E2E_PACKAGE, the one of that
Debian package: these start through a link, as a user who may write nothing there."""

import os
import subprocess

import pytest
from game import PROGRAM, Game
from test_plays import SHIP, START

PACKAGE = os.environ.get("VESK_E2E_PACKAGE")
NOBODY = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}


def check(folder, program, name, **user):
    """Starts a program from another directory and leaves it again."""
    with Game(folder, program, **user) as game:
        game.wait(lambda picture: SHIP.is_at(picture, START), "the ship lies off an island")
        assert game.settle(name).size == (1280, 720)
        game.hold("Escape")
        assert game.wait_for_exit() == 0
        assert game.output() == "", "every image and the typeface were found"


@pytest.mark.skipif(PACKAGE is not None, reason="a package is tested")
def test_built(folder):
    check(folder, PROGRAM, "built")


def test_installed(folder):
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
    (folder / "logs").mkdir()
    check(folder / "logs", folder / "usr/games/vesk", "installed", **NOBODY)
