# What every folder of this project is built with, and the three functions that describe one.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
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

# add_folder_library(NAME SOURCES file... [DEPENDS target...] [PRIVATE_DEPENDS target...])
# One library a folder. Its users include its headers as "folder/header.h".
function(add_folder_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC qb_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
endfunction()

# add_quillbarrow_test(NAME SOURCES file... DEPENDS target...)
# A Qt Test program run by CTest in a fixed zone and locale, without a screen, and with a home folder of its own.
function(add_quillbarrow_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;DEPENDS;ENVIRONMENT" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE qb_options Qt6::Test ${ARG_DEPENDS})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(home "${CMAKE_BINARY_DIR}/test-home/${name}")
  file(MAKE_DIRECTORY "${home}")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "TZ=Europe/Berlin;LC_ALL=C.UTF-8;QT_QPA_PLATFORM=offscreen;HOME=${home};${ARG_ENVIRONMENT}")
endfunction()
