# Cross-compiles for 64-bit Windows with Debian's mingw-w64 (package
# g++-mingw-w64-x86-64-posix), whose POSIX thread model gives std::thread.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${MINGW_TRIPLET}-windres)

# Libraries and headers come from the cross tree and the folders of the
# Windows libraries that scripts/build-windows.sh builds, programs from the host.
set(SUITEDEPLOYER_WINDOWS_PREFIXES "" CACHE STRING "Folders of the Windows libraries (Qt Core, Boost, fmt, spdlog)")
set(CMAKE_FIND_ROOT_PATH /usr/${MINGW_TRIPLET} ${SUITEDEPLOYER_WINDOWS_PREFIXES})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
