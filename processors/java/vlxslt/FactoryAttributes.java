package vlxslt;

import java.util.Arrays;
import java.util.List;
import javax.xml.transform.TransformerConfigurationException;
import javax.xml.transform.TransformerFactory;

/** How a factory is set up before its first use: name, type and value alternately, as the host's configuration says. */
record FactoryAttributes(List<String> fields) {
  private static final String EXTENSIONS = "vlxslt:extensions"; // no attribute of any factory, but a setting of ours

  /** Null for none. */
  static FactoryAttributes of(String[] fields) {
    return new FactoryAttributes(fields == null ? List.of() : List.copyOf(Arrays.asList(fields)));
  }

  /** Throws an exception that names the attribute which the factory does not take. */
  void apply(TransformerFactory factory) {
    for (int i = 0; i + 2 < fields.size(); i += 3)
      if (!fields.get(i).equals(EXTENSIONS))
        set(factory, fields.get(i), fields.get(i + 1), fields.get(i + 2));
  }

  /** Whether none of them can name code of the user's. */
  boolean areValues() {
    for (int i = 0; i + 2 < fields.size(); i += 3)
      if (!List.of("boolean", "integer", "number").contains(fields.get(i + 1)))
        return false;
    return true;
  }

  /** Whether stylesheets that this factory's processor applies may call code. */
  boolean allowExtensions() {
    for (int i = 0; i + 2 < fields.size(); i += 3)
      if (fields.get(i).equals(EXTENSIONS))
        return Boolean.parseBoolean(fields.get(i + 2));
    return false;
  }

  private static Object valueOf(String type, String text) {
    return switch (type) {
      case "boolean" -> Boolean.valueOf(text);
      case "number" -> Double.valueOf(text);
      // What takes a number mostly takes a small one.
      case "integer" -> {
        long number = Long.parseLong(text);
        yield (int) number == number ? (Object) (int) number : (Object) number;
      }
      default -> text;
    };
  }

  private static void set(TransformerFactory factory, String name, String type, String text) {
    try {
      if (name.equals(SaxonAdapter.INITIALISER) && SaxonAdapter.isFor(factory))
        SaxonAdapter.initialise(factory, text);
      else
        factory.setAttribute(name, valueOf(type, text));
    } catch (Exception | LinkageError e) {
      if (!(type.equals("boolean") && isFeature(factory, name, Boolean.parseBoolean(text))))
        throw new IllegalArgumentException(Text.ATTRIBUTE_REFUSED.with(name, text, Failures.textOf(e)), e);
    }
  }

  // Secure processing, for instance, is a feature everywhere and an attribute nowhere.
  private static boolean isFeature(TransformerFactory factory, String name, boolean value) {
    try {
      factory.setFeature(name, value);
      return true;
    } catch (TransformerConfigurationException | RuntimeException e) {
      return false;
    }
  }
}
