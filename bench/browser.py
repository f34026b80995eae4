#!/usr/bin/python3
"""The game in headless Chromium with software WebGL: size, start, frames, passes and heap, one line each.

    bench/browser.py [SECONDS]    of sailing per window size, 60 if unset; build/web/site/ is to be there
"""

import gzip
import pathlib
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests/browser"))

import chromium  # noqa: E402 (the path has to be set first)

SITE = ROOT / "build/web/site"
# Times each of the page's frame callbacks, in which the passes run.
WATCH = """window.passes = []; const real = requestAnimationFrame; window.requestAnimationFrame = call => real(now => {
    const began = performance.now(); call(now); passes.push([began, performance.now() - began]); });"""
# Start-up, the first nine jobs and some frames more: the islands around are there.
STARTED = "return document.getElementById('cover').hidden && passes.length > 15 && passes[15][0]"
SIZE = "return game.HEAPU8.length"


def wait(browser, script):
    end = time.monotonic() + 120
    while not (value := browser.execute_script(script)):
        if time.monotonic() > end:
            raise SystemExit(f"browser.py: not within two minutes: {script}")
        time.sleep(0.1)
    return value


def measure(browser, address, size, seconds):
    for kind in ("cold", "warm"):
        browser.get("about:blank")
        browser.get(address)
        print(f"{size}: {wait(browser, STARTED) / 1000:.2f} s from the address to the first islands, {kind}")
    heap = browser.execute_script(SIZE)
    for keys, what in (("", "at rest"), ("w", "sailing over new cells")):
        browser.execute_script("passes.length = 0; if (arguments[0]) { press(arguments[0], true); }", keys)
        time.sleep(seconds)
        passes = browser.execute_script("return passes")
        work = sorted(length for _, length in passes)
        rate = (len(passes) - 1) * 1000 / (passes[-1][0] - passes[0][0])
        print(f"{size}, {what}: {rate:.1f} passes a second; {sum(work) / len(work):.2f} ms of the page's thread each, "
              f"p99 {work[len(work) * 99 // 100]:.1f}, longest {work[-1]:.1f}")
    print(f"{size}: heap {heap / 2**20:.1f} MiB at first, {browser.execute_script(SIZE) / 2**20:.1f} MiB at the end")


def main():
    seconds = float(sys.argv[1]) if len(sys.argv) > 1 else 60
    files = [SITE / "index.html", *SITE.glob("game-*/*")]
    print("size: %d KB, packed %d KB" % (sum(file.stat().st_size for file in files) / 1000,
                                         sum(len(gzip.compress(file.read_bytes())) for file in files) / 1000))
    with chromium.serve(SITE) as address:
        for width, height in ((1280, 720), (1920, 1080)):
            with tempfile.TemporaryDirectory() as profile, chromium.start(profile, width, height) as browser:
                browser.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": WATCH})
                measure(browser, address, f"{width} x {height}", seconds)


if __name__ == "__main__":
    main()
