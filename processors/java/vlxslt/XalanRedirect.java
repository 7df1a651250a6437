package vlxslt;

import java.io.OutputStream;
import java.lang.reflect.Constructor;
import java.nio.file.Path;
import java.util.HashMap;
import java.util.Map;
import java.util.Set;
import javax.xml.transform.Result;
import javax.xml.transform.stream.StreamResult;
import org.xml.sax.ContentHandler;

/**
 * Xalan's extension elements for further results, which go to the job's outputs. Xalan makes an object of this class for
 * a transformation, and calls the method that is named like the element.
 */
public final class XalanRedirect {
  /** One result under way. */
  private record Target(OutputStream stream, ContentHandler handler) {}

  private static final ThreadLocal<Outputs> OUTPUTS = new ThreadLocal<>();

  private final Map<Path, Target> opened = new HashMap<>();

  /** Where results go that this thread writes; null when it writes no more. */
  static void setOutputs(Outputs outputs) {
    OUTPUTS.set(outputs);
  }

  public void open(Object context, Object element) throws Exception {
    Path file = fileOf(context, element);
    if (!opened.containsKey(file))
      opened.put(file, start(context, element, file));
  }

  public void write(Object context, Object element) throws Exception {
    Path file = fileOf(context, element);
    Target lasting = opened.get(file);
    Target target = lasting == null ? start(context, element, file) : lasting;
    Reflection.call(transformerOf(context), "executeChildTemplates", element, Reflection.call(context, "getContextNode"),
        Reflection.call(context, "getMode"), target.handler);
    if (lasting == null)
      finish(target);
  }

  public void close(Object context, Object element) throws Exception {
    Target target = opened.remove(fileOf(context, element));
    if (target != null)
      finish(target);
  }

  private static Target start(Object context, Object element, Path file) throws Exception {
    Object transformer = transformerOf(context);
    OutputStream stream = isOn(attribute(context, element, "append")) ? OUTPUTS.get().append(file)
                                                                     : OUTPUTS.get().add(file);
    Result result = new StreamResult(stream);
    ContentHandler handler = (ContentHandler) Reflection.call(
        transformer, "createSerializationHandler", result, Reflection.call(transformer, "getOutputFormat"));
    handler.startDocument();
    return new Target(stream, handler);
  }

  private static void finish(Target target) throws Exception {
    target.handler.endDocument();
    target.stream.close();
  }

  private static boolean isOn(String value) {
    return value != null && Set.of("yes", "true").contains(value);
  }

  private static Object transformerOf(Object context) throws Exception {
    return Reflection.call(context, "getTransformer");
  }

  private static String attribute(Object context, Object element, String name) throws Exception {
    return (String) Reflection.call(
        element, "getAttribute", name, Reflection.call(context, "getContextNode"), transformerOf(context));
  }

  // What `select` evaluates to, or else what `file` says; relative to the principal result.
  private static Path fileOf(Object context, Object element) throws Exception {
    String select = attribute(context, element, "select");
    String name = select == null ? "" : evaluate(context, select);
    if (name.isEmpty())
      name = attribute(context, element, "file");
    if (name == null || name.isEmpty())
      throw new IllegalArgumentException(Text.OUTPUT_NOT_A_FILE.with("\"\""));
    return OUTPUTS.get().locate(name);
  }

  private static String evaluate(Object context, String expression) throws Exception {
    Object xpaths = Reflection.call(transformerOf(context), "getXPathContext");
    Object prefixes = Reflection.call(xpaths, "getNamespaceContext");
    Class<?> type = Class.forName("org.apache.xpath.XPath", true, xpaths.getClass().getClassLoader());
    for (Constructor<?> constructor : type.getConstructors())
      if (constructor.getParameterCount() == 4 && constructor.getParameterTypes()[3] == int.class) {
        Object xpath = constructor.newInstance(
            expression, Reflection.call(xpaths, "getSAXLocator"), prefixes, 0);
        Object node = Reflection.call(context, "getContextNode");
        return (String) Reflection.call(Reflection.call(
            xpath, type.getMethod("execute", xpaths.getClass(), org.w3c.dom.Node.class, prefixType(type)), xpaths, node,
            prefixes), "str");
      }
    throw new NoSuchMethodException(type.getName());
  }

  private static Class<?> prefixType(Class<?> type) throws ClassNotFoundException {
    return Class.forName("org.apache.xml.utils.PrefixResolver", true, type.getClassLoader());
  }
}
