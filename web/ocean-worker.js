// Draws pictures of the ocean and answers questions about islands, one message at a time.
"use strict";

const kPictureBytes = 4 * 256 * 256;

// The generator reports shapes that cannot be triangulated; here nobody waits for that.
self.Module = {
    printErr() {},
    onRuntimeInitialized() {
        self.onmessage = ({ data }) => answer(data);
        self.postMessage({ ready: true });
    },
    onAbort(reason) {
        self.postMessage({ failed: String(reason) });
    },
};

const kAnswers = {
    draw(zoom, column, row, layers) {
        const start = Module._DrawPicture(zoom, column, row, layers);
        return Module.HEAPU8.slice(start, start + kPictureBytes).buffer;
    },
    island(x, y) {
        return JSON.parse(UTF8ToString(Module._DescribeIsland(x, y)));
    },
    find(x, y, east, north) {
        return JSON.parse(UTF8ToString(Module._FindIsland(x, y, east, north)));
    },
    colors() {
        return JSON.parse(UTF8ToString(Module._DescribeColors()));
    },
    memory() {
        return Module.HEAPU8.length;
    },
};

function answer({ what, values }) {
    const result = kAnswers[what](...values);
    self.postMessage({ result }, result instanceof ArrayBuffer ? [result] : []);
}

importScripts("ocean-engine.js");
