"""The palette, and the pictures drawn as grids of characters (art/README.md has the format)."""

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


class Picture:
    """A rectangle of (r, g, b, a) pixels, row 0 at the top, that starts clear."""

    def __init__(self, width, height):
        self.width = width
        self.height = height
        self.rows = [[CLEAR] * width for _ in range(height)]

    def put(self, x, y, colour):
        """Sets one pixel; outside the picture it does nothing."""
        if 0 <= x < self.width and 0 <= y < self.height:
            self.rows[y][x] = colour

    def paste(self, other, x, y):
        """Lays another picture over this one; its clear pixels leave what is there."""
        for row in range(other.height):
            for column in range(other.width):
                if other.rows[row][column][3]:
                    self.put(x + column, y + row, other.rows[row][column])

    def mirrored(self):
        """The same picture with left and right exchanged."""
        result = Picture(self.width, self.height)
        result.rows = [row[::-1] for row in self.rows]
        return result

    def outlined(self, colour):
        """The same picture with every clear pixel beside a drawn one (not only at its corner) in
        the given colour."""
        result = Picture(self.width, self.height)
        for y in range(self.height):
            for x in range(self.width):
                beside = ((x - 1, y), (x + 1, y), (x, y - 1), (x, y + 1))
                if self.rows[y][x][3]:
                    result.rows[y][x] = self.rows[y][x]
                elif any(0 <= column < self.width and 0 <= row < self.height
                         and self.rows[row][column][3] for column, row in beside):
                    result.rows[y][x] = colour
        return result

    def enlarged(self, factor):
        """Every pixel becomes a square of factor x factor pixels."""
        result = Picture(self.width * factor, self.height * factor)
        result.rows = [[pixel for pixel in row for _ in range(factor)]
                       for row in self.rows for _ in range(factor)]
        return result


class Sheet:
    """A picture file with what its source says about it."""

    def __init__(self, picture, with_alpha):
        self.picture = picture
        self.with_alpha = with_alpha


def read_sheet(path, palette):
    """Reads a grid file. Returns a Sheet."""
    return _SheetReader(path, palette).read()


class _SheetReader:
    def __init__(self, path, palette):
        self._path = path
        self._palette = palette
        self._lines = path.read_text(encoding="ascii").splitlines()
        self._at = 0
        self._figures = {}
        self._sheet = None

    def read(self):
        while self._at < len(self._lines):
            words = self._lines[self._at].split("#")[0].split()
            self._at += 1
            if words:
                self._obey(words)
        if self._sheet is None:
            self._fail("no picture line")
        return self._sheet

    def _obey(self, words):
        kind = words[0]
        if kind == "picture" and len(words) == 4 and words[3] in ("opaque", "alpha"):
            self._sheet = Sheet(Picture(int(words[1]), int(words[2])), words[3] == "alpha")
        elif kind == "figure" and (len(words) == 2 or len(words) == 4 and words[2] == "enlarged"):
            figure = self._read_figure()
            self._figures[words[1]] = figure.enlarged(int(words[3])) if words[2:] else figure
        elif kind == "place" and len(words) in (4, 5) and words[4:] in ([], ["mirrored"]):
            figure = self._figure(words[1])
            self._sheet.picture.paste(figure.mirrored() if words[4:] else figure,
                                      int(words[2]), int(words[3]))
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
            rows.append([self._palette.by_key[key] for key in row])
        if not rows:
            self._fail("a figure without rows")
        figure = Picture(len(rows[0]), len(rows))
        figure.rows = rows
        return figure

    def _figure(self, name):
        if name not in self._figures:
            self._fail("no figure '%s' above" % name)
        return self._figures[name]

    def _repeat(self, figure, area):
        """Fills an area (left, top, right, bottom; the latter two outside) with copies."""
        for y in range(area[1], area[3], figure.height):
            for x in range(area[0], area[2], figure.width):
                self._sheet.picture.paste(figure, x, y)

    def _fail(self, message):
        raise ArtError("%s:%d: %s" % (self._path.name, self._at, message))
