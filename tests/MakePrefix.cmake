# Makes the Wine prefix on first use; later runs find it and return at once.
if(EXISTS ${PREFIX}/system.reg)
    return()
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env WINEPREFIX=${PREFIX} WINEARCH=${WINEARCH} WINEDEBUG=-all
            WINEDLLOVERRIDES=mscoree,mshtml= ${WINE} wineboot --init
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "wineboot failed (${result})")
endif()
