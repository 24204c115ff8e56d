# The same Windows binaries built by Debian's clang instead of the MinGW-w64 GCC, so that no
# GCC-only extension slips into code that other compilers build: the mingw-w64 headers and
# libraries, the posix-threads GCC's libstdc++, and lld, which merges the two compilers' COMDAT
# sections that GNU ld warns about.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET ${_triple})
set(CMAKE_CXX_COMPILER_TARGET ${_triple})
# Without a sysroot, clang would also search the build machine's /usr/include.
set(CMAKE_SYSROOT /usr/${_triple})

# clang finds no C++ headers or runtime of Debian's GCC on its own (its folder is named
# "12-posix", not a version), so they are named from the GCC the GCC toolchain uses.
execute_process(COMMAND ${_triple}-gcc-posix -print-libgcc-file-name
    OUTPUT_VARIABLE _libgcc OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(_gcc_dir ${_libgcc} DIRECTORY)
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES
    ${_gcc_dir}/include/c++ ${_gcc_dir}/include/c++/${_triple} ${_gcc_dir}/include/c++/backward)
# The posix-threads runtime needs winpthreads, which GCC's driver adds on its own; lld takes
# libraries in any order.
foreach(_kind EXE SHARED MODULE)
    set(CMAKE_${_kind}_LINKER_FLAGS_INIT "-fuse-ld=lld -L${_gcc_dir} -lwinpthread")
endforeach()
