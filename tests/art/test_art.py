"""The shipped images where the program cuts them, the typeface at the size it uses, and the command
that rebuilds both from their sources."""

import itertools
import pathlib
import shutil
import subprocess

import pytest
from PIL import Image, ImageFont

ROOT = pathlib.Path(__file__).resolve().parents[2]

TILES = [("image.png", 100, 0, 16), ("image.png", 100, 100, 16),
         ("terrain_transition.png", 48, 64, 16)]
SHIPS = [("ships.png", 0, y, 32) for y in (0, 32, 64, 96)]
FIGURES = [("link_raw.png", x, 0, 16) for x in (0, 30, 62, 91)]
PLATE = 31  # the height of each plate of keys, above and below the dial, with the gap
WHOLE = [("island_icon.png", 0, 0, 9)]
DIAL = ("hud_compass.png", 0, PLATE, 118)
SINGLES = [("enemies.png", 0, 0, 16), ("compass.png", 0, 0, 128)]

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
    for place in itertools.product((-15, 1, 17), repeat=2):
        wrapped.paste(middle, place)
    inside = [(a, b) for a, b in zip(around.getdata(), wrapped.getdata()) if a[3]]
    assert len(inside) > 16 * 16 and all(a == b for a, b in inside)


@pytest.mark.parametrize("figure", SHIPS + FIGURES + SINGLES + WHOLE + [DIAL], ids=str)
def test_figures_stand_alone_on_a_clear_ground(figure):
    size, colours = figure[3], {colour: number for number, colour in cut(*figure).getcolors()}
    assert figure not in WHOLE or load(figure[0]).size == (size, size)
    assert len(colours) >= 5, "an outline, a ground and some colours"
    assert size * size / 4 < size * size - colours.pop((0, 0, 0, 0)) < size * size
    assert {colour[3] for colour in colours} == {255}, "no half clear or coloured clear pixel"
    box = cut(*figure, more=1).getchannel("A").getbbox()
    assert min(box) >= 1 and max(box) <= size + 1, "nothing shows if a renderer rounds outward"


def test_the_plates_lie_alike_about_the_dial():
    picture = load(DIAL[0])
    assert picture.size == (118, 118 + 2 * PLATE), "the dial's middle is the picture's"
    boxes = [picture.crop((0, top, 118, top + PLATE)).getchannel("A").getbbox()
             for top in (0, 118 + PLATE)]
    assert boxes == [(10, 0, 108, 29), (10, 2, 108, 31)]


@pytest.mark.parametrize("figure, size", [
    *((figure, 24) for figure in TILES + SHIPS + FIGURES), (SINGLES[1], 32)])
def test_pictures_come_out_the_same_however_a_renderer_rounds(figure, size):
    # At zoom 1, where an edge between texels falls on the centre of a pixel.
    scale = figure[3] / size
    assert len({cut(*figure).transform((size, size), Image.Transform.AFFINE,
                                       (scale, 0, x, 0, scale, y)).tobytes()
                for x, y in itertools.product((-0.01, 0.01), repeat=2)}) == 1


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


def test_texts_fit_buttons_of_260_by_20_and_listings_15_apart(font):
    assert sum(font.getmetrics()) <= 20
    _, top, _, bottom = font.getbbox("".join(PRINTABLE))
    assert top >= 1 and bottom <= 19 and bottom - top < 15
    for text in ("Render min spanning tree : false", "Render dungeon rooms : false"):
        ink, (left, _) = font.getmask2(text)
        assert left + ink.getbbox()[0] >= 1 and font.getbbox(text)[2] <= 256


def build_art(tree, *arguments):
    return subprocess.run([tree / "scripts/build-art", *arguments], capture_output=True, text=True)


def test_the_shipped_files_are_what_their_sources_say():
    assert build_art(ROOT, "--check").returncode == 0


@pytest.mark.parametrize("name, old, new, code, message", [
    ("palette.txt", "w sea          1", "w sea          2", 1, "data/image.png differs"),
    ("enemies.txt", "\nkook", "\nkkook", 2, "enemies.txt:7: 17 columns"),
    ("palette.txt", "141a2e", "141a2", 2, "palette.txt:4: wanted")])
def test_a_change_or_a_fault_in_a_source_is_told(folder, name, old, new, code, message):
    for part in ("art", "scripts"):
        shutil.copytree(ROOT / part, folder / part)
    assert build_art(folder).returncode == 0, "all is made anew"
    source = folder / "art" / name
    source.write_text(source.read_text().replace(old, new, 1))
    result = build_art(folder, "--check")
    assert result.returncode == code and message in result.stdout + result.stderr
    assert "data/enemies.png" not in result.stdout
