# The ocean's page, drawn by the generator and the tools' scenes; no SDL.
set(leaflet /usr/share/javascript/leaflet) # of Debian's libjs-leaflet
configure_file(/usr/share/doc/libjs-leaflet/copyright ${CMAKE_BINARY_DIR}/leaflet-licence.txt COPYONLY)

set(ocean_sources Anchorage.cpp CellView.cpp Picture.cpp Records.cpp Tiles.cpp)
list(TRANSFORM ocean_sources PREPEND ${PROJECT_SOURCE_DIR}/tools/atlas/)
add_executable(ocean-engine ocean.cpp ${ocean_sources})
target_include_directories(ocean-engine PRIVATE ${PROJECT_SOURCE_DIR}/tools)
target_link_libraries(ocean-engine PRIVATE vesk_gen)
target_link_options(ocean-engine PRIVATE --no-entry
    -sALLOW_MEMORY_GROWTH -sENVIRONMENT=worker -sFILESYSTEM=0 -sDYNAMIC_EXECUTION=0
    -sEXPORTED_RUNTIME_METHODS=UTF8ToString)

set(ocean_files ocean.css ocean.js ocean-worker.js)
list(TRANSFORM ocean_files PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
list(APPEND ocean_files ${PROJECT_SOURCE_DIR}/packaging/icons/vesk.svg ${leaflet}/leaflet.css ${leaflet}/leaflet.min.js
    ${CMAKE_BINARY_DIR}/leaflet-licence.txt)
add_custom_command(OUTPUT ${site}/ocean.html
    COMMAND ${CMAKE_COMMAND} -D name=ocean -D "site=${site}" -D "page=${CMAKE_CURRENT_SOURCE_DIR}/ocean.html.in"
        -D "files=$<TARGET_FILE:ocean-engine>;$<TARGET_FILE_DIR:ocean-engine>/ocean-engine.wasm;${ocean_files}"
        -P ${CMAKE_CURRENT_SOURCE_DIR}/MakeSite.cmake
    DEPENDS ocean-engine ocean.html.in MakeSite.cmake ${ocean_files}
    VERBATIM)
add_custom_target(ocean ALL DEPENDS ${site}/ocean.html)
