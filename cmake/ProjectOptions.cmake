# qeltvapi_options: what all our own code is compiled with. Link it PRIVATE.
set(QELTV_SANITIZE "" CACHE STRING "Sanitizers, as -fsanitize= takes them")

# Sanitizers go to every target, generated code included: a report needs the frames of both sides.
if(QELTV_SANITIZE)
    add_compile_options(-fsanitize=${QELTV_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QELTV_SANITIZE})
    add_compile_definitions(QELTV_SANITIZED=1)
else()
    add_link_options(-Wl,--no-undefined)
endif()

# Of the library only; see scripts/coverage.
option(QELTV_COVERAGE "Count the lines of the library that run" OFF)
if(QELTV_COVERAGE)
    add_link_options(-fprofile-instr-generate)
endif()

find_program(QELTV_LLD ld.lld)
if(QELTV_LLD AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    add_link_options(-fuse-ld=lld)
endif()

# The loader looks every symbol up in one library after the other: none that nothing is used of.
add_link_options(-Wl,--as-needed -Wl,--hash-style=gnu)

find_package(Threads REQUIRED GLOBAL)

add_library(qeltvapi_options INTERFACE)
target_compile_options(qeltvapi_options INTERFACE -Wall -Wextra -Wconversion -Werror)
target_link_libraries(qeltvapi_options INTERFACE Threads::Threads)

# Makes __FILE__ in TARGET's sources start at the source directory ("clientwrapper/x.cpp"), which
# log texts print. ccache hands the compiler a path relative to the build directory, hence two maps.
function(use_source_relative_file_macro target)
    file(RELATIVE_PATH from_build "${PROJECT_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")
    string(REGEX REPLACE "/$" "" from_build "${from_build}")
    target_compile_options(${target} PRIVATE
        "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=" "-fmacro-prefix-map=${from_build}/=")
endfunction()

# Binds TARGET, a shared library, to its own symbols at link time: looking them up is most of what the
# start of a program takes. For libraries without variables that programs write. The sanitizers report
# types apart by address, so they need one of each.
function(bind_own_symbols target)
    if(QELTV_SANITIZE)
        target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
    else()
        target_link_options(${target} PRIVATE -Wl,-Bsymbolic)
    endif()
endfunction()
