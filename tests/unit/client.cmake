vlxslt_add_unit_test(client_test SOURCES client_test.cpp fake_processor.cpp LIBRARIES vlxslt_client)
target_compile_definitions(client_test PRIVATE VLXSLT_SCHEMA="${CMAKE_SOURCE_DIR}/resources/vlinit/XSLT/Transformations.xsd")

vlxslt_add_unit_test(client_parts_test SOURCES client_grammar_test.cpp client_placement_test.cpp client_plan_test.cpp
                                               fake_processor.cpp
                     LIBRARIES vlxslt_client)
target_compile_definitions(client_parts_test PRIVATE VLXSLT_SCHEMA="${CMAKE_SOURCE_DIR}/resources/vlinit/XSLT/Transformations.xsd")
