vlxslt_add_unit_test(dialogs_test SOURCES dialogs_resources_test.cpp dialogs_model_test.cpp
                     LIBRARIES vlxslt_processors_java vlxslt_host)

# The client as a host loads it, but for the Java processors.
add_library(client_without_java MODULE ${CMAKE_SOURCE_DIR}/client/entry_points.cpp unit/client_without_java.cpp
                                       unit/fake_processor.cpp unit/folder.cpp)
target_link_libraries(client_without_java PRIVATE vlxslt_client)
set_target_properties(client_without_java PROPERTIES PREFIX "" OUTPUT_NAME XSLT
                      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/client_without_java)
vlxslt_add_unit_test(dialogs_walk_test SOURCES dialogs_play_test.cpp dialogs_walk_test.cpp LIBRARIES vlxslt_host)
add_dependencies(dialogs_walk_test client_without_java)
target_compile_definitions(dialogs_walk_test PRIVATE VLXSLT_SHARE_FOLDER="${VLXSLT_SHARE_DIR}/"
                           FAKE_CLIENT_FOLDER="${CMAKE_CURRENT_BINARY_DIR}/client_without_java")
