vlxslt_add_unit_test(catalogue_test
                     SOURCES catalogue_fixture.cpp catalogue_location_test.cpp catalogue_model_test.cpp
                             catalogue_reading_test.cpp catalogue_saving_test.cpp catalogue_writing_test.cpp
                     LIBRARIES vlxslt_catalogue)
target_compile_definitions(catalogue_test
                           PRIVATE VLXSLT_SCHEMA="${CMAKE_SOURCE_DIR}/resources/vlinit/XSLT/Transformations.xsd")
