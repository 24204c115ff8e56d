# The SDK: headers, import libraries, DLLs, the simulator and a CMake package.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
