vlxslt_add_unit_test(client_test SOURCES catalogue_fixture.cpp client_grammar_test.cpp client_placement_test.cpp
                                         client_plan_test.cpp client_test.cpp fake_processor.cpp
                     LIBRARIES vlxslt_client)
target_compile_definitions(client_test
                           PRIVATE VLXSLT_SCHEMA="${CMAKE_SOURCE_DIR}/resources/vlinit/XSLT/Transformations.xsd")
