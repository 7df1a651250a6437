vlxslt_add_unit_test(processors_test SOURCES processors_java_test.cpp processors_documents_test.cpp processors_listing_test.cpp LIBRARIES vlxslt_processors_java)
# The jar of the Java layer is looked for beside the file that the code is linked into.
set_target_properties(processors_test PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VLXSLT_LIB_DIR})
add_dependencies(processors_test vlxslt_java_jar)
target_compile_definitions(processors_test PRIVATE PROCESSORS_DIR="${VLXSLT_PROCESSORS_DIR}")

vlxslt_add_unit_test(processors_parts_test SOURCES processors_parts_test.cpp fake_processor.cpp LIBRARIES vlxslt_processors_java)

# What processors say and write by themselves, beside what a run shows and writes.
add_test(NAME processors.diagnostics
         COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/processors/diagnostics.py --build ${CMAKE_BINARY_DIR})
add_test(NAME processors.outputs
         COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/processors/compare.py --build ${CMAKE_BINARY_DIR}
                 --processor "Saxon 12" --processor Xalan --count 5)
add_test(NAME processors.jobs
         COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/processors/jobs.py --build ${CMAKE_BINARY_DIR} --count 10)
set_tests_properties(processors.diagnostics processors.jobs processors.outputs PROPERTIES TIMEOUT 600 SKIP_RETURN_CODE 77)
