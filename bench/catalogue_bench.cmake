add_executable(vlxslt_catalogue_bench ${CMAKE_CURRENT_LIST_DIR}/catalogue_bench.cpp
                                      ${CMAKE_SOURCE_DIR}/tests/unit/fake_host.cpp
                                      ${CMAKE_SOURCE_DIR}/tests/unit/folder.cpp)
target_link_libraries(vlxslt_catalogue_bench PRIVATE vlxslt_catalogue)
