"""vesk_atlas: its pictures and data against golden files, its printed examples and what it refuses.

The golden files are made by the commands below; a change of the world, of the tiles' images or of
the drawing changes them.
"""

import gzip
import os
import pathlib
import re
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = ROOT / "tests/tools/golden"


def run(command, *more):
    program = os.environ.get("VESK_ATLAS", ROOT / "build/release/bin/vesk_atlas")
    return subprocess.run([program, *command.split(), *more], capture_output=True, text=True)


def atlas(command, *more):
    result = run(command, *more)
    assert (result.returncode, result.stdout) == (0, ""), result.stderr


@pytest.mark.parametrize("threads", ["1", "3"])
@pytest.mark.parametrize("name, command", [
    ("cell", "cell 6 3 --overlay border,rooms,tree,hallways,spawns,compass,triangulation"),
    ("tour", "tour 6 3"), ("block", "clusters 0 0 1 1 --scale 6"),
    ("graph", "clusters 3 1 4 2 --graph whole"),
])
def test_golden_picture_and_data(name, command, threads, tmp_path):
    picture, data = tmp_path / f"{name}.png", tmp_path / f"{name}.json"
    atlas(command, "--threads", threads, "-o", picture, "--json", data)
    meant = f"{command} -o {name}.png --json {name}.json; gzip -n9 {name}.json if this is meant"
    assert picture.read_bytes() == (GOLDEN / picture.name).read_bytes(), meant
    assert data.read_bytes() == gzip.decompress((GOLDEN / f"{name}.json.gz").read_bytes()), meant


def test_printed_examples_run(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    texts = [ROOT / name for name in ("packaging/vesk_atlas.6", "README.md", "docs/world.md")]
    text = "\n".join(map(pathlib.Path.read_text, texts)).replace("\\-", "-").replace("`", "\n")
    examples = set(re.findall("^ *(?:build/release/bin/)?vesk_atlas ((?:cell|tour|clusters) [0-9].*)$",
                              text, re.M))
    assert len(examples) == 6
    for command in examples:
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
    ("cell -12 2 -o p.png", 2, "begin at 0"), ("cell 1 2 -o p --json p", 2, "a file each"),
    ("cell 1 2 -xo p.png", 2, "-x is no option"),
])
def test_refusals_take_one_line(command, code, reason, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    result = run(command)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr.startswith("vesk_atlas: ") and result.stderr.count("\n") == 1
    assert reason in result.stderr
    assert list(tmp_path.iterdir()) == []
