# Compile options that every target of the project shares.
add_library(vesk_options INTERFACE)

# The generated world must come out bit for bit the same with every compiler and on every machine,
# so a multiply and an add are never fused into one rounding.
target_compile_options(vesk_options INTERFACE
    -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(vesk_options INTERFACE -Wthread-safety)
elseif(CMAKE_UNITY_BUILD) # GCC takes the files that are compiled together for headers
    target_compile_options(vesk_options INTERFACE -Wno-subobject-linkage)
endif()
if(VESK_WARNINGS_AS_ERRORS)
    target_compile_options(vesk_options INTERFACE -Werror)
endif()

# What is released is hardened: no fixed addresses, no writable tables of functions, checked buffers.
set(hardened "$<AND:$<CONFIG:Release>,$<BOOL:${VESK_HARDEN}>>")
target_compile_options(vesk_options INTERFACE
    $<${hardened}:-fstack-protector-strong> $<${hardened}:-U_FORTIFY_SOURCE>
    $<${hardened}:-D_FORTIFY_SOURCE=2>)
target_link_options(vesk_options INTERFACE
    $<${hardened}:LINKER:-z,relro> $<${hardened}:LINKER:-z,now>)

# The release build must come out the same wherever the sources lie.
target_compile_options(vesk_options INTERFACE
    $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)

if(VESK_SANITIZE)
    target_compile_options(vesk_options INTERFACE
        -fsanitize=${VESK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vesk_options INTERFACE -fsanitize=${VESK_SANITIZE})
endif()

if(VESK_BUILD_FUZZ)
    # Lets the fuzzer see which branches an input takes; only the targets themselves link it.
    target_compile_options(vesk_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(NOT EMSCRIPTEN) # a page without threads needs nothing special of its server
    find_package(Threads REQUIRED)
    target_link_libraries(vesk_options INTERFACE Threads::Threads)
endif()
