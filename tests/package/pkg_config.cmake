# Builds CONSUMER with nothing but the flags that pkg-config tells for the tree installed in PREFIX, and runs it.
cmake_minimum_required(VERSION 3.25)

set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
set(packages gxdisplay)
set(definitions)
string(REPLACE "," ";" components "${COMPONENTS}")
foreach(component IN LISTS components)
  list(APPEND packages gxdisplay-${component})
  string(TOUPPER ${component} upper)
  list(APPEND definitions -DCONSUMER_${upper})
endforeach()

# ask(VARIABLE OPTION...): what pkg-config answers, as a list.
function(ask variable)
  execute_process(COMMAND ${PKG_CONFIG} ${ARGN} OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(answer UNIX_COMMAND "${answer}")
  set(${variable} ${answer} PARENT_SCOPE)
endfunction()

ask(cflags --cflags ${packages})
ask(libs --libs ${packages})
ask(version --modversion gxdisplay)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "pkg-config tells version ${version}, expected ${VERSION}")
endif()

execute_process(COMMAND ${CXX} -std=c++20 ${definitions} ${cflags} ${CONSUMER} ${libs} -Wl,-rpath,${PREFIX}/${LIBDIR}
  -o pkg_config_consumer COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ./pkg_config_consumer COMMAND_ERROR_IS_FATAL ANY)
