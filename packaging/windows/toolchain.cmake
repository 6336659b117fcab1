# 64-bit Windows with Debian's mingw-w64, in the flavour that has the standard library's threads.
# WINDOWS_QT is where build-qt.sh puts Qt for Windows; moc and its kin are the host's own, of the same version.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_VERSION 10)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER /usr/bin/${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER /usr/bin/${triple}-g++-posix)
set(CMAKE_RC_COMPILER /usr/bin/${triple}-windres)
set(CMAKE_AR /usr/bin/${triple}-gcc-ar-posix CACHE FILEPATH "")
set(CMAKE_RANLIB /usr/bin/${triple}-gcc-ranlib-posix CACHE FILEPATH "")

# Small trial programs are configured by this file too, and have to know the place.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WINDOWS_QT)
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${WINDOWS_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# What pkg-config knows here is for this machine.
set(ENV{PKG_CONFIG_LIBDIR} /usr/${triple}/lib/pkgconfig)

set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")
