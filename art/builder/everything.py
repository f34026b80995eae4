"""What is built from what."""

import importlib

from . import font, picture, svg

GRIDS = ("ships", "link_raw", "image", "terrain_transition", "enemies", "island_icon")
PROGRAMS = ("compass", "hud_compass")
ICON_SIZES = (32, 48, 64, 128, 256)

SEA_COLOR = """\
// Written by scripts/build-art: what shows where nothing is drawn.
#pragma once

#include <SDL_pixels.h>

/// The mean colour of the water tile.
inline constexpr SDL_Color kSeaColor{%d, %d, %d, 255};
"""

TILE_COLORS = """\
// Written by scripts/build-art: the mean colours of the tiles' images.
#pragma once

#include "atlas/Picture.h"

inline constexpr Color kWaterTile{%d, %d, %d};
inline constexpr Color kHallwayTile{%d, %d, %d};
inline constexpr Color kRoomTile{%d, %d, %d};
"""


def build(art):
    """art: the folder with the sources. Returns {name in the tree: bytes}."""
    palette = picture.Palette(art / "palette.txt")
    sheets = {name: picture.read_sheet(art / (name + ".txt"), palette) for name in GRIDS}
    drawn = {name: sheet for name, (sheet, _) in sheets.items()}
    for name in PROGRAMS:
        drawn[name] = _drawn(name, palette)
    files = {"data/%s.png" % name: picture.png(sheet) for name, sheet in drawn.items()}
    files["data/sample.ttf"] = font.build(font.read_face(art / "sample_font.txt"))
    icon = _drawn("icon", palette)
    smallest, _ = picture.read_sheet(art / "icon_16.txt", palette)
    files["packaging/icons/vesk-16.png"] = picture.png(smallest)
    for size in ICON_SIZES:
        files["packaging/icons/vesk-%d.png" % size] = picture.png(picture.scaled(icon, size))
    files["packaging/icons/vesk.svg"] = svg.encode(icon)
    tiles = [*sheets["image"][1].values(), sheets["terrain_transition"][1]["meadow"]]
    water, hallway, room = map(picture.mean, tiles)
    files["src/gfx/SeaColor.h"] = (SEA_COLOR % water).encode("ascii")
    files["tools/atlas/TileColors.h"] = (TILE_COLORS % (water + hallway + room)).encode("ascii")
    return files


def same(name, one, other):
    """Whether two files of this name show the same: pixels, outlines and metrics count, not how a
    library packed them."""
    meaning = {"png": picture.meaning, "ttf": font.meaning}.get(name.rsplit(".", 1)[-1])
    if one == other or meaning is None:
        return one == other
    try:
        return meaning(one) == meaning(other)
    except Exception:  # whatever a library raises for a file that it cannot read
        return False


def _drawn(name, palette):
    return importlib.import_module(name).draw(palette)
