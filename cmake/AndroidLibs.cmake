# android::{log,utils,cutils,base}: the platform libraries as Debian packages them. For a foreign
# ABI QELTV_SYSROOT holds the libraries; the headers are the same for all.
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

foreach(name log utils cutils base)
    set(file "${android_dir}/lib${name}.so.0")
    if(NOT EXISTS "${file}")
        message(FATAL_ERROR "android-lib${name} for ${triplet} is missing (no ${file})")
    endif()
    list(APPEND android_files "${file}")
    add_library(android_lib${name} SHARED IMPORTED GLOBAL)
    set_target_properties(android_lib${name} PROPERTIES IMPORTED_LOCATION "${file}")
    target_include_directories(android_lib${name} SYSTEM INTERFACE "${QELTV_ANDROID_INCLUDE}")
    add_library(android::${name} ALIAS android_lib${name})
endforeach()

# All of them, which is what code over HIDL wants.
add_library(android_libs INTERFACE)
target_link_libraries(android_libs INTERFACE android::utils android::cutils android::base android::log)

# What those libraries pull in themselves is found next to them.
set(CMAKE_BUILD_RPATH "${android_dir}")
set(CMAKE_INSTALL_RPATH "${android_dir}")
add_link_options(-Wl,-rpath-link,${android_dir} -Wl,-rpath-link,${QELTV_SYSROOT}/usr/lib/p7zip)
