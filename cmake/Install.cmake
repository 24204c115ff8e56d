# The SDK: headers, import libraries, DLLs, the simulator and a CMake package.
include(CMakePackageConfigHelpers)

install(TARGETS ostrel ostrel_headers ostrel_server_guids EXPORT ostrelTargets
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION bin
    ARCHIVE DESTINATION lib)
install(FILES ${OSTREL_MSVC_IMPORT_LIBRARY} DESTINATION lib)
install(FILES include/ostrel.h include/ostrel_c.h include/ostrel_types.h
    ${OSTREL_GENERATED_INCLUDE_DIR}/ostrel_version.h DESTINATION include)

install(EXPORT ostrelTargets NAMESPACE ostrel:: DESTINATION lib/cmake/ostrel)
configure_package_config_file(cmake/ostrelConfig.cmake.in
    ${CMAKE_BINARY_DIR}/ostrelConfig.cmake
    INSTALL_DESTINATION lib/cmake/ostrel)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ostrelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/ostrelConfig.cmake ${CMAKE_BINARY_DIR}/ostrelConfigVersion.cmake
    DESTINATION lib/cmake/ostrel)

# Beside the SDK: the README, the guides and the licences of the third-party code inside the
# binaries, as Debian ships them with the packages the build used.
install(FILES README.md docs/host-guide.md docs/c-api.md docs/third-party.md
    DESTINATION share/doc/ostrel)
foreach(_licence stb:libstb-dev CLI11:libcli11-dev gcc-runtime:g++-mingw-w64-x86-64-posix
        mingw-w64-runtime:mingw-w64-x86-64-dev)
    string(REPLACE ":" ";" _licence ${_licence})
    list(GET _licence 0 _name)
    list(GET _licence 1 _package)
    install(FILES /usr/share/doc/${_package}/copyright DESTINATION share/doc/ostrel/licences
        RENAME ${_name}.txt)
endforeach()

# cpack -G ZIP makes ostrel-<version>-win64.zip of the install tree.
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME ostrel)
set(CPACK_PACKAGE_VENDOR "${OSTREL_COMPANY_NAME}")
set(CPACK_PACKAGE_FILE_NAME ostrel-${PROJECT_VERSION}-win64)
include(CPack)
