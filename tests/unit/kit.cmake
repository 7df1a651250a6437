vlxslt_add_unit_test(kit_test SOURCES kit_test.cpp)
