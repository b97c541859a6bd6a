# precompile_headers(<target> HEADER... | REUSE_FROM <other target>)
#
# target_precompile_headers() in a form that ccache can store: without the headers' times in the
# result, for the compiler that writes them. Only for targets of many sources that all include the
# same large headers. A source still includes what it uses.
function(precompile_headers target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        target_compile_options(${target} PRIVATE "SHELL:-Xclang -fno-pch-timestamp")
    endif()
    if("${ARGV1}" STREQUAL "REUSE_FROM")
        target_precompile_headers(${target} ${ARGN})
    else()
        target_precompile_headers(${target} PRIVATE ${ARGN})
    endif()
endfunction()
