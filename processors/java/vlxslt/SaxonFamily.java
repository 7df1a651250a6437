package vlxslt;

import java.io.OutputStream;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Proxy;
import java.net.URI;
import java.nio.file.Path;
import java.util.Map;
import java.util.function.Consumer;
import java.util.function.Function;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerFactory;

/** Saxon 9.9 and later, through its s9api; the classes are those of whichever jar the user named. */
final class SaxonFamily implements Family {
  private static final String API = "net.sf.saxon.s9api.";

  private final TransformerFactory factory;
  private final ClassLoader loader;

  SaxonFamily(TransformerFactory factory) {
    this.factory = factory;
    this.loader = factory.getClass().getClassLoader();
  }

  static boolean isOne(TransformerFactory factory) {
    return findMethod(factory.getClass(), "getProcessor") != null
        && findMethod(factory.getClass(), "getConfiguration") != null;
  }

  @Override
  public void connect(Transformer transformer, String outputAddress, Outputs outputs, Diagnostics diagnostics)
      throws ReflectiveOperationException {
    transformer.setErrorListener(diagnostics);
    Object inner = call(transformer, "getUnderlyingXsltTransformer");
    call(inner, "setBaseOutputURI", outputAddress);
    connectMessages(inner, diagnostics);
    Function<URI, Object> destinations = uri -> openResult(uri, outputs);
    call(inner, "setResultDocumentHandler", destinations);
  }

  // Before 11 a listener of its own interface, since then a plain consumer.
  private void connectMessages(Object inner, Diagnostics diagnostics) throws ReflectiveOperationException {
    Method setHandler = findMethod(inner.getClass(), "setMessageHandler");
    if (setHandler != null) {
      Consumer<Object> handler = message -> {
        try {
          diagnostics.message(textOf(call(message, "getContent")));
        } catch (ReflectiveOperationException e) {
          throw new IllegalStateException(e);
        }
      };
      setHandler.invoke(inner, handler);
      return;
    }
    Class<?> listenerType = Class.forName(API + "MessageListener2", true, loader);
    Object listener = Proxy.newProxyInstance(loader, new Class<?>[] {listenerType}, (proxy, method, arguments) -> {
      if (method.getName().equals("message"))
        diagnostics.message(textOf(arguments[0]));
      return null;
    });
    inner.getClass().getMethod("setMessageListener", listenerType).invoke(inner, listener);
  }

  // Mark-up is shown as mark-up, text as text and not as it would be escaped.
  private static String textOf(Object node) throws ReflectiveOperationException {
    String markup = node.toString();
    return markup.indexOf('<') >= 0 ? markup : (String) call(node, "getStringValue");
  }

  private Object openResult(URI uri, Outputs outputs) {
    Path file = Addresses.fileOf(uri.toString());
    OutputStream output = file != null ? outputs.add(file)
        : outputs.refuse(new OutputFile.WriteFailure("A result can only be written to a file, not to " + uri, null));
    try {
      Object serializer = processor().getClass().getMethod("newSerializer", OutputStream.class)
          .invoke(processor(), output);
      // A book of many results must not hold them all open until its end.
      Class<?> action = Class.forName(API + "Action", true, loader);
      Object close = Proxy.newProxyInstance(loader, new Class<?>[] {action}, (proxy, method, arguments) -> {
        output.close();
        return null;
      });
      serializer.getClass().getMethod("onClose", action).invoke(serializer, close);
      return serializer;
    } catch (ReflectiveOperationException e) {
      throw new IllegalStateException(e);
    }
  }

  @Override
  public void setParameters(Transformer transformer, Map<String, String> expressions)
      throws ReflectiveOperationException {
    if (expressions.isEmpty())
      return;
    Object inner = call(transformer, "getUnderlyingXsltTransformer");
    Object compiler = call(processor(), "newXPathCompiler");
    Class<?> nameType = Class.forName(API + "QName", true, loader);
    Class<?> valueType = Class.forName(API + "XdmValue", true, loader);
    Class<?> itemType = Class.forName(API + "XdmItem", true, loader);
    Method evaluate = compiler.getClass().getMethod("evaluate", String.class, itemType);
    Method set = inner.getClass().getMethod("setParameter", nameType, valueType);
    for (Map.Entry<String, String> parameter : expressions.entrySet())
      set.invoke(inner, nameOf(nameType, parameter.getKey()), evaluate(evaluate, compiler, parameter.getValue()));
  }

  private Object evaluate(Method evaluate, Object compiler, String expression) throws ReflectiveOperationException {
    try {
      return evaluate.invoke(compiler, expression, null);
    } catch (InvocationTargetException e) {
      Class<?> atomic = Class.forName(API + "XdmAtomicValue", true, loader);
      return atomic.getConstructor(String.class).newInstance(expression);
    }
  }

  private static Object nameOf(Class<?> nameType, String name) throws ReflectiveOperationException {
    String factoryMethod = name.startsWith("{") ? "fromClarkName" : "fromEQName";
    return nameType.getMethod(factoryMethod, String.class).invoke(null, name);
  }

  @Override
  public String version() {
    try {
      return String.valueOf(call(processor(), "getSaxonProductVersion"));
    } catch (ReflectiveOperationException e) {
      return null;
    }
  }

  private Object processor() throws ReflectiveOperationException {
    return call(factory, "getProcessor");
  }

  private static Object call(Object target, String name, Object... arguments) throws ReflectiveOperationException {
    Method method = findMethod(target.getClass(), name);
    if (method == null)
      throw new NoSuchMethodException(target.getClass().getName() + "." + name);
    return method.invoke(target, arguments);
  }

  private static Method findMethod(Class<?> type, String name) {
    for (Method method : type.getMethods()) {
      boolean fits = name.startsWith("set") ? method.getParameterCount() == 1 : method.getParameterCount() == 0;
      if (method.getName().equals(name) && fits && java.lang.reflect.Modifier.isPublic(method.getDeclaringClass().getModifiers()))
        return method;
    }
    return null;
  }
}
