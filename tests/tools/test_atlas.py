"""vesk_atlas: its pictures and data against golden files, its printed examples and what it refuses.

The golden files are made by the commands below; a change of the world, of the tiles' images or of
the drawing changes them.
"""

import gzip
import json
import os
import pathlib
import re
import resource
import signal
import subprocess

import pytest
from PIL import Image

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = ROOT / "tests/tools/golden"
PROGRAM = os.environ.get("VESK_ATLAS", str(ROOT / "build/release/bin/vesk_atlas"))
IS_WINDOWS = PROGRAM.endswith(".exe")
COMMAND = ["wine", PROGRAM] if IS_WINDOWS else [PROGRAM]
CONSOLE = ROOT / "build/windows/bin/console.exe"
ENDS = ["0", "2"] if IS_WINDOWS else [signal.SIGINT, signal.SIGTERM, signal.SIGHUP]  # 0: Ctrl-C, 2: the console closes
GRAPH = (164, 202, 214)  # the colour of links


def run(command, *more, limits=(), **options):
    def limit():
        for which, most in limits:
            resource.setrlimit(which, (most, most))

    return subprocess.run([*COMMAND, *command.split(), *more], text=True, preexec_fn=limit,
                          **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})


def atlas(command, *more, **options):
    result = run(command, *more, **options)
    assert (result.returncode, result.stdout or "") == (0, ""), result.stderr


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
    examples = set(re.findall(
        "^ *(?:build/release/bin/)?vesk_atlas ((?:cell|tour|clusters|tiles) [0-9].*)$", text, re.M))
    assert len(examples) == 8
    for command in examples:
        atlas(command, *([] if " -o " in command else ["-o", "p.png"]))


@pytest.mark.parametrize("command", [
    "clusters 0 130 1 131 --scale 8", "tour 15 2080", "clusters 1 1 1 1 --scale 8 --graph 45,38"])
def test_links_show_where_ids_wrap_and_beside_their_block(command, tmp_path):
    atlas(command, "-o", tmp_path / "p.png")
    assert GRAPH in Image.open(tmp_path / "p.png").convert("RGB").getdata()


def test_tiles_are_written_for_each_zoom(tmp_path):
    atlas("tiles 0 0 1 1 --zoom 4-6 -o", tmp_path)
    names = {str(file.relative_to(tmp_path)) for file in tmp_path.glob("*/*/*")}
    assert names == {f"{zoom}/{x}/{y}.png" for zoom, side in ((4, 2), (5, 4), (6, 8))
                     for x in range(side) for y in range(side)}
    # Cell (6, 3) is the third from the left and the lowest of its picture; its shores show.
    island = Image.open(tmp_path / "6/1/0.png").convert("RGB").crop((128, 0, 192, 64))
    assert {(140, 175, 87), (244, 228, 176)} <= set(island.getdata())


def test_tiled_reads_the_map_and_the_map_tells_the_records(tmp_path):
    data, tmj, again = (tmp_path / name for name in ("p.json", "p.tmj", "again.json"))
    atlas("cell 6 3 -o - --json", data, "--tmj", tmj, stdout=subprocess.DEVNULL)
    subprocess.run(["tiled", "--export-map", "json", tmj, again], check=True,
                   env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
    dungeon = json.loads(data.read_text())["cells"][0]["dungeon"]
    rooms = [dungeon["rooms"][i] for i in dungeon["mainRooms"]]
    layers = {layer["name"]: [tuple(thing[side] for side in ("x", "y", "width", "height"))
                              for thing in layer["objects"]]
              for layer in json.loads(again.read_text())["layers"]}
    assert layers == {
        **{name: [(24 * room["minCorner"]["x"], 24 * (512 - room["maxCorner"]["y"]),
                   24 * room["w"], 24 * room["h"]) for room in part]
           for name, part in (("rooms", rooms), ("hallways", dungeon["hallways"]))},
        **{name: [(24 * tile["x"] + 12, 24 * (511 - tile["y"]) + 12, 0, 0) for tile in part]
           for name, part in (("markers", dungeon["compassPoints"]),
                              ("enemies", [at for room in rooms for at in room["spawnPoints"]]))}}


def test_no_run_leaves_half_a_file_or_loses_a_good_one(tmp_path):
    picture, link, circle = tmp_path / f"{'p' * 251}.png", tmp_path / "link.png", tmp_path / "circle"
    picture.write_text("good")
    link.symlink_to(picture.name)
    circle.symlink_to(circle.name)
    reader, pipe = os.pipe()
    os.close(reader)
    for command, target, options, reason in (
            ("cell 6 3 --overlay all -o", link, {"limits": [(resource.RLIMIT_FSIZE, 500)]}, "File too large"),
            ("cell 7 3 -o - --json", link, {"stdout": pipe}, "Broken pipe"),  # at the last moment
            ("cell 7 3 -o", circle, {}, "symbolic links")):
        failed = run(command, target, restore_signals=False, **options)
        assert failed.returncode == 1 and reason in failed.stderr
    os.close(pipe)
    assert set(tmp_path.iterdir()) == {picture, link, circle}
    assert link.is_symlink() and circle.is_symlink() and picture.read_text() == "good"
    atlas("cell 6 3 -o", link)
    assert link.is_symlink() and Image.open(picture).size == (512, 512)


@pytest.mark.parametrize("end", ENDS)
def test_an_interrupted_run_leaves_all_as_it_was(tmp_path, end):
    picture, target = tmp_path / "p.png", tmp_path / "link.png"
    picture.write_text("good")
    if IS_WINDOWS:  # where a link itself is replaced
        target = picture
    else:
        target.symlink_to(picture.name)
    with subprocess.Popen([*COMMAND, *"clusters 0 0 499 499 --scale 1 -o".split(), target, "--json",
                           tmp_path / "j"], stderr=subprocess.PIPE, text=True,
                          preexec_fn=lambda: IS_WINDOWS or signal.signal(end, signal.SIG_DFL)) as process:
        assert re.match("drawing: [0-9]+ %", process.stderr.readline())
        assert len(set(tmp_path.iterdir()) - {picture, target}) == 2, "drafts"
        if IS_WINDOWS:
            subprocess.run(["wine", CONSOLE, end, "vesk_atlas.exe"], check=True)
        else:
            process.send_signal(end)
    assert process.returncode == (3 if IS_WINDOWS else -end)
    assert set(tmp_path.iterdir()) == {picture, target} and picture.read_text() == "good"
    assert target == picture or target.is_symlink()


def test_pipes_are_written_straight(tmp_path):
    pipe = tmp_path / "pipe"
    os.mkfifo(pipe)
    with open(os.open(pipe, os.O_RDWR), "rb") as reader:
        atlas("cell 6 3 -o", pipe)
        assert pipe.is_fifo() and reader.read(4) == b"\x89PNG"


def test_what_the_system_lacks(tmp_path):
    if "tsan/" not in PROGRAM:  # whose own memory lies where such stacks move the program's
        atlas("tour 6 3 --threads 200 -o", tmp_path / "p.png", limits=[(resource.RLIMIT_STACK, 1 << 46)])
    with open("/dev/full", "w") as device:
        assert run("-h", stdout=device).returncode == 1
    if "san/" not in PROGRAM:  # a sanitizer takes more room than there is
        big = ("cell 6 3 --scale 16 -o", tmp_path / "p.png")  # 64 MiB of pixels
        atlas(*big, limits=[(resource.RLIMIT_AS, 110 << 20)])
        short = run(*big, limits=[(resource.RLIMIT_AS, 60 << 20)])
        assert (short.returncode, short.stderr) == (1, "vesk_atlas: not enough memory\n")


def test_help_and_version_are_told():
    version = re.search(r"VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text().split("project(")[1])[1]
    assert run("--version").stdout == f"vesk_atlas {version}\n"
    assert run("-h").stdout == run("--help").stdout and run("-h").stdout.startswith("usage: vesk_atlas cell")


def test_cells_beyond_the_world_are_left_out(tmp_path):
    atlas("tour 0 20 -o", tmp_path / "p.png", "--json", tmp_path / "p.json")
    cells = json.loads((tmp_path / "p.json").read_text())["cells"]
    assert [cell["key"]["x"] for cell in cells] == 3 * [0, 1]
    # In the east the world ends at this pixel, and links so far from it, in the middle of a cell.
    for command, end, most in (("clusters 10922 0 10922 0 --scale 8", 88, 2), ("tour 174762 2", 1024, 250)):
        atlas(command, "-o", tmp_path / "p.png")
        picture = Image.open(tmp_path / "p.png").convert("RGB")
        assert set(picture.crop((end, 0, *picture.size)).getdata()) <= {(12, 16, 24), (37, 118, 172)}
        assert GRAPH not in picture.crop((end - most, 0, end, picture.height)).getdata()


@pytest.mark.parametrize("command, code, reason", [
    ("island 1 2", 2, "no command"), ("cell 1 2 -xo p.png", 2, "-x is no option"),
    ("cell -12 2 -o p.png", 2, "begin at 0"), ("tour 1 174763 -o p.png", 2, "0 to 174762"),
    ("cell 1 2 --zoom 3 -o p", 2, "--zoom"), ("tour 1 2 --scale 11 -o p.png", 2, "1 to 10"),
    ("clusters 0 0 999 9 -o p.png", 2, "16384"), ("clusters 0 0 1 1 --graph 7,3 -o p", 2, "no land"),
    ("tiles 0 0 0 0 --zoom 3 -o -", 2, "folder"), ("tiles 0 0 0 0 --zoom 3", 2, "-o DIR"),
    ("clusters 4 0 4 0 --graph 45,38 -o p", 2, "not reach"), ("cell 1 2 -o p --json ./p", 2, "each"),
    ("clusters 0 0 999 999 --scale 1 -o p --json no/p", 1, "no/p: No such file"),
])
def test_refusals_take_one_line(command, code, reason, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    result = run(command)
    assert (result.returncode, result.stdout) == (code, "")
    assert result.stderr.startswith("vesk_atlas: ") and result.stderr.count("\n") == 1
    assert reason in result.stderr
    assert list(tmp_path.iterdir()) == []
