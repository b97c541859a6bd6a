# qeltvapi_android: the platform libraries as Debian packages them. For a foreign ABI QELTV_SYSROOT
# holds the libraries; the headers are the same for all.
find_path(QELTV_ANDROID_INCLUDE utils/RefBase.h PATHS /usr/include/android NO_DEFAULT_PATH)
if(NOT QELTV_ANDROID_INCLUDE)
    message(FATAL_ERROR "android-libutils-dev is missing (no /usr/include/android/utils/RefBase.h)")
endif()

if(CMAKE_CROSSCOMPILING)
    set(triplet arm-linux-gnueabihf)
else()
    set(triplet ${CMAKE_LIBRARY_ARCHITECTURE})
endif()
set(android_dir "${QELTV_SYSROOT}/usr/lib/${triplet}/android")

add_library(qeltvapi_android INTERFACE)
foreach(name utils cutils base log)
    set(file "${android_dir}/lib${name}.so.0")
    if(NOT EXISTS "${file}")
        message(FATAL_ERROR "android-lib${name} for ${triplet} is missing (no ${file})")
    endif()
    list(APPEND android_files "${file}")
    add_library(qeltvapi_android_${name} SHARED IMPORTED GLOBAL)
    set_target_properties(qeltvapi_android_${name} PROPERTIES IMPORTED_LOCATION "${file}")
    target_include_directories(qeltvapi_android_${name} SYSTEM INTERFACE "${QELTV_ANDROID_INCLUDE}")
    target_link_libraries(qeltvapi_android INTERFACE qeltvapi_android_${name})
endforeach()

# What those libraries pull in themselves is found next to them.
set(CMAKE_BUILD_RPATH "${android_dir}")
set(CMAKE_INSTALL_RPATH "${android_dir}")
add_link_options(-Wl,-rpath-link,${android_dir} -Wl,-rpath-link,${QELTV_SYSROOT}/usr/lib/p7zip)
