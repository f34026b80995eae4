"""Writes PNG files whose bytes depend on the pixels alone.

The usual compressors change their output from one release to the next, so a rebuilt file would
differ from the committed one without any change of the picture. This writer does the little
compression that pixel art needs itself: the nearest earlier match, packed with the fixed codes of
RFC 1951, section 3.2.6.
"""

import struct
import zlib  # for the checksums only, which are fixed by their definition

_MIN_MATCH = 3
_MAX_MATCH = 258
_WINDOW = 32768
_CANDIDATES = 32  # how many earlier places are tried for a longer match

# (symbol, extra bits, smallest value), RFC 1951, section 3.2.5.
_LENGTHS = []
_base = 3
for _symbol in range(257, 285):
    _extra = 0 if _symbol < 265 else (_symbol - 261) // 4
    _LENGTHS.append((_symbol, _extra, _base))
    _base += 1 << _extra
_LENGTHS.append((285, 0, 258))
_DISTANCES = []
_base = 1
for _symbol in range(30):
    _extra = 0 if _symbol < 2 else (_symbol - 2) // 2
    _DISTANCES.append((_symbol, _extra, _base))
    _base += 1 << _extra


class _BitWriter:
    """Collects bits, the lowest bit of each byte first."""

    def __init__(self):
        self.bytes = bytearray()
        self._held = 0
        self._count = 0

    def put(self, value, width):
        self._held |= value << self._count
        self._count += width
        while self._count >= 8:
            self.bytes.append(self._held & 255)
            self._held >>= 8
            self._count -= 8

    def put_code(self, code, width):
        """Huffman codes go in with their highest bit first."""
        self.put(int(format(code, "0%db" % width)[::-1], 2), width)

    def finish(self):
        if self._count:
            self.put(0, 8 - self._count)
        return bytes(self.bytes)


def _put_literal_or_length(out, symbol):
    if symbol < 144:
        out.put_code(0x30 + symbol, 8)
    elif symbol < 256:
        out.put_code(0x190 + symbol - 144, 9)
    elif symbol < 280:
        out.put_code(symbol - 256, 7)
    else:
        out.put_code(0xC0 + symbol - 280, 8)


def _row_of(table, value):
    return max((row for row in table if row[2] <= value), key=lambda row: row[2])


def _match_length(data, earlier, here):
    limit = min(_MAX_MATCH, len(data) - here)
    length = 0
    while length < limit and data[earlier + length] == data[here + length]:
        length += 1
    return length


def _deflate(data):
    out = _BitWriter()
    out.put(1, 1)  # the last block
    out.put(1, 2)  # with the fixed codes
    seen = {}
    here = 0
    while here < len(data):
        best, distance = 0, 0
        for earlier in reversed(seen.get(data[here:here + _MIN_MATCH], [])[-_CANDIDATES:]):
            if here - earlier > _WINDOW:
                break
            length = _match_length(data, earlier, here)
            if length > best:
                best, distance = length, here - earlier
        step = best if best >= _MIN_MATCH else 1
        if step == 1:
            _put_literal_or_length(out, data[here])
        else:
            symbol, extra, smallest = _row_of(_LENGTHS, best)
            _put_literal_or_length(out, symbol)
            out.put(best - smallest, extra)
            symbol, extra, smallest = _row_of(_DISTANCES, distance)
            out.put_code(symbol, 5)
            out.put(distance - smallest, extra)
        for at in range(here, here + step):
            seen.setdefault(data[at:at + _MIN_MATCH], []).append(at)
        here += step
    _put_literal_or_length(out, 256)
    return b"\x78\x01" + out.finish() + struct.pack(">I", zlib.adler32(data))


def _chunk(kind, body):
    return (struct.pack(">I", len(body)) + kind + body
            + struct.pack(">I", zlib.crc32(kind + body)))


def encode(pixels, with_alpha):
    """pixels: rows of (r, g, b, a) tuples, all rows equally long. Without alpha, every pixel must
    be opaque; the file then has three channels."""
    raw = bytearray()
    for row in pixels:
        raw.append(0)  # no row filter
        for pixel in row:
            if with_alpha:
                raw += bytes(pixel)
            elif pixel[3] == 255:
                raw += bytes(pixel[:3])
            else:
                raise ValueError("a picture without alpha has a pixel that is not opaque")
    header = struct.pack(">IIBBBBB", len(pixels[0]), len(pixels), 8, 6 if with_alpha else 2,
                         0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header)
            + _chunk(b"IDAT", _deflate(bytes(raw))) + _chunk(b"IEND", b""))
