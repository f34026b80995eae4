# Builds for browsers with Debian's emscripten.
if(NOT EXISTS /usr/share/emscripten)
    message(FATAL_ERROR "emscripten is not there")
endif()
# Debian keeps here what the linker's scripts need, where only Debian's own node looks; compilers run while
# CMake configures, and later from Ninja.
set(ENV{NODE_PATH} /usr/share/nodejs)
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
