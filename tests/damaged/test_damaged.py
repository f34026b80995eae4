"""The program among missing and damaged files: it starts and plays, or says what it lacks; it never
crashes, hangs or upsets a sanitizer.

VESK_SCENE names the player of scenes (build/asan/bin/vesk_scene if unset), which wine runs if it is one
for Windows; it plays one that goes through everything that is drawn.
"""

import collections
import os
import pathlib
import re
import shutil
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PLAYER = pathlib.Path(os.environ.get("VESK_SCENE", ROOT / "build/asan/bin/vesk_scene")).resolve()
IS_WINDOWS = PLAYER.suffix == ".exe"
NOBODY = {"user": 65534, "group": 65534, "extra_groups": []} if os.geteuid() == 0 and not IS_WINDOWS else {}

IMAGE, TYPE, TEXT = "CreateTextureFromSurface", "TTF_OpenFont", "TTF_RenderText"
WINDOW = "SDL_CreateWindow"
SAID = re.compile(f"({IMAGE}|{TYPE}|{TEXT}|{WINDOW}) error: .+")
PROGRESS = re.compile(r"of triangles \d+ to be flipped\. |warning: obtuce seed triangle sellected |"
                      r"less than 3 points, aborting |linear structure, aborting |"
                      r"libpng (error|warning): .*")

# What is said of each and how often, None for any number: every image is missed each time it is
# asked for. Without settings the layout is another, where here nothing is.
BLANK, DUMB = {IMAGE: 48}, {TYPE: 1, TEXT: None}
COSTS = {"data/*.png": BLANK, "data/sample.ttf": DUMB,
         "vesk.ini": BLANK | DUMB, "data": BLANK | DUMB}

# What a shell does to a file or the folder, $0.
UNREADABLE = {"missing": "rm -r $0", "empty": "rm -r $0; touch $0", "forbidden": "chmod 0 $0",
              "text": "rm -r $0; yes no such thing | head > $0",
              "a folder": "rm -r $0; mkdir $0", "a pipe": "rm -r $0; mkfifo $0",
              "a dangling link": "rm -r $0; ln -s nowhere $0"}
if IS_WINDOWS:  # whose files have no such rights, and no such kinds
    UNREADABLE = {name: UNREADABLE[name] for name in ("missing", "empty", "text", "a folder")}
HALVE = "truncate -s $(($(stat -c %s $0) / 2)) $0"
# One byte in fifty changed, at places of chance.
SCRATCH = """perl -0777 -pi -e 'srand 1; $all = $_;
for $n (0 .. length() / 50) { substr($all, rand length, 1) = chr rand 256 } $_ = $all' $0"""

CASES = [(files, damage, costs) for files, costs in COSTS.items() for damage in UNREADABLE.values()]
CASES += [(files, damage, dict.fromkeys(said)) for damage in (SCRATCH, HALVE)
          for files, said in (("data/*.png", [IMAGE]), ("data/sample.ttf", [TYPE, TEXT]))]
CASES += [("vesk.ini", command, costs) for command, costs in (
    (":", {}), ("ln -sf /dev/zero $0", BLANK | DUMB),
    ("yes '; of no note' | head -n 4194304 | cat - $0 > $0.new; mv $0.new $0", {}),
    ("sed -i 's/$/\\r/' $0", {}), ("sed -i 's/^width.*/width = -5/; s/^height.*/height = 0/' $0", {}),
    ("sed -i 's/^height.*/height = 1073741824/' $0", {WINDOW: 1}))]


@pytest.mark.parametrize("files, damage, costs", CASES)
def test_a_play_among(folder, files, damage, costs):
    folder /= "Vesk — ö 船"
    folder.mkdir()
    player = shutil.copy2(PLAYER, folder)
    shutil.copytree(ROOT / "data", folder / "data")
    settings = (ROOT / "packaging/vesk.ini.in").read_text().replace("@VESK_RESOURCE_MODE@", "-")
    (folder / "vesk.ini").write_text(settings.replace("1280", "320").replace("720", "240"))
    for path in list(folder.glob(files)):
        subprocess.run(["sh", "-ec", f"IFS=; {damage}", path], check=True)
    command = [*(["wine"] if IS_WINDOWS else []), player, ROOT / "tests/scenes/menu.scene", "--ini"]
    result = subprocess.run(command, cwd="/", env=os.environ | {"SDL_VIDEODRIVER": "dummy"},
                            text=True, errors="replace", stdin=subprocess.DEVNULL,
                            capture_output=True, timeout=300, check=False, **NOBODY)
    assert result.returncode == (WINDOW in costs), result.stdout + result.stderr
    assert all(map(PROGRESS.fullmatch, result.stderr.splitlines())), result.stderr
    said = [SAID.fullmatch(line) for line in result.stdout.splitlines()]
    assert all(said), result.stdout
    counts = collections.Counter(line[1] for line in said)
    wanted = {name: counts[name] if number is None else number for name, number in costs.items()}
    assert counts == collections.Counter(wanted)
    assert costs != DUMB or counts[TEXT] > 100
