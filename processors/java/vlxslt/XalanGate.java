package vlxslt;

import java.lang.reflect.Constructor;
import java.util.Set;
import java.util.Vector;
import javax.xml.transform.Templates;

/**
 * Leaves Xalan's stylesheets the extensions that cannot do harm. Xalan takes every other namespace for that of a Java
 * class or of a script, and its own switch would turn off all of them.
 */
final class XalanGate {
  private static final String REDIRECT = "http://xml.apache.org/xalan/redirect";
  private static final Set<String> HARMLESS = Set.of("http://xml.apache.org/xalan", "http://xml.apache.org/xslt",
      "http://exslt.org/common", "http://exslt.org/math", "http://exslt.org/sets", "http://exslt.org/strings",
      "http://exslt.org/dates-and-times", "http://exslt.org/dynamic", "http://exslt.org/functions");

  private XalanGate() {}

  static boolean isFor(Object factory) {
    return factory.getClass().getName().startsWith("org.apache.xalan.processor.");
  }

  /** Takes from a stylesheet, which was compiled under secure processing unless all is allowed, what it may not call. */
  static void close(Templates stylesheet, boolean allowsExtensions) throws Exception {
    if (!(Reflection.call(stylesheet, "getExtensions") instanceof Vector<?> extensions))
      return;
    if (!allowsExtensions)
      extensions.removeIf(extension -> !HARMLESS.contains(namespaceOf(extension)) && !isRedirect(extension));
    for (int i = 0; i < extensions.size(); i++)
      if (isRedirect(extensions.get(i)))
        set(extensions, i, ownRedirect(extensions.get(i).getClass()));
    // Those that are left would be off too.
    Reflection.call(stylesheet, "setSecureProcessing", false);
  }

  private static boolean isRedirect(Object extension) {
    return REDIRECT.equals(namespaceOf(extension));
  }

  private static String namespaceOf(Object extension) {
    return String.valueOf(Reflection.find(extension, "getNamespace"));
  }

  @SuppressWarnings("unchecked")
  private static void set(Vector<?> extensions, int index, Object extension) {
    ((Vector<Object>) extensions).set(index, extension);
  }

  private static Object ownRedirect(Class<?> type) throws Exception {
    Constructor<?> constructor = type.getConstructor(String.class, String.class, Object[].class);
    return constructor.newInstance(REDIRECT, "org.apache.xalan.extensions.ExtensionHandlerJavaClass",
        new Object[] {REDIRECT, "javaclass", XalanRedirect.class.getName()});
  }
}
