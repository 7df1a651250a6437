# What Java needs beside the client: the processors that Maven fetched, the parser that reads every input, and the
# configuration that vlxslt falls back on. A build without them works, and says at run time what is missing.
set(VLXSLT_PROCESSORS_DIR ${CMAKE_SOURCE_DIR}/build/processors CACHE PATH "Where Maven put the processors")

file(MAKE_DIRECTORY ${VLXSLT_SHARE_DIR} ${VLXSLT_LIB_DIR}/parser)
configure_file(${CMAKE_SOURCE_DIR}/packaging/vlxslt.toml ${VLXSLT_SHARE_DIR}/vlxslt.toml COPYONLY)

set(parser ${VLXSLT_PROCESSORS_DIR}/xerces/xercesImpl.jar)
if(EXISTS ${parser})
  configure_file(${parser} ${VLXSLT_LIB_DIR}/parser/xercesImpl.jar COPYONLY)
  file(CREATE_LINK ${VLXSLT_PROCESSORS_DIR} ${VLXSLT_SHARE_DIR}/processors SYMBOLIC)
else()
  message(WARNING "No XSLT processors in ${VLXSLT_PROCESSORS_DIR}. `./dev build` fetches them, or: "
                  "mvn -f packaging/processors/pom.xml package")
endif()
