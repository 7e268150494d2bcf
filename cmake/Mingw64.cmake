# 64-bit Windows with Debian's MinGW-w64 (package g++-mingw-w64-x86-64): the thread model with std::mutex.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
foreach(suffix -posix "")
  if(NOT CMAKE_CXX_COMPILER)
    find_program(CMAKE_CXX_COMPILER ${triple}-g++${suffix})
  endif()
  if(NOT CMAKE_C_COMPILER)
    find_program(CMAKE_C_COMPILER ${triple}-gcc${suffix})
  endif()
endforeach()
set(CMAKE_RC_COMPILER ${triple}-windres)

# Programs come from this machine, libraries and headers from the other one.
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${TAVREL_WINDOWS_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The run-time libraries go into the program: it is one file to copy.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")

# The folder of the static Qt, where the window is built too; what cmake tries out needs it as well.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TAVREL_WINDOWS_QT)
