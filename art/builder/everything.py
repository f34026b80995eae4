"""What is built from what."""

import importlib

from . import font, png, svg
from .picture import Palette, read_sheet

GRIDS = ("ships", "link_raw", "image", "terrain_transition", "enemies", "island_icon")
PROGRAMS = ("compass", "hud_compass")
ICON_SIZES = (64, 128, 256)


def build(art):
    """art: the folder with the sources. Returns {name in the tree: bytes}."""
    palette = Palette(art / "palette.txt")
    sheets = {name: read_sheet(art / (name + ".txt"), palette) for name in GRIDS}
    for name in PROGRAMS:
        sheets[name] = _drawn(name, palette)
    files = {"data/%s.png" % name: png.encode(sheet.picture.rows, sheet.with_alpha)
             for name, sheet in sheets.items()}
    files["data/sample.ttf"] = font.build(font.read_face(art / "sample_font.txt"))
    icon = _drawn("icon", palette).picture
    for size in ICON_SIZES:
        enlarged = icon.enlarged(size // icon.width)
        files["packaging/icons/vesk-%d.png" % size] = png.encode(enlarged.rows, True)
    files["packaging/icons/vesk.svg"] = svg.encode(icon)
    return files


def _drawn(name, palette):
    return importlib.import_module(name).draw(palette)
