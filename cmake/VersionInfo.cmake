# Every shipped binary carries a version resource made from one template and the project's one
# version, so that Explorer, installers and hosts can tell which build they have; and, in the
# release build, a PDB.
set(OSTREL_COMPANY_NAME "The ostrel developers" CACHE STRING "CompanyName of the version resources")
set(OSTREL_PRODUCT_NAME "ostrel SDK" CACHE STRING "ProductName of the version resources")

# ostrel_add_version_info(<target> <description>)
function(ostrel_add_version_info _target _description)
    get_target_property(_type ${_target} TYPE)
    if(_type STREQUAL "EXECUTABLE")
        set(_file_type VFT_APP)
    else()
        set(_file_type VFT_DLL)
    endif()
    get_target_property(_internal_name ${_target} OUTPUT_NAME)
    if(NOT _internal_name)
        set(_internal_name ${_target})
    endif()
    # @...@ first, then the file name, which only the generator knows.
    set(_configured ${CMAKE_CURRENT_BINARY_DIR}/${_target}_version.rc.in)
    set(_rc ${CMAKE_CURRENT_BINARY_DIR}/${_target}_version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version_info.rc.in ${_configured} @ONLY)
    file(GENERATE OUTPUT ${_rc} INPUT ${_configured})
    target_sources(${_target} PRIVATE ${_rc})
    ostrel_add_symbols(${_target})
endfunction()
