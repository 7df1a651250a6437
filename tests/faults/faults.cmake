# Outputs, catalogues and preferences while system calls fail; see failing_calls.cpp.
add_library(failing_calls MODULE ${CMAKE_CURRENT_LIST_DIR}/failing_calls.cpp)
target_link_libraries(failing_calls PRIVATE vlxslt_options ${CMAKE_DL_LIBS})
# Loaded before any sanitizer.
target_compile_options(failing_calls PRIVATE -fno-sanitize=all)
target_link_options(failing_calls PRIVATE -fno-sanitize=all)
set_target_properties(failing_calls PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/faults)

add_executable(save_preferences ${CMAKE_CURRENT_LIST_DIR}/save_preferences.cpp
                                ${CMAKE_SOURCE_DIR}/host/desktop/save_preferences.cpp)
target_link_libraries(save_preferences PRIVATE vlxslt_host)
set_target_properties(save_preferences PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/faults)

add_test(NAME faults.sweep COMMAND Python3::Interpreter ${CMAKE_CURRENT_LIST_DIR}/sweep.py --build ${CMAKE_BINARY_DIR})
add_test(NAME faults.outputs COMMAND Python3::Interpreter ${CMAKE_CURRENT_LIST_DIR}/outputs.py --build ${CMAKE_BINARY_DIR})
set_tests_properties(faults.sweep faults.outputs PROPERTIES TIMEOUT 900 SKIP_RETURN_CODE 77)
