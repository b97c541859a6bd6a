# Runs hidl-gen for one package and replaces only the files whose text changed, so that a comment
# in one .hal file does not compile the whole package again.
file(REMOVE_RECURSE "${TEMP}")
foreach(language c++-headers c++-sources)
    execute_process(
        COMMAND "${HIDL_GEN}" -o "${TEMP}" -L ${language} ${ROOTS} "${PACKAGE}"
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "hidl-gen -L ${language} ${PACKAGE} failed")
    endif()
endforeach()
foreach(split IN LISTS SPLITS)
    string(REPLACE "=" ";" split "${split}")
    list(POP_FRONT split file)
    execute_process(COMMAND "${PYTHON}" "${SPLIT_SCRIPT}" "${TEMP}/${file}" ${split}
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "cannot split ${file}")
    endif()
endforeach()
file(GLOB_RECURSE files RELATIVE "${TEMP}" "${TEMP}/*")
foreach(file IN LISTS files)
    file(COPY_FILE "${TEMP}/${file}" "${OUT}/${file}" ONLY_IF_DIFFERENT)
endforeach()
file(REMOVE_RECURSE "${TEMP}")
