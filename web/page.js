// The game's page: loads the program and starts it, turns touches and gamepads into keys, makes links to
// places, and says what happens in words. Vesk() comes from vesk.js, which the compiler makes.
"use strict";

const element = id => document.getElementById(id);
const canvas = element("canvas");
const files = document.body.dataset.files;
let game = null; // the program while it runs

// The keys that the page presses itself: code and number as browsers report them.
const KEYS = {
    w: ["KeyW", 87], a: ["KeyA", 65], s: ["KeyS", 83], d: ["KeyD", 68], e: ["KeyE", 69], q: ["KeyQ", 81],
    "`": ["Backquote", 192], Backspace: ["Backspace", 8], Enter: ["Enter", 13],
    ArrowUp: ["ArrowUp", 38], ArrowLeft: ["ArrowLeft", 37], ArrowDown: ["ArrowDown", 40], ArrowRight: ["ArrowRight", 39],
};
const ON_MAP = { w: "ArrowUp", a: "ArrowLeft", s: "ArrowDown", d: "ArrowRight" };

// ---- What is said

/** Ends the game and covers its picture with a sentence and a way to start again. The first sentence stays. */
function stop(sentence) {
    if (!element("again").hidden) {
        return;
    }
    game?.pauseMainLoop?.();
    game = null;
    element("said").textContent = sentence;
    for (const id of ["progress", "help", "links", "fingers"]) {
        element(id).hidden = true;
    }
    element("cover").hidden = false;
    element("again").hidden = false;
    element("again").focus();
}

/** Shows a line for some seconds. */
function note(line) {
    element("note").textContent = line;
    clearTimeout(note.timer);
    note.timer = setTimeout(() => { element("note").textContent = ""; }, 4000);
}

// ---- Loading

const notLoaded = what => new Error(`The game could not be loaded: ${what}.`);

/** A file of the game as bytes; tells `arrived` how many have come. */
async function download(name, arrived) {
    const response = await fetch(files + name);
    if (!response.ok) {
        throw new Error(`the server answers ${response.status}`);
    }
    const parts = [];
    for (const reader = response.body.getReader();;) {
        const { done, value } = await reader.read();
        if (done) {
            return new Uint8Array(await new Blob(parts).arrayBuffer());
        }
        parts.push(value);
        arrived(value.length);
    }
}

function downloadAll() {
    let bytes = 0;
    const arrived = count => {
        bytes += count;
        element("progress").value = bytes / document.body.dataset.bytes;
    };
    return Promise.all(["vesk.wasm", "vesk.data"].map(name => download(name, arrived).catch(error => {
        throw notLoaded(`${name}: ${error.message}`);
    })));
}

// ---- The place in the address

/** What the address says of x, y and zoom, as settings of vesk.ini; what is invalid is left out. From 2 on
 *  the view would not find the ship. */
function placeFromAddress() {
    const place = {};
    const query = new URLSearchParams(location.search);
    for (const axis of ["x", "y"]) {
        const text = query.get(axis) ?? "";
        if (/^-?\d{1,10}$/.test(text) && Math.abs(text) < 2 ** 31) {
            place[`start_pos_${axis}`] = text;
        }
    }
    const zoom = query.get("zoom") ?? "";
    if (/^\d*\.?\d+$/.test(zoom) && zoom.length < 20 && zoom >= 0.01 && zoom < 2) {
        place.start_zoom = zoom;
    }
    return place;
}

function linkToPlace() {
    const link = new URL(location.href);
    link.search = link.hash = "";
    link.searchParams.set("x", game._PlaceX());
    link.searchParams.set("y", game._PlaceY());
    const zoom = Number(game._Zoom().toFixed(4));
    if (zoom >= 0.01 && zoom < 2) {
        link.searchParams.set("zoom", zoom);
    }
    return link.href;
}

async function copyLink() {
    const link = linkToPlace();
    try {
        await navigator.clipboard.writeText(link);
        note("The link to this place has been copied.");
    } catch { // no permission, or a page that came without encryption
        history.replaceState(null, "", link);
        note("The link to this place stands in the address bar.");
    }
}

/** Keeps the place for a new start. */
function onLostGraphics() {
    if (element("cover").hidden) {
        history.replaceState(null, "", linkToPlace());
    }
    stop("The browser has taken the graphics away.");
}

function aimMapLink() {
    if (game) {
        element("show").href = `ocean.html#${game._PlaceX()},${game._PlaceY()}`;
    }
}

// ---- The picture

// Device pixels to a pixel of the game: as many as keep things about as large as the page's other things.
const grain = Math.max(1, Math.floor(devicePixelRatio));
let size = null; // of the picture in the game's pixels

/** Measures the page, once. */
function measure() {
    const pixels = length => Math.max(1, Math.floor(length * devicePixelRatio / grain));
    size = { width: pixels(innerWidth), height: pixels(innerHeight) };
}

/** Makes the picture as large as the page has room for. */
function fit() {
    if (size) {
        const scale = Math.min(innerWidth / size.width, innerHeight / size.height);
        const exact = grain / devicePixelRatio; // the scale at which no pixel is wider than another
        const used = Math.abs(scale / exact - 1) < 0.01 ? exact : scale;
        canvas.style.width = `${size.width * used}px`;
        canvas.style.height = `${size.height * used}px`;
    }
}

// ---- Keys

function press(key, isDown) {
    const [code, keyCode] = KEYS[key];
    window.dispatchEvent(new KeyboardEvent(isDown ? "keydown" : "keyup", { key, code, keyCode, which: keyCode }));
}

/** Whether a key works one of the page's own controls. */
function isForControl(event) {
    return event.target instanceof Element && event.target.closest("a, button") && /^(Enter| )$/.test(event.key);
}

/** Whether a key that goes down stays the browser's: its own commands, and the page's controls. */
function isForPage(event) {
    return event.ctrlKey || event.metaKey || event.altKey || /^(Tab|F\d+)$/.test(event.key) || isForControl(event);
}

function onKeyDown(event) {
    const isPages = isForPage(event);
    if (!isPages) {
        event.preventDefault(); // no scrolling, no search as you type
    }
    if (isPages || !game) {
        event.stopImmediatePropagation();
    } else {
        hideHelp();
    }
}

/** The game lets nothing come of a key's release, at which Space works a control. */
function onKeyUp(event) {
    if (isForControl(event)) {
        event.stopImmediatePropagation();
    }
}

function hideHelp() {
    hideHelp.timer ??= setTimeout(() => { element("help").hidden = true; }, 5000);
}

// ---- Touch

const SHORTEST_PRESS = 80; // ms; the game takes no notice of keys that are let go within 30
const releases = {}; // timers of the keys that are about to be let go

/** Lets a button press a key for as long as a finger is on it. */
function bindFinger(button) {
    let release = null;
    const begin = () => {
        if (release || !game) {
            return;
        }
        const key = game._IsMapOpen() ? ON_MAP[button.dataset.key] ?? button.dataset.key : button.dataset.key;
        const began = performance.now();
        clearTimeout(releases[key]);
        press(key, true);
        release = () => {
            releases[key] = setTimeout(() => press(key, false), began + SHORTEST_PRESS - performance.now());
        };
    };
    const end = () => {
        release?.();
        release = null;
    };
    button.addEventListener("pointerdown", event => {
        event.preventDefault();
        button.setPointerCapture(event.pointerId); // or a mouse that is let go elsewhere would not tell
        begin();
    });
    for (const moment of ["pointerup", "pointercancel", "lostpointercapture"]) {
        button.addEventListener(moment, end);
    }
    button.addEventListener("click", event => {
        if (event.detail === 0) { // from a keyboard or a screen reader
            begin();
            end();
        }
    });
    button.addEventListener("contextmenu", event => event.preventDefault());
}

function showFingers() {
    document.body.classList.add("touch");
}

// ---- Gamepads

// What a pad of the standard layout presses. A browser shows a pad only once one of its buttons has been
// pressed, and its triggers are buttons. The game opens the first pad that it finds when it starts and reads
// sticks and buttons itself; for one that shows up later, or again, the page presses their keys.
const TRIGGERS = { q: pad => pad.buttons[6]?.pressed, e: pad => pad.buttons[7]?.pressed };
const BINDINGS = {
    ...TRIGGERS,
    a: pad => pad.axes[0] < -0.4, d: pad => pad.axes[0] > 0.4, w: pad => pad.axes[1] < -0.4, s: pad => pad.axes[1] > 0.4,
    ArrowLeft: pad => pad.axes[2] < -0.4, ArrowRight: pad => pad.axes[2] > 0.4,
    ArrowUp: pad => pad.axes[3] < -0.4, ArrowDown: pad => pad.axes[3] > 0.4,
    Backspace: pad => pad.buttons[4]?.pressed,
};
let gamesPad = null; // the index of the one that the game has opened

function firstPad() {
    try {
        return navigator.getGamepads?.().find(Boolean);
    } catch { // forbidden by a page around this one; the game asks without this care
        Object.defineProperty(navigator, "getGamepads", { value: () => [] });
    }
}

function onPadGone(event) {
    if (event.gamepad.index === gamesPad) {
        gamesPad = null;
    }
}

/** Presses the keys of the first pad while the page has the focus: when it loses that, the game lets go of all. */
function readPads() {
    const held = new Set();
    const read = () => {
        const pad = document.hasFocus() ? firstPad() : null;
        if (pad?.buttons.some(button => button.pressed) || pad?.axes.some(axis => Math.abs(axis) > 0.4)) {
            hideHelp();
        }
        for (const [key, isDown] of Object.entries(BINDINGS)) {
            const down = Boolean(pad && isDown(pad) && (pad.index !== gamesPad || key in TRIGGERS));
            if (down !== held.has(key)) {
                held[down ? "add" : "delete"](key);
                press(key, down);
            }
        }
        if (game) {
            requestAnimationFrame(read);
        }
    };
    read();
}

// ---- The game

/** Writes the place and the window's size into the program's settings. */
function configure(fs) {
    measure();
    fit();
    let text = fs.readFile("/vesk.ini", { encoding: "utf8" });
    for (const [name, value] of Object.entries({ ...placeFromAddress(), ...size })) {
        text = text.replace(new RegExp(`^${name} = .*$`, "m"), `${name} = ${value}`);
    }
    fs.writeFile("/vesk.ini", text);
}

async function start() {
    if (typeof WebAssembly !== "object") {
        throw new Error("This browser cannot run the game, because it has no WebAssembly.");
    }
    if (typeof Vesk !== "function") {
        throw notLoaded("vesk.js is missing");
    }
    const [code, data] = await downloadAll();
    let lastLine = "";
    const program = {
        canvas,
        wasmBinary: code,
        getPreloadedPackage: () => data.buffer,
        print: line => { console.log(lastLine = line); },
        printErr: line => console.log(line), // the generator tells of its work there
        onRuntimeInitialized: () => configure(program.FS),
        onAbort: reason => stop(`The game stopped: ${reason}`),
        onExit: status => stop(status === 0 ? "You have left the ocean. It stays as it is." :
            `The game could not start: ${lastLine}. It needs WebGL; is that switched off?`),
    };
    game = program;
    gamesPad = firstPad()?.index ?? null;
    await Vesk(program);
    if (!game) {
        return; // it has told why
    }
    for (const id of ["help", "links", "fingers"]) {
        element(id).hidden = false;
    }
    element("cover").hidden = true;
    canvas.focus();
    readPads();
}

element("said").textContent = "Loading the game";
window.addEventListener("keydown", onKeyDown, true);
window.addEventListener("keyup", onKeyUp, true);
window.addEventListener("resize", fit);
window.addEventListener("touchstart", showFingers, { once: true });
window.addEventListener("gamepaddisconnected", onPadGone);
window.addEventListener("error", event => stop(`The game stopped: ${event.message}`));
canvas.addEventListener("webglcontextlost", onLostGraphics);
canvas.addEventListener("pointerdown", () => canvas.focus());
element("again").addEventListener("click", () => location.reload());
element("copy").addEventListener("click", copyLink);
element("links").addEventListener("click", () => canvas.focus()); // or Return would press the same again
for (const moment of ["pointerdown", "focus", "click"]) {
    element("show").addEventListener(moment, aimMapLink);
}
element("fingers").querySelectorAll("button").forEach(bindFinger);
element("fingers").addEventListener("pointerdown", hideHelp);
if (matchMedia("(pointer: coarse)").matches) {
    showFingers();
}
start().catch(error => stop(error.message));
