# Builds for the MSVC ABI the way a Visual Studio host project does (cl-style driver, link-style
# linker, UCRT), here with clang-cl and lld-link on Wine's Windows headers and import libraries:
# the tests' stand-in for a host built with Visual Studio.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(CMAKE_C_COMPILER clang-cl-14)
set(CMAKE_CXX_COMPILER clang-cl-14)
set(CMAKE_LINKER lld-link-14)
set(CMAKE_RC_COMPILER llvm-rc-14)
set(CMAKE_MT llvm-mt-14)

set(_wine_headers /usr/include/wine/wine)
set(_wine_libraries /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
# No default libraries named by the objects (Wine's have other names) and no stack cookies
# (whose support lives in the MSVC runtime's static part, which Wine does not have).
set(_flags "--target=x86_64-pc-windows-msvc -fms-compatibility-version=19.29 /Zl /GS- -D_UCRT")
string(APPEND _flags " /imsvc ${_wine_headers}/msvcrt /imsvc ${_wine_headers}/windows")
set(CMAKE_C_FLAGS_INIT "${_flags}")
# Wine's winnt.h declares an intrinsic that clang already provides.
set(CMAKE_CXX_FLAGS_INIT
    "${_flags} -D_InterlockedCompareExchange128=wine_InterlockedCompareExchange128")
set(CMAKE_EXE_LINKER_FLAGS_INIT "/entry:mainCRTStartup /libpath:${_wine_libraries}")
set(_runtime "libwinecrt0.a libucrtbase.a libkernel32.a libuser32.a libole32.a")
set(CMAKE_C_STANDARD_LIBRARIES "${_runtime}" CACHE STRING "")
set(CMAKE_CXX_STANDARD_LIBRARIES "${_runtime}" CACHE STRING "")
set(CMAKE_TRY_COMPILE_CONFIGURATION Release)
