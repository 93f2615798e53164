# The program that both CMake projects build once gxdisplay::gxdisplay is known.
add_executable(consumer ${GX_CONSUMER})
target_link_libraries(consumer PRIVATE gxdisplay::gxdisplay)
foreach(component IN LISTS components)
  string(TOUPPER ${component} upper)
  target_link_libraries(consumer PRIVATE gxdisplay::${component})
  target_compile_definitions(consumer PRIVATE CONSUMER_${upper})
endforeach()
