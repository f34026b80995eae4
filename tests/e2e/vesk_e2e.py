"""Starts the real program in a real window on a display of its own and plays it as a person would.

    with Game(start=(x, y), zoom=1.0) as game:
        game.wait_for_ship()
        game.hold("d", 0.3)
        game.settle().save("after_sailing")
        game.tap("Escape")
        assert game.wait_for_exit() == 0

Needs Xvfb, xdotool and ImageMagick. Every wait ends with a condition or, after its deadline, with
an error; the only pauses are those that hold a key down. World positions are in world units with y
up, window positions in pixels with y down.

Environment: VESK_E2E_PROGRAM names the program (build/debug/bin/vesk if unset), VESK_E2E_PICTURES
the folder that keeps the screenshots (e2e beside the program's folder if unset).
"""

import configparser
import ctypes
import ctypes.util
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

from picture import Picture, Stamp

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = pathlib.Path(os.environ.get("VESK_E2E_PROGRAM", ROOT / "build/debug/bin/vesk")).resolve()
PICTURES = pathlib.Path(os.environ.get("VESK_E2E_PICTURES", PROGRAM.parent.parent / "e2e"))

TILE = 24  # world units
CELL = 512 * TILE  # world units
DEADLINE = 30.0  # seconds; generous, since the machine may be busy with other things
TAP = 0.06  # seconds; a release counts only when the key was down for more than 30 ms

SHIPS = {"down": (0, 0, 32, 32), "left": (0, 32, 32, 32), "right": (0, 64, 32, 32),
         "up": (0, 96, 32, 32)}
FIGURES = {"down": (0, 0, 16, 16), "left": (30, 0, 16, 16), "up": (62, 0, 16, 16),
           "right": (91, 0, 16, 16)}
WATER = ("image.png", (100, 0, 16, 16))
HALLWAY = ("image.png", (100, 100, 16, 16))
LAND = ("terrain_transition.png", (48, 64, 16, 16))
ENEMY = ("enemies.png", (0, 0, 16, 16))
MARKER = ("compass.png", (0, 0, 128, 128))

# Who may not write, as subprocess takes it: nobody, if root runs this.
NOBODY = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}


def shipped_start():
    """Start position, zoom and window size of the shipped configuration, as Game takes them."""
    shipped = configparser.ConfigParser()
    shipped.read(ROOT / "packaging/vesk.ini.in")
    world, graphics = shipped["world"], shipped["graphics"]
    return {"start": (world.getint("start_pos_x"), world.getint("start_pos_y")),
            "zoom": world.getfloat("start_zoom"),
            "width": graphics.getint("width"), "height": graphics.getint("height")}


def wait_until(condition, what, deadline=DEADLINE):
    """The condition's first true value; an AssertionError that names it after the deadline."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"not within {deadline:g} s: {what}")
        time.sleep(0.02)


def tile_centre(cell, tile):
    """The world position of the centre of a cell's tile."""
    return tuple(cell[axis] * CELL + tile[axis] * TILE + TILE // 2 for axis in (0, 1))


def sprite(name, rectangle):
    return Picture(ROOT / "data" / name, rectangle)


def terrain_colours(terrain):
    return set(sprite(*terrain).colours())


class Display:
    """A virtual screen without a window manager, under a number that nobody else has."""

    def __init__(self, width=1480, height=920):
        reader, writer = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24",
             "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as number:  # the line comes once the screen takes clients
            self.name = ":" + number.readline().strip()
        if self.name == ":":
            self.process.wait()
            raise AssertionError("Xvfb did not start")

    def close(self):
        self.process.terminate()
        self.process.wait()


class Screenshot(Picture):
    def save(self, name):
        """Keeps the picture under this name for people to look at."""
        PICTURES.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(self.path, PICTURES / f"{name}.png")
        return self


class Game:
    """The program in a folder of its own, with its images and a configuration beside it.

    `environment` is added to the program's; a value of None removes a variable. With `window`
    False no window is expected (for starts that fail). `in_place` is the path of a program to start
    where it is, with the shipped configuration that it has there; `user` is who starts it, as
    subprocess takes it. `prepare` is called in its process just before it starts.
    """

    def __init__(self, start=(0, 0), zoom=1.0, width=1280, height=720, environment=None,
                 window=True, in_place=None, user=None, prepare=None):
        self.zoom, self.width, self.height = zoom, width, height
        self.display = self.process = None
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="vesk-e2e-"))
        try:
            if in_place is None:
                self._lay_out(start)
            self.display = Display()
            self._start(in_place or self.folder / "vesk", user or {}, environment or {},
                        prepare)
            self.window = self._find_window() if window else None
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends what is left of the game, and its display; safe to call again."""
        if self.process is not None:
            if self.process.poll() is None:
                self.process.kill()
            self.process.wait()
            self.process.stdin.close()
        if self.display is not None:
            self.display.close()
        self.process = self.display = None
        shutil.rmtree(self.folder, ignore_errors=True)

    # Starting and ending

    def _lay_out(self, start):
        shutil.copy2(PROGRAM, self.folder / "vesk")
        shutil.copytree(ROOT / "data", self.folder / "data")
        (self.folder / "vesk.ini").write_text(
            "[resource]\nmode = release\n"
            f"[graphics]\nwidth = {self.width}\nheight = {self.height}\n"
            f"[world]\nstart_pos_x = {start[0]}\nstart_pos_y = {start[1]}\n"
            f"start_zoom = {self.zoom}\n")

    def _start(self, program, user, changes, prepare):
        variables = {name: value for name, value in os.environ.items()
                     if not name.startswith("SDL_")}
        variables.update(DISPLAY=self.display.name, SDL_VIDEODRIVER="x11")
        variables.update(changes)
        variables = {name: value for name, value in variables.items() if value is not None}
        with open(self.folder / "stdout", "wb") as out, open(self.folder / "stderr", "wb") as err:
            self.process = subprocess.Popen([program], cwd="/", env=variables, stdout=out,
                                            stdin=subprocess.PIPE, stderr=err, **user,
                                            preexec_fn=prepare)

    def _find_window(self):
        def search():
            if self.process.poll() is not None:
                raise AssertionError(f"the program ended with {self.process.returncode}: "
                                     f"{self.output()}{self.errors()}")
            return self._run("xdotool", "search", "--onlyvisible", "--name", "^Vesk$",
                             check=False).split()  # it fails while there is none

        window = wait_until(search, "a window with the title Vesk")[0]
        wait_until(lambda: self._take_focus(window), "the window has the keyboard")
        return window

    def _take_focus(self, window):
        self._xdotool("windowfocus", window)
        return self._xdotool("getwindowfocus", "-f").strip() == window

    def running(self):
        return self.process.poll() is None

    def shape(self):
        """The window's place on the screen and its size: (x, y, width, height)."""
        lines = self._xdotool("getwindowgeometry", "--shell", self.window).split()
        values = dict(line.split("=") for line in lines)
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def wait_for_exit(self, deadline=DEADLINE):
        """The exit code, once the program has ended."""
        wait_until(lambda: not self.running(), "the program has ended", deadline)
        return self.process.returncode

    def output(self):
        return (self.folder / "stdout").read_text(errors="replace")

    def errors(self):
        return (self.folder / "stderr").read_text(errors="replace")

    def answer(self, text):
        """Types a text into the program's standard input."""
        self.process.stdin.write(text.encode())
        self.process.stdin.flush()

    # Keys and the window's close button

    def hold(self, keys, seconds):
        """Presses one key or several (X names, separated by blanks) for about this time."""
        names = keys.split()
        press = [word for name in names for word in ("keydown", name)]
        release = [word for name in names for word in ("keyup", name)]
        self._xdotool(*press, "sleep", str(seconds), *release)

    def tap(self, key):
        self.hold(key, TAP)

    def press(self, key):
        """Presses a key and leaves it down."""
        self._xdotool("keydown", key)

    def release(self, key):
        self._xdotool("keyup", key)

    def close_window(self):
        """Asks the window to close, as the button of a window manager does."""
        _ask_to_close(self.display.name, int(self.window))

    def _xdotool(self, *arguments):
        return self._run("xdotool", *arguments)

    def _run(self, *command, check=True):
        """A tool's standard output; it works on the game's display."""
        result = subprocess.run(command, capture_output=True, text=True, check=False,
                                env={**os.environ, "DISPLAY": self.display.name})
        if check and result.returncode != 0:
            raise AssertionError(f"{command[0]} failed: {result.stderr.strip()}")
        return result.stdout

    # Looking at the window

    def screenshot(self):
        path = self.folder / "screenshot.png"
        self._run("import", "-silent", "-window", self.window, "-depth", "8", "+repage", str(path))
        return Screenshot(path)

    def wait_for_picture(self, condition, what, deadline=DEADLINE):
        """The first screenshot for which the condition holds; the last one is kept if none does."""
        last = None

        def look():
            nonlocal last
            last = self.screenshot()
            return last if condition(last) else None

        try:
            return wait_until(look, what, deadline)
        except AssertionError:
            last.save("failed_" + "_".join(what.split())[:60])
            raise

    def settle(self):
        """A screenshot of a window whose picture has stopped changing."""
        previous = self.screenshot()

        def look():
            nonlocal previous
            current = self.screenshot()
            still = current.same_as(previous)
            previous = current
            return current if still else None

        return wait_until(look, "the picture stands still")

    def ship(self, heading):
        return Stamp(sprite("ships.png", SHIPS[heading]), int(TILE * self.zoom))

    def figure(self, heading):
        return Stamp(sprite("link_raw.png", FIGURES[heading]), int(TILE * self.zoom))

    def boat(self, heading):
        """The ship at anchor, which is drawn at its natural size."""
        return Stamp(sprite("ships.png", SHIPS[heading]), int(32 * self.zoom))

    def enemy(self):
        return Stamp(sprite(*ENEMY), int(16 * self.zoom))

    def marker(self):
        return Stamp(sprite(*MARKER), int(32 * self.zoom))

    def wait_for_ship(self, heading="right"):
        """A picture that stands still and shows the ship, which starts with its bow to the right."""
        ship = self.ship(heading)
        self.wait_for_picture(ship.find, f"the ship is drawn, heading {heading}")
        return self.settle()

    def find_player(self, picture):
        """How the player is shown: ("ship" or "figure", heading, window position), or None."""
        for kind, headings, stamp in (("ship", SHIPS, self.ship), ("figure", FIGURES, self.figure)):
            for heading in headings:
                place = stamp(heading).find(picture)
                if place is not None:
                    return kind, heading, place
        return None


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5)]


class _Event(ctypes.Union):
    _fields_ = [("client", _ClientMessage), ("pad", ctypes.c_long * 24)]


def _ask_to_close(display_name, window):
    """Sends WM_DELETE_WINDOW to a window."""
    xlib = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    xlib.XOpenDisplay.argtypes = [ctypes.c_char_p]
    xlib.XInternAtom.restype = ctypes.c_ulong
    xlib.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    xlib.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                                ctypes.POINTER(_Event)]
    xlib.XCloseDisplay.argtypes = [ctypes.c_void_p]

    client_message_type, no_event_mask = 33, 0
    display = xlib.XOpenDisplay(display_name.encode())
    if not display:
        raise AssertionError(f"cannot open the display {display_name}")
    event = _Event()
    event.client.type = client_message_type
    event.client.window = window
    event.client.message_type = xlib.XInternAtom(display, b"WM_PROTOCOLS", 0)
    event.client.format = 32
    event.client.data[0] = xlib.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    xlib.XSendEvent(display, window, 0, no_event_mask, ctypes.byref(event))
    xlib.XCloseDisplay(display)
