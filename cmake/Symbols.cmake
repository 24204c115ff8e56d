# Symbols a Windows debugger reads. The release is built by clang (the mingw-clang preset), which
# writes CodeView debug information: lld puts it into a PDB beside each shipped binary, the binary
# keeps only the record that names its PDB, and the DWARF that the static runtime libraries bring
# along is stripped. GCC writes only DWARF, which Windows debuggers can't read, so its builds ship
# no symbols.
if(MINGW AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    set(OSTREL_SYMBOLS ON)
    add_compile_options(-g -gcodeview)
    find_program(OSTREL_OBJCOPY NAMES llvm-objcopy-14 llvm-objcopy REQUIRED)
else()
    set(OSTREL_SYMBOLS OFF)
endif()

# ostrel_add_symbols(<target>): in a build with symbols, the target's PDB, installed with the
# symbols component.
function(ostrel_add_symbols _target)
    if(NOT OSTREL_SYMBOLS)
        return()
    endif()
    # The record names the PDB alone, not the build machine's folder.
    target_link_options(${_target} PRIVATE -Wl,--pdb= -Wl,-Xlink=-pdbaltpath:%_PDB%)
    add_custom_command(TARGET ${_target} POST_BUILD
        COMMAND ${OSTREL_OBJCOPY} --strip-debug $<TARGET_FILE:${_target}>
        VERBATIM)
    install(FILES $<TARGET_FILE_DIR:${_target}>/$<TARGET_FILE_BASE_NAME:${_target}>.pdb
        DESTINATION bin COMPONENT symbols)
endfunction()
