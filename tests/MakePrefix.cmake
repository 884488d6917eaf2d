# Makes the Wine prefix on first use, and starts Wine's own services with no output attached:
# a test that started them would hand them its output pipe, and with the server kept up
# (`wineserver -p`) ctest would wait on that pipe for ever.
if(EXISTS ${PREFIX}/system.reg)
    set(WINEBOOT_ARGS --update)
else()
    set(WINEBOOT_ARGS --init)
endif()
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env WINEPREFIX=${PREFIX} WINEARCH=${WINEARCH} WINEDEBUG=-all
            WINEDLLOVERRIDES=mscoree,mshtml= ${WINE} wineboot ${WINEBOOT_ARGS}
    INPUT_FILE /dev/null OUTPUT_FILE /dev/null ERROR_FILE /dev/null
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "wineboot failed (${result})")
endif()
