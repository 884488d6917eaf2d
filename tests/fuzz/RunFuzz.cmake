# Runs the fuzzer in a throwaway Wine prefix made fresh for the run: no drive Z: (so no Unix
# file is reachable), the program copied into drive C, its own key and folder there.
# cmake -DWINE=... -DWINEARCH=... -DPREFIX=... -DPROGRAM=... -DSEED=n -DCALLS=n -DSECONDS=n -P RunFuzz.cmake
file(REMOVE_RECURSE ${PREFIX})
set(WINE_RUN ${CMAKE_COMMAND} -E env WINEPREFIX=${PREFIX} WINEARCH=${WINEARCH} WINEDEBUG=-all
    "WINEDLLOVERRIDES=mscoree,mshtml=\;explorer.exe=d" ${WINE})
execute_process(COMMAND ${WINE_RUN} wineboot --init
    INPUT_FILE /dev/null OUTPUT_FILE /dev/null ERROR_FILE /dev/null RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "wineboot failed (${result})")
endif()
file(REMOVE ${PREFIX}/dosdevices/z:)
file(MAKE_DIRECTORY ${PREFIX}/drive_c/orbex-fuzz)
file(COPY ${PROGRAM} DESTINATION ${PREFIX}/drive_c/orbex-fuzz)
get_filename_component(name ${PROGRAM} NAME)
execute_process(COMMAND ${WINE_RUN} C:\\orbex-fuzz\\${name} --seed ${SEED} --calls ${CALLS} --seconds ${SECONDS}
    INPUT_FILE /dev/null RESULT_VARIABLE result)
execute_process(COMMAND ${CMAKE_COMMAND} -E env WINEPREFIX=${PREFIX} wineserver -k
    OUTPUT_QUIET ERROR_QUIET)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the fuzzer failed (${result})")
endif()
