# Runs the cross-built tests under Wine's 64-bit loader through a wrapper that
# gives them a prefix of their own. The first test, WinePrefix, creates or
# updates that prefix before any other starts, so that two tests never race to
# create it.
find_program(WINE_LOADER wine64 HINTS /usr/lib/wine)
if(NOT WINE_LOADER)
  message(FATAL_ERROR "Wine's 64-bit loader wine64 is missing (Debian package wine64)")
endif()

set(WINE_PREFIX_DEFAULT ${CMAKE_CURRENT_BINARY_DIR}/wine-prefix)
configure_file(${CMAKE_CURRENT_SOURCE_DIR}/wine-run.sh.in ${CMAKE_CURRENT_BINARY_DIR}/wine-run.sh @ONLY
  FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_BINARY_DIR}/wine-run.sh)

add_test(NAME WinePrefix COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} wineboot --init)
set_tests_properties(WinePrefix PROPERTIES FIXTURES_SETUP wine_prefix)
