#!/usr/bin/python3
"""The game in headless Chromium, which draws with the processor, and in a window of a virtual screen: size, start,
frames and memory, one line each.

    bench/browser.py [SECONDS [WIDTHxHEIGHT...]]    of sailing, 60 if unset, per size of the picture

build/web/site/, build/release/ and build/bench/ are to be there (presets web, release and bench), and the packages
that scripts/test and its step browser install.
"""

import gzip
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

import pyvirtualdisplay
from PIL import ImageGrab

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "tests/browser"))

import chromium  # noqa: E402 (the path has to be set first)

SITE = ROOT / "build/web/site"
REST = 20  # seconds
BORDER = (98304, 60500)  # world units: open water for a minute to the left and right; each crossing loads three cells
BESIDE = 500  # units to the border's left and right
# Where the first island lies at the shipped start, right of and below the ship; land is green.
LAND = 0.6, 0.4, 120
PLACE = 100  # pixels; where the window opens on a screen, from above and from the left
# Times the page's frames, in which the passes run, and notes the first that shows the island.
WATCH = """window.frames_ = []; window.landfall = 0; const real = requestAnimationFrame;
    const showsLand = () => {
        const gl = document.getElementById("canvas").getContext("webgl"), pixel = new Uint8Array(4);
        gl?.readPixels(gl.drawingBufferWidth * %g + %d, gl.drawingBufferHeight * (1 - %g) - %d, 1, 1, gl.RGBA,
            gl.UNSIGNED_BYTE, pixel);
        return pixel[1] > pixel[2];
    };
    window.requestAnimationFrame = call => real(now => {
        const began = performance.now();
        call(now);
        const took = performance.now() - began, last = frames_[frames_.length - 1];
        last?.now === now ? last.took += took : frames_.push({now, took});
        if (landfall === 0 && showsLand()) {
            landfall = performance.now();
        }
    });""" % (LAND[0], LAND[2], LAND[1], LAND[2])


def packed(files):
    files = [file for file in files if file.is_file()]
    return "%d KB, packed %d KB" % (sum(file.stat().st_size for file in files) / 1000,
                                    sum(len(gzip.compress(file.read_bytes())) for file in files) / 1000)


def until(condition, what):
    end = time.monotonic() + 120
    while not (value := condition()):
        if time.monotonic() > end:
            raise SystemExit(f"browser.py: not within two minutes: {what}")
        time.sleep(0.01)
    return value


def tell_frames(browser, what):
    frames = browser.execute_script("return frames_")
    took = sorted(frame["took"] for frame in frames)
    rate = (len(frames) - 1) * 1000 / (frames[-1]["now"] - frames[0]["now"])
    print(f"{what}: {rate:.1f} frames a second; {sum(took) / len(took):.2f} ms of the page's thread each, "
          f"p99 {took[len(took) * 99 // 100]:.1f}, longest {took[-1]:.1f}")


def sail(browser, seconds):
    """To and fro over the border; gives the number of crossings."""
    crossings, end = 0, time.monotonic() + seconds
    while time.monotonic() < end:
        for key, side in (("d", 1), ("a", -1)):
            browser.execute_script("press(arguments[0], true)", key)
            until(lambda: side * (browser.execute_script("return game._PlaceX()") - BORDER[0]) > BESIDE, "a crossing")
            browser.execute_script("press(arguments[0], false)", key)
            crossings += 1
    return crossings


def in_browser(address, width, height, seconds):
    name = f"browser, {width} x {height}"
    with tempfile.TemporaryDirectory() as profile, chromium.start(profile, width, height) as browser:
        browser.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": WATCH})
        for kind in ("cold", "warm"):
            browser.get("about:blank")
            browser.get(address)
            shown = until(lambda: browser.execute_script("return landfall"), "an island")
            print(f"{name}: {shown / 1000:.2f} s from the address to the first island, {kind}")
        browser.get(f"{address}/?x={BORDER[0] - BESIDE}&y={BORDER[1]}")
        until(lambda: browser.execute_script("return document.getElementById('cover').hidden"), "the game")
        heap = "return game.HEAPU8.length / 2 ** 20"
        first = browser.execute_script(heap)
        browser.execute_script("frames_.length = 0")
        time.sleep(REST)
        tell_frames(browser, f"{name}, at rest")
        browser.execute_script("frames_.length = 0")
        crossings = sail(browser, seconds)
        tell_frames(browser, f"{name}, sailing {seconds:g} s over new cells ({crossings} crossings)")
        print(f"{name}: heap {first:.1f} MiB at first, {browser.execute_script(heap):.1f} MiB at the end")


def settings(**values):
    text = (ROOT / "packaging/vesk.ini.in").read_text().replace("@VESK_RESOURCE_MODE@", "release")
    for key, value in values.items():
        text = re.sub(f"^{key} = .*", f"{key} = {value}", text, flags=re.MULTILINE)
    return text


def resident(process):
    status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
    return int(re.search(r"RssAnon:\s+(\d+)", status)[1]) / 1024


def in_window(width, height, seconds):
    name = f"desktop, {width} x {height}"
    with tempfile.TemporaryDirectory() as folder, pyvirtualdisplay.Display(
            size=(width + 2 * PLACE, height + 2 * PLACE)):
        folder = pathlib.Path(folder)
        shutil.copytree(ROOT / "data", folder / "data")
        for program in ("release/bin/vesk", "bench/bin/window_frames"):
            shutil.copy(ROOT / "build" / program, folder)
        (folder / "vesk.ini").write_text(settings(width=width, height=height))
        x, y = (int(PLACE + share * length + LAND[2]) for share, length in zip(LAND, (width, height)))
        for kind in ("first", "again"):
            began = time.monotonic()
            with subprocess.Popen([folder / "vesk"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as game:
                try:
                    until(lambda: (pixel := ImageGrab.grab((x, y, x + 1, y + 1)).getpixel((0, 0)))[1] > pixel[2], "land")
                    print(f"{name}: {time.monotonic() - began:.2f} s from the start to the first island, {kind}")
                finally:
                    game.terminate()
        (folder / "vesk.ini").write_text(settings(
            width=width, height=height, start_pos_x=BORDER[0] - BESIDE, start_pos_y=BORDER[1]))
        with subprocess.Popen([folder / "window_frames", str(int(seconds))], stdout=subprocess.PIPE, text=True) as game:
            time.sleep(5)
            first = resident(game)
            time.sleep(seconds - 6)
            last = resident(game)
            renderer, frames, _ = game.communicate()[0].splitlines()
        rate = int(re.search(r"frames: (\d+)", frames)[1]) / seconds
        print(f"{name}, sailing {seconds:g} s to and fro, {renderer}: {rate:.1f} frames a second; {frames}")
        print(f"{name}: {first:.1f} MiB of its own after 5 s, {last:.1f} MiB at the end")


def main():
    seconds = float(sys.argv[1]) if len(sys.argv) > 1 else 60
    sizes = [tuple(map(int, size.split("x"))) for size in sys.argv[2:]] or [(1280, 720), (1920, 1080)]
    print("browser:", packed([SITE / "index.html", *SITE.glob("game-*/*")]))
    print("desktop, without SDL and other libraries:", packed([ROOT / "build/release/bin/vesk", *ROOT.glob("data/*")]))
    with chromium.serve(SITE) as address:
        for width, height in sizes:
            in_browser(address, width, height, seconds)
            in_window(width, height, seconds)


if __name__ == "__main__":
    main()
