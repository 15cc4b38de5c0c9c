# 32-bit big-endian ARM, objects only: Debian's ARM compiler knows the byte order, but has no C library for it to link with.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armeb)
set(CMAKE_C_COMPILER arm-linux-gnueabi-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabi-g++)
set(CMAKE_C_FLAGS_INIT -mbig-endian)
set(CMAKE_CXX_FLAGS_INIT -mbig-endian)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
