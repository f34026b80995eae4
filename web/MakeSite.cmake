# Puts a page of the site together: cmake -D name= -D page= -D files= [-D licences=] -D site= -P MakeSite.cmake
#
# `site` is the folder to write and `page` the template of an HTML file. The lists of files go into a folder
# NAME-<hash>, which the template knows as the page's name in capitals; `licences` become one text.
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

string(TOUPPER ${name} folder)
set(${folder} ${name}-${hash})
cmake_path(GET page STEM LAST_ONLY html) # without .in
file(GLOB old ${site}/${name}-*)
file(REMOVE_RECURSE ${site}/${html} ${old})
file(COPY ${files} DESTINATION ${site}/${name}-${hash})
configure_file(${page} ${site}/${html} @ONLY)

if(NOT licences)
    return()
endif()
set(text "Vesk in a browser contains code under these licences.\n")
foreach(licence ${licences})
    cmake_path(GET licence STEM library)
    if(library STREQUAL copyright)
        set(library Emscripten)
    endif()
    file(READ ${licence} words)
    string(APPEND text "\n\n==== ${library} ====\n\n${words}")
endforeach()
file(WRITE ${site}/licences.txt "${text}")
