# Installs the build tree BUILD to the empty folder PREFIX and looks at what came.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE installed RELATIVE ${PREFIX} ${PREFIX}/*)
foreach(path IN LISTS installed)
  if(path MATCHES "^include/" AND NOT path MATCHES "^include/gxdisplay/(foundation|dispc|backends|conformance|footprint)/.*\\.h$")
    message(SEND_ERROR "${path} does not belong among the headers")
  endif()
  if(path MATCHES "_detail\\.h$|/detail/")
    message(SEND_ERROR "${path} is private and was installed")
  endif()
endforeach()
if(NOT "include/gxdisplay/dispc/gxdisplay.h" IN_LIST installed)
  message(SEND_ERROR "the umbrella header was not installed")
endif()
