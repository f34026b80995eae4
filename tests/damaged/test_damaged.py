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
IMAGE, FONT, TEXT = "CreateTextureFromSurface", "TTF_OpenFont", "TTF_RenderText"
WINDOW, OTHER = "SDL_CreateWindow", "CreateTexture"
SAID = re.compile(f"({IMAGE}|{FONT}|{TEXT}|{WINDOW}|{OTHER}) error: .+")
PROGRESS = re.compile(r"of triangles \d+ to be flipped\. |warning: obtuce seed triangle sellected |"
                      r"less than 3 points, aborting |linear structure, aborting |"
                      r"libpng (error|warning): .*")
SETTINGS = "[resource]\nmode = {}\n[graphics]\nwidth = {}\nheight = {}\n[world]\n" \
           "start_pos_x = 81756\nstart_pos_y = 38940\nstart_zoom = 1\n"


def replace(by):
    def act(path):
        shutil.rmtree(path) if path.is_dir() else path.unlink()
        by(path)
    return act


missing, forbid = replace(lambda path: None), lambda path: path.chmod(0)
directory, empty = replace(pathlib.Path.mkdir), replace(pathlib.Path.touch)
dangling = replace(lambda path: path.symlink_to("nowhere"))


def holding(content):
    return lambda path: path.write_bytes(content)


def cut_to(share):
    return lambda path: path.write_bytes(path.read_bytes()[:int(path.stat().st_size * share)])


def scratch(path):
    """Changes one byte in fifty, at places of chance."""
    draw, content = random.Random(path.name), bytearray(path.read_bytes())
    for _ in range(1 + len(content) // 50):
        content[draw.randrange(len(content))] = draw.randrange(256)
    path.write_bytes(content)


ALL, TYPE, INI = list(IMAGES), ["sample.ttf"], ["../vesk.ini"]
COST = {IMAGE: sum(IMAGES.values())}  # every image is missed each time it is asked for
ANY = {IMAGE: None}  # some are read, some are not
DUMB = {FONT: 1, TEXT: None}
MUTE = {FONT: None, TEXT: None}
HUGE = b"; nothing of note here\n" * (1 << 21) + SETTINGS.format("installed", 320, 240).encode()

# Of every case the files, in the folder of the images, what becomes of them, and how often what is
# said; None for any number.
CASES = {
    "nothing": ([], missing, {}),
    "one image missing": (["image.png"], missing, {IMAGE: IMAGES["image.png"]}),
    "images missing": (ALL, missing, COST),
    "images empty": (ALL, empty, COST),
    "images that are text": (ALL, holding(b"no picture\n" * 9), COST),
    "images directories": (ALL, directory, COST),
    "images dangling links": (ALL, dangling, COST),
    "images forbidden": (ALL, forbid, COST),
    "images cut": (ALL, cut_to(0.5), ANY),
    "images scratched": (ALL, scratch, ANY),
    "font missing": (TYPE, missing, DUMB),
    "font empty": (TYPE, empty, DUMB),
    "font forbidden": (TYPE, forbid, DUMB),
    "font that is text": (TYPE, holding(b"no font\n" * 9), DUMB),
    "font cut": (TYPE, cut_to(0.7), MUTE),
    "font scratched": (TYPE, scratch, MUTE),
    "data missing": (["."], missing, COST | DUMB),
    "data forbidden": (["."], forbid, COST | DUMB),
    "data a file": (["."], empty, COST | DUMB),
    # Without settings the layout is the development one, where here nothing is.
    "settings missing": (INI, missing, COST | DUMB),
    "settings a directory": (INI, directory, COST | DUMB),
    "settings noise": (INI, holding(random.Random(4).randbytes(1 << 20)), COST | DUMB),
    "settings huge": (INI, holding(HUGE), {}),
    "window of no size": (INI, holding(SETTINGS.format("installed", -5, 0).encode()), {}),
    "window too large": (INI, holding(SETTINGS.format("", 9, 1 << 30).encode()), {WINDOW: 1}),
}


@pytest.mark.parametrize("files, damage, costs", CASES.values(), ids=CASES)
def test_a_play_among(folder, files, damage, costs):
    shutil.copy2(PLAYER, folder / "player")
    shutil.copytree(ROOT / "data", folder / "data")
    (folder / "vesk.ini").write_text(SETTINGS.format("installed", 320, 240))
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
