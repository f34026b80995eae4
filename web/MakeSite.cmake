# Puts the game's page together: cmake -D site= -D page= -D files= -D licences= -P MakeSite.cmake
#
# `site` is the folder to write, `page` the template of index.html, the others are lists of files.
set(sums "")
set(BYTES 0) # of what the page loads itself
foreach(file ${files})
    file(SHA256 ${file} sum)
    string(APPEND sums ${sum})
    if(file MATCHES "\\.(wasm|data)$")
        file(SIZE ${file} size)
        math(EXPR BYTES "${BYTES} + ${size}")
    endif()
endforeach()
string(SHA256 hash "${sums}")
string(SUBSTRING ${hash} 0 12 hash)

file(GLOB old ${site}/game-*)
file(REMOVE_RECURSE ${site}/index.html ${old})
set(GAME game-${hash})
file(COPY ${files} DESTINATION ${site}/${GAME})
configure_file(${page} ${site}/index.html @ONLY)

set(text "Vesk in a browser contains code under these licences.\n")
foreach(licence ${licences})
    get_filename_component(name ${licence} NAME_WE)
    if(name STREQUAL copyright)
        set(name Emscripten)
    endif()
    file(READ ${licence} words)
    string(APPEND text "\n\n==== ${name} ====\n\n${words}")
endforeach()
file(WRITE ${site}/licences.txt "${text}")
