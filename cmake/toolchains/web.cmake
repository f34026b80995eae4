# Builds for browsers with Debian's emscripten. What links needs NODE_PATH=/usr/share/nodejs in its environment:
# the linker's scripts find their parts there, but only Debian's own node looks for them.
set(ENV{NODE_PATH} /usr/share/nodejs)
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
