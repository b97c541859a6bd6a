# Code from .hal files, written by hidl-gen at build time.
find_program(QELTV_HIDL_GEN hidl-gen)
if(NOT QELTV_HIDL_GEN)
    message(FATAL_ERROR "hidl-gen is missing (package hidl-gen)")
endif()
set(QELTV_HIDL_GEN_SCRIPT "${CMAKE_CURRENT_LIST_DIR}/hidl-gen.cmake")

# All generated files and nothing compiled.
add_custom_target(hidl_headers)

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

# hidl_generate(<prefix> PACKAGE a.b@1.0 ROOTS "a:dir" ... [USES other@1.0 ...])
#
# Sets <prefix>_HEADERS, <prefix>_SOURCES (both generated) and <prefix>_INCLUDE in the caller's
# scope, for use in a target of the same directory, and <prefix>_GENERATE, a target for that target
# to depend on. Directories in ROOTS are taken relative to the source tree. USES names the packages whose .hal files this one reads; IBase is always among them.
function(hidl_generate prefix)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PACKAGE" "ROOTS;USES")
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

    add_custom_command(
        OUTPUT ${headers} ${sources}
        COMMAND "${CMAKE_COMMAND}" "-DHIDL_GEN=${QELTV_HIDL_GEN}" "-DPACKAGE=${arg_PACKAGE}"
            "-DROOTS=${root_options}" "-DOUT=${include}" "-DTEMP=${include}.new"
            -P "${QELTV_HIDL_GEN_SCRIPT}"
        DEPENDS ${depends} "${QELTV_HIDL_GEN_SCRIPT}"
        COMMENT "hidl-gen ${arg_PACKAGE}"
        VERBATIM)

    # -g1 keeps line numbers for backtraces at a fraction of the size. Of the fuzzers' build,
    # optimizing what is instrumented would be more than half.
    set(level -O2)
    if(QELTV_SANITIZE MATCHES "fuzzer")
        set(level -O0)
    endif()
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS "-w;${level};-g1")

    # A target of its own lets the files be written before the libraries that the package's
    # library links are there.
    string(MAKE_C_IDENTIFIER "generate_${arg_PACKAGE}" generate)
    add_custom_target(${generate} DEPENDS ${headers} ${sources})
    add_dependencies(hidl_headers ${generate})

    set(${prefix}_GENERATE ${generate} PARENT_SCOPE)
    set(${prefix}_HEADERS ${headers} PARENT_SCOPE)
    set(${prefix}_SOURCES ${sources} PARENT_SCOPE)
    set(${prefix}_INCLUDE "${include}" PARENT_SCOPE)
endfunction()

# hidl_package(<target> PACKAGE a.b@1.0 ROOTS "a:dir" ... [OUTPUT_NAME name] [USES other@1.0 ...]
#              [DEPENDS targets...])
#
# A shared library of the package's stubs and proxies, over hidlhost and the targets in DEPENDS
# (the libraries of the packages in USES). Whoever links it finds the package's headers.
function(hidl_package target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "PACKAGE;OUTPUT_NAME" "ROOTS;USES;DEPENDS")
    hidl_generate(hidl PACKAGE ${arg_PACKAGE} ROOTS ${arg_ROOTS} USES ${arg_USES})
    add_library(${target} SHARED ${hidl_HEADERS} ${hidl_SOURCES})
    add_dependencies(${target} ${hidl_GENERATE})
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
