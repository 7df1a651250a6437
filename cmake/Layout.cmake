# Where things lie in a build tree, which is laid out like an installation: bin/vlxslt finds the rest relative to itself.
include(GNUInstallDirs)

set(VLXSLT_BIN_DIR ${CMAKE_BINARY_DIR}/bin)
set(VLXSLT_LIB_DIR ${CMAKE_BINARY_DIR}/lib/vlxslt)
set(VLXSLT_SHARE_DIR ${CMAKE_BINARY_DIR}/share/vlxslt)
