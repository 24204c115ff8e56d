# The SDK, in five components that cpack makes into five zips, all unpacking into one folder:
#   runtime      what a host ships: ostrel.dll, vz.dll, vz.reduce.dll and their licences;
#   development  headers, import libraries, the CMake package, the guides, the examples' sources;
#   symbols      the PDBs of the shipped binaries (from the release build, by clang);
#   tools        ostrel-convert and the C example's build;
#   simulator    camsim.exe with its controls and their guide, ostrel-stress and the sample records.
include(CMakePackageConfigHelpers)

install(TARGETS ostrel ostrel_headers ostrel_server_guids EXPORT ostrelTargets
    RUNTIME DESTINATION bin COMPONENT runtime
    LIBRARY DESTINATION bin COMPONENT runtime
    ARCHIVE DESTINATION lib COMPONENT development)
install(FILES ${OSTREL_MSVC_IMPORT_LIBRARY} DESTINATION lib COMPONENT development)
install(FILES include/ostrel.h include/ostrel_c.h include/ostrel_types.h
    ${OSTREL_GENERATED_INCLUDE_DIR}/ostrel_version.h DESTINATION include COMPONENT development)

install(EXPORT ostrelTargets NAMESPACE ostrel:: DESTINATION lib/cmake/ostrel
    COMPONENT development)
configure_package_config_file(cmake/ostrelConfig.cmake.in
    ${CMAKE_BINARY_DIR}/ostrelConfig.cmake
    INSTALL_DESTINATION lib/cmake/ostrel)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ostrelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/ostrelConfig.cmake ${CMAKE_BINARY_DIR}/ostrelConfigVersion.cmake
    DESTINATION lib/cmake/ostrel COMPONENT development)
install(FILES docs/sdk-readme.md DESTINATION . RENAME README.md COMPONENT development)
install(FILES docs/host-guide.md docs/c-api.md DESTINATION share/doc/ostrel COMPONENT development)
install(FILES docs/simulator.md DESTINATION share/doc/ostrel COMPONENT simulator)

# Every zip with binaries carries the project's licence and the notices of the third-party code
# inside them, as Debian ships them with the packages the build used: every binary holds the
# toolchain's runtime, ostrel-convert two header-only libraries as well.
set(_notices gcc-runtime:g++-mingw-w64-x86-64-posix mingw-w64-runtime:mingw-w64-x86-64-dev)
set(_tool_notices stb:libstb-dev CLI11:libcli11-dev)
foreach(_component runtime development tools simulator)
    install(FILES LICENSE DESTINATION . COMPONENT ${_component})
endforeach()
foreach(_component runtime tools simulator)
    set(_licences ${_notices})
    if(_component STREQUAL "tools")
        list(APPEND _licences ${_tool_notices})
    endif()
    install(FILES docs/third-party.md DESTINATION share/doc/ostrel COMPONENT ${_component})
    foreach(_licence ${_licences})
        string(REPLACE ":" ";" _licence ${_licence})
        list(GET _licence 0 _name)
        list(GET _licence 1 _package)
        install(FILES /usr/share/doc/${_package}/copyright DESTINATION share/doc/ostrel/licences
            RENAME ${_name}.txt COMPONENT ${_component})
    endforeach()
endforeach()

# cpack -G ZIP makes ostrel-<version>-win64-<component>.zip of each.
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME ostrel)
set(CPACK_PACKAGE_VENDOR "${OSTREL_COMPANY_NAME}")
set(CPACK_PACKAGE_FILE_NAME ostrel-${PROJECT_VERSION}-win64)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL ${OSTREL_PACKAGE_COMPONENTS})
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/SignBinaries.cmake)
include(CPack)
