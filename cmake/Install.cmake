# cmake --install to any prefix, and packages of it (cpack). The C interface needs nothing but
# include/qeltvapi and the library; the C++ declarations also need include/hidlhost and the
# platform's own headers.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(hidlhost PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1)
set_target_properties(hidlhost qeltvapi_hidl qeltvapi_client PROPERTIES
    INSTALL_RPATH "$ORIGIN;${android_dir}")
install(TARGETS hidlhost qeltvapi_hidl qeltvapi_client LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

set(include_dir "${CMAKE_INSTALL_INCLUDEDIR}/qeltvapi")
set(runtime_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/hidlhost")
install(DIRECTORY include/ DESTINATION "${include_dir}" FILES_MATCHING PATTERN "*.h")
install(DIRECTORY host/include/ DESTINATION "${runtime_include_dir}" FILES_MATCHING PATTERN "*.h")
foreach(package android.hidl.base@1.0 android.hidl.manager@1.0 android.hidl.safe_union@1.0)
    install(DIRECTORY "${CMAKE_BINARY_DIR}/hidl/${package}/" DESTINATION "${runtime_include_dir}"
        FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY "${CMAKE_BINARY_DIR}/hidl/vendor.qelnova.tv.qeltvapi@1.0/"
    DESTINATION "${include_dir}" FILES_MATCHING PATTERN "*.h")

# The roots for hidl-gen: -r vendor.qelnova.tv:<prefix>/share/qeltvapi/interface
#                         -r android.hidl:<prefix>/share/qeltvapi/hidl
set(data_dir "${CMAKE_INSTALL_DATADIR}/qeltvapi")
install(DIRECTORY interface/ DESTINATION "${data_dir}/interface"
    FILES_MATCHING PATTERN "*.hal")
install(DIRECTORY host/hidl/ DESTINATION "${data_dir}/hidl" FILES_MATCHING PATTERN "*.hal")
install(DIRECTORY layouts/ DESTINATION "${include_dir}/layouts" FILES_MATCHING PATTERN "*.h")
install(DIRECTORY examples/ DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples"
    FILES_MATCHING PATTERN "*.c")

configure_package_config_file(cmake/install/qeltvapi-config.cmake.in
    "${CMAKE_BINARY_DIR}/install/qeltvapi-config.cmake"
    INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/qeltvapi"
    PATH_VARS include_dir runtime_include_dir data_dir CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/install/qeltvapi-config-version.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/install/qeltvapi-config.cmake"
    "${CMAKE_BINARY_DIR}/install/qeltvapi-config-version.cmake"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/qeltvapi")
file(RELATIVE_PATH pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" /)
configure_file(cmake/install/qeltvapi.pc.in "${CMAKE_BINARY_DIR}/install/qeltvapi.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/install/qeltvapi.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(TARGET qeltvd)
    set_target_properties(qeltvd PROPERTIES
        INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};${android_dir}")
    install(TARGETS qeltvd RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(CODE "
        set(qeltvd_path \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/qeltvd\")
        configure_file(\"${CMAKE_SOURCE_DIR}/cmake/install/qeltvd.service.in\"
            \"${CMAKE_BINARY_DIR}/install/qeltvd.service\" @ONLY)")
    install(FILES "${CMAKE_BINARY_DIR}/install/qeltvd.service" DESTINATION lib/systemd/user)
endif()
if(NOT CMAKE_CROSSCOMPILING)
    set_target_properties(qeltvctl PROPERTIES
        INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};${android_dir}")
    install(TARGETS qeltvctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    # Both from the command tree that the tool itself tells.
    set(tool_dir "${CMAKE_BINARY_DIR}/tools")
    add_custom_command(OUTPUT "${tool_dir}/qeltvctl.1" "${tool_dir}/qeltvctl.bash"
        COMMAND "${CMAKE_COMMAND}" -E env "ASAN_OPTIONS=detect_leaks=0"
            $<TARGET_FILE:Python3::Interpreter> "${CMAKE_SOURCE_DIR}/tools/generate_manual.py"
            $<TARGET_FILE:qeltvctl> "${tool_dir}" "${PROJECT_VERSION}"
        DEPENDS qeltvctl tools/generate_manual.py
        VERBATIM)
    add_custom_target(qeltvctl_manual ALL
        DEPENDS "${tool_dir}/qeltvctl.1" "${tool_dir}/qeltvctl.bash")
    install(FILES "${tool_dir}/qeltvctl.1" DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES "${tool_dir}/qeltvctl.bash" RENAME qeltvctl
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qeltvapi)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "The qeltvapi developers <qeltvapi@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "client library of the TV middleware")
set(CPACK_PACKAGE_DESCRIPTION "C functions for everything that the TV middleware offers, each one a
synchronous call to its service, and a reference television to call on a workstation.")
# With DESTDIR, so that the unit gets the path that it will find.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    "${CMAKE_BINARY_DIR}/host" "${CMAKE_BINARY_DIR}/interface" "${CMAKE_BINARY_DIR}/clientwrapper")
# For the C++ declarations, and for what the reference television scans.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "dtv-scan-tables")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS
    "android-libutils-dev, android-libcutils-dev, android-liblog-dev, android-libbase-dev")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
