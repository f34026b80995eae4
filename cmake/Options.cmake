# Compile options that every target of the project shares.
add_library(vesk_options INTERFACE)

# The generated world must come out bit for bit the same with every compiler and on every machine,
# so a multiply and an add are never fused into one rounding.
target_compile_options(vesk_options INTERFACE
    -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(vesk_options INTERFACE -Wthread-safety)
endif()
if(VESK_WARNINGS_AS_ERRORS)
    target_compile_options(vesk_options INTERFACE -Werror)
endif()

if(VESK_SANITIZE)
    target_compile_options(vesk_options INTERFACE
        -fsanitize=${VESK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(vesk_options INTERFACE -fsanitize=${VESK_SANITIZE})
endif()

if(VESK_BUILD_FUZZ)
    # Lets the fuzzer see which branches an input takes; only the targets themselves link it.
    target_compile_options(vesk_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_package(Threads REQUIRED)
target_link_libraries(vesk_options INTERFACE Threads::Threads)
