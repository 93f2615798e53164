# What every target of the repository has in common.

include(GNUInstallDirs)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
  set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

  if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Debug, Release, RelWithDebInfo or MinSizeRel" FORCE)
  endif()

  # Precompiled headers are cached only when ccache is told not to mind their time stamps. Sources have absolute paths,
  # so that the build folder makes no difference.
  find_program(GXDISPLAY_CCACHE ccache)
  mark_as_advanced(GXDISPLAY_CCACHE)
  set(GXDISPLAY_CCACHE_SETTINGS
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime CCACHE_NOHASHDIR=1)
  if(GXDISPLAY_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env ${GXDISPLAY_CCACHE_SETTINGS} ${GXDISPLAY_CCACHE})
  endif()
endif()

# The same pels and records on every machine: no contraction of products and sums into one rounding.
add_compile_options(-ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
if(GXDISPLAY_WERROR)
  add_compile_options(-Werror)
endif()

# gx_library(TARGET EXPORTED): the properties of a shared library of this project, known as gxdisplay::EXPORTED.
function(gx_library target exported)
  add_library(gxdisplay::${exported} ALIAS ${target})
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_compile_definitions(${target} PRIVATE GXDISPLAY_BUILDING)
  # The library's calls of its own functions stay inside: nobody replaces them from outside.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  target_link_options(${target} PRIVATE LINKER:-Bsymbolic-functions)
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${exported}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    DEFINE_SYMBOL ""
    INSTALL_RPATH "$ORIGIN")
  set_property(GLOBAL APPEND PROPERTY GXDISPLAY_LIBRARIES ${target})
endfunction()

# gx_link_backends(TARGET): links the back ends that this build has; GXDISPLAY_HAVE_PNG and _CAIRO tell of the optional ones.
function(gx_link_backends target)
  foreach(backend IN ITEMS pels png cairo)
    if(TARGET gxdisplay_${backend})
      string(TOUPPER ${backend} name)
      target_link_libraries(${target} PRIVATE gxdisplay::${backend})
      target_compile_definitions(${target} PRIVATE GXDISPLAY_HAVE_${name})
    endif()
  endforeach()
endfunction()
