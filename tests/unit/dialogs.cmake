vlxslt_add_unit_test(dialogs_test SOURCES dialogs_resources_test.cpp dialogs_model_test.cpp
                     LIBRARIES vlxslt_bridge vlxslt_host)
