"""Builds a TrueType font whose outlines are the edges of square pixels."""

import io

from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont, newTable

from .picture import ArtError

UNITS = 64  # font units per glyph pixel: a 26.6 pixel at the design size, so scaling rounds nothing
_DATE = 3786912000  # seconds since 1904: 1 January 2024, a date that does not move
_FIRST, _LAST = 0x20, 0x7E


class Glyph:
    """A glyph as a set of (column, row) pixels; row 0 lies on the base line, rows grow upward."""

    def __init__(self, width, pixels):
        self.width = width
        self.pixels = pixels


class Face:
    """What a grid file says: measures in pixels, and a glyph per character."""

    def __init__(self):
        self.name = ""
        self.size = 0  # pixels per em: the size at which one glyph pixel is one window pixel
        self.ascent = 0
        self.descent = 0
        self.bearing = 0  # empty columns left of a glyph
        self.gap = 0  # empty columns right of it
        self.above = 0  # grid rows above the base line
        self.glyphs = {}
        self.missing = Glyph(0, set())


def read_face(path):
    """Reads a font grid file: settings, then blocks of glyphs that stand side by side."""
    face = Face()
    lines = path.read_text(encoding="ascii").splitlines()
    at = 0
    while at < len(lines):
        words = lines[at].split()
        at += 1
        if not words or words[0] == "//":
            continue
        if words[0] == "glyphs":
            start = at
            while at < len(lines) and lines[at].strip():
                at += 1
            _read_block(face, path, words[1:], lines[start:at], start)
        elif words[0] == "name":
            face.name = " ".join(words[1:])
        elif words[0] in ("size", "ascent", "descent", "bearing", "gap", "above"):
            setattr(face, words[0], int(words[1]))
        else:
            raise ArtError("%s:%d: not understood: %s" % (path.name, at, words[0]))
    absent = [chr(code) for code in range(_FIRST, _LAST + 1) if chr(code) not in face.glyphs]
    if absent:
        raise ArtError("%s: no glyph for %s" % (path.name, " ".join(absent)))
    return face


def _read_block(face, path, names, rows, start):
    grids = [[] for _ in names]
    for number, row in enumerate(rows):
        cells = row.split()
        if len(cells) != len(names):
            raise ArtError("%s:%d: %d grids for %d names"
                           % (path.name, start + number + 1, len(cells), len(names)))
        for grid, cell in zip(grids, cells):
            if grid and len(cell) != len(grid[0]) or cell.strip(".X"):
                raise ArtError("%s:%d: rows of . and X, equally long, not %s"
                               % (path.name, start + number + 1, cell))
            grid.append(cell)
    for name, grid in zip(names, grids):
        pixels = {(column, face.above - 1 - row) for row, cells in enumerate(grid)
                  for column, cell in enumerate(cells) if cell == "X"}
        glyph = Glyph(len(grid[0]), pixels)
        if name == "missing":
            face.missing = glyph
        else:
            face.glyphs[" " if name == "space" else name] = glyph


def _contours(pixels):
    """The outlines of a set of pixels as lists of corner points, the inside on their right. Pixels
    that meet at a corner only get outlines of their own."""
    edges = {}
    for x, y in sorted(pixels):
        for outside, start, end in (((x, y + 1), (x, y + 1), (x + 1, y + 1)),
                                    ((x + 1, y), (x + 1, y + 1), (x + 1, y)),
                                    ((x, y - 1), (x + 1, y), (x, y)),
                                    ((x - 1, y), (x, y), (x, y + 1))):
            if outside not in pixels:
                edges.setdefault(start, []).append(end)
    result = []
    while edges:
        start = min(edges)  # the leftmost, lowest point left: always a corner
        point, step, points = start, None, []
        while True:
            ends = edges[point]
            # At a corner shared by two outlines, turn right: that stays with the same pixel.
            right = None if step is None else (point[0] + step[1], point[1] - step[0])
            end = right if right in ends else ends[0]
            ends.remove(end)
            if not ends:
                del edges[point]
            new_step = (end[0] - point[0], end[1] - point[1])
            if new_step != step:
                points.append(point)
            point, step = end, new_step
            if point == start:
                break
        result.append(points)
    return result


def _outline(glyph, bearing):
    pen = TTGlyphPen(None)
    for points in _contours(glyph.pixels):
        corners = [((x + bearing) * UNITS, y * UNITS) for x, y in points]
        pen.moveTo(corners[0])
        for corner in corners[1:]:
            pen.lineTo(corner)
        pen.closePath()
    return pen.glyph()


def build(face):
    """The font file's bytes."""
    characters = {code: "u%04X" % code for code in range(_FIRST, _LAST + 1)}
    drawn = {".notdef": face.missing}
    drawn.update({name: face.glyphs[chr(code)] for code, name in characters.items()})
    ascent, descent = face.ascent * UNITS, face.descent * UNITS

    font = FontBuilder(face.size * UNITS, isTTF=True)
    font.font.recalcTimestamp = False
    font.updateHead(created=_DATE, modified=_DATE)
    font.setupGlyphOrder(list(drawn))
    font.setupCharacterMap(characters)
    outlines = {name: _outline(glyph, face.bearing) for name, glyph in drawn.items()}
    font.setupGlyf(outlines)
    font.setupHorizontalMetrics(
        {name: ((face.bearing + glyph.width + face.gap) * UNITS, outlines[name].xMin)
         for name, glyph in drawn.items()})
    font.setupHorizontalHeader(ascent=ascent, descent=-descent)
    font.setupNameTable({"familyName": face.name, "styleName": "Regular",
                         "uniqueFontIdentifier": face.name + " 1.0", "fullName": face.name,
                         "version": "Version 1.0", "psName": face.name.replace(" ", "")},
                        mac=False)
    font.setupOS2(sTypoAscender=ascent, sTypoDescender=-descent, usWinAscent=ascent,
                  usWinDescent=descent, sxHeight=outlines["u0078"].yMax,
                  sCapHeight=outlines["u0048"].yMax, fsType=0)
    font.setupPost(keepGlyphNames=False, underlinePosition=-2 * UNITS, underlineThickness=UNITS)
    # Grid fitting on and grey levels on at every size.
    font.font["gasp"] = newTable("gasp")
    font.font["gasp"].gaspRange = {0xFFFF: 0x000F}
    file = io.BytesIO()
    font.save(file)
    return file.getvalue()


def meaning(content):
    """What a font file draws, whichever program wrote it: the metrics, the right to embed it, the
    name and, for each character, the advance and the outline. Raises when it is no font."""
    font = TTFont(io.BytesIO(content))
    glyphs, widths, characters = font["glyf"], font["hmtx"], font.getBestCmap()
    characters[None] = font.getGlyphOrder()[0]
    drawn = {}
    for code, name in characters.items():
        points, ends, flags = glyphs[name].getCoordinates(glyphs)
        drawn[code] = (widths[name], list(points), list(ends), [flag & 1 for flag in flags])
    header = font["hhea"]
    return (font["head"].unitsPerEm, header.ascent, header.descent, header.lineGap,
            font["OS/2"].fsType, font["name"].getDebugName(1), drawn)
