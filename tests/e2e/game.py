"""The real program in a real window, played as a person would, and looked at.

    with Game(folder) as game:
        game.wait(lambda picture: ship.is_at(picture, (768, 288)), "the ship lies off the island")
        game.hold("d", 0.3)
        game.settle("after_sailing")

Needs a display, which pytest-xvfb opens for the tests. Every wait ends with a condition or, after
its deadline, with an error. Places are in window pixels, y down, and a thing's centre.

Environment: VESK_E2E_PROGRAM names the program (build/release/bin/vesk if unset),
VESK_E2E_PICTURES the folder that keeps the screenshots (e2e beside the program's if unset).
"""

import os
import pathlib
import shutil
import subprocess
import time

import Xlib.display
from PIL import Image
from Xlib import X, XK
from Xlib.error import BadMatch, BadWindow
from Xlib.ext import xtest
from Xlib.protocol.event import ClientMessage

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = ROOT / os.environ.get("VESK_E2E_PROGRAM", "build/release/bin/vesk")
PICTURES = pathlib.Path(os.environ.get("VESK_E2E_PICTURES", PROGRAM.parents[1] / "e2e"))

DEADLINE = 60.0  # seconds; generous, since the machine may be busy with other things
HOLD = 0.15  # seconds; a release counts after 30 ms, but a busy program sees the keys late


class Sprite:
    """A cut of an image as the window shows it: `size` pixels wide and high, not smoothed."""

    def __init__(self, size, name, x, y, width, height):
        image = Image.open(ROOT / "data" / name).convert("RGBA").crop((x, y, x + width, y + height))
        self.half = size // 2
        scale = width / size
        # Where the edge between two of its pixels falls on the centre of one of the window's,
        # either of them may show.
        choices = [image.transform((size, size), Image.Transform.AFFINE,
                                   (scale, 0, dx, 0, scale, dy)).getdata()
                   for dx in (-0.01, 0.01) for dy in (-0.01, 0.01)]
        self.spots = [(at % size - self.half, at // size - self.half, {p[:3] for p in pixels})
                      for at, pixels in enumerate(zip(*choices)) if all(p[3] for p in pixels)]

    def likeness(self, picture, centre, every=1):
        """The share, from 0 to 1, of its opaque pixels that a picture shows around a place."""
        pixels, spots = picture.load(), self.spots[::every]
        shown = sum(pixels[centre[0] + x, centre[1] + y] in colours for x, y, colours in spots)
        return shown / len(spots)

    def is_at(self, picture, centre):
        return self.likeness(picture, centre) > 0.9

    def seek(self, picture, y):
        """Where along a row of the window it is; None where it is not."""
        places = [(x, y) for x in range(self.half, picture.width - self.half)]
        likely = [place for place in places if self.likeness(picture, place, 37) > 0.5]
        return next((place[0] for place in likely if self.is_at(picture, place)), None)


def wait_until(condition, what, deadline=DEADLINE):
    """The condition's first true value; an AssertionError that names it after the deadline."""
    end = time.monotonic() + deadline
    while not (value := condition()):
        assert time.monotonic() < end, f"not within {deadline:g} s: {what}"
        time.sleep(0.02)
    return value


class Game:
    """The program in a folder, with its images and the shipped configuration beside it, or another
    program where it is. With `window` False none is expected, for starts that fail. `environment`
    is added to the program's, where None removes a variable; other arguments are as subprocess
    takes them.
    """

    def __init__(self, folder, program=None, window=True, environment=(), **options):
        self.folder = folder
        self.display = Xlib.display.Display()
        variables = {name: value for name, value in os.environ.items() if name[:4] != "SDL_"}
        variables |= {"SDL_VIDEODRIVER": "x11"} | dict(environment)
        variables = {name: value for name, value in variables.items() if value is not None}
        with open(folder / "stdout", "wb") as out, open(folder / "stderr", "wb") as errors:
            self.process = subprocess.Popen([program or self._lay_out()], cwd="/", env=variables,
                                            stdin=subprocess.PIPE, stdout=out, stderr=errors,
                                            **options)
        try:
            if window:
                wait_until(self._has_window, "the window Vesk, with a picture")
        except BaseException:
            self.__exit__()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.communicate()
        self.display.close()

    def _lay_out(self):
        settings = (ROOT / "packaging/vesk.ini.in").read_text()
        (self.folder / "vesk.ini").write_text(settings.replace("@VESK_RESOURCE_MODE@", "release"))
        (self.folder / "data").symlink_to(ROOT / "data")
        return shutil.copy2(PROGRAM, self.folder / "vesk")

    def _has_window(self):
        assert self.process.poll() is None, f"it has ended: {self.output()}{self.output('stderr')}"
        try:
            for window in self.display.screen().root.query_tree().children:
                viewable = window.get_attributes().map_state == X.IsViewable
                if viewable and window.get_wm_name() == "Vesk":
                    self.window = window
                    self.window.set_input_focus(X.RevertToParent, X.CurrentTime)
                    return self.look().getcolors(1) is None
        except (BadMatch, BadWindow):  # not shown yet, or replaced by one that the renderer can use
            pass
        return False

    def wait_for_exit(self):
        """The exit code, once the program has ended."""
        return self.process.wait(DEADLINE)

    def output(self, stream="stdout"):
        return (self.folder / stream).read_text(errors="replace")

    def hold(self, keys, seconds=HOLD):
        """Presses one key or several (X names, separated by blanks) for about this time."""
        codes = [self.display.keysym_to_keycode(XK.string_to_keysym(key)) for key in keys.split()]
        for kind, pause in ((X.KeyPress, seconds), (X.KeyRelease, 0)):
            for code in codes:
                xtest.fake_input(self.display, kind, code)
            self.display.sync()
            time.sleep(pause)

    def close_window(self):
        """Asks the window to close, as the button of a window manager does."""
        protocols, delete = map(self.display.intern_atom, ("WM_PROTOCOLS", "WM_DELETE_WINDOW"))
        self.window.send_event(ClientMessage(window=self.window, client_type=protocols,
                                             data=(32, (delete, X.CurrentTime, 0, 0, 0))))
        self.display.sync()

    def shape(self):
        """The window's place on the screen and its size."""
        shape = self.window.get_geometry()
        return shape.x, shape.y, shape.width, shape.height

    def look(self):
        width, height = self.shape()[2:]
        image = self.window.get_image(0, 0, width, height, X.ZPixmap, 0xffffffff)
        return Image.frombytes("RGB", (width, height), image.data, "raw", "BGRX")

    def wait(self, condition, what, keys=None):
        """The first picture for which the condition holds, holding keys again and again until then.
        The last one is kept if none does."""
        def shown():
            self.last = self.look()
            if condition(self.last):
                return self.last
            if keys:
                self.hold(keys, 0.1)
            return None

        try:
            return wait_until(shown, what)
        except AssertionError:
            self.keep(self.last, "failed_" + what.replace(" ", "_"))
            raise

    def settle(self, name=None):
        """The window's picture once it stands still; kept under a name for people to look at."""
        pictures = [self.look()]

        def still():
            time.sleep(0.1)
            pictures[:] = [*pictures[-2:], self.look()]
            return pictures[-1] if pictures.count(pictures[-1]) == 3 else None

        picture = wait_until(still, "the picture stands still")
        return self.keep(picture, name) if name else picture

    @staticmethod
    def keep(picture, name):
        PICTURES.mkdir(parents=True, exist_ok=True)
        picture.save(PICTURES / f"{name}.png")
        return picture
