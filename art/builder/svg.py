"""Writes a picture as an SVG file: a path for each colour, made of the runs of that colour."""


def encode(picture):
    """Returns the file's bytes. Clear pixels are left out."""
    runs = {}
    for y in range(picture.height):
        row = [picture.getpixel((x, y)) for x in range(picture.width)]
        start = 0
        for x in range(1, len(row) + 1):
            if x < len(row) and row[x] == row[start]:
                continue
            if row[start][3]:
                runs.setdefault(row[start][:3], []).append(
                    "M%d %dh%dv1h-%dz" % (start, y, x - start, x - start))
            start = x
    lines = ['<svg xmlns="http://www.w3.org/2000/svg" width="256" height="256" '
             'viewBox="0 0 %d %d" shape-rendering="crispEdges">' % picture.size]
    for colour, parts in runs.items():
        lines.append('<path fill="#%02x%02x%02x" d="%s"/>' % (*colour, "".join(parts)))
    lines.append("</svg>")
    return ("\n".join(lines) + "\n").encode("ascii")
