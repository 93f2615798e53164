# The installed tree: include/gxdisplay/{foundation,dispc,backends}/..., the libraries, a CMake package, a pkg-config file.
