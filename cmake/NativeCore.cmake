# Native (Linux) build of the portable computing core: its tests and benchmarks only; or, with
# OSTREL_FUZZ and clang, the file readers under libFuzzer.
option(OSTREL_FUZZ "Build the file readers' libFuzzer targets (clang) instead of the core" OFF)
if(OSTREL_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    add_subdirectory(standins/vz.reduce)
    add_subdirectory(formats)
    add_subdirectory(fuzz)
    return()
endif()

option(OSTREL_SANITIZE "Build the core and its tests with AddressSanitizer and UBSan" ON)

if(OSTREL_SANITIZE)
    # float-cast-overflow is not part of "undefined" in GCC; it proves the element rules never
    # convert an out-of-range float with a plain cast.
    set(_ostrel_sanitizers -fsanitize=address,undefined,float-cast-overflow)
    add_compile_options(${_ostrel_sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(${_ostrel_sanitizers})
endif()

add_subdirectory(typed)

if(BUILD_TESTING)
    add_subdirectory(tests/core)
endif()

# Timings under sanitizers mean nothing: benchmarks come from a build with OSTREL_SANITIZE=OFF.
if(NOT OSTREL_SANITIZE)
    add_subdirectory(bench)
endif()
