# What every target of this tree shares: warnings, sanitizers, compiler cache and linker.

# What one tree has compiled serves every other one: paths inside the tree do not count. Precompiled
# headers are cached only if time stamps do not count either.
find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options(-fpch-preprocess)
  endif()
endif()
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_library(tarnlink_options INTERFACE)
target_compile_options(tarnlink_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough)
if(NOT (TARNLINK_FUZZ OR TARNLINK_COVERAGE))  # whose compiler is another one
  target_compile_options(tarnlink_options INTERFACE -Werror)
endif()
if(TARNLINK_SANITIZE OR TARNLINK_FUZZ)
  target_compile_options(tarnlink_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tarnlink_options INTERFACE -fsanitize=address,undefined)
endif()
# Tracing comparisons takes a quarter of a form's time and tells nothing there, where inputs are
# choices: it is kept for what takes bytes apart. What compares texts is heard of without it.
if(TARNLINK_FUZZ)
  target_compile_options(tarnlink_options INTERFACE
    -fsanitize-coverage=inline-8bit-counters,pc-table -fsanitize-address-use-after-return=never)
endif()
# Clang counts conditions as they stand in the source. GCC counts jumps of the machine: one for two
# conditions that it folds, and another one for every call that might throw.
if(TARNLINK_COVERAGE)
  target_compile_options(tarnlink_options INTERFACE
    -fprofile-instr-generate -fcoverage-mapping -O1)
  target_link_options(tarnlink_options INTERFACE -fprofile-instr-generate)
endif()

# A mistake that got through all tests shall end the program and not the burner's data: checked
# copies and containers, guarded returns, a program at a random place whose tables are read-only.
# What sanitizers look at, they look at themselves.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported()
if(NOT (TARNLINK_SANITIZE OR TARNLINK_FUZZ OR TARNLINK_COVERAGE OR CMAKE_BUILD_TYPE STREQUAL Debug))
  set(TARNLINK_HARDENED ON)
  target_compile_options(tarnlink_options INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
endif()
target_compile_options(tarnlink_options INTERFACE -D_GLIBCXX_ASSERTIONS -fstack-protector-strong)
target_link_options(tarnlink_options INTERFACE -Wl,-z,relro,-z,now)

# A library of one folder. Its public includes are seen from `src/`.
#   tarnlink_library(NAME SOURCES ... LINK ...)
function(tarnlink_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE tarnlink_options)
  if(TARNLINK_FUZZ AND name MATCHES "_(files|protocols)$")
    target_compile_options(${name} PRIVATE -fsanitize-coverage=trace-cmp)
  endif()
endfunction()

# Sources that have to know a place of this tree, as NAME="place". Only they see it: all others are
# compiled alike in every clone, and so once.
#   tarnlink_places(SOURCE NAME=PLACE...)
function(tarnlink_places source)
  foreach(place ${ARGN})
    string(REGEX REPLACE "^([A-Z_0-9]+)=(.*)$" "\\1=\"\\2\"" definition "${place}")
    set_property(SOURCE ${source} APPEND PROPERTY COMPILE_DEFINITIONS "${definition}")
  endforeach()
endfunction()
