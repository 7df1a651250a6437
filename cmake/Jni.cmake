# The compiler for Java and the header of the virtual machine, both of the same JDK. CMake's own FindJNI insists on
# libraries that a headless JDK does not have, and that nobody here links.
find_package(Java 17 REQUIRED COMPONENTS Development)
file(REAL_PATH ${Java_JAVAC_EXECUTABLE} javac)
cmake_path(GET javac PARENT_PATH jdk)
cmake_path(GET jdk PARENT_PATH jdk)
find_path(JAVA_INCLUDE_PATH jni.h HINTS ${jdk}/include REQUIRED)
find_path(JAVA_INCLUDE_PATH2 jni_md.h HINTS ${jdk}/include/linux ${jdk}/include/win32 ${jdk}/include/darwin REQUIRED)
