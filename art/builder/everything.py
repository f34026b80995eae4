"""What is built from what."""

import importlib

from . import font, png
from .picture import Palette, read_sheet

GRIDS = ("ships", "link_raw", "image", "terrain_transition", "enemies", "island_icon")
PROGRAMS = ("compass", "hud_compass")


def build(art):
    """art: the folder with the sources. Returns {name in the tree: bytes}."""
    palette = Palette(art / "palette.txt")
    sheets = {name: read_sheet(art / (name + ".txt"), palette) for name in GRIDS}
    for name in PROGRAMS:
        sheets[name] = importlib.import_module(name).draw(palette)
    files = {"data/%s.png" % name: png.encode(sheet.picture.rows, sheet.with_alpha)
             for name, sheet in sheets.items()}
    files["data/sample.ttf"] = font.build(font.read_face(art / "sample_font.txt"))
    return files
