vlxslt_add_unit_test(kit_test SOURCES kit_files_test.cpp kit_test.cpp)
