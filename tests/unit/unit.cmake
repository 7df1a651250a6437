include(GoogleTest)

# Keeps a host and a folder of its own for each test; see fake_host.h and folder.h.
add_library(vlxslt_fake_host STATIC ${CMAKE_CURRENT_LIST_DIR}/fake_host.cpp ${CMAKE_CURRENT_LIST_DIR}/folder.cpp)
target_link_libraries(vlxslt_fake_host PUBLIC vlxslt_kit)

# vlxslt_add_unit_test(NAME SOURCES file... LIBRARIES target...): an executable of GoogleTest cases, each of them a test
# of its own. Sources are taken from tests/unit.
function(vlxslt_add_unit_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/unit/)
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE vlxslt_fake_host ${arg_LIBRARIES} GTest::gtest_main)
  gtest_discover_tests(${name} TEST_PREFIX "unit." PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60)
endfunction()
