package vlxslt;

import java.lang.reflect.Method;
import java.util.concurrent.atomic.AtomicLong;
import java.util.function.LongSupplier;

/**
 * The numbers that Saxon gives to trees, which show in generate-id(): counted for each job by itself, so that a result
 * depends neither on the jobs before it nor on those at the same time.
 */
final class DocumentNumbers {
  private static final String ALLOCATOR = "vlxslt.SaxonDocumentNumbers";
  private static final long FIRST_OF_OTHERS = 1 << 28;

  private static final ThreadLocal<long[]> OF_JOB = new ThreadLocal<>();
  private static final AtomicLong OTHERS = new AtomicLong(FIRST_OF_OTHERS); // of stylesheets

  private DocumentNumbers() {}

  /** The thread begins to transform. */
  static void startJob() {
    OF_JOB.set(new long[1]);
  }

  /** The trees that follow on this thread are of no job. */
  static void endJob() {
    OF_JOB.remove();
  }

  private static long next() {
    long[] count = OF_JOB.get();
    return count == null ? OTHERS.incrementAndGet() : ++count[0];
  }

  /** Has a configuration of Saxon's take its numbers here; false when it cannot. `loader` is that of Saxon. */
  static boolean install(Object configuration, ClassLoader loader) {
    try {
      Object allocator = typeFor(loader).getDeclaredConstructor(LongSupplier.class).newInstance((LongSupplier) DocumentNumbers::next);
      Method setter = Reflection.method(configuration.getClass(), "setDocumentNumberAllocator", 1);
      Reflection.call(configuration, setter, allocator);
      return true;
    } catch (Exception | LinkageError e) {
      return false;
    }
  }

  // Saxon may lie on a path that our own loader does not see.
  private static Class<?> typeFor(ClassLoader saxon) throws Exception {
    ClassLoader own = DocumentNumbers.class.getClassLoader();
    return Class.forName(ALLOCATOR, true, saxon == own ? own : new Beside(saxon));
  }

  /** Defines the allocator for a Saxon that another loader has. */
  private static final class Beside extends ClassLoader {
    Beside(ClassLoader saxon) {
      super(saxon);
    }

    @Override
    protected Class<?> loadClass(String name, boolean resolve) throws ClassNotFoundException {
      if (!name.equals(ALLOCATOR))
        return super.loadClass(name, resolve);
      Class<?> known = findLoadedClass(name);
      return known != null ? known : define(name);
    }

    private Class<?> define(String name) throws ClassNotFoundException {
      try (var stream = DocumentNumbers.class.getResourceAsStream("SaxonDocumentNumbers.class")) {
        byte[] bytes = stream.readAllBytes();
        return defineClass(name, bytes, 0, bytes.length);
      } catch (java.io.IOException e) {
        throw new ClassNotFoundException(name, e);
      }
    }
  }
}
