#!/usr/bin/python3
"""The ocean's page in headless Chromium with software GL, 1280 x 720: size, how long fresh views take, frames
while dragging, memory.

    bench/ocean.py    build/web/site/ is to be there
"""

import gzip
import os
import pathlib
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests/browser"))

import chromium  # noqa: E402 (the path has to be set first)

SITE = ROOT / "build/web/site"
WIDTH, HEIGHT = 1280, 720
JUMPS = 9  # at each zoom, every one to a place that no worker has drawn yet
MOVES = 240
# From the address to the last picture, in a browser that has nothing yet.
STARTED = """const [done] = arguments; (function look() {
        crew.jobs.size || crew.idle.length < crew.size ? requestAnimationFrame(look) : done(performance.now());
    })();"""
# From the jump, or the switch of all layers, to the last picture of the view.
JUMP = """const [x, y, zoom, done] = arguments, began = performance.now();
    ocean.once("load", () => done([performance.now() - began,
        [...ocean.shown].filter(({ coords }) => coords.z === zoom).length]));
    map.setView([y, x], zoom, { animate: false });"""
SWITCH = """const [done] = arguments, began = performance.now();
    ocean.show(2047);
    (function look() {
        [...ocean.shown].every(({ dataset }) => dataset.layers === "2047")
            ? done(performance.now() - began) : requestAnimationFrame(look);
    })();"""
COUNT_FRAMES = "window.frames_ = []; requestAnimationFrame(function next(now) { frames_.push(now); requestAnimationFrame(next); })"
MEMORY = """const [done] = arguments; crew.ask("memory", []).result.then(
    (worker) => done([worker / 2 ** 20, performance.memory.usedJSHeapSize / 2 ** 20, ocean.shown.size]));"""


def fill_views(browser):
    for zoom in range(2, 14):
        views = [browser.execute_async_script(JUMP, 5000 * zoom + 500 * i, 40000, zoom) for i in range(JUMPS)]
        times = sorted(time for time, _ in views)
        pictures = views[0][1]
        switched = browser.execute_async_script(SWITCH)
        browser.execute_script("showLayers()")
        print(f"zoom {zoom}: {pictures} pictures in {times[0]:.0f}, {times[JUMPS // 2]:.0f}, {times[-1]:.0f} ms (best, "
              f"median, worst); {1000 * pictures / times[JUMPS // 2]:.0f} a second; all layers switched on: {switched:.0f} ms")


def drag(browser, zoom):
    browser.execute_async_script(JUMP, 20000, 20000 + zoom, zoom)
    event = {"type": "mousePressed", "x": 640, "y": 360, "button": "left", "buttons": 1, "clickCount": 1}
    browser.execute_cdp_cmd("Input.dispatchMouseEvent", event)
    browser.execute_script("frames_.length = 0")
    for i in range(MOVES):
        event |= {"type": "mouseMoved", "x": 640 - 2 * i, "y": 360 - i}
        browser.execute_cdp_cmd("Input.dispatchMouseEvent", event)
    frames = browser.execute_script("return frames_")
    browser.execute_cdp_cmd("Input.dispatchMouseEvent", {**event, "type": "mouseReleased"})
    steps = sorted(later - earlier for earlier, later in zip(frames, frames[1:]))
    print(f"dragging at zoom {zoom}: {1000 * len(steps) / sum(steps):.1f} frames a second, "
          f"99 of 100 within {steps[len(steps) * 99 // 100]:.0f} ms, longest {steps[-1]:.0f}")


def main():
    files = [SITE / "ocean.html", *SITE.glob("ocean-*/*")]
    print("load %.1f; size: %d KB, packed %d KB" % (
        os.getloadavg()[0], sum(file.stat().st_size for file in files) / 1000,
        sum(len(gzip.compress(file.read_bytes())) for file in files) / 1000))
    with chromium.serve(SITE) as address, tempfile.TemporaryDirectory() as profile, \
            chromium.start(profile, WIDTH, HEIGHT) as browser:
        browser.get(f"{address}/ocean.html#500000,500000,6")
        print(f"first view after {browser.execute_async_script(STARTED):.0f} ms")
        browser.execute_script(COUNT_FRAMES)
        fill_views(browser)
        for zoom in (4, 8, 11):
            drag(browser, zoom)
        print("memory: a worker's %.0f MiB, the page's own %.0f MiB with %d pictures"
              % tuple(browser.execute_async_script(MEMORY)))
    print(f"load {os.getloadavg()[0]:.1f}")


if __name__ == "__main__":
    main()
