#!/usr/bin/env python3
"""The program among missing and damaged files: it starts and plays, or says what is specified; it
never crashes, hangs or upsets a sanitizer.

Every case gets a layout of its own in a temporary folder. VESK_LIFE names a program that plays a
short scripted life through everything that is drawn, VESK_PROGRAM the game itself.
"""

import contextlib
import os
import pathlib
import random
import re
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
LIFE = pathlib.Path(os.environ.get("VESK_LIFE", ROOT / "build/debug/bin/vesk_life")).resolve()
PROGRAM = pathlib.Path(os.environ.get("VESK_PROGRAM", ROOT / "build/debug/bin/vesk")).resolve()

# How often the program asks for each.
IMAGES = {"enemies.png": 1, "image.png": 19, "ships.png": 9, "link_raw.png": 5, "compass.png": 1,
          "hud_compass.png": 2, "island_icon.png": 2, "terrain_transition.png": 9}
FONT = "sample.ttf"
DEADLINE = 300  # seconds, for a sanitized program on a busy machine

IMAGE_LINE = "CreateTextureFromSurface error: "
FONT_LINE = "TTF_OpenFont error: "
TEXT_LINE = "TTF_RenderText error: "
WINDOW_LINE = "SDL_CreateWindow error: "
# What the generator and the library that reads PNG may say on standard error.
PROGRESS = re.compile(r"of triangles \d+ to be flipped\. |warning: obtuce seed triangle sellected |"
                      r"less than 3 points, aborting |linear structure, aborting |"
                      r"libpng (error|warning): .*")

SETTINGS = """[resource]
mode = {mode}
[graphics]
width = {width}
height = {height}
[world]
start_pos_x = 81756
start_pos_y = 38940
start_zoom = 1
"""


def settings(mode="installed", width=320, height=240):
    return SETTINGS.format(mode=mode, width=width, height=height).encode()


def png(width, height):
    """A plain picture of this size."""
    def chunk(kind, content):
        body = kind + content
        return struct.pack(">I", len(content)) + body + struct.pack(">I", zlib.crc32(body))
    rows = b"".join(b"\0" + b"\x20\x40\x80" * width for _ in range(height))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def bmp(width, height):
    """A plain picture in another format that the image library knows."""
    row = b"\x80\x40\x20" * width
    row += b"\0" * (-len(row) % 4)
    return (b"BM" + struct.pack("<IHHI", 54 + len(row) * height, 0, 0, 54)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, 0, 0, 0, 0, 0) + row * height)


def replace_by_directory(path):
    path.unlink()
    path.mkdir()


def replace_by_dangling_link(path):
    path.unlink()
    path.symlink_to(path.with_name("nowhere"))


def replace_by_file(directory):
    shutil.rmtree(directory)
    directory.touch()


def forbid(path):
    path.chmod(0)


def holding(content):
    return lambda path: path.write_bytes(content)


def cut_to(share):
    """Keeps the first part of a file: a share of it from 0 to 1, or so many bytes."""
    def cut(path):
        content = path.read_bytes()
        path.write_bytes(content[:int(len(content) * share) if isinstance(share, float) else share])
    return cut


def scratched(seed):
    """Changes one byte in fifty, at places of chance."""
    def scratch(path):
        draw = random.Random(f"{seed} {path.name}")
        content = bytearray(path.read_bytes())
        for _ in range(1 + len(content) // 50):
            content[draw.randrange(len(content))] = draw.randrange(256)
        path.write_bytes(bytes(content))
    return scratch


# Cases whose file cannot be read at all, and cases in which it depends on the libraries.
UNREADABLE = {"missing": pathlib.Path.unlink, "empty": holding(b""),
              "text": holding(b"no picture, no font\n" * 9), "directory": replace_by_directory,
              "dangling link": replace_by_dangling_link, "forbidden": forbid,
              "signature alone": cut_to(8)}
DOUBTFUL = {"half": cut_to(0.5), "nearly whole": cut_to(0.95), "header alone": cut_to(40)}
DOUBTFUL |= {f"scratched by {seed}": scratched(seed) for seed in range(3)}


class DamagedDataTest(unittest.TestCase):
    @contextlib.contextmanager
    def layout(self, program=LIFE, mode="installed", **case):
        """A copy of the program with its files, in a subtest of its own; gives the folder of the
        program and the data's."""
        # Beside the build, so that the program can be linked instead of copied.
        with self.subTest(mode=mode, **case), \
                tempfile.TemporaryDirectory(dir=program.parent.parent) as name:
            top = pathlib.Path(name)
            top.chmod(0o755)
            folder = top / "one/two/bin"
            folder.mkdir(parents=True)
            os.link(program, folder / program.name)
            data = folder / "data" if mode == "installed" else top / "data"
            shutil.copytree(ROOT / "data", data)
            (folder / "vesk.ini").write_bytes(settings(mode))
            yield folder, data

    def start(self, folder, program=LIFE):
        # Root may read everything, so it gives its rights up for the cases about them.
        nobody = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}
        environment = dict(os.environ, SDL_VIDEODRIVER="dummy", SDL_RENDER_DRIVER="software",
                           SDL_RENDER_VSYNC="0")
        return subprocess.Popen([folder / program.name], cwd="/", env=environment, text=True,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, errors="replace", **nobody)

    def finish(self, process, allowed=(), status=0):
        """Ends as it should and says no other lines than those that begin as allowed; counts
        them."""
        try:
            output, errors = process.communicate(timeout=DEADLINE)
        except subprocess.TimeoutExpired:
            process.kill()
            output, errors = process.communicate()
            self.fail(f"hangs: {output} {errors}")
        self.assertEqual(process.returncode, status, output + errors)
        for line in errors.splitlines():
            self.assertRegex(line, PROGRESS)
        lines = output.splitlines()
        for line in lines:
            self.assertTrue(line.startswith(tuple(allowed)), line)
        return {beginning: sum(line.startswith(beginning) for line in lines)
                for beginning in allowed}

    def live(self, folder, *allowed, status=0):
        return self.finish(self.start(folder), allowed, status)


class Images(DamagedDataTest):
    def test_sound_files_say_nothing(self):
        for mode in ("installed", "dev"):
            with self.layout(mode=mode) as (folder, _):
                self.live(folder)

    def test_an_image_that_cannot_be_read_costs_a_line_each_time_it_is_asked_for(self):
        for image, times in IMAGES.items():
            for name, damage in UNREADABLE.items():
                with self.layout(image=image, damage=name) as (folder, data):
                    damage(data / image)
                    self.assertEqual(self.live(folder, IMAGE_LINE), {IMAGE_LINE: times})

    def test_a_damaged_image_is_drawn_or_reported(self):
        for name, damage in DOUBTFUL.items():
            for images in [[image] for image in IMAGES] + [list(IMAGES)]:
                with self.layout(images=images, damage=name) as (folder, data):
                    for image in images:
                        damage(data / image)
                    self.live(folder, IMAGE_LINE)

    def test_another_size_or_format_is_drawn(self):
        contents = {"a dot": png(1, 1), "a long line": png(3000, 1), "a tall line": png(1, 3000),
                    "another format": bmp(160, 160)}
        for image in IMAGES:
            for name, content in contents.items():
                with self.layout(image=image, content=name) as (folder, data):
                    (data / image).write_bytes(content)
                    self.live(folder)


class Font(DamagedDataTest):
    def test_a_font_that_cannot_be_read_is_reported_once_and_then_with_every_text(self):
        for name, damage in (UNREADABLE | {"a picture": holding(png(16, 16))}).items():
            with self.layout(damage=name) as (folder, data):
                damage(data / FONT)
                counts = self.live(folder, FONT_LINE, TEXT_LINE)
                self.assertEqual(counts[FONT_LINE], 1)
                self.assertGreater(counts[TEXT_LINE], 100)

    def test_a_damaged_font_is_drawn_or_reported(self):
        more = {f"cut at {share}": cut_to(share) for share in (0.1, 0.2, 0.3, 0.7, 0.8, 0.99)}
        more |= {f"scratched by {seed}": scratched(seed) for seed in range(10, 30)}
        for name, damage in (DOUBTFUL | more).items():
            with self.layout(damage=name) as (folder, data):
                damage(data / FONT)
                self.live(folder, FONT_LINE, TEXT_LINE, "CreateTexture error: ")


class Configuration(DamagedDataTest):
    def test_a_file_that_cannot_be_read_gives_the_defaults(self):
        # The defaults are the development layout and a window of the smallest size.
        empty = UNREADABLE | {"zeros": holding(bytes(1 << 20)),
                              "noise": holding(random.Random(4).randbytes(1 << 20))}
        del empty["signature alone"]
        for name, damage in empty.items():
            with self.layout(mode="dev", damage=name) as (folder, _):
                damage(folder / "vesk.ini")
                self.live(folder)

    def test_a_huge_file_is_read(self):
        size = 100 << 20
        tail = b"\n" + settings()
        contents = {"zeros": bytes(size), "one line": b"a" * size + tail,
                    "comments": b"; nothing of note here\n" * (size // 23) + tail,
                    "one value": b"[resource]\nmode = " + b"x" * size + tail}
        for name, content in contents.items():
            mode = "dev" if name == "zeros" else "installed"  # as the file will say
            with self.layout(mode=mode, content=name) as (folder, _):
                (folder / "vesk.ini").write_bytes(content)
                self.live(folder)

    def test_a_window_of_any_size_is_taken_or_ends_the_program_after_a_character(self):
        for width, height, status in ((0, 0, 0), (1, 1, 0), (-5, 200, 0), (3000, 1, 0),
                                      (100000, 100, 1), (100, 2147483647, 1)):
            with self.layout(width=width, height=height) as (folder, _):
                (folder / "vesk.ini").write_bytes(settings(width=width, height=height))
                counts = self.live(folder, WINDOW_LINE, status=status)
                self.assertEqual(counts[WINDOW_LINE], status)


class Layout(DamagedDataTest):
    def test_the_data_directory_is_missing_or_a_file(self):
        for name, damage in {"missing": shutil.rmtree, "forbidden": forbid,
                             "a file": replace_by_file}.items():
            for mode in ("installed", "dev"):
                with self.layout(mode=mode, damage=name) as (folder, data):
                    damage(data)
                    counts = self.live(folder, IMAGE_LINE, FONT_LINE, TEXT_LINE)
                    self.assertEqual(counts[FONT_LINE], 1)
                    self.assertEqual(counts[IMAGE_LINE], sum(IMAGES.values()))

    def test_the_wrong_mode_looks_in_the_wrong_place(self):
        with self.layout() as (folder, _):
            (folder / "vesk.ini").write_bytes(settings("dev"))
            self.assertEqual(self.live(folder, IMAGE_LINE, FONT_LINE, TEXT_LINE)[FONT_LINE], 1)

    def test_the_game_itself_starts_and_ends_without_any_file(self):
        with self.layout(program=PROGRAM) as (folder, data):
            shutil.rmtree(data)
            (folder / "vesk.ini").unlink()
            process = self.start(folder, PROGRAM)
            end = time.monotonic() + DEADLINE
            while not self.handles_the_request_to_end(process):
                self.assertIsNone(process.poll(), "has ended by itself")
                self.assertLess(time.monotonic(), end, "does not get as far as its window")
                time.sleep(0.01)
            process.send_signal(signal.SIGTERM)
            counts = self.finish(process, (IMAGE_LINE, FONT_LINE, TEXT_LINE))
            self.assertEqual(counts[FONT_LINE], 1)

    @staticmethod
    def handles_the_request_to_end(process):
        """Whether the program has come as far as turning the signal into a request to quit."""
        try:
            status = pathlib.Path(f"/proc/{process.pid}/status").read_text(encoding="ascii")
        except OSError:
            return False
        caught = int(re.search(r"^SigCgt:\s*([0-9a-f]+)", status, re.M).group(1), 16)
        return bool(caught >> (signal.SIGTERM - 1) & 1)


if __name__ == "__main__":
    unittest.main()
