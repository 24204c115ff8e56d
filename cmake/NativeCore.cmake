# Native (Linux) build of the portable computing core: its tests and benchmarks only.
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
