"""The marker on the ways to other islands: a pocket compass. Drawn as 32 x 32 pixels, each enlarged
to 4 x 4, so that nearest-pixel scaling to 32 window pixels loses nothing."""

from builder.picture import Picture, Sheet
from builder.shapes import disc, polygon

SIZE = 32
ENLARGED = 4


def draw(palette):
    """Returns the finished Sheet."""
    picture = Picture(SIZE, SIZE)
    for radius, colour in ((31, "ink"), (29, "gold_dark"), (27, "gold"), (23, "ink"), (21, "cloth")):
        disc(picture, (SIZE, SIZE), radius, palette[colour])
    polygon(picture, ((46, 18), (27, 27), (37, 37)), palette["red"])
    polygon(picture, ((18, 46), (27, 27), (37, 37)), palette["navy"])
    disc(picture, (SIZE, SIZE), 4, palette["gold"])
    return Sheet(picture.enlarged(ENLARGED), True)
