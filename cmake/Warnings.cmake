# Linked by the project's own targets only; what comes from outside is not ours to warn about.
add_library(vlxslt_options INTERFACE)
target_include_directories(vlxslt_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(vlxslt_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
                                                -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Wextra-semi)
# GCC 12 sees overlapping copies in std::string that are not there, once it inlines enough.
target_compile_options(vlxslt_options INTERFACE $<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-Wno-restrict>)
if(VLXSLT_WARNINGS_AS_ERRORS)
  target_compile_options(vlxslt_options INTERFACE -Werror)
endif()
if(VLXSLT_SANITIZE)
  target_compile_options(vlxslt_options INTERFACE -fsanitize=${VLXSLT_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(vlxslt_options INTERFACE -fsanitize=${VLXSLT_SANITIZE})
endif()
if(VLXSLT_FUZZERS)
  target_compile_options(vlxslt_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                  -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vlxslt_options INTERFACE -fsanitize=address,undefined)
endif()
