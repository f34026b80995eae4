// The ocean as a map. Leaflet moves, zooms and asks for pictures; workers draw them with the game's
// own generator. Leaflet's latitudes and longitudes are cell coordinates here, y up, and at zoom z a
// cell is 2^z pixels wide.
"use strict";

const kHere = document.currentScript.src;
const kCellSize = 12288; // world units
const kTileSize = 24;
const kCells = 174763; // along the world's side
const kPictureSide = 256; // pixels
const kFirstZoom = 2;
const kLastZoom = 13;
const kHome = { x: 92000, y: 190000, zoom: 6 }; // cell (7, 15), where the game begins
const kIslandZoom = 8; // at which an island fits a small screen
const kWalked = 2 ** 25; // world units: beyond, floats are 4 apart, and steps of 1.9 on foot come to nothing
const kReach = 24; // pixels from a click to an island's square

// In the order of the engine's bits.
const kLayers = [
    { name: "links", text: "Links between islands", on: true },
    { name: "clusters", text: "Clusters", on: true },
    { name: "grid", text: "Grid of cells and tiles", on: true },
    { name: "names", text: "Islands' coordinates", on: true },
    { name: "rooms", text: "Rooms" },
    { name: "hallways", text: "Hallways" },
    { name: "tree", text: "Spanning tree" },
    { name: "markers", text: "Markers" },
    { name: "enemies", text: "Enemies" },
    { name: "borders", text: "Islands' borders" },
    { name: "triangulation", text: "Triangulation" },
];

const kWays = {
    "0,1": "north", "1,1": "north-east", "1,0": "east", "1,-1": "south-east",
    "0,-1": "south", "-1,-1": "south-west", "-1,0": "west", "-1,1": "north-west",
};

const element = (id) => document.getElementById(id);

// A line for all, or only for those who have the page read to them.
function say(text, isShown = true) {
    element("say").textContent = text;
    element("say").classList.toggle("heard", !isShown);
}

const grouped = (number) => Math.round(number).toLocaleString("en-US");

// Workers, each with at most one job. Which of the waiting jobs is next is decided when a worker is
// free, so that what has come into view first is drawn first.
class Crew {
    constructor(count, rank) {
        this.size = count; // of those that have not failed to start
        this.hasStarted = false;
        this.rank = rank; // the lowest is next
        this.jobs = new Set();
        this.idle = [];
        for (let i = 0; i < count; ++i) {
            this.hire();
        }
    }

    hire() {
        const worker = new Worker(new URL("ocean-worker.js", kHere));
        worker.onerror = () => this.replace(worker);
        worker.onmessage = ({ data }) => {
            if (data.failed) {
                this.replace(worker);
                return;
            }
            const { job } = worker;
            worker.job = null;
            worker.isReady = this.hasStarted = true;
            this.idle.push(worker);
            this.work();
            if (job) {
                job.resolve(data.result);
            }
        };
    }

    // What a failed worker had to do is for the next that is free. The others go on without one that
    // does not start.
    replace(worker) {
        worker.onerror = worker.onmessage = null; // an abort is told twice
        worker.terminate();
        this.idle = this.idle.filter((other) => other !== worker);
        if (worker.isReady) {
            this.retry(worker.job);
            this.hire();
        } else {
            --this.size;
        }
        this.work();
    }

    retry(job) {
        if (job?.hasFailed) {
            say("The generator failed twice at the same work, which stays undone.");
            return;
        }
        say("The generator failed and is started again.");
        if (job) {
            job.hasFailed = true;
            this.jobs.add(job);
        }
    }

    // A promise of the result, with the job, which `drop` takes back while it waits.
    ask(what, values, more = {}) {
        const job = { what, values, ...more };
        job.result = new Promise((resolve) => { job.resolve = resolve; });
        this.jobs.add(job);
        this.work();
        return job;
    }

    drop(job) {
        this.jobs.delete(job);
    }

    work() {
        while (this.idle.length > 0 && this.jobs.size > 0) {
            let next = null;
            let least = Infinity;
            for (const job of this.jobs) {
                const rank = this.rank(job);
                if (rank < least) {
                    [next, least] = [job, rank];
                }
            }
            this.jobs.delete(next);
            const worker = this.idle.pop();
            worker.job = next;
            worker.postMessage({ what: next.what, values: next.values });
        }
        if (this.size === 0 && this.jobs.size > 0) {
            this.jobs.clear();
            say(this.hasStarted ? "The generator failed and does not start again: load the page anew."
                : "This browser cannot draw the ocean: its generator did not start.");
        }
    }
}

const OceanLayer = L.GridLayer.extend({
    initialize(crew, options) {
        L.GridLayer.prototype.initialize.call(this, options);
        this.crew = crew;
        this.layers = 0;
        this.shown = new Set();
        this.on("tileunload", ({ tile }) => {
            crew.drop(tile.job);
            tile.job = null; // Leaflet would take its picture for that of the tile that is there now
            this.shown.delete(tile);
        });
    },

    createTile(coords, done) {
        const tile = L.DomUtil.create("canvas");
        tile.width = kPictureSide;
        tile.height = kPictureSide;
        tile.coords = coords;
        this.shown.add(tile);
        tile.done = () => done(null, tile);
        this.paint(tile);
        return tile;
    },

    // A picture that is asked for again while an older one is drawn is painted once, with the last.
    async paint(tile) {
        const { x, y, z } = tile.coords;
        if (tile.job) {
            this.crew.drop(tile.job);
        }
        const job = this.crew.ask("draw", [z, x, -1 - y, this.layers], { coords: tile.coords });
        tile.job = job;
        const bytes = await job.result;
        if (tile.job === job) {
            const pixels = new ImageData(new Uint8ClampedArray(bytes), kPictureSide, kPictureSide);
            tile.getContext("2d").putImageData(pixels, 0, 0);
            tile.dataset.layers = job.values[3];
            tile.done();
        }
    },

    show(layers) {
        this.layers = layers;
        this.shown.forEach((tile) => this.paint(tile));
    },
});

// Leaflet's plane without a globe, where a cell is one unit.
const map = L.map("map", {
    crs: L.CRS.Simple, minZoom: kFirstZoom, maxZoom: kLastZoom, zoomControl: false,
    fadeAnimation: false, tap: false, maxBoundsViscosity: 0.8,
    wheelPxPerZoomLevel: 120, // a notch is a zoom
    maxBounds: [[-40, -40], [kCells + 40, kCells + 40]],
});
L.control.zoom({ position: "bottomright" }).addTo(map);
const kLicence = new URL("leaflet-licence.txt", kHere);
map.attributionControl.setPrefix(`<a href="${kLicence}">Leaflet</a>, <a href="licences.txt">licences</a>`);

// Questions come before pictures, pictures in view before those around it, the middle first.
function rankOf(job) {
    if (!job.coords) {
        return -1;
    }
    const middle = map.getPixelBounds().getCenter().divideBy(kPictureSide);
    const wrongZoom = job.coords.z === map.getZoom() ? 0 : 1e9;
    return wrongZoom + middle.distanceTo(job.coords.add([0.5, 0.5]));
}

const crew = new Crew(Math.min(navigator.hardwareConcurrency || 2, 8), rankOf);
const ocean = new OceanLayer(crew, {
    tileSize: kPictureSide, minZoom: kFirstZoom, maxZoom: kLastZoom,
    updateWhenIdle: false, updateWhenZooming: false, keepBuffer: 1,
});
const frame = L.rectangle([[0, 0], [1, 1]], { color: "#f4e4b0", weight: 2, fill: false, interactive: false });
const visitor = L.circleMarker([0, 0], {
    radius: 7, color: "#fff", weight: 2, fillColor: "#d33", fillOpacity: 1, interactive: false,
});

// World units and Leaflet's.
const toMap = (x, y) => [y / kCellSize, x / kCellSize];
const toWorld = ({ lat, lng }) => ({ x: Math.floor(lng * kCellSize), y: Math.floor(lat * kCellSize) });
const middleOf = ([x, y]) => [y + 0.5, x + 0.5];
const cellAt = ({ lat, lng }) => [Math.floor(lng), Math.floor(lat)];
const kLastUnit = 2 ** 31 - 1;
const isInWorld = (value) => value >= 0 && value <= kLastUnit;

function mark([x, y]) {
    visitor.setLatLng(toMap(x, y)).addTo(map);
}

// The address bar: #x,y,zoom in world units. Without a zoom the place is marked.
function readAddress() {
    const parts = location.hash.slice(1).split(",").map(Number);
    const isPlace = (parts.length === 2 || parts.length === 3) && parts.slice(0, 2).every(isInWorld);
    const { x, y, zoom } = isPlace ? { x: parts[0], y: parts[1], zoom: parts[2] ?? kIslandZoom + 1 } : kHome;
    if (isPlace && parts.length === 2) {
        mark([x, y]);
    }
    const shown = Number.isFinite(zoom) ? Math.round(zoom) : kHome.zoom;
    map.setView(toMap(x, y), Math.min(Math.max(shown, kFirstZoom), kLastZoom), { animate: false });
}

// Once the map rests: browsers take only so many changes of the address.
let writing = 0;
function writeAddress() {
    clearTimeout(writing);
    writing = setTimeout(() => {
        const { x, y } = toWorld(map.getCenter());
        const [inX, inY] = [x, y].map((value) => Math.min(Math.max(value, 0), kLastUnit));
        history.replaceState(null, "", `#${inX},${inY},${map.getZoom()}`);
    }, 200);
}

function showScale() {
    const tilePixels = 2 ** map.getZoom() / 512;
    const most = 140 / tilePixels;
    const power = 10 ** Math.floor(Math.log10(most));
    const tiles = [5, 2, 1].find((step) => step * power <= most) * power;
    element("scale").lastElementChild.style.width = `${tiles * tilePixels}px`;
    element("scale").firstElementChild.textContent =
        `Zoom ${map.getZoom()}: ${grouped(tiles)} ${tiles === 1 ? "tile" : "tiles"} = ${grouped(tiles * kTileSize)} units`;
}

function showPlace(latlng) {
    const { x, y } = toWorld(latlng);
    const [column, row] = cellAt(latlng);
    element("where").textContent = isInWorld(x) && isInWorld(y)
        ? `${x}, ${y} · cell ${column}, ${row} · cluster ${column >> 4}, ${row >> 4}`
        : "beyond the world";
}

const nameOf = ([x, y]) => `${x}, ${y}`;
let chosen = null;
let asked = 0; // counts what is asked for, because an older answer may come later

function linkTo(cell) {
    const link = document.createElement("a");
    link.textContent = nameOf(cell);
    const [lat, lng] = middleOf(cell);
    link.href = `#${lng * kCellSize},${lat * kCellSize},${kIslandZoom}`;
    link.addEventListener("click", (event) => {
        event.preventDefault();
        visit(cell);
    });
    return link;
}

async function choose(cell) {
    ++asked;
    chosen = cell;
    const island = await crew.ask("island", cell).result;
    if (chosen !== cell) {
        return; // another was chosen meanwhile
    }
    element("island").hidden = !island;
    if (!island) {
        frame.remove();
        say(cell.every((value) => value >= 0 && value < kCells)
            ? `No island in cell ${nameOf(cell)}, only water.` : "That lies beyond the world.");
        return;
    }
    element("name").textContent = `Island ${nameOf(cell)}`;
    for (const fact of ["rooms", "hallways", "enemies", "markers"]) {
        element(fact).textContent = island[fact];
    }
    const isFar = Boolean(island.anchorage?.some((value) => value >= kWalked));
    element("far").hidden = !isFar;
    element("sail").hidden = isFar || !island.anchorage;
    if (island.anchorage) {
        const [x, y] = island.anchorage;
        element("sail").href = `index.html?x=${x}&y=${y}&zoom=1`;
    }
    element("neighbors").replaceChildren(...island.neighbors.flatMap((neighbor) => [linkTo(neighbor), " "]));
    frame.setBounds([[cell[1], cell[0]], [cell[1] + 1, cell[0] + 1]]).addTo(map);
    say(`Island ${nameOf(cell)}: ${island.rooms} rooms, ${island.enemies} enemies, `
        + `${island.neighbors.length} neighbours.`, false);
}

// Moves to an island, into the part of the map that the panel leaves free on narrow screens.
async function visit(cell, zoom = Math.max(map.getZoom(), kFirstZoom + 2)) {
    await choose(cell);
    if (chosen !== cell) {
        return;
    }
    const { top, width, height } = element("panel").getBoundingClientRect();
    const hidden = width >= window.innerWidth && top > 0 ? height : 0;
    const middle = map.project(middleOf(cell), zoom).add([0, hidden / 2]);
    map.setView(map.unproject(middle, zoom), zoom);
}

// The island whose square is no further than kReach pixels from a place.
async function pick(latlng) {
    const cell = cellAt(latlng);
    const number = ++asked;
    const nearest = await crew.ask("find", [...cell, 0, 0]).result;
    if (number !== asked) {
        return;
    }
    const [x, y] = nearest ?? cell;
    const gap = (value, low) => Math.max(low - value, 0, value - low - 1);
    const pixels = Math.hypot(gap(latlng.lng, x), gap(latlng.lat, y)) * 2 ** map.getZoom();
    choose(nearest && pixels <= kReach ? nearest : cell);
}

async function next(way) {
    const from = chosen && map.getBounds().contains(middleOf(chosen)) ? chosen : cellAt(map.getCenter());
    const number = ++asked;
    const found = await crew.ask("find", [...from, ...way.split(",").map(Number)]).result;
    if (number !== asked) {
        return;
    }
    if (!found) {
        say(`No island near in the ${kWays[way]}.`);
        return;
    }
    visit(found);
}

const kTwoNumbers = (() => { // with or without marks between thousands
    const number = String.raw`(\d{1,3}(?:,\d{3})+|\d+)`;
    return new RegExp(String.raw`^(cell |island )?\(?${number}(?: ?, | )${number}\)?$`);
})();

function search(text) {
    const wanted = text.trim().toLowerCase().replace(/\s+/g, " ").replace(/^(\D*\d+),(\d+\D*)$/, "$1, $2");
    const heading = wanted.replace(/^next( island)?( to the)? ?/, "").replace(/^(north|south)[ -]?(?=east|west)/, "$1-");
    const way = Object.keys(kWays).find((key) => kWays[key] === heading);
    if (way) {
        next(way);
        return;
    }
    const [, cell, ...parts] = wanted.match(kTwoNumbers) ?? [];
    const numbers = parts.map((part) => Number(part.replaceAll(",", "")));
    if (numbers.length === 0 || !numbers.every((number) => cell ? number < kCells : isInWorld(number))) {
        say('Write a cell as "6, 3" or, far out, "cell 90000, 3", a place in world units, or "next island north-east".');
        return;
    }
    // World units below 12,288 all lie in cell (0, 0), so small numbers are taken for cells.
    if (cell || numbers.every((number) => number < kCellSize)) {
        visit(numbers, Math.max(map.getZoom(), kIslandZoom));
        return;
    }
    ++asked;
    chosen = null; // an answer that is still to come moves nothing
    map.setView(toMap(...numbers), Math.max(map.getZoom(), kIslandZoom + 1));
    mark(numbers);
    say(`At ${nameOf(numbers)} world units.`);
}

function showLayers() {
    const bits = [...document.querySelectorAll("#layers input")]
        .reduce((sum, box, i) => sum + (box.checked ? 2 ** i : 0), 0);
    ocean.show(bits);
}

async function showColors() {
    const [sea, ...layers] = await crew.ask("colors", []).result;
    document.documentElement.style.setProperty("--sea", sea);
    document.querySelectorAll("#layers i").forEach((sample, i) => { sample.style.background = layers[i]; });
}

for (const { name, text, on } of kLayers) {
    const label = document.createElement("label");
    const box = Object.assign(document.createElement("input"), { type: "checkbox", name, checked: Boolean(on) });
    label.append(box, text, document.createElement("i"));
    box.addEventListener("change", showLayers);
    document.querySelector("#layers fieldset").append(label);
}
element("layers").open = window.innerHeight > 800 && window.innerWidth > 640;

map.on("moveend zoomend", () => { writeAddress(); showScale(); showPlace(map.getCenter()); });
map.on("mousemove", ({ latlng }) => showPlace(latlng));
map.on("mouseout", () => showPlace(map.getCenter()));
map.on("click", ({ latlng }) => pick(latlng));
element("map").addEventListener("keydown", (event) => {
    if (event.key === "Enter") {
        pick(map.getCenter());
    } else if (event.key === "+") {
        map.zoomIn();
        event.stopPropagation(); // Leaflet zooms three times with Shift, which many keyboards need for a plus
    }
});
document.addEventListener("keydown", (event) => {
    if (event.key === "/" && event.target.tagName !== "INPUT") {
        event.preventDefault();
        element("place").focus();
    }
});
element("search").addEventListener("submit", (event) => {
    event.preventDefault();
    search(element("place").value);
});
for (const button of document.querySelectorAll("#compass button")) {
    button.addEventListener("click", () => next(button.dataset.way));
}
window.addEventListener("hashchange", readAddress);

readAddress();
showColors();
showLayers();
ocean.addTo(map);
