# Makes the Wine prefix on first use, and starts Wine's own services with no output attached:
# a test that started them would hand them its output pipe, and with the server kept up
# (`wineserver -p`) ctest would wait on that pipe for ever.
# With VERSION (win98, nt40, winxp, ...) Wine in this prefix pretends to be that Windows; such a
# prefix is only made, not updated: setting the value starts its services just as well.
if(NOT EXISTS ${PREFIX}/system.reg)
    set(WINEBOOT_ARGS --init)
elseif(NOT DEFINED VERSION)
    set(WINEBOOT_ARGS --update)
endif()
set(WINE_RUN ${CMAKE_COMMAND} -E env WINEPREFIX=${PREFIX} WINEARCH=${WINEARCH} WINEDEBUG=-all
    "WINEDLLOVERRIDES=mscoree,mshtml=\;explorer.exe=d" ${WINE})
if(DEFINED WINEBOOT_ARGS)
    execute_process(
        COMMAND ${WINE_RUN} wineboot ${WINEBOOT_ARGS}
        INPUT_FILE /dev/null OUTPUT_FILE /dev/null ERROR_FILE /dev/null
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "wineboot failed (${result})")
    endif()
endif()
if(DEFINED VERSION)
    execute_process(
        COMMAND ${WINE_RUN} reg add "HKCU\\Software\\Wine" /v Version /d ${VERSION} /f
        INPUT_FILE /dev/null OUTPUT_FILE /dev/null ERROR_FILE /dev/null
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "setting the Windows version ${VERSION} failed (${result})")
    endif()
endif()
