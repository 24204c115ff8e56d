# Windows programs built here run under Wine through build/wine-run, which keeps a private
# prefix per purpose inside the build tree.
set(OSTREL_WINE_ROOT ${CMAKE_BINARY_DIR}/wine)
set(OSTREL_WINE_RUN ${CMAKE_BINARY_DIR}/wine-run)
configure_file(${CMAKE_CURRENT_LIST_DIR}/wine-run.in ${OSTREL_WINE_RUN}
    @ONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
if(CMAKE_CROSSCOMPILING)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${OSTREL_WINE_RUN})
endif()
