"""The shipped images where the program cuts them, the typeface at the size it uses, and the command
that rebuilds both from their sources."""

import pathlib
import re
import shutil
import subprocess

import pytest
from PIL import Image, ImageFont

ROOT = pathlib.Path(__file__).resolve().parents[2]

TILES = [("image.png", 100, 0, 16), ("image.png", 100, 100, 16),
         ("terrain_transition.png", 48, 64, 16)]
SHIPS = [("ships.png", 0, y, 32) for y in (0, 32, 64, 96)]
FIGURES = [("link_raw.png", x, 0, 16) for x in (0, 30, 62, 91)]
WHOLE = [("hud_compass.png", 0, 0, 118), ("island_icon.png", 0, 0, 9)]
SINGLES = [("enemies.png", 0, 0, 16), ("compass.png", 0, 0, 128)]

BUTTON = (260, 20)  # pixels
LISTING_STEP = 15  # pixels from line to line of the debug listings
PRINTABLE = [chr(code) for code in range(0x20, 0x7f)]


def load(name):
    return Image.open(ROOT / "data" / name)


def cut(name, x, y, size, more=0):
    """A square of an image and so many pixels around it; clear beyond the image."""
    return load(name).convert("RGBA").crop((x - more, y - more, x + size + more, y + size + more))


@pytest.mark.parametrize("tile", TILES, ids=str)
def test_tiles_are_opaque_and_continue_beyond_their_edges(tile):
    # Without an alpha channel tiles are copied instead of blended. What lies around a cut can show
    # at its edge when the renderer rounds outward.
    assert load(tile[0]).mode == "RGB"
    middle, around = cut(*tile), cut(*tile, more=1)
    assert len(middle.getcolors()) > 1
    wrapped = Image.new("RGBA", around.size)
    for x in (-15, 1, 17):
        for y in (-15, 1, 17):
            wrapped.paste(middle, (x, y))
    inside = [(a, b) for a, b in zip(around.getdata(), wrapped.getdata()) if a[3]]
    assert len(inside) > 16 * 16 and all(a == b for a, b in inside)


@pytest.mark.parametrize("figure", SHIPS + FIGURES + SINGLES + WHOLE, ids=str)
def test_figures_stand_alone_on_a_clear_ground(figure):
    size, colours = figure[3], {colour: number for number, colour in cut(*figure).getcolors()}
    assert figure not in WHOLE or load(figure[0]).size == (size, size)
    assert len(colours) >= 5, "an outline, a ground and some colours"
    assert size * size / 4 < size * size - colours.pop((0, 0, 0, 0)) < size * size
    assert {colour[3] for colour in colours} == {255}, "no half clear or coloured clear pixel"
    box = cut(*figure, more=1).getchannel("A").getbbox()
    assert min(box) >= 1 and max(box) <= size + 1, "nothing shows if a renderer rounds outward"


@pytest.mark.parametrize("figure, size", [*((figure, 24) for figure in TILES + SHIPS + FIGURES), (SINGLES[1], 32)])
def test_pictures_come_out_the_same_however_a_renderer_rounds(figure, size):
    # At zoom 1, where an edge between texels falls on the centre of a pixel.
    picture = cut(*figure)
    down, up = ([int((at + 0.5) * figure[3] / size + shift) for at in range(size)] for shift in (-0.01, 0.01))
    assert down != up or size == 32
    for rows, columns in ((down, up), (up, down), (up, up)):
        assert all(picture.getpixel((x, y)) == picture.getpixel((down_x, down_y))
                   for y, down_y in zip(rows, down) for x, down_x in zip(columns, down))


@pytest.mark.parametrize("group", [SHIPS, FIGURES, TILES], ids=["ships", "figures", "tiles"])
def test_headings_and_grounds_differ(group):
    for one in group:
        for other in group[:group.index(one)]:
            pairs = zip(cut(*one).getdata(), cut(*other).getdata())
            assert sum(a != b for a, b in pairs) > one[3] ** 2 / 10


@pytest.fixture(name="font")
def load_font():
    path = str(ROOT / "data/sample.ttf")
    return ImageFont.truetype(path, 20, layout_engine=ImageFont.Layout.BASIC)


def test_every_printable_character_has_a_crisp_glyph_of_its_own(font):
    glyphs = {character: font.getmask(character, "L") for character in [*PRINTABLE[1:], "\ufffe"]}
    shapes = {(font.getbbox(character), bytes(glyph)) for character, glyph in glyphs.items()}
    assert len(shapes) == len(glyphs), "one looks like another, or is missing"
    assert {pixel for glyph in glyphs.values() for pixel in bytes(glyph)} == {0, 255}
    assert len({font.getlength(digit) for digit in "0123456789"}) == 1, "figures align"
    for character in glyphs:
        assert font.getbbox(character)[2] <= font.getlength(character) + 1, "none is cut at its end"


def test_texts_fit_buttons_and_listings(font):
    ascent, descent = font.getmetrics()
    assert ascent + descent <= BUTTON[1]
    _, top, _, bottom = font.getbbox("".join(PRINTABLE))
    assert top >= 1 and bottom <= BUTTON[1] - 1 and bottom - top < LISTING_STEP
    for text in ("Render min spanning tree : false", "Render dungeon rooms : false"):
        ink, (left, _) = font.getmask2(text)
        assert left + ink.getbbox()[0] >= 1 and font.getbbox(text)[2] <= BUTTON[0] - 4


@pytest.fixture(name="tree")
def copy_tree(folder):
    for part in ("art", "data", "packaging/icons", "src/gfx"):
        shutil.copytree(ROOT / part, folder / part, ignore=shutil.ignore_patterns("__pycache__"))
    (folder / "scripts").mkdir()
    shutil.copy(ROOT / "scripts/build-art", folder / "scripts")
    return folder


def build_art(tree, *arguments):
    return subprocess.run([tree / "scripts/build-art", *arguments], cwd="/", capture_output=True,
                          text=True, check=False)


def test_what_is_missing_or_altered_is_named_and_made_again(tree):
    assert build_art(tree, "--check").returncode == 0
    palette = tree / "art/palette.txt"
    palette.write_text(palette.read_text().replace("21628b", "21728b"))
    (tree / "data/sample.ttf").unlink()
    result = build_art(tree, "--check")
    assert result.returncode == 1 and not (tree / "data/sample.ttf").exists()
    named = set(re.findall(r"^\S+", result.stdout, re.M))
    assert named > {"data/image.png", "data/sample.ttf"} and "data/enemies.png" not in named
    assert build_art(tree).returncode == 0
    assert build_art(tree, "--check").returncode == 0
    assert (tree / "data/sample.ttf").read_bytes() == (ROOT / "data/sample.ttf").read_bytes()


@pytest.mark.parametrize("name, old, new, message", [
    ("enemies.txt", "\nkook", "\nkkook", "enemies.txt:7: 17 columns"),
    ("palette.txt", "141a2e", "141a2", "palette.txt:4: wanted")])
def test_a_fault_in_a_source_is_told_with_its_line(tree, name, old, new, message):
    source = tree / "art" / name
    source.write_text(source.read_text().replace(old, new, 1))
    result = build_art(tree)
    assert result.returncode == 2 and message in result.stderr
