find_package(LibXml2 REQUIRED)
vlxslt_add_unit_test(host_test SOURCES host_files.cpp host_configuration_test.cpp host_components_test.cpp
                                       host_catalogs_test.cpp
                     LIBRARIES vlxslt_host)
