vlxslt_add_unit_test(bridge_test SOURCES bridge_listing_test.cpp bridge_test.cpp LIBRARIES vlxslt_processors_java)
# The bridge finds its jar beside the file that it is linked into.
set_target_properties(bridge_test PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VLXSLT_LIB_DIR})
add_dependencies(bridge_test vlxslt_java_jar)
target_compile_definitions(bridge_test PRIVATE PROCESSORS_DIR="${VLXSLT_PROCESSORS_DIR}")

vlxslt_add_unit_test(bridge_parts_test SOURCES bridge_parts_test.cpp fake_processor.cpp LIBRARIES vlxslt_processors_java)
