# The posix-thread compilers: the win32-thread ones lack std::mutex, which GoogleTest needs.
set(CMAKE_C_COMPILER ${ORBEX_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ORBEX_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${ORBEX_TRIPLE}-windres)
set(ORBEX_WIDL ${ORBEX_TRIPLE}-widl)
set(CMAKE_FIND_ROOT_PATH /usr/${ORBEX_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
# Static runtimes: the DLL and the test programs run under Wine without mingw DLLs beside them.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
