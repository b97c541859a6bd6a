# Compiles through ccache where it is installed. Paths of the source tree are hashed relative to the
# build directory and the directory itself is left out, so that clones share results.
find_program(QELTV_CCACHE ccache)
if(QELTV_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
    set(launcher "${CMAKE_COMMAND}" -E env
        "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}" CCACHE_NOHASHDIR=1
        CCACHE_SLOPPINESS=pch_defines,time_macros "${QELTV_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER "${launcher}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
endif()
