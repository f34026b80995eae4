"""The program's icon: the ship on a round plate. Drawn as 64 x 64 pixels, enlarged without
smoothing and reduced with it; packaging/icons/ gets it in five sizes and as an SVG picture of squares;
icon_16.txt is the smallest."""

from builder.picture import blank, outlined, put
from builder.shapes import disc, polygon, rectangle, spans

SIZE = 64
MIDDLE = (64, 64)  # in half pixels, as all places below but those of the spans
HORIZON = 88

# The sail row by row from row 15 on: the first and the last column.
SAIL = ((22, 40), (23, 42), (24, 43), (24, 44), (25, 45), (25, 46), (26, 46), (26, 47), (26, 47),
        (27, 48), (27, 48), (27, 48), (27, 48), (27, 48), (26, 47), (26, 47), (26, 46), (25, 46),
        (25, 45), (24, 44), (23, 42), (22, 40), (21, 37))
SAIL_TOP = 15
STRIPE = range(22, 28)

# The hull row by row from row 40 on.
HULL = ((13, 18), (13, 18), (13, 18), (13, 50), (13, 50), (13, 49), (14, 48), (14, 48), (15, 47),
        (16, 45), (18, 43))
HULL_TOP = 40


def draw(palette):
    """Returns the finished picture, at its smallest size."""
    picture = blank(SIZE, SIZE)
    for radius, colour in ((63, "ink"), (60, "gold_dark")):
        disc(picture, MIDDLE, radius, palette[colour])
    disc(picture, (63, 63), 57, palette["gold"])
    disc(picture, MIDDLE, 54, palette["ink"])
    view = _view(palette)
    for y in range(SIZE):
        for x in range(SIZE):
            if (2 * x + 1 - MIDDLE[0]) ** 2 + (2 * y + 1 - MIDDLE[1]) ** 2 <= 51 ** 2:
                put(picture, x, y, view.getpixel((x, y)))
    picture.alpha_composite(outlined(_ship(palette), palette["ink"]))
    _foam(picture, palette)
    return picture


def _view(palette):
    """Evening sky with a low sun, and the sea."""
    view = blank(SIZE, SIZE)
    rectangle(view, (0, 0), (128, 128), palette["slate"])
    rectangle(view, (0, 0), (128, 44), palette["navy"])
    for band in (48, 54):
        rectangle(view, (0, band), (128, band + 2), palette["navy"])
    disc(view, (36, 66), 20, palette["orange"])
    disc(view, (36, 66), 15, palette["gold"])
    rectangle(view, (0, HORIZON), (128, 128), palette["sea"])
    for x, y, length in ((16, 94, 6), (104, 94, 8), (72, 106, 14), (44, 108, 10), (56, 112, 10)):
        rectangle(view, (x, y), (x + length, y + 2), palette["sea_light"])
    return view


def _ship(palette):
    ship = blank(SIZE, SIZE)
    rectangle(ship, (62, 16), (66, 90), palette["wood_mid"])
    polygon(ship, ((66, 16), (66, 26), (88, 21)), palette["red"])
    spans(ship, SAIL_TOP, SAIL, lambda x, y, left, right: _sail_colour(palette, x, y, left))
    polygon(ship, ((94, 90), (102, 80), (106, 80), (106, 83), (101, 91)), palette["wood"])
    spans(ship, HULL_TOP, HULL, lambda x, y, left, right: _hull_colour(palette, x, y))
    return ship


def _sail_colour(palette, x, y, left):
    shaded = x < left + 3 or y >= SAIL_TOP + len(SAIL) - 2
    if y in STRIPE:
        return palette["red_dark" if shaded else "red"]
    return palette["cloth_shade" if shaded else "cloth"]


def _hull_colour(palette, x, y):
    if y in (HULL_TOP, HULL_TOP + 3) and (y > HULL_TOP + 2 or x < 19):
        return palette["wood_light"]
    if y in (HULL_TOP + 5, HULL_TOP + 6) and x % 6 in (0, 1) and 17 < x < 46:
        return palette["gold"]
    return palette["wood" if y < HULL_TOP + 8 else "wood_dark"]


def _foam(picture, palette):
    for x, y, length in ((14, 50, 4), (45, 50, 5), (15, 51, 10), (27, 51, 9), (38, 51, 11),
                         (20, 52, 4), (33, 52, 4)):
        for column in range(x, x + length):
            put(picture, column, y, palette["foam"])
