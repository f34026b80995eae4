"""The real program in a real window, played as a person would, and looked at.

Needs a display, which pytest-xvfb opens for the tests. Every wait ends with a condition or, after
its deadline, with an error. Places are in window pixels, y down, and a thing's centre.

Environment: VESK_E2E_PROGRAM names the program (build/release/bin/vesk if unset); wine runs one for
Windows. Screenshots are kept in e2e beside the program's folder.
"""

import os
import pathlib
import subprocess
import time

import Xlib.display
from PIL import Image, ImageChops, ImageGrab
from Xlib import X, XK
from Xlib.error import BadWindow
from Xlib.ext import xtest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = ROOT / os.environ.get("VESK_E2E_PROGRAM", "build/release/bin/vesk")
IS_WINDOWS = PROGRAM.suffix == ".exe"
COMMAND = ["wine", PROGRAM] if IS_WINDOWS else [PROGRAM]
# Direct3D comes first on Windows, but wine draws that slowly.
VIDEO = {"SDL_RENDER_DRIVER": "opengl"} if IS_WINDOWS else {"SDL_VIDEODRIVER": "x11"}
PICTURES = PROGRAM.parents[1] / "e2e"

DEADLINE = 60.0  # seconds; generous, since the machine may be busy with other things
HOLD = 0.3 if IS_WINDOWS else 0.15  # seconds; a release counts after 30 ms, but a busy program sees the keys late
WINDOW = (100, 100, 1380, 820)  # its left, top, right and bottom on the screen


class Sprite:
    """A cut of an image as the window shows it: `size` pixels wide and high, not smoothed."""

    def __init__(self, size, name, x, y, width, height):
        image = Image.open(ROOT / "data" / name).convert("RGBA").crop((x, y, x + width, y + height))
        self.size, image = size, image.resize((size, size), Image.Resampling.NEAREST)
        self.colours, self.opaque = image.convert("RGB"), image.getchannel("A")

    def likeness(self, picture, centre):
        """The share, from 0 to 1, of its opaque pixels that a picture shows around a place."""
        left, top = (at - self.size // 2 for at in centre)
        shown = picture.crop((left, top, left + self.size, top + self.size))
        difference = ImageChops.difference(shown, self.colours).convert("L")
        return difference.histogram(self.opaque)[0] / self.opaque.histogram()[255]

    def is_at(self, picture, centre):
        return self.likeness(picture, centre) > 0.9

    def seek(self, picture, y):
        """Where along a row of the window it is; None where it is not."""
        return next((x for x in range(picture.width) if self.is_at(picture, (x, y))), None)


class Game:
    """A program, looked at once there is a picture in its window. What it says goes to the folder;
    options are as subprocess takes them."""

    def __init__(self, folder, command=COMMAND, **options):
        self.folder = folder
        self.display = Xlib.display.Display()
        variables = {name: value for name, value in os.environ.items() if name[:4] != "SDL_"}
        with open(folder / "output", "wb") as output:
            self.process = subprocess.Popen(command, cwd="/", stdout=output,
                                            env=variables | VIDEO, **options)

    def __enter__(self):
        try:
            self.wait(self._has_picture, "a picture in the window")
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()
        self.display.close()

    def _has_picture(self, picture):
        assert self.process.poll() is None, f"it has ended: {self.output()}"
        try:
            for window in self.display.screen().root.query_tree().children:
                if window.get_wm_name() == "Vesk":
                    window.set_input_focus(X.RevertToParent, X.CurrentTime)
        except BadWindow:  # replaced by one that the renderer can use
            return False
        return picture.getcolors(1) is None

    def end(self):
        """The exit code and all that was said, once the program has ended."""
        return self.process.wait(DEADLINE), self.output()

    def output(self):
        return (self.folder / "output").read_text(errors="replace")

    def hold(self, keys, seconds=HOLD):
        """Presses one key or several (X names, separated by blanks) for about this time."""
        codes = [self.display.keysym_to_keycode(XK.string_to_keysym(key)) for key in keys.split()]
        for kind, pause in ((X.KeyPress, seconds), (X.KeyRelease, 0)):
            for code in codes:
                xtest.fake_input(self.display, kind, code)
            self.display.sync()
            time.sleep(pause)

    def look(self):
        return ImageGrab.grab(WINDOW)

    def wait(self, condition, what, keys=None):
        """The first picture for which the condition holds, holding keys again and again until then.
        The last one is kept if none does."""
        end = time.monotonic() + DEADLINE
        while not condition(picture := self.look()):
            if time.monotonic() > end:
                self.keep(picture, "failed_" + what.replace(" ", "_"))
                raise AssertionError(f"not within {DEADLINE:g} s: {what}")
            if keys:
                self.hold(keys, 0.1)
        return picture

    def settle(self, name=None):
        """The window's picture once it stands still; kept under a name for people to look at."""
        pictures = []

        def still(picture):
            time.sleep(0.1)
            pictures.append(picture)
            return pictures[-3:].count(picture) == 3

        picture = self.wait(still, "the picture stands still")
        return self.keep(picture, name) if name else picture

    @staticmethod
    def keep(picture, name):
        PICTURES.mkdir(parents=True, exist_ok=True)
        picture.save(PICTURES / f"{name}.png")
        return picture
