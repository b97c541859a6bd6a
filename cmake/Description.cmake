# qeltvapi.json: functions, notifications, records, enumerators and methods for programs that call
# or show them; scripts/describe.py says how it is laid out. What a target generates from it
# depends on the target `description` and on the file QELTVAPI_DESCRIPTION.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(QELTVAPI_DESCRIPTION "${PROJECT_BINARY_DIR}/qeltvapi.json")
file(GLOB described CONFIGURE_DEPENDS
    "${PROJECT_SOURCE_DIR}/include/*.h"
    "${PROJECT_SOURCE_DIR}/interface/qeltvapi/1.0/*.hal"
    "${PROJECT_SOURCE_DIR}/layouts/*.h"
    "${PROJECT_SOURCE_DIR}/clientwrapper/*.cpp")
add_custom_command(
    OUTPUT "${QELTVAPI_DESCRIPTION}"
    COMMAND Python3::Interpreter "${PROJECT_SOURCE_DIR}/scripts/describe.py"
        "${QELTVAPI_DESCRIPTION}"
    DEPENDS "${PROJECT_SOURCE_DIR}/scripts/describe.py" "${PROJECT_SOURCE_DIR}/scripts/headers.py"
        "${PROJECT_SOURCE_DIR}/scripts/results.py"
        "${PROJECT_SOURCE_DIR}/clientwrapper/QelTvApiCallbackImpl.h"
        "${PROJECT_SOURCE_DIR}/tests/exports.tsv" ${described}
    COMMENT "Describing the library in qeltvapi.json"
    VERBATIM)
add_custom_target(description ALL DEPENDS "${QELTVAPI_DESCRIPTION}")
