# What a cross build takes from the Linux host: GoogleTest's sources, built
# here with the cross compiler, and Boost's headers, which serve any target.
# Boost is seen through a folder that holds nothing but the boost folder, so
# that no other host header can stand in for one of the target's.
set(GOOGLETEST_SOURCE_DIR /usr/src/googletest CACHE PATH "GoogleTest's sources (Debian package googletest)")
if(NOT EXISTS ${GOOGLETEST_SOURCE_DIR}/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's sources are missing in ${GOOGLETEST_SOURCE_DIR} (Debian package googletest)")
endif()
set(BUILD_GMOCK OFF CACHE BOOL "")
set(INSTALL_GTEST OFF CACHE BOOL "")
# Win32's own threads, not winpthreads.
set(gtest_disable_pthreads ON CACHE BOOL "")
add_subdirectory(${GOOGLETEST_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)

find_path(BOOST_HOST_INCLUDE_DIR boost/filesystem/path.hpp PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(NOT BOOST_HOST_INCLUDE_DIR)
  message(FATAL_ERROR "Boost's headers are missing (Debian package libboost-dev)")
endif()
set(BOOST_ONLY_INCLUDE_DIR ${CMAKE_CURRENT_BINARY_DIR}/boost-include)
file(MAKE_DIRECTORY ${BOOST_ONLY_INCLUDE_DIR})
file(CREATE_LINK ${BOOST_HOST_INCLUDE_DIR}/boost ${BOOST_ONLY_INCLUDE_DIR}/boost SYMBOLIC)
# Only the path class is used, and the part of it used here needs no compiled library.
add_library(boost_path_headers INTERFACE)
target_include_directories(boost_path_headers SYSTEM INTERFACE ${BOOST_ONLY_INCLUDE_DIR})
set(BOOST_PATH_TARGET boost_path_headers)
