# What every folder of this project is built with, and the three functions that describe one.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # The sloppiness is what precompiled headers need to be cached at all; with the base folder, a second checkout
  # finds what the first has compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND}" -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1
    "${CCACHE_PROGRAM}")
endif()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTORCC ON)

find_package(Qt6 6.4 REQUIRED COMPONENTS Core Gui Widgets Network PrintSupport Multimedia WebEngineWidgets LinguistTools Test)
# Without the folders of each test, which Qt adds for test data beside it: ours is built in code, and what is
# compiled for one folder serves all.
set_property(TARGET Qt6::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)
find_package(PkgConfig REQUIRED)
pkg_check_modules(SQLITE3 REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
pkg_check_modules(HEIF REQUIRED IMPORTED_TARGET libheif)
pkg_check_modules(NETTLE REQUIRED IMPORTED_TARGET nettle)

add_library(qb_options INTERFACE)
target_compile_features(qb_options INTERFACE cxx_std_20)
target_compile_options(qb_options INTERFACE -Wall -Wextra -Wold-style-cast -Woverloaded-virtual)
target_compile_definitions(qb_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
  QB_VERSION="${PROJECT_VERSION}" QB_BUILD_NUMBER=${PROJECT_VERSION_PATCH})
target_include_directories(qb_options INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(QB_SANITIZE)
  target_compile_options(qb_options INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer)
  target_link_options(qb_options INTERFACE -fsanitize=address,undefined)
endif()

# The headers that nearly every file includes are parsed once for all files that are compiled with the same
# definitions, which Qt makes one of for each of its libraries. The fuzz preset, which has another compiler, builds
# without them and so finds a file that forgot an include.
set(precompiled_headers <QByteArray> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QList> <QObject> <QSet>
  <QString> <QStringList> <QVariant> <algorithm> <functional> <memory> <optional> <stdexcept> <vector>)

# The libraries of Qt that reach the users of `target` by its interface, added to the list `result`.
function(collect_qt_libraries target result)
  set(found ${${result}})
  if(target MATCHES "^Qt6::([A-Za-z]+)$" AND NOT target IN_LIST found)
    list(APPEND found ${target})
  endif()
  if(TARGET ${target})
    get_target_property(libraries ${target} INTERFACE_LINK_LIBRARIES)
    foreach(library IN LISTS libraries)
      if(TARGET ${library} AND NOT library IN_LIST found)
        collect_qt_libraries(${library} found)
      endif()
    endforeach()
  endif()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# use_precompiled(TARGET library...): `TARGET` is linked with these libraries. CLI11, which is all headers, is
# parsed with the rest for what uses it.
function(use_precompiled target)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  set(qt_libraries)
  foreach(library IN LISTS ARGN)
    collect_qt_libraries(${library} qt_libraries)
  endforeach()
  list(FILTER qt_libraries INCLUDE REGEX "^Qt6::[A-Z][A-Za-z]+$")
  list(FILTER qt_libraries EXCLUDE REGEX "Private$|^Qt6::Platform|^Qt6::GlobalConfig")
  list(SORT qt_libraries)
  string(REPLACE "Qt6::" "" names "${qt_libraries}")
  string(REPLACE ";" "_" names "${names}")
  set(owner "pch_${names}")
  if("CLI11::CLI11" IN_LIST ARGN)
    string(APPEND owner "_CLI11")
  endif()
  if(NOT TARGET ${owner})
    file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/${owner}.cpp" CONTENT "")
    add_library(${owner} STATIC "${CMAKE_BINARY_DIR}/${owner}.cpp")
    set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(${owner} PRIVATE qb_options ${qt_libraries})
    set(headers ${precompiled_headers})
    if("Qt6::Widgets" IN_LIST qt_libraries)
      list(APPEND headers <QAbstractItemModel> <QAction> <QImage> <QPainter> <QPixmap> <QWidget>)
    endif()
    if("Qt6::Test" IN_LIST qt_libraries)
      list(APPEND headers <QTest>)
    endif()
    if("CLI11::CLI11" IN_LIST ARGN)
      target_link_libraries(${owner} PRIVATE CLI11::CLI11)
      list(APPEND headers <CLI/CLI.hpp>)
    endif()
    target_precompile_headers(${owner} PRIVATE ${headers})
  endif()
  target_precompile_headers(${target} REUSE_FROM ${owner})
endfunction()

# add_folder_library(NAME SOURCES file... [DEPENDS target...] [PRIVATE_DEPENDS target...])
# One library a folder. Its users include its headers as "folder/header.h".
function(add_folder_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC qb_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
  use_precompiled(${name} ${ARG_DEPENDS} ${ARG_PRIVATE_DEPENDS})
endfunction()

# add_quillbarrow_test(NAME SOURCES file... DEPENDS target...)
# A Qt Test program run by CTest in a fixed zone and locale, without a screen, and with a home folder of its own.
function(add_quillbarrow_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;DEPENDS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE qb_options Qt6::Test ${ARG_DEPENDS})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  use_precompiled(${name} Qt6::Test ${ARG_DEPENDS})
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(home "${CMAKE_BINARY_DIR}/test-home/${name}")
  file(MAKE_DIRECTORY "${home}")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "TZ=Europe/Berlin;LC_ALL=C.UTF-8;QT_QPA_PLATFORM=offscreen;HOME=${home};${ARG_ENVIRONMENT}")
endfunction()
