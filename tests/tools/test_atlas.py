"""vesk_atlas: its pictures against golden files, its data against vesk_digest, and what it refuses.

The golden pictures are made by the commands below; a change of the world, of the tiles' images or of
the drawing changes them.
"""

import itertools
import json
import os
import pathlib
import re
import subprocess

import pytest
from PIL import Image

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
DATA = ROOT / "data"
TILES = [("image.png", 100, 0), ("image.png", 100, 100), ("terrain_transition.png", 48, 64)]


def run(program, command, *more):
    path = os.environ.get(program, ROOT / "build/release/bin" / program.lower())
    return subprocess.run([path, *command.split(), *more], capture_output=True,
                          text=True, timeout=60)


def atlas(command, *more):
    result = run("VESK_ATLAS", command, *more)
    assert (result.returncode, result.stdout) == (0, ""), result.stderr


@pytest.mark.parametrize("threads", ["1", "3"])
@pytest.mark.parametrize("name, command", [
    ("cell.png", "cell 6 3 --overlay border,rooms,tree,hallways,spawns,compass,triangulation"),
    ("block.png", "clusters 0 0 1 1 --scale 6"),
])
def test_golden_picture(name, command, threads, tmp_path):
    atlas(command, "--threads", threads, "-o", tmp_path / name)
    assert (tmp_path / name).read_bytes() == (HERE / "golden" / name).read_bytes(), (
        f"not the golden picture; if that is meant: vesk_atlas {command} -o tests/tools/golden/{name}")


def mean_colour(image, x, y):
    pixels = Image.open(DATA / image).convert("RGB").crop((x, y, x + 16, y + 16)).getdata()
    return tuple(round(sum(channel) / len(pixels)) for channel in zip(*pixels))


def test_tiles_bear_the_game_images_colours(tmp_path):
    atlas("cell 6 3", "-o", tmp_path / "p.png", "--json", tmp_path / "p.json")
    colours = [mean_colour(*tile) for tile in TILES]
    rows = json.loads((tmp_path / "p.json").read_text())["cells"][0]["dungeon"]["tiles"]
    wanted = [colours[int(tile)] for row in reversed(rows) for tile in row]
    assert list(Image.open(tmp_path / "p.png").convert("RGB").getdata()) == wanted


def numbers(value):
    """A record's numbers in the order of its fields, each list after its length."""
    if isinstance(value, int):
        return [value % 2**32]
    parts = value.values() if isinstance(value, dict) else value
    length = [len(value)] if isinstance(value, list) else []
    return length + [number for part in parts for number in numbers(part)]


def pairs(entries):
    return [len(entries)] + [number for pair in entries for part in pair for number in numbers(part)]


def dungeon_numbers(dungeon):
    for name, value in dungeon.items():
        if name == "tiles":
            tiles = bytes(map(int, "".join(value)))
            yield from (int.from_bytes(tiles[i:i + 8], "little") for i in range(0, len(tiles), 8))
        else:
            yield from pairs(value) if name == "adjacency" else numbers(value)


def digest(words):
    value = 0xcbf29ce484222325
    for word in words:
        value = (value ^ word) * 0x9e3779b97f4a7c15 % 2**64
        value ^= value >> 32
    return f"{value:016x}"


def printed_digests(command):
    return [line.split()[-1] for line in run("VESK_DIGEST", command, "--each").stdout.splitlines()[:-1]]


def test_data_of_cells_is_what_the_generator_makes(tmp_path):
    atlas("tour 6 3", "-o", tmp_path / "p.png", "--json", tmp_path / "p.json")
    cells = json.loads((tmp_path / "p.json").read_text())["cells"]
    assert [(cell["key"]["x"], cell["key"]["y"]) for cell in cells] == [
        (x, y) for y in (2, 3, 4) for x in (5, 6, 7)]
    land = [cell for cell in cells if cell["dungeon"]]
    assert [(cell["key"]["x"], cell["key"]["y"]) for cell in land] == [(6, 3), (5, 4)]
    for cell in land:
        place = "{x} {y}".format(**cell["key"])
        assert [digest(dungeon_numbers(cell["dungeon"]))] == printed_digests(
            f"dungeons {place} {place} {len(cell['neighbors'])}")


def test_data_of_clusters_is_what_the_generator_makes(tmp_path):
    command = "clusters 3 1 4 2"
    atlas(command, "--graph", "whole", "-o", tmp_path / "p.png", "--json", tmp_path / "p.json")
    clusters = json.loads((tmp_path / "p.json").read_text())["clusters"]
    assert [digest(itertools.chain(numbers(cluster["key"]), pairs(cluster["cells"])))
            for cluster in clusters] == printed_digests(command)
    assert [digest(pairs(cluster["neighbors"])) for cluster in clusters] == printed_digests(
        command.replace("clusters", "neighbors"))


def printed_examples():
    texts = [(ROOT / name).read_text() for name in ("packaging/vesk_atlas.6", "README.md", "docs/world.md")]
    text = "\n".join(texts).replace("\\-", "-").replace("`", "\n")
    return sorted(set(re.findall("^ *vesk_atlas ((?:cell|tour|clusters) [0-9].*)$", text, re.MULTILINE)))


def test_printed_examples_run(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    assert len(printed_examples()) == 6
    for command in printed_examples():
        atlas(command, *([] if " -o " in command else ["-o", "p.png"]))


@pytest.mark.parametrize("command, code, reason", [
    ("", 2, "a command is missing"), ("island 1 2", 2, "no command"),
    ("cell 1 -o p.png", 2, "two coordinates"), ("clusters 1 2 3 -o p.png", 2, "four coordinates"),
    ("cell -1 2 -o p.png", 2, "begin at 0"), ("tour 1 174763 -o p.png", 2, "0 to 174762"),
    ("cell 1 2x -o p.png", 2, "a number"), ("clusters 2 0 1 0 -o p.png", 2, "lower left"),
    ("cell 1 2", 2, "-o FILE"), ("cell 1 2 -o", 2, "-o is no option, or lacks"),
    ("cell 1 2 --overlay rooms,sand -o p.png", 2, '"sand"'), ("cell 1 2 --colour", 2, "--colour"),
    ("cell 1 2 --graph none -o p.png", 2, "--graph"), ("tour 1 2 --scale 0 -o p.png", 2, "1 to 64"),
    ("clusters 0 0 1 1 --graph 3 -o p.png", 2, '"3"'), ("clusters 0 0 999 9 -o p.png", 2, "16384"),
    ("cell 1 2 -o missing/p.png", 1, "missing/p.png"),
    ("cell 1 2 -o p.png --json missing/p.json", 1, "missing/p.json"),
    ("cell -12 2 -o p.png", 2, "begin at 0"), ("cell 1 2 -xo p.png", 2, "-x is no option"),
])
def test_refusals_take_one_line(command, code, reason, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    result = run("VESK_ATLAS", command)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr.startswith("vesk_atlas: ") and result.stderr.count("\n") == 1
    assert reason in result.stderr
    assert list(tmp_path.iterdir()) == []
