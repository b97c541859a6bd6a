# The reference of the C interface: ninja docs, then docs/reference/html/index.html in the build
# tree. Fails on what is not documented.
find_package(Doxygen QUIET)
find_package(Python3 QUIET COMPONENTS Interpreter)
if(NOT DOXYGEN_FOUND OR NOT Python3_FOUND)
    return()
endif()
add_custom_target(docs
    COMMAND "${PROJECT_SOURCE_DIR}/docs/reference/build" "${PROJECT_BINARY_DIR}/docs/reference"
    USES_TERMINAL
    VERBATIM)
