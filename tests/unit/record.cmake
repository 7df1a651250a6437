find_package(nlohmann_json 3 REQUIRED)

vlxslt_add_unit_test(record_test SOURCES record_test.cpp record_kept_outputs_test.cpp
                     LIBRARIES vlxslt_host_record nlohmann_json::nlohmann_json)
