"""The marker: a signpost, one for each neighbouring island. Drawn as 32 x 32 pixels, each enlarged to
4 x 4, so that nearest-pixel scaling to 32 window pixels loses nothing."""

from builder.picture import blank, enlarged, outlined, put
from builder.shapes import spans

SIZE = 32
ENLARGED = 4

# Boards row by row: the first and the last column. They point to the right and to the left.
UPPER_TOP = 5
UPPER = ((6, 23), (6, 24), (6, 25), (6, 26), (6, 25), (6, 24), (6, 23))
LOWER_TOP = 14
LOWER = tuple((31 - last, 31 - first) for first, last in UPPER)
MOUND_TOP = 27
MOUND = ((10, 21), (7, 24), (6, 25))


def draw(palette):
    """Returns the finished picture."""
    post = blank(SIZE, SIZE)
    spans(post, 2, [(14, 17)] * 26, lambda x, y, first, last:
          palette[("wood_light", "wood", "wood", "wood_dark")[x - first]])
    picture = outlined(post, palette["ink"])
    for top, rows, notch in ((UPPER_TOP, UPPER, 6), (LOWER_TOP, LOWER, 25)):
        board = blank(SIZE, SIZE)
        spans(board, top, rows, lambda x, y, first, last: _board_colour(palette, y - top))
        for y in range(2, 5):  # a swallow tail
            put(board, notch, top + y, palette["clear"])
        picture.alpha_composite(outlined(board, palette["ink"]))
        _wave(picture, top + 3, palette)
    mound = blank(SIZE, SIZE)
    spans(mound, MOUND_TOP, MOUND, lambda x, y, first, last:
          palette["stone_light" if y == MOUND_TOP else "stone" if x < 19 else "stone_dark"])
    picture.alpha_composite(outlined(mound, palette["ink"]))
    return enlarged(picture, ENLARGED)


def _board_colour(palette, row):
    return palette["cloth" if row < 5 else "cloth_shade"]


def _wave(picture, y, palette):
    """The sea that the way leads over."""
    for x, rise in enumerate((0, -1, 0, 1, 0, -1, 0, 1, 0, -1, 0), 10):
        put(picture, x, y + rise, palette["sea"])
