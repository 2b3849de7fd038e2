# What every target of this tree shares: warnings, sanitizers, compiler cache and linker.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
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
