# ostrel_add_idl_library(<target> <idl> <include dir>): compiles an IDL file with widl into a
# header (in <include dir>), GUID definitions and a type library, and builds a static library of
# the GUIDs whose users see the header. Sets <target>_HEADER and <target>_TLB in the caller's
# scope; the custom target <target>_tlb builds the type library.
function(ostrel_add_idl_library target idl include_dir)
    get_filename_component(_name ${idl} NAME_WE)
    get_filename_component(_idl_dir ${idl} DIRECTORY)
    set(_header ${include_dir}/${_name}.h)
    set(_guids ${CMAKE_CURRENT_BINARY_DIR}/${_name}_i.c)
    set(_tlb ${CMAKE_CURRENT_BINARY_DIR}/${_name}.tlb)
    add_custom_command(
        OUTPUT ${_header} ${_guids} ${_tlb}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${include_dir}
        COMMAND ${OSTREL_WIDL} -m64 -I${WINE_IDL_DIR} -L${WINE_TLB_DIR}
                -h -H ${_header} -u -U ${_guids} -t -T ${_tlb} ${_name}.idl
        DEPENDS ${idl}
        # The file's name alone: widl writes it into the header, which the SDK ships.
        WORKING_DIRECTORY ${_idl_dir}
        COMMENT "widl ${_name}.idl"
        VERBATIM)
    add_library(${target} STATIC ${_guids} ${_header})
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${include_dir}>)
    add_custom_target(${target}_tlb DEPENDS ${_tlb})
    set(${target}_HEADER ${_header} PARENT_SCOPE)
    set(${target}_TLB ${_tlb} PARENT_SCOPE)
endfunction()
