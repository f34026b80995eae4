"""The ocean's page: its pictures against those of vesk_atlas, and what one can do there."""

import base64
import io
import json
import os
import random
import subprocess

import pytest
from PIL import Image
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait

from chromium import start
from conftest import ROOT

ATLAS_NAMES = {"markers": "compass", "enemies": "spawns", "borders": "border"}
LAYERS = {"links": (164, 202, 214), "clusters": (37, 118, 172), "grid": (25, 80, 116), "names": (214, 232, 240),
          "rooms": (255, 255, 0), "hallways": (255, 0, 0), "tree": (0, 255, 0), "markers": (255, 128, 0),
          "enemies": (255, 0, 255), "borders": (255, 0, 0), "triangulation": (255, 255, 255)}  # and their colours
LEGEND = """return Object.fromEntries([...document.querySelectorAll("#layers label")].map((label) =>
    [label.querySelector("input").name, getComputedStyle(label.querySelector("i")).backgroundColor]));"""
MOUSE = "Input.dispatchMouseEvent"
DRAWN = """const [done] = arguments; (function look() {
    const tiles = [...ocean.shown].filter(({coords}) => coords.z === map.getZoom());
    const ready = tiles.length > 0 && crew.jobs.size === 0
        && tiles.every(({classList, dataset}) => classList.contains("leaflet-tile-loaded")
            && Number(dataset.layers) === ocean.layers);
    ready ? done(tiles.map((tile) => [tile.coords, tile.toDataURL().split(",")[1]])) : setTimeout(look, 5);
})();"""


def atlas(command, *more):
    program = os.environ.get("VESK_ATLAS", ROOT / "build/release/bin/vesk_atlas")
    subprocess.run([program, *command.split(), *more], check=True)


def show(chromium, site, x, y, zoom, layers=None):
    """Opens the page at a place in cells; gives its pictures by column and row, north up."""
    chromium.get("about:blank")
    chromium.get(f"{site}/ocean.html#{int(x * 12288)},{int(y * 12288)},{zoom}")
    if layers is not None:
        chromium.execute_script("""for (const box of document.querySelectorAll("#layers input")) {
            box.checked = arguments[0].includes(box.name); } showLayers();""", list(layers))
    return pictures(chromium)


def pictures(chromium):
    return {(at["x"], -1 - at["y"]): Image.open(io.BytesIO(base64.b64decode(png))).convert("RGB")
            for at, png in chromium.execute_async_script(DRAWN)}


def count(drawn, color):
    return sum(number for picture in drawn.values() for number, found in picture.getcolors() if found == color)


def view(chromium):
    return chromium.execute_script("const { lng, lat } = map.getCenter(); return [lng, lat, map.getZoom()]")


def text(chromium, name):
    return chromium.find_element(By.ID, name).text


def wait(chromium, condition):
    return WebDriverWait(chromium, 20).until(lambda _: condition())


def search(chromium, words):
    chromium.find_element(By.ID, "place").clear()
    chromium.find_element(By.ID, "place").send_keys(words, Keys.ENTER)


@pytest.mark.parametrize("zooms, overlay, layers", [((6, 6), "", None), ((2, 9), "--overlay all", LAYERS)])
def test_pictures_are_those_of_the_atlas_at_each_zoom(chromium, site, zooms, overlay, layers, tmp_path):
    atlas(f"tiles 0 0 0 0 --zoom {zooms[0]}-{zooms[1]} {overlay} -o", tmp_path)
    show(chromium, site, 8, 8, zooms[0], layers)
    for zoom in range(zooms[0], zooms[1] + 1):
        chromium.execute_script("map.setView([8, 8], arguments[0], {animate: false})", zoom)
        compared = 0
        for (column, row), picture in pictures(chromium).items():
            path = tmp_path / f"{zoom}/{column}/{row}.png"
            if path.exists():
                with Image.open(path) as file:
                    assert picture.tobytes() == file.convert("RGB").tobytes(), path
                compared += 1
        assert compared >= (1 if zoom < 5 else 4)


# From zoom 9 on a cell's pictures are cut out of what another command draws as one. Each zoom shows a part of
# the layers, so that no two boxes can be exchanged.
@pytest.mark.parametrize("zoom, layers", [(9, "rooms tree enemies triangulation"),
                                          (11, "hallways tree borders triangulation"),
                                          (13, "markers enemies borders triangulation")])
def test_tiles_are_those_of_a_drawn_cell(chromium, site, zoom, layers, tmp_path):
    overlays = ",".join(ATLAS_NAMES.get(name, name) for name in layers.split())
    atlas(f"cell 6 3 --overlay {overlays} --scale {2 ** (zoom - 9)}", "-o", tmp_path / "cell.png")
    with Image.open(tmp_path / "cell.png") as file:
        cell = file.convert("RGB")
    side, compared = 2 ** zoom // 256, 0
    for (column, row), picture in show(chromium, site, 6.15, 3.6, zoom, layers.split()).items():
        x, y = column - 6 * side, 4 * side - 1 - row
        if 0 <= x < side and 0 <= y < side:
            assert picture.tobytes() == cell.crop(
                (256 * x, 256 * y, 256 * x + 256, 256 * y + 256)).tobytes(), (column, row)
            compared += 1
    assert compared >= 4


def test_layers_change_pictures_and_back(chromium, site):
    first = show(chromium, site, 13.5, 13.5, 6, [])
    seen = {tuple(picture.tobytes() for picture in first.values())}
    assert chromium.execute_script(LEGEND) == {name: f"rgb{color}" for name, color in LAYERS.items()}
    for number, (name, color) in enumerate(LAYERS.items(), 1):
        box = chromium.find_element(By.NAME, name)
        chromium.execute_script("arguments[0].click()", box)
        now = pictures(chromium)
        seen.add(tuple(picture.tobytes() for picture in now.values()))
        assert len(seen) == number + 1 and count(now, color) > count(first, color), name
        chromium.execute_script("arguments[0].click()", box)
        assert pictures(chromium) == first


def test_island_tells_its_facts_and_the_ship_sails_from_it(chromium, site, tmp_path):
    atlas("cell 6 3", "-o", tmp_path / "p.png", "--json", tmp_path / "p.json")
    cell = json.loads((tmp_path / "p.json").read_text())["cells"][0]
    show(chromium, site, 6.5, 3.5, 5)
    chromium.find_element(By.ID, "map").send_keys(Keys.ENTER)
    wait(chromium, lambda: text(chromium, "name") == "Island 6, 3")
    facts = {name: int(text(chromium, name)) for name in ("rooms", "hallways", "enemies", "markers")}
    dungeon = cell["dungeon"]
    assert facts == {
        "rooms": len(dungeon["mainRooms"]), "hallways": len(dungeon["hallwayEdges"]),
        "enemies": sum(len(room["spawnPoints"]) for room in dungeon["rooms"]),
        "markers": len(dungeon["compassPoints"])}
    neighbors = [f"{at['x']}, {at['y']}" for at in cell["neighbors"]]
    links = chromium.find_elements(By.CSS_SELECTOR, "#neighbors a")
    assert [link.text for link in links] == neighbors
    chromium.find_element(By.ID, "sail").click()
    wait(chromium, lambda: [link for link in chromium.find_elements(By.ID, "show") if link.is_displayed()])
    x, y = chromium.execute_script("return [game._PlaceX(), game._PlaceY()]")
    column, row = (x - 6 * 12288) // 24, (y - 3 * 12288) // 24
    around = [(1, 0), (-1, 0), (0, 1), (0, -1)]
    assert dungeon["tiles"][row][column] == "0"
    assert "2" in [dungeon["tiles"][row + up][column + right] for right, up in around]

    link = chromium.find_element(By.ID, "show")
    chromium.execute_script("arguments[0].target = ''", link)  # not into a window of its own
    link.click()
    wait(chromium, lambda: chromium.current_url.endswith(f"/ocean.html#{x},{y},9"))
    assert chromium.execute_script("return map.hasLayer(visitor) && toWorld(visitor.getLatLng())") == {"x": x, "y": y}


def test_search_and_address_lead_to_places(chromium, site):
    show(chromium, site, 40, 40, 5)
    search(chromium, "6,3")
    wait(chromium, lambda: text(chromium, "name") == "Island 6, 3")
    search(chromium, "next island north-west")
    wait(chromium, lambda: text(chromium, "name") == "Island 5, 4")
    for words, place in (("500000, 1500000", "500000,1500000"), ("1,104,000 2,280,000", "1104000,2280000")):
        search(chromium, words)
        wait(chromium, lambda: chromium.current_url.endswith(f"#{place},9"))
    for words, said in (("7, 3", "only water"), ("cell 174763, 3", "Write a cell")):
        search(chromium, words)
        wait(chromium, lambda: said in text(chromium, "say"))


def test_a_failure_is_told_and_another_worker_takes_its_work(chromium, site):
    show(chromium, site, 40, 40, 5)
    chromium.execute_script("crew.ask('nonsense', [])")
    wait(chromium, lambda: "stays undone" in text(chromium, "say"))
    rest = "return crew.size > 0 && crew.idle.length === crew.size"
    wait(chromium, lambda: chromium.execute_script(rest))
    rooms = chromium.execute_async_script("""const [done] = arguments, Real = Worker, worker = crew.idle.at(-1);
        Worker = function () { return new Real("none.js"); };
        crew.ask("island", [6, 3]).result.then(({ rooms }) => done(rooms));
        worker.onerror();""")
    assert rooms > 0 and "started again" in text(chromium, "say")
    wait(chromium, lambda: chromium.execute_script(rest))
    chromium.execute_script("crew.idle.forEach((worker) => worker.onerror())")
    search(chromium, "6, 3")
    wait(chromium, lambda: "load the page anew" in text(chromium, "say"))
    chromium.get_log("browser")  # where the browser tells of the failures, too


def test_keys_wheel_and_pinch_move_and_zoom(chromium, site, tmp_path):
    show(chromium, site, 40, 40, 6)
    ocean = chromium.find_element(By.ID, "map")
    for act, place in ((lambda: ocean.send_keys(Keys.ARROW_RIGHT), [41.25, 40, 6]),
                       (lambda: ocean.send_keys("+"), [41.25, 40, 7]),
                       (lambda: chromium.execute_cdp_cmd(MOUSE, {
                           "type": "mouseWheel", "x": 640, "y": 360, "deltaX": 0, "deltaY": -120}), [41.25, 40, 8]),
                       (lambda: ocean.send_keys("-"), [41.25, 40, 7])):
        act()
        wait(chromium, lambda: view(chromium) == pytest.approx(place, abs=0.1))
    with start(tmp_path, 390, 844, touch=True) as phone:
        show(phone, site, 40, 40, 6)
        phone.execute_cdp_cmd("Input.synthesizePinchGesture", {
            "x": 195, "y": 422, "scaleFactor": 2, "gestureSourceType": "touch"})
        wait(phone, lambda: view(phone)[2] == 7)


def test_a_hundred_drags_without_complaint(chromium, site):
    show(chromium, site, 3000, 2500, 4)
    chance = random.Random(1)
    for number in range(100):
        x, y = chance.randrange(400, 1200), chance.randrange(100, 600)
        event = {"x": x, "y": y, "button": "left", "buttons": 1, "clickCount": 1}
        chromium.execute_cdp_cmd(MOUSE, {"type": "mousePressed", **event})
        for _ in range(3):
            event |= {"x": chance.randrange(400, 1200), "y": chance.randrange(100, 600)}
            chromium.execute_cdp_cmd(MOUSE, {"type": "mouseMoved", **event})
        chromium.execute_cdp_cmd(MOUSE, {"type": "mouseReleased", **event})
        if number % 10 == 9:
            chromium.execute_script("map.setZoom(arguments[0])", chance.randrange(2, 14))
    assert pictures(chromium)
    assert chromium.execute_script("return ocean.shown.size") < 150
    memory = "const [done] = arguments; crew.ask('memory', []).result.then(done)"
    assert chromium.execute_async_script(memory) < 64 << 20
