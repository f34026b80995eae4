"""The radar's dial, 118 x 118 pixels, between two plates that name the keys; drawn at that size.

Island icons, 9 pixels wide, are laid on it: up to 50 pixels from the middle, where they still clear
the bezel, and 20 pixels for each cell of distance. A wider dial would reach under the map. The player's own
island is never more than half a cell away on either axis, so the player's place is a bright dot in a ring that an icon
cannot hide."""

import legend
from builder.picture import blank, put
from builder.shapes import disc, polygon

SIZE = 118
MIDDLE = (118, 118)  # in half pixels, as all places below
FACE = 110
GAP = 2  # between dial and plates
LETTER = ("X...X",
          "XX..X",
          "X.X.X",
          "X..XX",
          "X...X")


def draw(palette):
    """Returns the finished picture."""
    above = legend.HEIGHT + GAP
    picture = blank(SIZE, SIZE + 2 * above)
    picture.paste(_dial(palette), (0, above))
    left = (SIZE - legend.WIDTH) // 2
    legend.plate(picture, left, 0, legend.ABOVE, palette)
    legend.plate(picture, left, above + SIZE + GAP, legend.BELOW, palette)
    return picture


def _dial(palette):
    picture = blank(SIZE, SIZE)
    for radius, colour in ((118, "ink"), (116, "gold"), (113, "gold_dark"), (112, "ink"),
                           (FACE, "navy"),
                           (101, "slate"), (99, "navy"), (81, "slate"), (79, "navy"),
                           (41, "slate"), (39, "navy")):
        disc(picture, MIDDLE, radius, palette[colour])
    for radius, colour in ((16, "ink"), (15, "foam"), (12, "ink"), (11, "navy"), (3, "foam")):
        disc(picture, MIDDLE, radius, palette[colour])  # the player's place
    for dx, dy in ((0, 1), (1, 0), (-1, 0)):
        _point(picture, (dx, dy), palette["cloth_shade"], palette["wood_mid"])
    _point(picture, (0, -1), palette["red"], palette["red_dark"])
    _letter(picture, palette)
    return picture


def _point(picture, direction, light, dark):
    """One point of the rose, split along its length in two tones."""
    dx, dy = direction

    def place(outward, aside):
        return (MIDDLE[0] + dx * outward - dy * aside, MIDDLE[1] + dy * outward + dx * aside)

    for colour, side in ((light, 1), (dark, -1)):
        polygon(picture, (place(26, 0), place(79, 0), place(36, 8 * side)), colour)


def _letter(picture, palette):
    """The N of north, on the bezel."""
    disc(picture, (MIDDLE[0] - 1, 13), 13, palette["ink"])
    disc(picture, (MIDDLE[0] - 1, 13), 11, palette["gold"])
    for y, row in enumerate(LETTER):
        for x, cell in enumerate(row):
            if cell == "X":
                put(picture, SIZE // 2 - 3 + x, 4 + y, palette["ink"])
