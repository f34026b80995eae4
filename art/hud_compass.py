"""The radar's face: a round plate with a compass rose, 100 x 100 pixels, drawn at that size.

Island icons are laid on it, up to 50 pixels from the middle and 20 pixels for each cell of
distance, so the plate is dark and calm, with rings at one and two cells."""

from builder.picture import blank, put
from builder.shapes import disc, polygon

SIZE = 100
MIDDLE = (100, 100)  # in half pixels, as all places below
LETTER = ("X...X",
          "XX..X",
          "X.X.X",
          "X..XX",
          "X...X")


def draw(palette):
    """Returns the finished picture."""
    picture = blank(SIZE, SIZE)
    for radius, colour in ((100, "ink"), (97, "gold_dark"), (94, "gold"), (91, "ink"),
                           (88, "navy"),
                           (81, "slate"), (79, "navy"), (41, "slate"), (39, "navy")):
        disc(picture, MIDDLE, radius, palette[colour])
    for dx, dy in ((1, 1), (-1, 1), (-1, -1), (1, -1)):
        _point(picture, (dx * 36, dy * 36), 8, palette["slate"], palette["slate"])
    for dx, dy in ((0, 1), (1, 0), (-1, 0)):
        _point(picture, (dx * 64, dy * 64), 10, palette["cloth_shade"], palette["wood_mid"])
    _point(picture, (0, -64), 10, palette["red"], palette["red_dark"])
    disc(picture, MIDDLE, 9, palette["ink"])
    disc(picture, MIDDLE, 6, palette["gold"])
    _letter(picture, 48, 9, palette)
    return picture


def _point(picture, tip, width, light, dark):
    """One point of the rose, from the middle outward, split along its length in two tones. tip is
    given from the middle, and the point is widest `width` half pixels out."""
    length = max(abs(tip[0]), abs(tip[1]))
    along = (tip[0] * width // length, tip[1] * width // length)
    end = (MIDDLE[0] + tip[0], MIDDLE[1] + tip[1])
    for colour, side in ((light, 1), (dark, -1)):
        shoulder = (MIDDLE[0] + along[0] - side * along[1], MIDDLE[1] + along[1] + side * along[0])
        polygon(picture, (MIDDLE, end, shoulder), colour)


def _letter(picture, left, top, palette):
    """The N of north, on a patch that interrupts the ring behind it."""
    disc(picture, (2 * left + 5, 2 * top + 5), 9, palette["navy"])
    for y, row in enumerate(LETTER):
        for x, cell in enumerate(row):
            if cell == "X":
                put(picture, left + x, top + y, palette["cloth"])
