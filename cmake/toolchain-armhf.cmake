# 32-bit ARM from a 64-bit Debian 12: its cross compiler, the sysroot that scripts/armhf-sysroot makes, and the
# building machine's own Qt for moc and its kin.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

# VORKEL_SYSROOT may be another folder, for example a copy of a device's file system.
set(VORKEL_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-sysroot CACHE PATH "Files of the target system")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VORKEL_SYSROOT)
cmake_path(ABSOLUTE_PATH VORKEL_SYSROOT NORMALIZE OUTPUT_VARIABLE CMAKE_SYSROOT)

set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Qt's packages in the sysroot name the tools beside them, which are ARM programs.
set(QT_HOST_PATH /usr)
foreach(module Core Gui Widgets DBus RemoteObjects)
    set(Qt6${module}Tools_DIR /usr/lib/${CMAKE_HOST_SYSTEM_PROCESSOR}-linux-gnu/cmake/Qt6${module}Tools)
endforeach()

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L ${CMAKE_SYSROOT})
