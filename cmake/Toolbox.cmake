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
  -Woverloaded-virtual -Wimplicit-fallthrough -Werror)
if(TARNLINK_SANITIZE)
  target_compile_options(tarnlink_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tarnlink_options INTERFACE -fsanitize=address,undefined)
endif()

# A library of one folder. Its public includes are seen from `src/`.
#   tarnlink_library(NAME SOURCES ... LINK ...)
function(tarnlink_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE tarnlink_options)
endfunction()
