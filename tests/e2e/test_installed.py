"""The program where it was built, and the installed one or, with VESK_E2E_PACKAGE, the one of that Debian
package: these start through a link, as a user who may write nothing there."""

import os
import pathlib
import subprocess

import pytest
from game import NOBODY, PROGRAM, Game, Sprite

PACKAGE = os.environ.get("VESK_E2E_PACKAGE")
SHIP = Sprite(32, "ships.png", 0, 64, 32, 32)


def check(folder, program, name, **user):
    """Starts a program from another directory and leaves it again."""
    with Game(folder, program=program, **user) as game:
        game.wait(lambda picture: SHIP.is_at(picture, (534, 429)), "the ship lies off an island")
        assert game.settle(name).size == (1280, 720)
        game.hold("Escape")
        assert game.wait_for_exit() == 0
        assert game.output() == "", "every image and the typeface were found"


def check_link(folder, link):
    """The same through a link, where nobody can write any more."""
    subprocess.run(["chmod", "-R", "a-w,a+rX", folder], check=True)
    (logs := folder / "logs").mkdir()
    check(logs, link, f"installed_{link.parent.name}", **NOBODY)


@pytest.mark.skipif(PACKAGE is not None, reason="a package is tested")
def test_built_and_installed(folder):
    check(folder, PROGRAM, "built")
    subprocess.run(["cmake", "--install", PROGRAM.parents[1], "--prefix", folder / "a prefix"],
                   check=True, stdout=subprocess.DEVNULL)
    (link := folder / "links/vesk").parent.mkdir()
    link.symlink_to(folder / "a prefix/bin/vesk")
    check_link(folder, link)


@pytest.mark.skipif(PACKAGE is None, reason="no package is given")
def test_package(folder):
    subprocess.run(["dpkg-deb", "--extract", PACKAGE, folder], check=True)
    # The configuration's link leads to /etc, where an unpacked package has nothing.
    configuration = folder / "usr/lib/vesk/vesk.ini"
    assert os.readlink(configuration) == "/etc/vesk/vesk.ini"
    configuration.unlink()
    configuration.symlink_to("../../../etc/vesk/vesk.ini")
    check_link(folder, pathlib.Path(folder, "usr/games/vesk"))
