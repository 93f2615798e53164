# The installed tree: include/gxdisplay/{foundation,dispc,backends,conformance,footprint}/..., the libraries, a CMake package with a target
# gxdisplay::NAME for each library, and a pkg-config file for each of them.

include(CMakePackageConfigHelpers)

set(GXDISPLAY_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/gxdisplay)
set(GXDISPLAY_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/gxdisplay)
get_property(libraries GLOBAL PROPERTY GXDISPLAY_LIBRARIES)

install(TARGETS ${libraries} EXPORT gxdisplay
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${GXDISPLAY_INCLUDEDIR})

# gx_install_headers(FOLDER DESTINATION): the public headers of a folder; private ones stay behind.
function(gx_install_headers folder destination)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder} DESTINATION ${GXDISPLAY_INCLUDEDIR}/${destination}
    FILES_MATCHING PATTERN *.h
    PATTERN *_detail.h EXCLUDE
    PATTERN detail EXCLUDE)
endfunction()

gx_install_headers(foundation .)
gx_install_headers(dispc .)
foreach(backend IN ITEMS pels png cairo)
  if(TARGET gxdisplay_${backend})
    gx_install_headers(backends/${backend} backends)
  endif()
endforeach()

foreach(library IN ITEMS conformance footprint)
  if(TARGET gxdisplay_${library})
    gx_install_headers(${library} .)
  endif()
endforeach()

install(EXPORT gxdisplay FILE gxdisplay-targets.cmake NAMESPACE gxdisplay:: DESTINATION ${GXDISPLAY_CMAKEDIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/gxdisplay-config.cmake.in
  ${PROJECT_BINARY_DIR}/gxdisplay-config.cmake INSTALL_DESTINATION ${GXDISPLAY_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/gxdisplay-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/gxdisplay-config.cmake ${PROJECT_BINARY_DIR}/gxdisplay-config-version.cmake
  DESTINATION ${GXDISPLAY_CMAKEDIR})

# gx_pkg_config(LIBRARY DESCRIPTION [REQUIRES]): LIBRARY.pc. Paths follow the file, so that the tree may be moved.
function(gx_pkg_config library description)
  string(REPLACE _ - name ${library})
  set(requires ${ARGN})
  cmake_path(SET folder NORMALIZE ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${folder} OUTPUT_VARIABLE up)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/gxdisplay.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

gx_pkg_config(gxdisplay "${PROJECT_DESCRIPTION}")
if(TARGET gxdisplay_pels)
  gx_pkg_config(gxdisplay_pels "A surface in memory for gxdisplay" "gxdisplay = ${PROJECT_VERSION}")
endif()
if(TARGET gxdisplay_png)
  gx_pkg_config(gxdisplay_png "PNG files for gxdisplay" "gxdisplay = ${PROJECT_VERSION}")
endif()
if(TARGET gxdisplay_cairo)
  gx_pkg_config(gxdisplay_cairo "Smooth pictures, SVG and PDF for gxdisplay" "gxdisplay = ${PROJECT_VERSION}")
endif()
if(TARGET gxdisplay_conformance)
  gx_pkg_config(gxdisplay_conformance "Checks of surfaces for gxdisplay" "gxdisplay = ${PROJECT_VERSION}")
endif()
if(TARGET gxdisplay_footprint)
  gx_pkg_config(gxdisplay_footprint "Land patterns for gxdisplay" "gxdisplay = ${PROJECT_VERSION}")
endif()
