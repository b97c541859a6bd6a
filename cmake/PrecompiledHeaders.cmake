# precompile_headers(TARGETS target... HEADERS header...)
#
# One precompiled header for targets that are compiled alike: the first target writes it, the others
# reuse it. Only for many sources that all include the same large headers. A source still includes
# what it uses.
function(precompile_headers)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "TARGETS;HEADERS")
    list(POP_FRONT arg_TARGETS first)
    target_precompile_headers(${first} PRIVATE ${arg_HEADERS})
    foreach(target IN LISTS arg_TARGETS)
        target_precompile_headers(${target} REUSE_FROM ${first})
    endforeach()
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        # Without the headers' times in it ccache can store it.
        foreach(target IN LISTS first arg_TARGETS)
            target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
        endforeach()
    endif()
endfunction()
