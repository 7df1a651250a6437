package vlxslt;

import java.lang.reflect.Method;
import java.util.function.Consumer;

/** What xsl:message says in Saxon. A stylesheet may say a million things, so methods are looked up once. */
final class SaxonMessages {
  private static final String API = "net.sf.saxon.s9api.";

  private final Diagnostics diagnostics;
  private final Method kindOf;
  private final Method childrenOf;
  private final Method valueOf;
  private Method contentOf; // of a message

  private SaxonMessages(Diagnostics diagnostics, ClassLoader loader) throws Exception {
    this.diagnostics = diagnostics;
    Class<?> node = Class.forName(API + "XdmNode", true, loader);
    kindOf = node.getMethod("getNodeKind");
    childrenOf = node.getMethod("children");
    valueOf = node.getMethod("getStringValue");
  }

  /** Before 11 a listener of its own interface, since then a plain consumer. */
  static void connect(Object transformer, Diagnostics diagnostics, ClassLoader loader) throws Exception {
    SaxonMessages messages = new SaxonMessages(diagnostics, loader);
    Method setHandler = Reflection.method(transformer.getClass(), "setMessageHandler", 1);
    if (setHandler != null) {
      messages.contentOf = Class.forName(API + "Message", true, loader).getMethod("getContent");
      Consumer<Object> handler = messages::takeMessage;
      Reflection.call(transformer, setHandler, handler);
      return;
    }
    Class<?> listenerType = Class.forName(API + "MessageListener2", true, loader);
    Object listener = Reflection.implement(listenerType, (method, arguments) -> {
      if (method.equals("message"))
        messages.take(arguments[0]);
      return null;
    });
    Reflection.call(transformer, transformer.getClass().getMethod("setMessageListener", listenerType), listener);
  }

  private void takeMessage(Object message) {
    try {
      take(Reflection.call(message, contentOf));
    } catch (Exception e) {
      throw new IllegalStateException(e);
    }
  }

  // Mark-up is shown as mark-up, text as text and not as it would be escaped.
  private void take(Object node) throws Exception {
    diagnostics.message(hasMarkup(node) ? String.valueOf(node) : (String) Reflection.call(node, valueOf));
  }

  private boolean hasMarkup(Object node) throws Exception {
    switch (kind(node)) {
      case "DOCUMENT":
        for (Object child : (Iterable<?>) Reflection.call(node, childrenOf))
          if (!kind(child).equals("TEXT"))
            return true;
        return false;
      case "ELEMENT", "COMMENT", "PROCESSING_INSTRUCTION":
        return true;
      default:
        return false;
    }
  }

  private String kind(Object node) throws Exception {
    return ((Enum<?>) Reflection.call(node, kindOf)).name();
  }
}
