"""The game's page in a real browser, played by keys, by fingers and with a gamepad, and looked at.

Screenshots are kept in build/web/shots/."""

import io
import os
import re
import subprocess
import sys

import pytest
from PIL import Image
from selenium.common.exceptions import WebDriverException
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

from chromium import serve, start
from conftest import ROOT

sys.path.insert(0, str(ROOT / "tests/e2e"))
from test_plays import BOAT, FIGURE, SHIP, START, map_is_open  # noqa: E402 (the path has to be set first)

SHOTS = ROOT / "build/web/shots"
PLACE = "return game && [game._PlaceX(), game._PlaceY(), game._Zoom()]"


class Page:
    def __init__(self, chromium):
        self.browser = chromium

    def open(self, address):
        self.browser.get("about:blank")
        self.browser.get(address)
        self.wait(lambda: not self.element("progress").is_displayed(), "the game starts or tells why not")
        return self.element("said").text

    def run(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def element(self, name):
        return self.browser.find_element(By.ID, name)

    def wait(self, condition, what):
        waiting = WebDriverWait(self.browser, 90, 0.2, [WebDriverException])  # while a page is being replaced
        return waiting.until(lambda _: condition(), f"not reached: {what}")

    def hold(self, key, seconds=0.3):
        ActionChains(self.browser).key_down(key).pause(seconds).key_up(key).perform()

    def land(self, name=None):
        self.wait(lambda: all(sprite.seek(self.picture(name), START[1]) for sprite in (FIGURE, BOAT)) or self.hold("d"),
                  "a figure walks, and its boat waits")

    def copy_link(self):
        self.run("document.getElementById('copy').focus()")
        ActionChains(self.browser).send_keys(Keys.ENTER).perform()
        self.wait(lambda: "has been copied" in self.element("note").text, "it is said where the link is")
        self.browser.execute_cdp_cmd("Browser.grantPermissions", {"permissions": ["clipboardReadWrite"]})
        return self.browser.execute_async_script("navigator.clipboard.readText().then(arguments[0])")

    def picture(self, name=None):
        picture = Image.open(io.BytesIO(self.browser.get_screenshot_as_png())).convert("RGB")
        if name:
            SHOTS.mkdir(parents=True, exist_ok=True)
            picture.save(SHOTS / f"{name}.png")
        return picture

    def errors(self):
        """What the console complains of, taken from its list."""
        return [line["message"] for line in self.browser.get_log("browser") if line["level"] != "INFO"]


def test_the_site_that_scripts_play_serves_plays_as_on_the_desktop(chromium):
    surroundings = {name: value for name, value in os.environ.items()
                    if name not in ("DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER")}
    with subprocess.Popen([ROOT / "scripts/play"], env=surroundings, text=True, stdout=subprocess.PIPE) as play:
        try:
            said = next(line for line in play.stdout if line.startswith("Open "))
            page = Page(chromium)
            assert page.open(re.search(r"http://127\.0\.0\.1:\d+/", said)[0]) == ""
            page.wait(lambda: SHIP.is_at(page.picture("start"), START), "the ship lies off an island")
            assert page.element("help").is_displayed()
            page.land("ashore")
            link = page.copy_link()
            page.hold(Keys.BACKSPACE)
            page.wait(lambda: map_is_open(page.picture("map")), "the map is open")
            page.hold(Keys.BACKSPACE)
            page.wait(lambda: not map_is_open(page.picture()), "the map is closed")
            page.wait(lambda: not page.element("help").is_displayed(), "the help goes away")
            before = page.picture()
            page.hold("`")
            page.wait(lambda: page.picture("menu").crop((0, 0, 300, 720)) != before.crop((0, 0, 300, 720)), "a menu")
            keys = [" ", "/", "'", "Backspace", "ArrowDown", "Tab", "F5", "f"]
            taken = page.run("""return arguments[0].filter(key => !canvas.dispatchEvent(new KeyboardEvent(
                "keydown", { key, ctrlKey: key === "f", bubbles: true, cancelable: true })))""", keys)
            assert taken == keys[:5], "no key scrolls or searches, and the browser's own stay its own"

            page.hold(Keys.ESCAPE)
            page.wait(lambda: "You have left the ocean" in page.element("said").text, "the end")
            ActionChains(chromium).send_keys(Keys.ENTER).perform()  # "Start again" has the focus
            page.wait(lambda: page.element("links").is_displayed(), "another game")
            page.open(link)
            page.land()
            assert page.run("return linkToPlace()") == link, "it was the boat's place, beside the land"
        finally:
            play.terminate()


def test_a_link_is_a_place_below_any_path(chromium, tmp_path):
    (tmp_path / "some").mkdir()
    (tmp_path / "some/path").symlink_to(ROOT / "build/web/site")
    settings = dict(re.findall(r"^(start\w+) = (\d+)", (ROOT / "packaging/vesk.ini.in").read_text(), re.MULTILINE))
    shipped = [int(settings["start_pos_x"]), int(settings["start_pos_y"]), 1]
    page = Page(chromium)
    with serve(tmp_path) as server:
        address = f"{server}/some/path/"
        for query, expected in [
                ("?x=100000&y=60000&zoom=0.5", [100000, 60000, 0.5]),
                ("?x=1e5&y=60000&zoom=2", [shipped[0], 60000, 1]),
                ("?x=99999999999&y=&zoom=0.001", shipped)]:
            page.open(address + query)
            x, y, zoom = page.run(PLACE)
            assert [x // 24, y // 24, round(zoom, 3)] == [expected[0] // 24, expected[1] // 24, expected[2]], query
        link = page.run("return linkToPlace()")
        assert link == f"{address}?x={x}&y={y}&zoom=1"
        loaded = page.run("return performance.getEntriesByType('resource').map(({name}) => name)")
        assert len(loaded) > 4 and all(name.startswith(address) for name in loaded)
        page.picture("some-path")


def test_on_a_phone_fingers_play_and_so_does_a_gamepad_that_comes_late(site, tmp_path):
    with start(tmp_path, 390, 844, touch=True, ratio=2) as chromium:
        play_with_fingers(Page(chromium), site)


def play_with_fingers(page, site):
    assert page.open(site) == "" and page.run("return [canvas.width, canvas.height]") == [390, 844]
    sea = page.picture("phone").crop((0, 400, 780, 1100))
    assert sea.reduce(2).resize(sea.size, Image.Resampling.NEAREST).tobytes() == sea.tobytes(), "pixels are sharp"

    def touch(name, condition, what):
        box = page.run("return document.querySelector(`[data-key='${arguments[0]}']`).getBoundingClientRect()", name)
        point = {"x": box["x"] + box["width"] / 2, "y": box["y"] + box["height"] / 2}
        page.browser.execute_cdp_cmd("Input.dispatchTouchEvent", {"type": "touchStart", "touchPoints": [point]})
        if name != "Backspace":
            page.wait(condition, what)
        page.browser.execute_cdp_cmd("Input.dispatchTouchEvent", {"type": "touchEnd", "touchPoints": []})
        page.wait(condition, what)

    x, y, zoom = page.run(PLACE)
    touch("w", lambda: page.run(PLACE)[1] > y, "the ship sails up")
    touch("q", lambda: page.run(PLACE)[2] < zoom, "the view widens")
    touch("Backspace", lambda: page.run("return game._IsMapOpen()") == 1, "a tap opens the map")
    page.picture("phone-map")
    touch("Backspace", lambda: page.run("return game._IsMapOpen()") == 0, "another closes it")
    page.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                 {"width": 844, "height": 390, "deviceScaleFactor": 2, "mobile": True})
    page.wait(lambda: page.run("return [canvas.clientWidth, canvas.clientHeight]") == [180, 390], "it is turned")
    page.picture("phone-turned")
    page.run("""const pad = { axes: [-1, 0, 0, 0], buttons: [] };
        Object.defineProperty(navigator, "getGamepads", { value: () => [null, pad] });""")
    page.wait(lambda: page.run(PLACE)[0] < x, "the ship sails left")
    assert page.errors() == []


@pytest.mark.parametrize("spoil, script, sentence, complaints", [
    ("", "canvas.getContext('webgl').getExtension('WEBGL_lose_context').loseContext()", "taken the graphics away", 0),
    ("HTMLCanvasElement.prototype.getContext = () => null", "", "SDL_CreateRenderer error: .*WebGL", 0),
    ("fetch = (real => url => real(url + (url.endsWith('data') ? '.gone' : '')))(fetch)", "",
     "could not be loaded: vesk.data: the server answers 404", 1)])
def test_what_goes_wrong_is_told_in_words(chromium, site, spoil, script, sentence, complaints):
    page = Page(chromium)
    spoiled = chromium.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {"source": spoil})
    try:
        page.open(site)
        page.run(script)
        page.wait(lambda: re.search(sentence, page.element("said").text), sentence)
        assert page.element("again").is_displayed() and len(page.errors()) == complaints
        assert ("?x=" in chromium.current_url) == bool(script), "a game that was going on can go on"
    finally:
        chromium.execute_cdp_cmd("Page.removeScriptToEvaluateOnNewDocument", spoiled)
