"""The program among missing and damaged files: it starts and plays, or says what it lacks; it never
crashes, hangs or upsets a sanitizer.

VESK_SCENE names the player of scenes (build/asan/bin/vesk_scene if unset); it plays one that goes
through everything that is drawn.
"""

import collections
import os
import pathlib
import random
import re
import shutil
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PLAYER = pathlib.Path(os.environ.get("VESK_SCENE", ROOT / "build/asan/bin/vesk_scene")).resolve()
SCENE = ROOT / "tests/scenes/menu.scene"
NOBODY = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 else {}

# How often the program asks for each.
IMAGES = {"enemies.png": 1, "image.png": 19, "ships.png": 9, "link_raw.png": 5, "compass.png": 1,
          "hud_compass.png": 2, "island_icon.png": 2, "terrain_transition.png": 9}
IMAGE, TYPE, TEXT = "CreateTextureFromSurface", "TTF_OpenFont", "TTF_RenderText"
WINDOW, OTHER = "SDL_CreateWindow", "CreateTexture"
SAID = re.compile(f"({IMAGE}|{TYPE}|{TEXT}|{WINDOW}|{OTHER}) error: .+")
PROGRESS = re.compile(r"of triangles \d+ to be flipped\. |warning: obtuce seed triangle sellected |"
                      r"less than 3 points, aborting |linear structure, aborting |"
                      r"libpng (error|warning): .*")


def settings(width, height):
    return (f"[resource]\nmode = installed\n[graphics]\nwidth = {width}\nheight = {height}\n"
            "[world]\nstart_pos_x = 81756\nstart_pos_y = 38940\nstart_zoom = 1\n").encode()


def replace(by):
    def act(path):
        shutil.rmtree(path) if path.is_dir() else path.unlink()
        by(path)
    return act


def holding(content):
    return lambda path: path.write_bytes(content)


def cut(path):
    path.write_bytes(path.read_bytes()[:path.stat().st_size // 2])


def scratch(path):
    """Changes one byte in fifty, at places of chance."""
    draw, content = random.Random(path.name), bytearray(path.read_bytes())
    for _ in range(1 + len(content) // 50):
        content[draw.randrange(len(content))] = draw.randrange(256)
    path.write_bytes(content)


UNREADABLE = {"missing": replace(lambda path: None), "empty": replace(pathlib.Path.touch),
              "forbidden": lambda path: path.chmod(0), "text": holding(b"no such thing\n" * 9),
              "a directory": replace(pathlib.Path.mkdir),
              "a dangling link": replace(lambda path: path.symlink_to("nowhere"))}
FONT, INI = ["sample.ttf"], ["../vesk.ini"]
COST = {IMAGE: sum(IMAGES.values())}  # every image is missed each time it is asked for
DUMB = {TYPE: 1, TEXT: None}

# Of every case the files, in the folder of the images, what becomes of them, and how often what is
# said; None for any number. Without settings the layout is another, where here nothing is.
CASES = {f"{name} {how}": (files, damage, costs) for how, damage in UNREADABLE.items()
         for name, files, costs in (("images", IMAGES, COST), ("font", FONT, DUMB),
                                    ("settings", INI, COST | DUMB))}
CASES |= {f"data {how}": (["."], UNREADABLE[how], COST | DUMB)
          for how in ("missing", "empty", "forbidden")}
CASES |= {f"images {damage.__name__}": (IMAGES, damage, {IMAGE: None}) for damage in (cut, scratch)}
CASES |= {f"font {damage.__name__}": (FONT, damage, {TYPE: None, TEXT: None})
          for damage in (cut, scratch)}
CASES |= {"nothing": ([], cut, {}),
          "settings huge": (INI, holding(b"; of no note\n" * (1 << 22) + settings(320, 240)), {}),
          "window of no size": (INI, holding(settings(-5, 0)), {}),
          "window too large": (INI, holding(settings(9, 1 << 30)), {WINDOW: 1})}


@pytest.mark.parametrize("files, damage, costs", CASES.values(), ids=CASES)
def test_a_play_among(folder, files, damage, costs):
    shutil.copy2(PLAYER, folder / "player")
    shutil.copytree(ROOT / "data", folder / "data")
    (folder / "vesk.ini").write_bytes(settings(320, 240))
    for name in files:
        damage(folder / "data" / name)
    environment = {**os.environ, "SDL_VIDEODRIVER": "dummy", "SDL_RENDER_DRIVER": "software"}
    result = subprocess.run([folder / "player", SCENE, "--ini"], cwd="/", env=environment,
                            text=True, errors="replace", stdin=subprocess.DEVNULL,
                            capture_output=True, timeout=300, check=False, **NOBODY)
    assert result.returncode == (WINDOW in costs), result.stdout + result.stderr
    assert not [line for line in result.stderr.splitlines() if not PROGRESS.fullmatch(line)]
    said = [SAID.fullmatch(line) for line in result.stdout.splitlines()]
    assert all(said), result.stdout
    counts = collections.Counter(line[1] for line in said)
    wanted = {name: counts[name] if number is None else number for name, number in costs.items()}
    assert counts == collections.Counter(wanted)
    assert costs != DUMB or counts[TEXT] > 100
