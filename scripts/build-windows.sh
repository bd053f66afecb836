#!/usr/bin/env bash
# Cross-builds SuiteDeployer.exe, the program that users run on 64-bit Windows,
# with mingw-w64 from Debian's packages alone: installs what is missing,
# fetches the source packages of Qt base and Boost that match the machine's own
# Qt and Boost, builds static Qt Core and Boost.Filesystem for Windows into a
# cache folder outside the checkout (reused by every later run and every clone
# on the machine), then builds the exe in build-windows/ and prints its path
# and SHA-256 last.
#
#   scripts/build-windows.sh [--release DIR]
#
#   --release DIR         also puts the release into DIR: the exe, its
#                         third-party notices, its bill of materials, the kit
#                         to relink it with another Qt Core, and SHA256SUMS
#                         (scripts/windows-release.sh); DIR is made anew
#   SUITEDEPLOYER_CACHE   where the Windows libraries are kept
#                         (default: ${XDG_CACHE_HOME:-$HOME/.cache}/suitedeployer)
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

release_dir=
case "${1:-}" in
  --release)
    [ -n "${2:-}" ] || { echo "usage: $0 [--release DIR]" >&2; exit 2; }
    release_dir=$2
    ;;
  "") ;;
  *) echo "usage: $0 [--release DIR]" >&2; exit 2 ;;
esac

WINDOWS_PACKAGES=(
  cmake make dpkg-dev g++-mingw-w64-x86-64-posix
  qtbase5-dev qtbase5-dev-tools qttools5-dev qttools5-dev-tools
  libboost-dev libboost1.74-dev libspdlog-dev libfmt-dev python3
)
ensure_packages "${WINDOWS_PACKAGES[@]}"

target=x86_64-w64-mingw32
compiler="$target-g++-posix"
version_of() { dpkg-query -W -f='${Version}' "$1"; }
# The cross Qt must be the very version of the host's moc, rcc and lrelease.
qt_version=$(version_of qtbase5-dev)
boost_version=$(version_of libboost1.74-dev)
compiler_version=$("$compiler" -dumpfullversion)-$(version_of g++-mingw-w64-x86-64-posix)
cache_root=${SUITEDEPLOYER_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/suitedeployer}
# The first part names the way the libraries are built; it changes with it.
cache="$cache_root/windows2-$target-gcc$compiler_version-qt$qt_version-boost$boost_version"
cache=${cache//[:+~]/_}
qt_prefix="$cache/qt"
packages="$cache/packages"
sources="$cache/sources"

# Fetches the source packages through an apt configuration of its own, with
# deb-src lines for the archives that the machine's apt list names, so that the
# machine's own apt set-up stays as it is.
fetch_sources() {
  [ -d "$sources/qtbase" ] && [ -d "$sources/boost" ] && return 0
  local apt="$cache/apt"
  rm -rf "$apt" "$sources"
  mkdir -p "$apt/parts" "$apt/lists/partial" "$apt/cache/archives/partial" "$sources"
  : >"$apt/sources.list"
  local list
  for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    if [ -f "$list" ]; then sed -n 's/^deb /deb-src /p' "$list" >>"$apt/sources.list"; fi
  done
  for list in /etc/apt/sources.list.d/*.sources; do
    if [ -f "$list" ]; then sed 's/^Types:.*/Types: deb-src/' "$list" >"$apt/parts/$(basename "$list")"; fi
  done
  local options=(-o Dir::Etc::SourceList="$apt/sources.list" -o Dir::Etc::SourceParts="$apt/parts"
    -o Dir::State::Lists="$apt/lists" -o Dir::Cache="$apt/cache" -o Debug::NoLocking=1)
  apt-get "${options[@]}" update -qq
  (cd "$sources" && apt-get "${options[@]}" source --download-only -qq \
    "qtbase-opensource-src=$qt_version" "boost1.74=$boost_version")
  # apt has checked the files against the archive's signed index; the
  # maintainers' keys that dpkg-source would look for are not needed for that.
  dpkg-source -x "$sources"/qtbase-opensource-src_*.dsc "$sources/qtbase" >"$apt/unpack.log" 2>&1
  dpkg-source -x "$sources"/boost1.74_*.dsc "$sources/boost" >>"$apt/unpack.log" 2>&1
}

# Qt's make files call the compilers by their plain names, which Debian's
# alternatives may point at the win32 thread model: a folder of wrappers
# names the POSIX one, whose std::thread the program uses, and maps the cache
# folder out of the texts that Qt keeps of its sources.
toolchain_links() {
  local links="$cache/toolchain" tool
  mkdir -p "$links"
  for tool in gcc g++; do
    printf '#!/bin/sh\nexec %s -ffile-prefix-map=%s/= "$@"\n' "/usr/bin/$target-$tool-posix" "$cache" \
      >"$links/$target-$tool"
    chmod +x "$links/$target-$tool"
  done
  for tool in ar windres strip objcopy nm ranlib; do ln -sfn "/usr/bin/$target-$tool" "$links/$target-$tool"; done
  echo "$links"
}

# Static Qt Core and its WinMain library, nothing else of Qt. The host's own
# moc, rcc and lrelease stand in for the cross Qt's tools.
build_qt() {
  [ -f "$qt_prefix/built" ] && return 0
  local build="$cache/qt-build"
  rm -rf "$build" "$qt_prefix"
  mkdir -p "$build"
  (
    cd "$build"
    # The prefix is kept in the library; it is installed to the cache instead.
    "$sources/qtbase/configure" -prefix C:/Qt/static -extprefix "$qt_prefix" -xplatform win32-g++ \
      -device-option CROSS_COMPILE="$(toolchain_links)/$target-" \
      -release -static -opensource -confirm-license -nomake examples -nomake tests \
      -no-gui -no-widgets -no-dbus -no-opengl -no-openssl -no-icu -no-zstd -qt-zlib -qt-pcre \
      -no-feature-network -no-feature-sql -no-feature-xml -no-feature-testlib -no-feature-concurrent \
      >configure.log 2>&1 || { tail -30 configure.log; exit 1; }
    make sub-src-qmake_all >/dev/null
    make -C src -j"$(nproc)" sub-corelib sub-winmain >build.log 2>&1 || { tail -30 build.log; exit 1; }
    make -C src/3rdparty/pcre2 install >/dev/null
    make -C src/corelib install >/dev/null
    make -C src/winmain install >/dev/null
    make install_mkspecs >/dev/null
    # Qt5Core's CMake package wants to see a qmake.
    install -D bin/qmake "$qt_prefix/bin/qmake"
  )
  local tool
  for tool in moc rcc; do ln -sfn "/usr/lib/qt5/bin/$tool" "$qt_prefix/bin/$tool"; done
  rm -rf "$build"
  touch "$qt_prefix/built"
}

# Boost.Filesystem's own sources, compiled against Debian's Boost headers of the
# same version; Boost.System is header-only. The headers are seen through a
# folder of links, never through /usr/include, where the host's C library
# would stand in for the target's.
build_boost() {
  [ -f "$packages/built" ] && return 0
  mkdir -p "$packages/include" "$packages/lib" "$cache/boost-build"
  local library
  for library in boost fmt spdlog; do ln -sfn "/usr/include/$library" "$packages/include/$library"; done
  local source objects=() wrapped
  wrapped="$(toolchain_links)/$target-g++"
  for source in "$sources"/boost/libs/filesystem/src/*.cpp; do
    objects+=("$cache/boost-build/$(basename "$source" .cpp).o")
    "$wrapped" -std=c++17 -O2 -DNDEBUG -DBOOST_FILESYSTEM_SOURCE -DBOOST_FILESYSTEM_STATIC_LINK=1 \
      -DBOOST_ALL_NO_LIB -isystem "$packages/include" -c "$source" -o "${objects[-1]}" &
  done
  wait
  "$target-ar" rcsD "$packages/lib/libboost_filesystem.a" "${objects[@]}"
  rm -rf "$cache/boost-build"
  touch "$packages/built"
}

# Debian's CMake packages of Boost, fmt and spdlog name the host's libraries:
# the cross build finds packages of its own that name the ones above.
write_packages() {
  local cmake_dir="$packages/lib/cmake" boost_version_number=${boost_version%%+*}
  mkdir -p "$cmake_dir/Boost-$boost_version_number" "$cmake_dir/fmt" "$cmake_dir/spdlog"
  cat >"$cmake_dir/Boost-$boost_version_number/BoostConfig.cmake" <<CMAKE
# Written by scripts/build-windows.sh: Boost.Filesystem for $target.
if(NOT TARGET Boost::headers)
  add_library(Boost::headers INTERFACE IMPORTED)
  set_target_properties(Boost::headers PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "$packages/include")
  add_library(Boost::system INTERFACE IMPORTED)
  set_target_properties(Boost::system PROPERTIES INTERFACE_LINK_LIBRARIES Boost::headers)
  add_library(Boost::filesystem STATIC IMPORTED)
  set_target_properties(Boost::filesystem PROPERTIES IMPORTED_LOCATION "$packages/lib/libboost_filesystem.a"
    INTERFACE_LINK_LIBRARIES "Boost::headers;bcrypt"
    INTERFACE_COMPILE_DEFINITIONS "BOOST_FILESYSTEM_STATIC_LINK=1;BOOST_ALL_NO_LIB")
endif()
set(Boost_FOUND TRUE)
foreach(component IN LISTS Boost_FIND_COMPONENTS)
  set(Boost_\${component}_FOUND TRUE)
endforeach()
CMAKE
  cat >"$cmake_dir/Boost-$boost_version_number/BoostConfigVersion.cmake" <<CMAKE
set(PACKAGE_VERSION $boost_version_number)
if(PACKAGE_FIND_VERSION VERSION_GREATER PACKAGE_VERSION)
  set(PACKAGE_VERSION_COMPATIBLE FALSE)
else()
  set(PACKAGE_VERSION_COMPATIBLE TRUE)
endif()
CMAKE
  cat >"$cmake_dir/fmt/fmtConfig.cmake" <<CMAKE
# Written by scripts/build-windows.sh: Debian's fmt headers, header-only.
if(NOT TARGET fmt::fmt)
  add_library(fmt::fmt INTERFACE IMPORTED)
  set_target_properties(fmt::fmt PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "$packages/include"
    INTERFACE_COMPILE_DEFINITIONS FMT_HEADER_ONLY=1)
endif()
CMAKE
  cat >"$cmake_dir/spdlog/spdlogConfig.cmake" <<CMAKE
# Written by scripts/build-windows.sh: Debian's spdlog headers, header-only, on fmt.
if(NOT TARGET spdlog::spdlog)
  add_library(spdlog::spdlog INTERFACE IMPORTED)
  set_target_properties(spdlog::spdlog PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "$packages/include"
    INTERFACE_LINK_LIBRARIES fmt::fmt)
endif()
CMAKE
}

# The program itself, with the 17 translations and the catalogue embedded:
# one static file for the Windows GUI subsystem, so that the wizard starts it
# without a console window.
build_program() {
  local build="$SUITEDEPLOYER_ROOT/build-windows"
  # A build folder made with other libraries would keep finding those.
  if [ "$(cat "$build/windows-libraries" 2>/dev/null)" != "$cache" ]; then
    rm -f "$build/CMakeCache.txt"
    mkdir -p "$build"
    echo "$cache" >"$build/windows-libraries"
  fi
  cmake -S "$SUITEDEPLOYER_ROOT" -B "$build" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$SUITEDEPLOYER_ROOT/cmake/mingw-w64-x86_64.cmake" \
    -DSUITEDEPLOYER_WINDOWS_PREFIXES="$qt_prefix;$packages" \
    -DQt5LinguistTools_DIR=/usr/lib/x86_64-linux-gnu/cmake/Qt5LinguistTools \
    -DSUITEDEPLOYER_BUILD_TESTS=OFF -DSUITEDEPLOYER_BUILD_BENCH=OFF >/dev/null
  cmake --build "$build" -j"$(nproc)" --target SuiteDeployer
  program="$build/src/installer/utils/SuiteDeployer.exe"
}

fetch_sources
build_qt
build_boost
write_packages
build_program
if [ -n "$release_dir" ]; then
  source "$SUITEDEPLOYER_ROOT/scripts/windows-release.sh"
  make_release "$release_dir"
  echo "Release: $release_dir"
fi
echo "$program"
sha256sum "$program" | cut -d' ' -f1
