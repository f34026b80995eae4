"""Pictures of the window and the sprites that they show.

Pixels are numbers 0xAABBGGRR, kept in one array row by row from the top left; positions are in
window pixels with y down. ImageMagick reads the files.
"""

import array
import collections
import pathlib
import struct
import subprocess
import sys

OPAQUE = 255


def _decode(path, *crop):
    """The raw pixels of a PNG file."""
    raw = subprocess.run(["convert", str(path), *crop, "-depth", "8", "rgba:-"],
                         check=True, capture_output=True).stdout
    pixels = array.array("I", raw)
    if sys.byteorder == "big":
        pixels.byteswap()
    return pixels


def colour(red, green, blue):
    return OPAQUE << 24 | blue << 16 | green << 8 | red


class Picture:
    """A whole PNG file, or a rectangle of one (x, y, width, height)."""

    def __init__(self, path, rectangle=None):
        self.path = pathlib.Path(path)
        if rectangle is None:
            with open(path, "rb") as file:
                self.width, self.height = struct.unpack(">II", file.read(24)[16:])
            self.pixels = _decode(path)
        else:
            x, y, self.width, self.height = rectangle
            self.pixels = _decode(path, "-crop", f"{self.width}x{self.height}+{x}+{y}", "+repage")
        if len(self.pixels) != self.width * self.height:
            raise ValueError(f"{path} is not {self.width} x {self.height}")

    def pixel(self, x, y):
        return self.pixels[y * self.width + x]

    def row(self, y, left=0, right=None):
        right = self.width if right is None else right
        return self.pixels[y * self.width + left:y * self.width + right]

    def colours(self):
        """How often each opaque colour appears."""
        return collections.Counter({value: count
                                    for value, count in collections.Counter(self.pixels).items()
                                    if value >> 24 == OPAQUE})

    def count(self, colours, left, top, width, height):
        """The number of pixels of a rectangle, cut to the picture, whose colour is one of these."""
        right = min(left + width, self.width)
        return sum(1 for y in range(max(top, 0), min(top + height, self.height))
                   for value in self.row(y, max(left, 0), right) if value in colours)

    def same_as(self, other):
        return self.pixels == other.pixels

    def where(self, value):
        """The positions of one colour."""
        return [divmod(index, self.width)[::-1]
                for index, found in enumerate(self.pixels) if found == value]


class Stamp:
    """A sprite as the game draws it, `size` window pixels wide and high, without smoothing.

    Where the edge between two texels falls on the centre of a pixel, either of them may show.
    """

    def __init__(self, sprite, size):
        self.size = size
        self.spots = []
        for y in range(size):
            for x in range(size):
                choices = {sprite.pixel(column, row)
                           for column in self._texels(x, sprite.width)
                           for row in self._texels(y, sprite.height)}
                if all(choice >> 24 == OPAQUE for choice in choices):
                    self.spots.append((x, y, choices))

    def _texels(self, pixel, count):
        middle = (pixel + 0.5) * count / self.size
        return {max(0, min(count - 1, int(middle + shift))) for shift in (-0.01, 0.01)}

    def likeness(self, picture, left, top):
        """The share of the sprite's opaque pixels that show at this place, from 0 to 1."""
        matching = 0
        for x, y, choices in self.spots:
            if 0 <= left + x < picture.width and 0 <= top + y < picture.height:
                matching += picture.pixel(left + x, top + y) in choices
        return matching / len(self.spots)

    def find_all(self, picture, least=0.9):
        """The centres of the places that look like the sprite, the likest first."""
        places = []
        for (left, top), _ in self._votes(picture).most_common(60):
            likeness = self.likeness(picture, left, top)
            if likeness >= least:
                places.append((likeness, left + self.size // 2, top + self.size // 2))
        found = []
        for _, x, y in sorted(places, reverse=True):
            if all(max(abs(x - a), abs(y - b)) > self.size // 2 for a, b in found):
                found.append((x, y))
        return found

    def find(self, picture, least=0.9):
        """The centre of the likest place, None when there is none."""
        found = self.find_all(picture, least)
        return found[0] if found else None

    def _votes(self, picture):
        """Corners at which the picture's rarest colour of the sprite lies where it should."""
        shown = picture.colours()
        spots = collections.defaultdict(list)
        for x, y, choices in self.spots:
            if len(choices) == 1:
                spots[next(iter(choices))].append((x, y))
        votes = collections.Counter()
        candidates = [value for value in spots if shown[value] > 0]
        if candidates:
            rarest = min(candidates, key=lambda value: shown[value] * len(spots[value]))
            for x, y in picture.where(rarest):
                votes.update((x - dx, y - dy) for dx, dy in spots[rarest])
        return votes
