# Code from .hal files, written by hidl-gen at build time.
find_program(QELTV_HIDL_GEN hidl-gen)
if(NOT QELTV_HIDL_GEN)
    message(FATAL_ERROR "hidl-gen is missing (package hidl-gen)")
endif()
find_package(Python3 REQUIRED COMPONENTS Interpreter)
set(QELTV_HIDL_GEN_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/hidl-gen.cmake")
set(QELTV_HIDL_SPLIT_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/split_source.py")

# What generated code is compiled with. -g1 keeps line numbers for backtraces at a fraction of the
# size. Optimizing instrumented code would be more than half of the fuzzers' build.
set(QELTV_GENERATED_OPTIONS -w -O2 -g1)
if(QELTV_SANITIZE MATCHES "fuzzer")
    set(QELTV_GENERATED_OPTIONS -w -O0 -g1)
endif()

# All generated files and nothing compiled.
add_custom_target(qeltvapi_generated)

# The directory of a package under its root: vendor.a.b.c@1.0 under "vendor.a.b:dir" is dir/c/1.0.
function(_hidl_package_dir out package roots)
    string(REGEX MATCH "^(.+)@([0-9]+\\.[0-9]+)$" matched "${package}")
    if(NOT matched)
        message(FATAL_ERROR "'${package}' is not a package name like a.b@1.0")
    endif()
    set(name "${CMAKE_MATCH_1}")
    set(version "${CMAKE_MATCH_2}")
    foreach(root IN LISTS roots)
        string(FIND "${root}" ":" colon)
        string(SUBSTRING "${root}" 0 ${colon} prefix)
        string(LENGTH "${prefix}." length)
        string(FIND "${name}." "${prefix}." at)
        if(at EQUAL 0)
            math(EXPR colon "${colon} + 1")
            string(SUBSTRING "${root}" ${colon} -1 dir)
            string(SUBSTRING "${name}." ${length} -1 rest)
            string(REPLACE "." "/" rest "${rest}")
            set(${out} "${dir}/${rest}${version}" PARENT_SCOPE)
            return()
        endif()
    endforeach()
    message(FATAL_ERROR "no root given for ${package}")
endfunction()

# hidl_generate(<prefix> PACKAGE a.b@1.0 ROOTS "a:dir" ... [USES other@1.0 ...]
#               [SPLIT interface=parts ...])
#
# Sets <prefix>_HEADERS, <prefix>_SOURCES (both generated) and <prefix>_INCLUDE in the caller's
# scope, for use in a target of the same directory, and <prefix>_GENERATE, a target for that target
# to depend on. Directories in ROOTS are relative to the source tree. USES names the packages whose
# .hal files this one reads; IBase is always among them. SPLIT names interfaces whose source is
# spread over several, as one would take most of the build.
function(hidl_generate prefix)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PACKAGE" "ROOTS;USES;SPLIT")
    set(roots)
    set(root_options)
    foreach(root IN LISTS arg_ROOTS)
        string(REGEX MATCH "^([^:]+):(.+)$" matched "${root}")
        if(NOT matched)
            message(FATAL_ERROR "'${root}' is not a root like a.b:dir")
        endif()
        set(name "${CMAKE_MATCH_1}")
        get_filename_component(dir "${CMAKE_MATCH_2}" ABSOLUTE BASE_DIR "${PROJECT_SOURCE_DIR}")
        list(APPEND roots "${name}:${dir}")
        list(APPEND root_options -r "${name}:${dir}")
    endforeach()
    list(FIND root_options "android.hidl:${PROJECT_SOURCE_DIR}/host/hidl" has_base)
    if(has_base EQUAL -1)
        list(APPEND roots "android.hidl:${PROJECT_SOURCE_DIR}/host/hidl")
        list(APPEND root_options -r "android.hidl:${PROJECT_SOURCE_DIR}/host/hidl")
    endif()

    _hidl_package_dir(dir "${arg_PACKAGE}" "${roots}")
    file(GLOB hals CONFIGURE_DEPENDS "${dir}/*.hal")
    if(NOT hals)
        message(FATAL_ERROR "no .hal files in ${dir}")
    endif()
    set(depends ${hals})
    foreach(used android.hidl.base@1.0 ${arg_USES})
        _hidl_package_dir(used_dir "${used}" "${roots}")
        file(GLOB used_hals CONFIGURE_DEPENDS "${used_dir}/*.hal")
        list(APPEND depends ${used_hals})
    endforeach()
    # hidl-gen holds the interfaces against the hashes on record at their root.
    foreach(root IN LISTS roots)
        string(REGEX REPLACE "^[^:]+:" "" root "${root}")
        if(EXISTS "${root}/current.txt")
            list(APPEND depends "${root}/current.txt")
        endif()
    endforeach()
    list(REMOVE_DUPLICATES depends)

    string(REGEX REPLACE "[.@]" "/" path "${arg_PACKAGE}")
    string(REGEX REPLACE "/([0-9]+)/([0-9]+)$" "/\\1.\\2" path "${path}")
    set(include "${PROJECT_BINARY_DIR}/hidl/${arg_PACKAGE}")
    set(out "${include}/${path}")
    set(headers)
    set(sources)
    foreach(hal IN LISTS hals)
        get_filename_component(name "${hal}" NAME_WE)
        if(name STREQUAL "types")
            list(APPEND headers "${out}/types.h" "${out}/hwtypes.h")
            list(APPEND sources "${out}/types.cpp")
        else()
            string(REGEX REPLACE "^I" "" base "${name}")
            list(APPEND headers "${out}/I${base}.h" "${out}/IHw${base}.h" "${out}/BnHw${base}.h"
                "${out}/BpHw${base}.h" "${out}/Bs${base}.h")
            list(APPEND sources "${out}/${base}All.cpp")
        endif()
    endforeach()
    set(splits)
    foreach(split IN LISTS arg_SPLIT)
        string(REGEX MATCH "^I(.+)=([2-9])$" matched "${split}")
        set(source "${out}/${CMAKE_MATCH_1}All")
        if(NOT matched OR NOT "${source}.cpp" IN_LIST sources)
            message(FATAL_ERROR "'${split}' is not an interface of ${arg_PACKAGE} and its parts")
        endif()
        list(APPEND splits "${path}/${CMAKE_MATCH_1}All.cpp=${CMAKE_MATCH_2}")
        foreach(part RANGE 2 ${CMAKE_MATCH_2})
            list(APPEND sources "${source}_${part}.cpp")
        endforeach()
    endforeach()

    add_custom_command(
        OUTPUT ${headers} ${sources}
        COMMAND "${CMAKE_COMMAND}" "-DHIDL_GEN=${QELTV_HIDL_GEN}" "-DPACKAGE=${arg_PACKAGE}"
            "-DROOTS=${root_options}" "-DOUT=${include}" "-DTEMP=${include}.new"
            "-DSPLITS=${splits}" "-DPYTHON=${Python3_EXECUTABLE}"
            "-DSPLIT_SCRIPT=${QELTV_HIDL_SPLIT_SCRIPT}" -P "${QELTV_HIDL_GEN_SCRIPT}"
        DEPENDS ${depends} "${QELTV_HIDL_GEN_SCRIPT}" "${QELTV_HIDL_SPLIT_SCRIPT}"
        COMMENT "hidl-gen ${arg_PACKAGE}"
        VERBATIM)

    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "${QELTV_GENERATED_OPTIONS}")

    # A target of its own lets the files be written before the libraries that the package's
    # library links are there.
    string(MAKE_C_IDENTIFIER "qeltvapi_generate_${arg_PACKAGE}" generate)
    add_custom_target(${generate} DEPENDS ${headers} ${sources})
    add_dependencies(qeltvapi_generated ${generate})

    set(${prefix}_GENERATE ${generate} PARENT_SCOPE)
    set(${prefix}_HEADERS ${headers} PARENT_SCOPE)
    set(${prefix}_SOURCES ${sources} PARENT_SCOPE)
    set(${prefix}_INCLUDE "${include}" PARENT_SCOPE)
endfunction()

# hidl_package(<target> PACKAGE a.b@1.0 ROOTS "a:dir" ... [OUTPUT_NAME name] [USES other@1.0 ...]
#              [SPLIT interface=parts ...] [DEPENDS targets...])
#
# A shared library of the package's stubs and proxies, over hidlhost and the targets in DEPENDS
# (the libraries of the packages in USES). Its users get the package's include directory.
function(hidl_package target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PACKAGE;OUTPUT_NAME" "ROOTS;USES;SPLIT;DEPENDS")
    hidl_generate(hidl PACKAGE ${arg_PACKAGE} ROOTS ${arg_ROOTS} USES ${arg_USES}
        SPLIT ${arg_SPLIT})
    add_library(${target} SHARED ${hidl_HEADERS} ${hidl_SOURCES})
    add_dependencies(${target} ${hidl_GENERATE})
    # The target's as well as its sources', because they may share a precompiled header.
    target_compile_options(${target} PRIVATE ${QELTV_GENERATED_OPTIONS})
    # Generated code marks nothing for export and everything is meant to be.
    set_target_properties(${target} PROPERTIES
        CXX_VISIBILITY_PRESET default VISIBILITY_INLINES_HIDDEN OFF)
    # For generators that read the declarations.
    set(interfaces ${hidl_HEADERS})
    list(FILTER interfaces INCLUDE REGEX "/I[^/]*\\.h$")
    list(FILTER interfaces EXCLUDE REGEX "/IHw[^/]*\\.h$")
    set_target_properties(${target} PROPERTIES GENERATED_INTERFACE_HEADERS "${interfaces}")
    if(arg_OUTPUT_NAME)
        set_target_properties(${target} PROPERTIES OUTPUT_NAME "${arg_OUTPUT_NAME}")
    endif()
    target_compile_features(${target} INTERFACE cxx_std_17)
    target_include_directories(${target} SYSTEM PUBLIC "$<BUILD_INTERFACE:${hidl_INCLUDE}>")
    target_link_libraries(${target} PUBLIC hidlhost ${arg_DEPENDS})
    bind_own_symbols(${target})
    # The runtime's threads run stubs of the package, so dlclose() leaves it mapped.
    target_link_options(${target} PRIVATE -Wl,-z,nodelete)
endfunction()
