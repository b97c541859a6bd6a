# cmake --install to any prefix, and packages of it (cpack). The C interface needs nothing but
# include/qeltvapi and the library; the C++ declarations also need include/hidlhost and the
# platform's own headers.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(hidlhost PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1)
set_target_properties(hidlhost qeltvapi_hidl qeltvapi_client qeltvapi_service qeltvapi_testing
    PROPERTIES INSTALL_RPATH "$ORIGIN;${android_dir}")
# Nothing is installed from a tree that lacks some of it.
set(wanted $<TARGET_GENEX_EVAL:installed,$<TARGET_PROPERTY:installed,FILES>>)
install(CODE "
    foreach(file IN ITEMS $<JOIN:${wanted}, >)
        if(NOT EXISTS \"\${file}\")
            message(FATAL_ERROR \"There is no \${file}. Build the target 'installed' first:\n\"
                \"  cmake --build ${PROJECT_BINARY_DIR} --target installed\")
        endif()
    endforeach()")

set(include_dir "${CMAKE_INSTALL_INCLUDEDIR}/qeltvapi")
set(runtime_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/hidlhost")
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/qeltvapi")
# Two sets, because the C interface is usable without the platform's headers.
install(TARGETS qeltvapi_client EXPORT qeltvapi-client-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION "${include_dir}")
# The test kit's headers are C and C++ without the platform's.
install(TARGETS qeltvapi_testing EXPORT qeltvapi-client-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS qeltvapi_hidl EXPORT qeltvapi-hidl-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION "${include_dir}")
install(TARGETS hidlhost EXPORT qeltvapi-hidl-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION "${runtime_include_dir}")
install(TARGETS qeltvapi_service EXPORT qeltvapi-hidl-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
foreach(set client hidl)
    install(EXPORT qeltvapi-${set}-targets NAMESPACE qeltvapi:: DESTINATION "${package_dir}")
endforeach()

install(DIRECTORY include/ DESTINATION "${include_dir}" FILES_MATCHING PATTERN "*.h")
install(DIRECTORY testing/include/ service/include/ "${PROJECT_BINARY_DIR}/service/include/"
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
install(DIRECTORY host/include/ DESTINATION "${runtime_include_dir}" FILES_MATCHING PATTERN "*.h")
foreach(package android.hidl.base@1.0 android.hidl.manager@1.0 android.hidl.safe_union@1.0)
    install(DIRECTORY "${PROJECT_BINARY_DIR}/hidl/${package}/" DESTINATION "${runtime_include_dir}"
        FILES_MATCHING PATTERN "*.h")
endforeach()
install(DIRECTORY "${PROJECT_BINARY_DIR}/hidl/vendor.qelnova.tv.qeltvapi@1.0/"
    DESTINATION "${include_dir}" FILES_MATCHING PATTERN "*.h")

# The roots for hidl-gen: -r vendor.qelnova.tv:<prefix>/share/qeltvapi/interface
#                         -r android.hidl:<prefix>/share/qeltvapi/hidl
set(data_dir "${CMAKE_INSTALL_DATADIR}/qeltvapi")
install(DIRECTORY interface/ DESTINATION "${data_dir}/interface"
    FILES_MATCHING PATTERN "*.hal")
install(DIRECTORY host/hidl/ DESTINATION "${data_dir}/hidl" FILES_MATCHING PATTERN "*.hal")
install(FILES "${QELTVAPI_DESCRIPTION}" DESTINATION "${data_dir}")
install(DIRECTORY layouts/ DESTINATION "${include_dir}/layouts" FILES_MATCHING PATTERN "*.h")
install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
foreach(directory qeltvd screen)
    install(FILES ${directory}/README.md DESTINATION "${CMAKE_INSTALL_DOCDIR}/${directory}")
endforeach()
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}"
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN "*.webp")
install(DIRECTORY docs/ci DESTINATION "${CMAKE_INSTALL_DOCDIR}/docs" USE_SOURCE_PERMISSIONS)
# The pages name these as in the source tree.
file(RELATIVE_PATH doc_to_prefix "/${CMAKE_INSTALL_DOCDIR}" /)
install(CODE "
    set(doc \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DOCDIR}\")
    file(MAKE_DIRECTORY \"\${doc}/testing\")
    file(CREATE_LINK \"${doc_to_prefix}${include_dir}/layouts\" \"\${doc}/layouts\" SYMBOLIC)
    file(CREATE_LINK \"${doc_to_prefix}${data_dir}/interface\" \"\${doc}/interface\" SYMBOLIC)
    file(CREATE_LINK \"../${doc_to_prefix}${CMAKE_INSTALL_INCLUDEDIR}\"
        \"\${doc}/testing/include\" SYMBOLIC)")
install(DIRECTORY examples/ DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples"
    FILES_MATCHING PATTERN "*.c" PATTERN "*.cc" PATTERN "*.cpp" PATTERN "*.h")

configure_package_config_file(cmake/install/qeltvapi-config.cmake.in
    "${PROJECT_BINARY_DIR}/install/qeltvapi-config.cmake"
    INSTALL_DESTINATION "${package_dir}"
    PATH_VARS include_dir data_dir)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/install/qeltvapi-config-version.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/install/qeltvapi-config.cmake"
    "${PROJECT_BINARY_DIR}/install/qeltvapi-config-version.cmake"
    DESTINATION "${package_dir}")
file(RELATIVE_PATH pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" /)
list(JOIN android_files " " android_libraries)
foreach(name qeltvapi qeltvapi-service qeltvapi-testing)
    configure_file(cmake/install/${name}.pc.in "${PROJECT_BINARY_DIR}/install/${name}.pc" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/install/${name}.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()

set(installed_files
    $<TARGET_FILE:hidlhost> $<TARGET_FILE:qeltvapi_hidl> $<TARGET_FILE:qeltvapi_client>
    $<TARGET_FILE:qeltvapi_service> $<TARGET_FILE:qeltvapi_testing>
    "${QELTVAPI_DESCRIPTION}")
# install_program(TARGET [MANUAL SECTION] [ALSO FILE...]): installs a program; its manual page, and
# other files written with it, are made from the help that the program prints.
function(install_program target)
    cmake_parse_arguments(arg "" "MANUAL" "ALSO" ${ARGN})
    set_target_properties(${target} PROPERTIES
        INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};${android_dir}")
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    set(files $<TARGET_FILE:${target}>)
    if(arg_MANUAL)
        get_target_property(directory ${target} BINARY_DIR)
        set(manual "${directory}/${target}.${arg_MANUAL}")
        add_custom_command(OUTPUT "${manual}" ${arg_ALSO}
            COMMAND "${CMAKE_COMMAND}" -E env "ASAN_OPTIONS=detect_leaks=0"
                $<TARGET_FILE:Python3::Interpreter> "${PROJECT_SOURCE_DIR}/tools/generate_manual.py"
                ${target} $<TARGET_FILE:${target}> "${directory}" "${PROJECT_VERSION}"
            DEPENDS ${target} tools/generate_manual.py
            VERBATIM)
        install(FILES "${manual}" DESTINATION ${CMAKE_INSTALL_MANDIR}/man${arg_MANUAL})
        list(APPEND files "${manual}" ${arg_ALSO})
    endif()
    set(installed_files ${installed_files} ${files} PARENT_SCOPE)
endfunction()

if(TARGET qeltvd)
    install_program(qeltvd MANUAL 8)
    install(CODE "
        set(qeltvd_path \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/qeltvd\")
        configure_file(\"${PROJECT_SOURCE_DIR}/cmake/install/qeltvd.service.in\"
            \"${PROJECT_BINARY_DIR}/install/qeltvd.service\" @ONLY)")
    install(FILES "${PROJECT_BINARY_DIR}/install/qeltvd.service" DESTINATION lib/systemd/user)
endif()
if(NOT CMAKE_CROSSCOMPILING)
    set(completions "${PROJECT_BINARY_DIR}/tools/qeltvctl.bash")
    install_program(qeltvctl MANUAL 1 ALSO "${completions}")
    install(FILES "${completions}" RENAME qeltvctl
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install_program(qeltvscreen)
    install_program(qeltv-conformance MANUAL 1)
endif()
# All that the rules above take from the build tree, and so the least to build before an install.
add_custom_target(installed ALL DEPENDS ${installed_files})
if(TARGET qeltvapi_python)
    add_dependencies(installed qeltvapi_python)
    foreach(stubs functions records)
        list(APPEND installed_files "${PROJECT_BINARY_DIR}/python/${stubs}.pyi")
    endforeach()
endif()
set_target_properties(installed PROPERTIES FILES "${installed_files}")

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
    "${PROJECT_BINARY_DIR}/host" "${PROJECT_BINARY_DIR}/interface" "${PROJECT_BINARY_DIR}/clientwrapper"
    "${PROJECT_BINARY_DIR}/service" "${PROJECT_BINARY_DIR}/testing")
# For the C++ declarations, for what the reference television scans, and for its screen.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "dtv-scan-tables, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS
    "android-libutils-dev, android-libcutils-dev, android-liblog-dev, android-libbase-dev")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
