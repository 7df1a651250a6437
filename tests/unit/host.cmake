find_package(nlohmann_json 3 REQUIRED)

# Two clients for the host to load: one that works, and one that lacks most of its entry points.
foreach(kind IN ITEMS stub half)
  add_library(vlxslt_${kind}_client MODULE ${CMAKE_CURRENT_LIST_DIR}/host_${kind}_client.cpp)
  target_link_libraries(vlxslt_${kind}_client PRIVATE vlxslt_kit)
  set_target_properties(vlxslt_${kind}_client PROPERTIES
                        PREFIX "" OUTPUT_NAME XSLT LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${kind}_clients)
endforeach()

vlxslt_add_unit_test(host_test SOURCES desktop_support_test.cpp host_catalogs_test.cpp host_clients_test.cpp
                                       host_components_test.cpp host_configuration_edit_test.cpp
                                       host_configuration_test.cpp host_xml_test.cpp
                     LIBRARIES vlxslt_host)
# The parts of the desktop's library that need no window.
target_sources(host_test PRIVATE ${CMAKE_SOURCE_DIR}/host/desktop/log_lines.cpp
                                 ${CMAKE_SOURCE_DIR}/host/desktop/result_text.cpp
                                 ${CMAKE_SOURCE_DIR}/host/desktop/run_summary.cpp)
target_compile_definitions(host_test PRIVATE VLXSLT_STUB_CLIENTS="${CMAKE_CURRENT_BINARY_DIR}/stub_clients"
                                             VLXSLT_HALF_CLIENTS="${CMAKE_CURRENT_BINARY_DIR}/half_clients")
add_dependencies(host_test vlxslt_stub_client vlxslt_half_client)

# The client as it ships, in the host as it ships.
vlxslt_add_unit_test(many_requests_test SOURCES many_requests_test.cpp LIBRARIES vlxslt_host)
target_compile_definitions(many_requests_test PRIVATE VLXSLT_CLIENTS="${VLXSLT_LIB_DIR}" VLXSLT_SHARE="${VLXSLT_SHARE_DIR}")
add_dependencies(many_requests_test XSLT)

# The program is no library: what works out a command line is compiled in.
vlxslt_add_unit_test(cli_test SOURCES cli_test.cpp LIBRARIES vlxslt_host nlohmann_json::nlohmann_json)
set(cli_sources dry_run printing request_commands retry run_inputs run_report split_parameter)
list(TRANSFORM cli_sources REPLACE "(.+)" "${CMAKE_SOURCE_DIR}/host/cli/\\1.cpp")
target_sources(cli_test PRIVATE ${cli_sources})
target_compile_definitions(cli_test PRIVATE VLXSLT_VERSION="${PROJECT_VERSION}")
