# The SDK: headers, import libraries, DLLs, the simulator and a CMake package.
include(CMakePackageConfigHelpers)

install(TARGETS ostrel ostrel_headers ostrel_server_guids EXPORT ostrelTargets
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION bin
    ARCHIVE DESTINATION lib)
install(FILES include/ostrel.h include/ostrel_c.h include/ostrel_types.h DESTINATION include)

install(EXPORT ostrelTargets NAMESPACE ostrel:: DESTINATION lib/cmake/ostrel)
configure_package_config_file(cmake/ostrelConfig.cmake.in
    ${CMAKE_BINARY_DIR}/ostrelConfig.cmake
    INSTALL_DESTINATION lib/cmake/ostrel)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/ostrelConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/ostrelConfig.cmake ${CMAKE_BINARY_DIR}/ostrelConfigVersion.cmake
    DESTINATION lib/cmake/ostrel)
