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

# The headers that nearly every file includes are parsed once for each of these kinds of file. The fuzz preset,
# which has another compiler, builds without them and so finds a file that forgot an include.
set(pch_core_headers <QByteArray> <QDateTime> <QDir> <QFile> <QFileInfo> <QHash> <QList> <QObject> <QSet>
  <QString> <QStringList> <QVariant> <algorithm> <functional> <memory> <optional> <stdexcept> <vector>)
set(pch_widgets_headers ${pch_core_headers} <QAbstractItemModel> <QAction> <QImage> <QPainter> <QPixmap> <QWidget>)

# use_precompiled(TARGET core|widgets|core_test|widgets_test)
function(use_precompiled target kind)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  set(owner pch_${kind})
  if(kind MATCHES "test") # Qt defines the test's folder on the command line, which a precompiled header must share
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    set(owner ${owner}_${folder})
  endif()
  if(NOT TARGET ${owner})
    set(stub "${CMAKE_BINARY_DIR}/${owner}.cpp")
    file(GENERATE OUTPUT "${stub}" CONTENT "")
    add_library(${owner} STATIC "${stub}")
    set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(${owner} PRIVATE qb_options Qt6::Core)
    set(headers ${pch_core_headers})
    if(kind MATCHES "widgets")
      target_link_libraries(${owner} PRIVATE Qt6::Widgets)
      set(headers ${pch_widgets_headers})
    endif()
    if(kind MATCHES "test")
      target_link_libraries(${owner} PRIVATE Qt6::Test)
      list(APPEND headers <QTest>)
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
  if("Qt6::Widgets" IN_LIST ARG_DEPENDS)
    use_precompiled(${name} widgets)
  else()
    use_precompiled(${name} core)
  endif()
endfunction()

# add_quillbarrow_test(NAME SOURCES file... DEPENDS target...)
# A Qt Test program run by CTest in a fixed zone and locale, without a screen, and with a home folder of its own.
function(add_quillbarrow_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;DEPENDS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE qb_options Qt6::Test ${ARG_DEPENDS})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  if(ARG_DEPENDS MATCHES "views|app|work_form")
    use_precompiled(${name} widgets_test)
  else()
    use_precompiled(${name} core_test)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(home "${CMAKE_BINARY_DIR}/test-home/${name}")
  file(MAKE_DIRECTORY "${home}")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "TZ=Europe/Berlin;LC_ALL=C.UTF-8;QT_QPA_PLATFORM=offscreen;HOME=${home};${ARG_ENVIRONMENT}")
endfunction()
