package vlxslt;

import java.lang.reflect.Constructor;
import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.util.ArrayList;
import java.util.List;
import java.util.Properties;
import java.util.Set;
import java.util.TreeSet;
import java.util.Vector;
import javax.xml.transform.Templates;
import javax.xml.transform.TransformerConfigurationException;

/**
 * Leaves Xalan's stylesheets the extensions that cannot do harm. Xalan takes every other namespace for that of a Java
 * class or of a script, and its own switch would turn off all of them.
 */
final class XalanGate {
  private static final String REDIRECT = "http://xml.apache.org/xalan/redirect";
  private static final Set<String> HARMLESS = Set.of("http://xml.apache.org/xalan", "http://xml.apache.org/xslt",
      "http://exslt.org/common", "http://exslt.org/math", "http://exslt.org/sets", "http://exslt.org/strings",
      "http://exslt.org/dates-and-times", "http://exslt.org/dynamic", "http://exslt.org/functions");
  private static final String SERIALIZER = "org.apache.xml.serializer.";

  private XalanGate() {}

  static boolean isFor(Object factory) {
    return factory.getClass().getName().startsWith("org.apache.xalan.processor.");
  }

  /** Takes from a stylesheet what it may not call; returns the namespaces of what was taken. */
  static Set<String> close(Templates stylesheet, boolean allowsExtensions) throws Exception {
    if (!allowsExtensions)
      checkOutputProperties(stylesheet.getOutputProperties());
    Set<String> taken = new TreeSet<>();
    if (!(Reflection.call(stylesheet, "getExtensions") instanceof Vector<?> extensions))
      return taken;
    List<Object> kept = new ArrayList<>();
    // What a stylesheet declares under the name of a harmless namespace gives way to Xalan's own.
    Object harmless = Reflection.call(stylesheet, "getExtensionNamespacesManager").getClass().getConstructor().newInstance();
    Method register = harmless.getClass().getMethod("registerExtension", String.class);
    for (Object extension : extensions) {
      String namespace = String.valueOf(Reflection.call(extension, "getNamespace"));
      if (namespace.equals(REDIRECT))
        kept.add(ownRedirect(extension.getClass()));
      else if (HARMLESS.contains(namespace))
        Reflection.call(harmless, register, namespace);
      else if (allowsExtensions || isOfStylesheet(extension))
        kept.add(extension);
      else
        taken.add(namespace);
    }
    kept.addAll((Vector<?>) Reflection.call(harmless, "getExtensions"));
    replace(extensions, kept);
    return taken;
  }

  // A function that the stylesheet itself defines.
  private static boolean isOfStylesheet(Object extension) throws Exception {
    Field handler = extension.getClass().getDeclaredField("m_handlerClass");
    handler.setAccessible(true);
    return "org.apache.xalan.extensions.ExtensionHandlerExsltFunction".equals(handler.get(extension));
  }

  // One names a class that writes the output, the other a file that is read for it.
  private static void checkOutputProperties(Properties properties) throws TransformerConfigurationException {
    for (String name : properties.stringPropertyNames()) {
      String value = properties.getProperty(name).replace('/', '.');
      if ((name.endsWith("}content-handler") || name.endsWith("}entities")) && !value.startsWith(SERIALIZER))
        throw new TransformerConfigurationException(Text.EXTENSION_REFUSED.with(value));
    }
  }

  @SuppressWarnings("unchecked")
  private static void replace(Vector<?> extensions, List<Object> kept) {
    extensions.clear();
    ((Vector<Object>) extensions).addAll(kept);
  }

  private static Object ownRedirect(Class<?> type) throws Exception {
    Constructor<?> constructor = type.getConstructor(String.class, String.class, Object[].class);
    return constructor.newInstance(REDIRECT, "org.apache.xalan.extensions.ExtensionHandlerJavaClass",
        new Object[] {REDIRECT, "javaclass", XalanRedirect.class.getName()});
  }
}
