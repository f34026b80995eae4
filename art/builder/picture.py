"""The palette, and the pictures drawn as grids of characters (art/README.md has the format)."""

import io
import math

from PIL import Image, ImageChops, ImageStat

CLEAR = (0, 0, 0, 0)


class ArtError(Exception):
    """A fault in a source file, told with its place."""


class Palette:
    """One colour a line: the character, the name, the colour as rrggbb."""

    def __init__(self, path):
        self.by_key = {".": CLEAR}
        self.by_name = {"clear": CLEAR}
        for number, line in enumerate(path.read_text(encoding="ascii").splitlines(), 1):
            words = line.split("#")[0].split()
            if not words:
                continue
            if len(words) != 3 or len(words[0]) != 1 or len(words[2]) != 6:
                raise ArtError("%s:%d: wanted: character name rrggbb" % (path.name, number))
            key, name, digits = words
            if key in self.by_key or name in self.by_name:
                raise ArtError("%s:%d: %s or %s is there twice" % (path.name, number, key, name))
            colour = tuple(bytes.fromhex(digits)) + (255,)
            self.by_key[key] = colour
            self.by_name[name] = colour

    def __getitem__(self, name):
        return self.by_name[name]


def blank(width, height):
    """A picture that is clear everywhere. Pictures are RGBA images, row 0 at the top."""
    return Image.new("RGBA", (width, height), CLEAR)


def put(picture, x, y, colour):
    """Sets one pixel; outside the picture it does nothing."""
    if 0 <= x < picture.width and 0 <= y < picture.height:
        picture.putpixel((x, y), colour)


def mirrored(picture):
    """The same picture with left and right exchanged."""
    return picture.transpose(Image.FLIP_LEFT_RIGHT)


def enlarged(picture, factor):
    """Every pixel becomes a square of factor x factor pixels."""
    return picture.resize((picture.width * factor, picture.height * factor), Image.NEAREST)


def scaled(picture, size):
    """The square picture as size x size pixels: each the mean of what it covers."""
    common = math.lcm(picture.width, size)
    return enlarged(picture, common // picture.width).reduce(common // size)


def widened(picture):
    """The middle column and row of every three become two: three pixels are four."""
    columns, rows = ([at for at in range(size) for _ in range(2 if at % 3 == 1 else 1)]
                     for size in picture.size)
    result = blank(len(columns), len(rows))
    result.putdata([picture.getpixel((x, y)) for y in rows for x in columns])
    return result


def outlined(picture, colour):
    """The same picture with every clear pixel beside a drawn one (not only at its corner) in the
    given colour. The picture must not reach its own edges."""
    mask = picture.getchannel("A")
    around = mask
    for step in ((1, 0), (-1, 0), (0, 1), (0, -1)):
        around = ImageChops.lighter(around, ImageChops.offset(mask, *step))
    result = blank(*picture.size)
    result.paste(colour, (0, 0), around)
    result.alpha_composite(picture)
    return result


def png(picture):
    """The picture as a PNG file's bytes; without an alpha channel when it is opaque everywhere."""
    opaque = picture.getextrema()[3] == (255, 255)
    file = io.BytesIO()
    picture.convert("RGB" if opaque else "RGBA").save(file, "PNG", optimize=True)
    return file.getvalue()


def meaning(content):
    """What a PNG file shows, however it is packed: its kind of pixels, its size and the pixels."""
    picture = Image.open(io.BytesIO(content))
    return picture.mode, picture.size, picture.tobytes()


def mean(picture):
    """The mean colour of a picture: (r, g, b), rounded."""
    return tuple(round(value) for value in ImageStat.Stat(picture.convert("RGB")).mean)


def read_sheet(path, palette):
    """Reads a grid file. Returns the picture and its figures by name."""
    return _SheetReader(path, palette).read()


class _SheetReader:
    def __init__(self, path, palette):
        self._path = path
        self._palette = palette
        self._lines = path.read_text(encoding="ascii").splitlines()
        self._at = 0
        self._figures = {}
        self._picture = None

    def read(self):
        while self._at < len(self._lines):
            words = self._lines[self._at].split("#")[0].split()
            self._at += 1
            if words:
                self._obey(words)
        if self._picture is None:
            self._fail("no picture line")
        return self._picture, self._figures

    def _obey(self, words):
        kind = words[0]
        if kind == "picture" and len(words) == 3:
            self._picture = blank(int(words[1]), int(words[2]))
        elif kind == "figure" and len(words) == 2:
            self._figures[words[1]] = self._read_figure()
        elif kind == "figure" and len(words) == 4 and words[2] == "enlarged":
            self._figures[words[1]] = enlarged(self._read_figure(), int(words[3]))
        elif kind == "figure" and words[2:] == ["widened"]:
            self._figures[words[1]] = widened(self._read_figure())
        elif kind == "place" and len(words) in (4, 5) and words[4:] in ([], ["mirrored"]):
            figure = self._figure(words[1])
            self._picture.alpha_composite(mirrored(figure) if words[4:] else figure,
                                          (int(words[2]), int(words[3])))
        elif kind == "repeat" and len(words) == 6:
            self._repeat(self._figure(words[1]), [int(word) for word in words[2:]])
        else:
            self._fail("not understood: " + " ".join(words))

    def _read_figure(self):
        rows = []
        while self._at < len(self._lines) and self._lines[self._at].strip():
            row = self._lines[self._at].rstrip()
            self._at += 1
            if rows and len(row) != len(rows[0]):
                self._fail("%d columns, the rows above have %d" % (len(row), len(rows[0])))
            for key in row:
                if key not in self._palette.by_key:
                    self._fail("'%s' is no colour of the palette" % key)
            rows.append(row)
        if not rows:
            self._fail("a figure without rows")
        figure = blank(len(rows[0]), len(rows))
        figure.putdata([self._palette.by_key[key] for row in rows for key in row])
        return figure

    def _figure(self, name):
        if name not in self._figures:
            self._fail("no figure '%s' above" % name)
        return self._figures[name]

    def _repeat(self, figure, area):
        """Covers an area with copies of a figure; what leaves the picture or the area is cut."""
        left, top, right, bottom = area
        tiles = blank(right - left, bottom - top)
        for y in range(0, tiles.height, figure.height):
            for x in range(0, tiles.width, figure.width):
                tiles.paste(figure, (x, y))
        self._picture.paste(tiles, (left, top))

    def _fail(self, reason):
        raise ArtError("%s:%d: %s" % (self._path.name, self._at, reason))
