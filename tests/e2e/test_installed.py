#!/usr/bin/env python3
"""The installed program, and with VESK_E2E_PACKAGE the one of that Debian package: it starts through
its link, from another directory, as a user who may write nothing there."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from vesk_e2e import PROGRAM, Game, shipped_start

PACKAGE = os.environ.get("VESK_E2E_PACKAGE")


class InstalledTest(unittest.TestCase):
    def setUp(self):
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="vesk-installed-"))
        self.place.chmod(0o755)
        self.addCleanup(self.remove)

    def remove(self):
        subprocess.run(["chmod", "-R", "u+w", self.place], check=True)
        shutil.rmtree(self.place)

    def start(self, link):
        """Starts the program through a link and leaves it again."""
        subprocess.run(["chmod", "-R", "a-w,a+rX", self.place], check=True)
        with Game(**shipped_start(), installed=link) as game:
            picture = game.wait_for_ship()
            picture.save(f"installed_{link.parent.name}")
            self.assertEqual((picture.width, picture.height), (1280, 720))
            game.tap("Escape")
            self.assertEqual(game.wait_for_exit(), 0)
            self.assertEqual(game.output(), "", "every image and the typeface were found")

    @unittest.skipIf(PACKAGE, "a package is tested")
    def test_installed_tree(self):
        prefix = self.place / "a prefix"
        subprocess.run(["cmake", "--install", PROGRAM.parent.parent, "--prefix", prefix],
                       check=True, stdout=subprocess.DEVNULL)
        link = self.place / "links" / "vesk"
        link.parent.mkdir()
        link.symlink_to(prefix / "bin" / "vesk")
        self.start(link)

    @unittest.skipUnless(PACKAGE, "no package is given")
    def test_package(self):
        subprocess.run(["dpkg-deb", "--extract", PACKAGE, self.place], check=True)
        # The configuration's link leads to /etc, where an unpacked package has nothing.
        configuration = self.place / "usr/lib/vesk/vesk.ini"
        self.assertEqual(os.readlink(configuration), "/etc/vesk/vesk.ini")
        configuration.unlink()
        configuration.symlink_to("../../../etc/vesk/vesk.ini")
        self.start(self.place / "usr/games/vesk")


if __name__ == "__main__":
    unittest.main()
