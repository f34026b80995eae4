#!/usr/bin/env python3
"""The program where it was built, and the installed one or, with VESK_E2E_PACKAGE, the one of that
Debian package: these start through a link, as a user who may write nothing there."""

import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from vesk_e2e import NOBODY, PROGRAM, Game, shipped_start

PACKAGE = os.environ.get("VESK_E2E_PACKAGE")


class StartTest(unittest.TestCase):
    def check(self, program, name, user=None):
        """Starts a program from another directory and leaves it again."""
        with Game(**shipped_start(), in_place=program, user=user) as game:
            picture = game.wait_for_ship()
            picture.save(name)
            self.assertEqual((picture.width, picture.height), (1280, 720))
            game.tap("Escape")
            self.assertEqual(game.wait_for_exit(), 0)
            self.assertEqual(game.output(), "", "every image and the typeface were found")

    def make_place(self):
        self.place = pathlib.Path(tempfile.mkdtemp(prefix="vesk-installed-"))
        self.place.chmod(0o755)
        self.addCleanup(self.remove)

    def remove(self):
        subprocess.run(["chmod", "-R", "u+w", self.place], check=True)
        shutil.rmtree(self.place)

    def check_link(self, link):
        """The same through a link into the place, where nobody can write any more."""
        subprocess.run(["chmod", "-R", "a-w,a+rX", self.place], check=True)
        self.check(link, f"installed_{link.parent.name}", NOBODY)

    @unittest.skipIf(PACKAGE, "a package is tested")
    def test_build_folder(self):
        self.check(PROGRAM, "built")

    @unittest.skipIf(PACKAGE, "a package is tested")
    def test_installed_tree(self):
        self.make_place()
        prefix = self.place / "a prefix"
        subprocess.run(["cmake", "--install", PROGRAM.parent.parent, "--prefix", prefix],
                       check=True, stdout=subprocess.DEVNULL)
        link = self.place / "links" / "vesk"
        link.parent.mkdir()
        link.symlink_to(prefix / "bin" / "vesk")
        self.check_link(link)

    @unittest.skipUnless(PACKAGE, "no package is given")
    def test_package(self):
        self.make_place()
        subprocess.run(["dpkg-deb", "--extract", PACKAGE, self.place], check=True)
        # The configuration's link leads to /etc, where an unpacked package has nothing.
        configuration = self.place / "usr/lib/vesk/vesk.ini"
        self.assertEqual(os.readlink(configuration), "/etc/vesk/vesk.ini")
        configuration.unlink()
        configuration.symlink_to("../../../etc/vesk/vesk.ini")
        self.check_link(self.place / "usr/games/vesk")


if __name__ == "__main__":
    unittest.main()
