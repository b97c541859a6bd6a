# GoogleTest and what tests need to know of the build.
enable_testing()

if(CMAKE_CROSSCOMPILING)
    # No package has it for the foreign ABI; googletest ships its sources.
    if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
        message(FATAL_ERROR "googletest is missing (no /usr/src/googletest)")
    endif()
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest"
        EXCLUDE_FROM_ALL SYSTEM)
    foreach(target gtest gtest_main gmock gmock_main)
        target_compile_options(${target} PRIVATE -w)
        if(NOT TARGET GTest::${target})
            add_library(GTest::${target} ALIAS ${target})
        endif()
    endforeach()
else()
    find_package(GTest REQUIRED)
endif()

# The television that tests start: built for this machine, also when the tests are not, because a
# 32-bit client against the 64-bit service is a case of its own.
if(CMAKE_CROSSCOMPILING)
    set(QELTV_HOST_BUILD "${PROJECT_SOURCE_DIR}/build/host" CACHE PATH
        "Build tree for this machine")
else()
    set(QELTV_HOST_BUILD "${PROJECT_BINARY_DIR}")
endif()

# qeltv_add_test(<name> SOURCES ... [LIBRARIES ...] [PROGRAMS target ...] [SHARDS n] [TIMEOUT s])
#
# One GoogleTest program (with gmock's main unless NO_MAIN), run by ctest as one entry, or as n
# entries with a part of the cases each. PROGRAMS are built before it; as macros the tests get
#   QELTV_EMULATOR         words to put before a program of this build to run it ("" natively)
#   QELTV_BUILD_DIR        the build tree of the tests' own ABI
#   QELTV_HOST_BUILD_DIR   the build tree for this machine (qeltvd/qeltvd in it)
#   QELTV_SOURCE_DIR       the source tree
function(qeltv_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "NO_MAIN" "SHARDS;TIMEOUT" "SOURCES;LIBRARIES;PROGRAMS")
    add_executable(${name} ${arg_SOURCES})
    # Tests wait more than they compute; optimizing them is more than half of their build time.
    target_compile_options(${name} PRIVATE -O0)
    target_link_libraries(${name} PRIVATE qeltvapi_options ${arg_LIBRARIES})
    if(arg_NO_MAIN)
        target_link_libraries(${name} PRIVATE GTest::gmock GTest::gtest)
    else()
        target_link_libraries(${name} PRIVATE GTest::gmock_main GTest::gmock GTest::gtest)
    endif()
    foreach(program IN LISTS arg_PROGRAMS)
        if(TARGET ${program})
            add_dependencies(${name} ${program})
        endif()
    endforeach()
    list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
    target_compile_definitions(${name} PRIVATE
        "QELTV_EMULATOR=\"${emulator}\""
        "QELTV_BUILD_DIR=\"${PROJECT_BINARY_DIR}\""
        "QELTV_HOST_BUILD_DIR=\"${QELTV_HOST_BUILD}\""
        "QELTV_SOURCE_DIR=\"${PROJECT_SOURCE_DIR}\"")

    set(timeout 120)
    if(arg_TIMEOUT)
        set(timeout ${arg_TIMEOUT})
    endif()
    if(CMAKE_CROSSCOMPILING OR QELTV_SANITIZE)
        math(EXPR timeout "${timeout} * 5")
    endif()
    set(shards 1)
    if(arg_SHARDS)
        set(shards ${arg_SHARDS})
    endif()
    math(EXPR last "${shards} - 1")
    foreach(shard RANGE ${last})
        set(test ${name})
        if(shards GREATER 1)
            set(test ${name}.${shard})
        endif()
        add_test(NAME ${test} COMMAND ${name})
        # The race detector waits a second at every exit by default; some tests start hundreds.
        set_tests_properties(${test} PROPERTIES TIMEOUT ${timeout} ENVIRONMENT
            "GTEST_OUTPUT=json:${PROJECT_BINARY_DIR}/gtest/${test}.json;GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${shard};ASAN_OPTIONS=detect_leaks=1;UBSAN_OPTIONS=print_stacktrace=1;TSAN_OPTIONS=halt_on_error=0:atexit_sleep_ms=50:suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp")
    endforeach()
endfunction()
