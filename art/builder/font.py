"""Builds a TrueType font whose outlines are the edges of square pixels.

Only the tables that a font must have, written field by field from the glyph grids. Nothing in the
file depends on the day, the machine or a library: the same grids give the same bytes.
"""

import struct

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


def contours(pixels):
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
    """The glyf entry. Returns (bytes, xMin, yMin, xMax, yMax, points, contours)."""
    shapes = contours(glyph.pixels)
    if not shapes:
        return b"", 0, 0, 0, 0, 0, 0
    shapes = [[((x + bearing) * UNITS, y * UNITS) for x, y in shape] for shape in shapes]
    points = [point for shape in shapes for point in shape]
    xs = [x for x, _ in points]
    ys = [y for _, y in points]
    box = (min(xs), min(ys), max(xs), max(ys))
    data = struct.pack(">hhhhh", len(shapes), *box)
    end = -1
    for shape in shapes:
        end += len(shape)
        data += struct.pack(">H", end)
    data += struct.pack(">H", 0)  # no instructions
    data += b"\x01" * len(points)  # on the curve, both coordinates as 16-bit differences
    for values in (xs, ys):
        previous = 0
        for value in values:
            data += struct.pack(">h", value - previous)
            previous = value
    return (data + b"\0" * (-len(data) % 4), *box, len(points), len(shapes))


def build(face):
    """The font file's bytes."""
    order = [face.missing] + [face.glyphs[chr(code)] for code in range(_FIRST, _LAST + 1)]
    outlines = [_outline(glyph, face.bearing) for glyph in order]
    advances = [(face.bearing + glyph.width + face.gap) * UNITS for glyph in order]
    glyf, loca = b"", [0]
    for outline in outlines:
        glyf += outline[0]
        loca.append(len(glyf))
    inked = [outline for outline in outlines if outline[0]]
    box = (min(o[1] for o in inked), min(o[2] for o in inked),
           max(o[3] for o in inked), max(o[4] for o in inked))
    ascent, descent = face.ascent * UNITS, face.descent * UNITS
    rights = [advance - outline[3] for advance, outline in zip(advances, outlines) if outline[0]]
    tables = {
        b"head": struct.pack(">IIIIHHQQhhhhHHhhh", 0x10000, 0x10000, 0, 0x5F0F3CF5, 0x000B,
                             face.size * UNITS, _DATE, _DATE, *box, 0, face.size, 2, 1, 0),
        b"hhea": struct.pack(">IhhhHhhhhhh4hhH", 0x10000, ascent, -descent, 0, max(advances),
                             box[0], min(rights), box[2], 1, 0, 0, 0, 0, 0, 0, 0, len(order)),
        b"maxp": struct.pack(">IH13H", 0x10000, len(order), max(o[5] for o in outlines),
                             max(o[6] for o in outlines), 0, 0, 2, 0, 0, 0, 0, 64, 0, 0, 0),
        b"hmtx": b"".join(struct.pack(">Hh", advance, outline[1])
                          for advance, outline in zip(advances, outlines)),
        b"loca": b"".join(struct.pack(">I", offset) for offset in loca),
        b"glyf": glyf,
        b"cmap": _cmap(),
        b"name": _names(face.name),
        b"post": struct.pack(">IIhhIIIII", 0x30000, 0, -2 * UNITS, UNITS, 0, 0, 0, 0, 0),
        b"OS/2": _os2(face, advances),
        # Grid fitting on and grey levels on at every size.
        b"gasp": struct.pack(">HHHH", 1, 1, 0xFFFF, 0x000F),
    }
    return _file(tables)


def _cmap():
    """Format 4 with one segment for all characters; glyph 1 is the first of them."""
    ends, starts = (_LAST, 0xFFFF), (_FIRST, 0xFFFF)
    deltas = ((1 - _FIRST) & 0xFFFF, 1)
    body = (struct.pack(">HHHH", 4, 4, 1, 0) + struct.pack(">2HH2H", *ends, 0, *starts)
            + struct.pack(">2H2H", *deltas, 0, 0))
    table = struct.pack(">HHH", 4, len(body) + 6, 0) + body
    return (struct.pack(">HH", 0, 2) + struct.pack(">HHI", 0, 3, 20)
            + struct.pack(">HHI", 3, 1, 20) + table)


def _names(family):
    texts = ((1, family), (2, "Regular"), (3, family + " 1.0"), (4, family), (5, "Version 1.0"),
             (6, family.replace(" ", "")))
    records, storage = b"", b""
    for name_id, text in texts:
        encoded = text.encode("utf-16-be")
        records += struct.pack(">HHHHHH", 3, 1, 0x409, name_id, len(encoded), len(storage))
        storage += encoded
    return struct.pack(">HHH", 0, len(texts), 6 + len(records)) + records + storage


def _os2(face, advances):
    inked = [advance for advance in advances if advance]
    ascent, descent = face.ascent * UNITS, face.descent * UNITS
    x_height = (max(y for _, y in face.glyphs["x"].pixels) + 1) * UNITS
    cap_height = (max(y for _, y in face.glyphs["H"].pixels) + 1) * UNITS
    half = face.size * UNITS // 2
    return (struct.pack(">HhHHH", 4, sum(inked) // len(inked), 400, 5, 0)
            + struct.pack(">10h", half, half, 0, 0, half, half, 0, half, UNITS, x_height // 2)
            + struct.pack(">h10s4I4s", 0, b"\0" * 10, 1, 0, 0, 0, b"    ")
            + struct.pack(">HHH", 0x0040 | 0x0080, _FIRST, _LAST)
            + struct.pack(">hhhHH", ascent, -descent, 0, ascent, descent)
            + struct.pack(">IIhhHHH", 1, 0, x_height, cap_height, 0, 32, 0))


def _checksum(data):
    data += b"\0" * (-len(data) % 4)
    return sum(struct.unpack(">%dI" % (len(data) // 4), data)) & 0xFFFFFFFF


def _file(tables):
    count = len(tables)
    power = 1 << (count.bit_length() - 1)
    header = struct.pack(">IHHHH", 0x10000, count, power * 16, power.bit_length() - 1,
                         (count - power) * 16)
    offset = len(header) + 16 * count
    directory, body, head_at = b"", b"", 0
    for tag, data in sorted(tables.items()):
        if tag == b"head":
            head_at = offset + len(body)
        directory += struct.pack(">4sIII", tag, _checksum(data), offset + len(body), len(data))
        body += data + b"\0" * (-len(data) % 4)
    font = bytearray(header + directory + body)
    struct.pack_into(">I", font, head_at + 8, (0xB1B0AFBA - _checksum(bytes(font))) & 0xFFFFFFFF)
    return bytes(font)
