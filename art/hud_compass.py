"""The radar's face: a round plate with a compass rose, 100 x 100 pixels, drawn at that size.

Island icons are laid on it, up to 50 pixels from the middle and 20 pixels for each cell of
distance, so the plate is dark and calm, with rings at one and two cells."""

from builder.picture import Picture, Sheet
from builder.shapes import disc, polygon

SIZE = 100
MIDDLE = (SIZE, SIZE)  # in half pixels, as all places below


def draw(palette):
    """Returns the finished Sheet."""
    picture = Picture(SIZE, SIZE)
    for radius, colour in ((100, "ink"), (97, "gold_dark"), (94, "gold"), (91, "ink"),
                           (88, "navy"),
                           (81, "slate"), (79, "navy"), (41, "slate"), (39, "navy")):
        disc(picture, MIDDLE, radius, palette[colour])
    for dx, dy in ((1, 1), (-1, 1), (-1, -1), (1, -1)):
        _point(picture, dx * 28, dy * 28, 9, palette["slate"], palette["slate"])
    for dx, dy in ((0, 1), (1, 0), (-1, 0)):
        _point(picture, dx * 64, dy * 64, 10, palette["cloth_shade"], palette["wood_mid"])
    _point(picture, 0, -70, 10, palette["red"], palette["red_dark"])
    disc(picture, MIDDLE, 9, palette["ink"])
    disc(picture, MIDDLE, 6, palette["gold"])
    return Sheet(picture, True)


def _point(picture, dx, dy, width, light, dark):
    """One point of the rose, from the middle to (dx, dy), split along its length in two tones."""
    x, y = MIDDLE
    length = max(abs(dx), abs(dy))
    nx, ny = -dy * width // length, dx * width // length
    tip = (x + dx, y + dy)
    polygon(picture, (MIDDLE, tip, (x + (nx + dx * width // length) // 1,
                                    y + (ny + dy * width // length) // 1)), light)
    polygon(picture, (MIDDLE, tip, (x - nx + dx * width // length,
                                    y - ny + dy * width // length)), dark)
