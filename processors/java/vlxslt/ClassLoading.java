package vlxslt;

import java.nio.file.Files;
import java.nio.file.Path;

/** A program that loads the classes of a list and ends; run to have the virtual machine archive them. */
final class ClassLoading {
  private ClassLoading() {}

  public static void main(String[] arguments) throws Exception {
    ClassLoader loader = ClassLoading.class.getClassLoader();
    for (String name : Files.readAllLines(Path.of(arguments[0]))) {
      try {
        Class.forName(name.replace('/', '.'), false, loader);
      } catch (ClassNotFoundException | LinkageError e) {
        // Made at run time, or of a loader that is not here: nothing to archive.
      }
    }
  }
}
