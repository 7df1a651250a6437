# What Java needs beside the client: the processors that Maven fetched, the parser that reads every input and that the
# Java layer is compiled against, and the configuration that vlxslt falls back on.
set(VLXSLT_PROCESSORS_DIR ${CMAKE_SOURCE_DIR}/build/processors CACHE PATH "Where Maven put the processors")

file(MAKE_DIRECTORY ${VLXSLT_SHARE_DIR} ${VLXSLT_LIB_DIR}/parser)
configure_file(${CMAKE_SOURCE_DIR}/packaging/vlxslt.toml ${VLXSLT_SHARE_DIR}/vlxslt.toml COPYONLY)

set(parser ${VLXSLT_PROCESSORS_DIR}/xerces/xercesImpl.jar)
if(NOT EXISTS ${parser})
  message(FATAL_ERROR "No XML parser in ${VLXSLT_PROCESSORS_DIR}. `./dev build` fetches it and the processors, or: "
                      "mvn -f packaging/processors/pom.xml package")
endif()
configure_file(${parser} ${VLXSLT_LIB_DIR}/parser/xercesImpl.jar COPYONLY)
file(CREATE_LINK ${VLXSLT_PROCESSORS_DIR} ${VLXSLT_SHARE_DIR}/processors SYMBOLIC)
