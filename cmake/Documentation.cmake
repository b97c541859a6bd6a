# The reference of the C interface: ninja docs, then docs/reference/html/index.html in the build
# tree. Fails on what is not documented. The target exists without doxygen too, and says what to
# install.
add_custom_target(docs
    COMMAND sh -c "command -v doxygen >/dev/null || ! echo 'no doxygen: apt-get install doxygen' >&2"
    COMMAND "${PROJECT_SOURCE_DIR}/docs/reference/build" "${PROJECT_BINARY_DIR}/docs/reference"
    USES_TERMINAL
    VERBATIM)
