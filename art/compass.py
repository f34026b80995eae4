"""The marker on the ways to other islands: a pocket compass. Drawn as 32 x 32 pixels, each enlarged
to 4 x 4, so that nearest-pixel scaling to 32 window pixels loses nothing."""

from builder.picture import blank, enlarged
from builder.shapes import disc, polygon, rectangle

SIZE = 32
ENLARGED = 4
MIDDLE = (32, 36)  # in half pixels, as all places below: the case hangs under its crown


def draw(palette):
    """Returns the finished picture."""
    picture = blank(SIZE, SIZE)
    rectangle(picture, (24, 0), (40, 10), palette["ink"])
    rectangle(picture, (26, 2), (38, 10), palette["gold_dark"])
    rectangle(picture, (26, 2), (32, 10), palette["gold"])
    for radius, colour in ((28, "ink"), (26, "gold_dark")):
        disc(picture, MIDDLE, radius, palette[colour])
    disc(picture, (31, 35), 23, palette["gold"])
    disc(picture, MIDDLE, 21, palette["ink"])
    disc(picture, MIDDLE, 19, palette["cloth_shade"])
    disc(picture, (33, 37), 18, palette["cloth"])
    for dx, dy in ((0, -16), (0, 16), (-16, 0), (16, 0)):
        tick = (MIDDLE[0] + dx, MIDDLE[1] + dy)
        rectangle(picture, (tick[0] - 2, tick[1] - 2), (tick[0] + 2, tick[1] + 2),
                  palette["wood_light"])
    polygon(picture, ((45, 23), (27, 31), (37, 41)), palette["red"])
    polygon(picture, ((19, 49), (27, 31), (37, 41)), palette["navy"])
    disc(picture, MIDDLE, 5, palette["ink"])
    disc(picture, MIDDLE, 3, palette["gold"])
    return enlarged(picture, ENLARGED)
