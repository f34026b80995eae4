#!/usr/bin/env python3
"""Writes the fuzz targets' hand-made binary seeds (corpus/<target>/seed-*), which each target's
reader explains. Inputs that a fuzzer has found stand beside them under their hashes."""
import pathlib
import random
import struct

CORPUS = pathlib.Path(__file__).parent / "corpus"


def write(target, seeds):
    folder = CORPUS / target
    folder.mkdir(parents=True, exist_ok=True)
    for name, content in seeds.items():
        (folder / f"seed-{name}").write_bytes(content)


def floats(*values):
    return struct.pack(f"<{len(values)}f", *values)


def triangulate_seeds():
    draw = random.Random(1)
    grid = bytes([2]) + bytes(value for x in range(6) for y in range(6) for value in (x, y))
    circle = (5, 0, -5, 0, 0, 5, 0, -5, 3, 4, -3, 4, 3, -4, -3, -4, 4, 3, -4, 3, 4, -3, -4, -3)
    return {
        "square": bytes([0]) + floats(0, 0, 1, 0, 0, 1, 1, 1),
        "obtuse": bytes([0]) + floats(0, 0, 10, 0, 5, 1),
        "line": bytes([1]) + struct.pack("<8b", 0, 0, 1, 1, 2, 2, 3, 3),
        "grid": grid,
        "circle": bytes([1]) + struct.pack(f"<{len(circle)}b", *circle),
        "extremes": bytes([0]) + floats(0, 0, 1e-40, 1, 3e38, -3e38, 1e19, 2e19, -0.0, 5),
        "not-numbers": bytes([0]) + floats(0, 0, float("nan"), 1, float("inf"), 2, 3, 4, 5, 1),
        "ids": bytes([5]) + b"".join(struct.pack("<ibb", i, x, y) for i, x, y in
                                     ((7, 0, 0), (7, 1, 0), (-1, 5, 5), (2147483647, 0, 3),
                                      (3, 9, 1))),
        "rooms": bytes([3]) + b"".join(struct.pack("<2h", draw.randrange(1024),
                                                   draw.randrange(1024)) for _ in range(30)),
        "small-ids": bytes([13]) + bytes(draw.randrange(256) for _ in range(60)),
    }


def key(index, down):
    return bytes([0, index, down])


def ticks(count):
    return bytes([8, count - 1])


def tap(index):
    return key(index, 1) + ticks(3) + key(index, 0) + ticks(1)


def start(place, workers):
    return bytes([place, workers - 1])


REST = bytes([9])
FRAME = bytes([6, 16])


def events_seeds():
    up, down, left, right, enter, menu, world_map, zoom_in, zoom_out = range(9)
    everything = b"".join(tap(enter) + tap(down) for _ in range(9))
    return {
        "sail": start(0, 1) + REST + key(right, 1) + ticks(32) + FRAME + ticks(32)
        + key(right, 0) + key(up, 1) + ticks(32) + REST,
        "map": start(0, 1) + REST + tap(world_map) + key(zoom_in, 1) + ticks(30) + FRAME
        + key(zoom_in, 0) + key(zoom_out, 1) + ticks(9) + FRAME + tap(world_map),
        "menu": start(0, 2) + REST + tap(menu) + everything + FRAME + REST + tap(menu),
        "jump": start(0, 3) + tap(menu) + tap(down) * 6 + tap(world_map) + key(10, 1) + ticks(32)
        + tap(enter) + ticks(20) + tap(enter) + FRAME + REST,
        "joystick": start(1, 1) + bytes([3, 0, 255, 127]) + ticks(20) + bytes([3, 1, 0, 128])
        + ticks(20) + bytes([4, 0x84]) + ticks(4) + bytes([4, 0x04]) + FRAME + bytes([4, 0x87]),
        "clock": start(2, 1) + FRAME + bytes([7]) + struct.pack("<I", 2**32 - 900) + FRAME * 6
        + bytes([6, 0]) + bytes([6, 15]),
        "others": start(3, 1) + bytes([5, 0, 1, 0, 5, 0, 2, 14, 5, 0, 127, 0]) + FRAME * 2,
        "quit": start(4, 1) + key(14, 1) + FRAME * 2,
        "far": start(5, 1) + key(left, 1) + ticks(32) + FRAME + key(left, 0) + REST,
    }


def jump(how, view, place):
    return bytes([how]) + place + bytes([view])


def far(x, y):
    return struct.pack("<2i", x, y)


def near(dx, dy):
    return struct.pack("<2b", dx, dy)


def jumps_seeds():
    top = 2**31 - 1
    return {
        "around": far(81756, 38940) + bytes([1]) + jump(2 | 8 | 16, 64, near(24, 0))
        + jump(2, 0, near(24, 24)) + jump(2 | 8, 255, near(-24, 0)) + jump(2 | 16, 0, near(0, -48)),
        "corners": far(0, 0) + bytes([3]) + b"".join(
            jump(1 | 2 | 8 | 16, 255, far(x, y)) for x in (-top - 1, top) for y in (-top - 1, top)),
        "axes": far(-1, -1) + bytes([0]) + jump(1 | 2 | 16, 64, far(12287, -12289))
        + jump(1 | 2 | 16, 64, far(-12288, 24576)) + jump(1 | 2 | 16, 64, far(11, -13)),
        "clusters": far(196608, 196608) + bytes([2]) + jump(2, 0, near(-1, -1))
        + jump(2, 0, near(1, 1)) + jump(2 | 16, 64, near(-24, 24)),
        "wrapping-ids": far(2048 * 12288, 2047 * 12288) + bytes([1])
        + jump(1 | 2 | 8 | 16, 63, far(12288, 2048 * 12288)) + jump(2 | 16, 191, near(0, 24)),
        "storm": far(81756, 38940) + bytes([2]) + b"".join(
            jump(2, 0, near(step, 127 - step)) for step in range(0, 127, 9)),
    }


if __name__ == "__main__":
    write("triangulate", triangulate_seeds())
    write("events", events_seeds())
    write("jumps", jumps_seeds())
