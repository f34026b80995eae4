"""The program among missing and damaged files: it starts and plays, or says what it lacks; it never crashes,
hangs or upsets a sanitizer.

VESK_SCENE names the player of scenes (build/asan/bin/vesk_scene if unset); it plays one that goes through
everything that is drawn. Every case has a layout of its own: what becomes of which files, and how often what
is said.
"""

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
IMAGE, FONT, TEXT, WINDOW = ("CreateTextureFromSurface", "TTF_OpenFont", "TTF_RenderText", "SDL_CreateWindow")
SAID = re.compile(r"(CreateTextureFromSurface|TTF_OpenFont|TTF_RenderText|SDL_CreateWindow|CreateTexture) error: .+")
PROGRESS = re.compile(r"of triangles \d+ to be flipped\. |warning: obtuce seed triangle sellected |"
                      r"less than 3 points, aborting |linear structure, aborting |libpng (error|warning): .*")
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


ALL, TYPE = list(IMAGES), ["sample.ttf"]
COST = {IMAGE: sum(IMAGES.values())}  # every image is missed each time it is asked for
DUMB = {FONT: 1, TEXT: None}  # None: any number
DOUBTFUL = {IMAGE: None}
HUGE = b"; nothing of note here\n" * (100 << 20 >> 5) + SETTINGS.format("installed", 320, 240).encode()

CASES = {
    "nothing": ([], missing, {}),
    "one image missing": (["image.png"], missing, {IMAGE: IMAGES["image.png"]}),
    "images missing": (ALL, missing, COST), "images empty": (ALL, empty, COST),
    "images that are text": (ALL, holding(b"no picture\n" * 9), COST), "images directories": (ALL, directory, COST),
    "images dangling links": (ALL, dangling, COST), "images forbidden": (ALL, forbid, COST),
    "images cut": (ALL, cut_to(0.5), DOUBTFUL), "images cut early": (ALL, cut_to(0.1), DOUBTFUL),
    "images scratched": (ALL, scratch, DOUBTFUL),
    "font missing": (TYPE, missing, DUMB), "font empty": (TYPE, empty, DUMB), "font forbidden": (TYPE, forbid, DUMB),
    "font that is text": (TYPE, holding(b"no font\n" * 9), DUMB), "font cut": (TYPE, cut_to(0.7), DUMB | {FONT: None}),
    "font scratched": (TYPE, scratch, DUMB | {FONT: None}),
    "data missing": (["."], missing, COST | DUMB), "data forbidden": (["."], forbid, COST | DUMB),
    "data a file": (["."], empty, COST | DUMB),
    # Without settings the layout is the development one, where here nothing is.
    "settings missing": (["../vesk.ini"], missing, COST | DUMB),
    "settings a directory": (["../vesk.ini"], directory, COST | DUMB),
    "settings noise": (["../vesk.ini"], holding(random.Random(4).randbytes(1 << 20)), COST | DUMB),
    "settings huge": (["../vesk.ini"], holding(HUGE), {}),
    "window of no size": (["../vesk.ini"], holding(SETTINGS.format("installed", -5, 0).encode()), {}),
    "window too large": (["../vesk.ini"], holding(SETTINGS.format("installed", 100, 2147483647).encode()), {WINDOW: 1}),
}


@pytest.mark.parametrize("files, damage, costs", CASES.values(), ids=CASES)
def test_a_play_among(folder, files, damage, costs):
    shutil.copy2(PLAYER, folder / "player")
    shutil.copytree(ROOT / "data", folder / "data")
    (folder / "vesk.ini").write_text(SETTINGS.format("installed", 320, 240))
    for name in files:
        damage(folder / "data" / name)
    result = subprocess.run(
        [folder / "player", SCENE, "--ini"], cwd="/", stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace",
        timeout=300, check=False, env={**os.environ, "SDL_VIDEODRIVER": "dummy", "SDL_RENDER_DRIVER": "software",
                                       "SDL_RENDER_VSYNC": "0"}, **NOBODY)
    assert result.returncode == (1 if WINDOW in costs else 0), result.stdout + result.stderr
    assert [line for line in result.stderr.splitlines() if not PROGRESS.fullmatch(line)] == []
    said = [SAID.fullmatch(line) for line in result.stdout.splitlines()]
    assert all(said), result.stdout
    counts = {name: sum(line[1] == name for line in said) for name in {line[1] for line in said} | set(costs)}
    wanted = {name: counts.get(name) if number is None else number for name, number in costs.items()}
    assert counts == wanted
    assert TEXT not in costs or FONT in costs and costs[FONT] is None or counts[TEXT] > 100
