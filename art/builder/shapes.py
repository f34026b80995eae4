"""Shapes for the pictures that are drawn by a program. Whole-number arithmetic only, so that the
same pixels come out everywhere. A pixel belongs to a shape when its centre does."""

from .picture import put


def disc(picture, centre, radius, colour):
    """A filled circle. centre (x, y) and radius in half pixels: the middle of a 100-pixel picture
    is (100, 100)."""
    for y in range(picture.height):
        for x in range(picture.width):
            if (2 * x + 1 - centre[0]) ** 2 + (2 * y + 1 - centre[1]) ** 2 <= radius ** 2:
                put(picture, x, y, colour)


def polygon(picture, corners, colour):
    """A filled convex polygon; corners as (x, y) in half pixels, in either direction."""
    for y in range(picture.height):
        for x in range(picture.width):
            sides = [_side(corners[i - 1], corners[i], (2 * x + 1, 2 * y + 1))
                     for i in range(len(corners))]
            if all(side >= 0 for side in sides) or all(side <= 0 for side in sides):
                put(picture, x, y, colour)


def _side(start, end, point):
    return ((end[0] - start[0]) * (point[1] - start[1])
            - (end[1] - start[1]) * (point[0] - start[0]))


def rectangle(picture, corner, opposite, colour):
    """A filled rectangle between two corners (x, y) in half pixels."""
    for y in range(picture.height):
        for x in range(picture.width):
            if corner[0] < 2 * x + 1 < opposite[0] and corner[1] < 2 * y + 1 < opposite[1]:
                put(picture, x, y, colour)


def spans(picture, top, rows, colour_of):
    """Rows of pixels from row `top` downward, each given by its first and last column. colour_of is
    called with (x, y, first, last)."""
    for y, (first, last) in enumerate(rows, top):
        for x in range(first, last + 1):
            put(picture, x, y, colour_of(x, y, first, last))
