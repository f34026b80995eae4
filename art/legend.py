"""The keys that a newcomer needs, on two small plates above and below the radar's dial. The window's typeface
would be too wide for them, so they have letters of their own, drawn at their size."""

from builder.picture import put
from builder.shapes import rectangle

WIDTH = 98
HEIGHT = 29
ABOVE = (("w a s d", "sail"), ("e q", "zoom"))
BELOW = (("Backspace", "map"), ("Escape", "quit"))

# Letters 7 pixels high, and 2 more below the base line.
GLYPHS = {
    "B": ("XXX.", "X..X", "X..X", "XXX.", "X..X", "X..X", "XXX."),
    "E": ("XXXX", "X...", "X...", "XXX.", "X...", "X...", "XXXX"),
    "a": ("", "", ".XX.", "...X", ".XXX", "X..X", ".XXX"),
    "c": ("", "", ".XXX", "X...", "X...", "X...", ".XXX"),
    "d": ("...X", "...X", ".XXX", "X..X", "X..X", "X..X", ".XXX"),
    "e": ("", "", ".XX.", "X..X", "XXXX", "X...", ".XXX"),
    "i": ("X", "", "X", "X", "X", "X", "X"),
    "k": ("X...", "X...", "X..X", "X.X.", "XX..", "X.X.", "X..X"),
    "l": ("X", "X", "X", "X", "X", "X", "X"),
    "m": ("", "", "XX.X.", "X.X.X", "X.X.X", "X.X.X", "X.X.X"),
    "o": ("", "", ".XX.", "X..X", "X..X", "X..X", ".XX."),
    "p": ("", "", "XXX.", "X..X", "X..X", "X..X", "XXX.", "X...", "X..."),
    "q": ("", "", ".XXX", "X..X", "X..X", "X..X", ".XXX", "...X", "...X"),
    "s": ("", "", ".XXX", "X...", ".XX.", "...X", "XXX."),
    "t": (".X.", ".X.", "XXX", ".X.", ".X.", ".X.", "..X"),
    "u": ("", "", "X..X", "X..X", "X..X", "X..X", ".XXX"),
    "w": ("", "", "X...X", "X...X", "X.X.X", "X.X.X", ".X.X."),
    "z": ("", "", "XXXX", "...X", ".XX.", "X...", "XXXX"),
    " ": ("...",),
}
MARGIN = 7


def plate(picture, left, top, lines, palette):
    """One plate: the keys on its left in gold, what they do on its right."""
    for inset, colour in ((0, "ink"), (1, "gold"), (2, "gold_dark"), (3, "navy")):
        for shorter in (0, 1):  # corners cut off by a pixel
            rectangle(picture, (2 * (left + inset + shorter), 2 * (top + inset + 1 - shorter)),
                      (2 * (left + WIDTH - inset - shorter),
                       2 * (top + HEIGHT - inset - 1 + shorter)), palette[colour])
    for row, (keys, action) in enumerate(lines):
        y = top + 5 + 10 * row
        _write(picture, left + MARGIN, y, keys, palette["gold"])
        _write(picture, left + WIDTH - MARGIN - _width(action), y, action, palette["cloth"])


def _width(text):
    return sum(max(map(len, GLYPHS[letter])) + 1 for letter in text) - 1


def _write(picture, x, y, text, colour):
    for letter in text:
        for row, cells in enumerate(GLYPHS[letter]):
            for column, cell in enumerate(cells):
                if cell == "X":
                    put(picture, x + column, y + row, colour)
        x += _width(letter) + 1
