package vlxslt;

import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.net.URI;
import javax.xml.transform.Source;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.URIResolver;
import javax.xml.transform.stream.StreamSource;
import org.xml.sax.EntityResolver;
import org.xml.sax.InputSource;

/**
 * Closes the ways on which Saxon reads by itself, or has them lead through the gate: what a stylesheet reads by any
 * function comes from the job's documents. Calls of foreign code are off unless they are allowed.
 */
final class SaxonGate {
  private static final String FEATURE = "http://saxon.sf.net/feature/";
  private static final String LOCAL_PROTOCOLS = "file,jar,classpath"; // the last: Saxon's copies of well-known DTDs

  private final Object configuration;
  private final Class<?> exceptionType;

  private SaxonGate(TransformerFactory factory) throws Exception {
    configuration = Reflection.call(factory, "getConfiguration");
    exceptionType = Class.forName("net.sf.saxon.trans.XPathException", true, factory.getClass().getClassLoader());
  }

  static void close(TransformerFactory factory, boolean allowsExtensions) throws Exception {
    for (String reader : new String[] {"sourceParserClass", "styleParserClass"})
      factory.setAttribute(FEATURE + reader, OwnReader.class.getName());
    SaxonGate gate = new SaxonGate(factory);
    // The free edition calls no code; it would only refuse further results.
    if (!"HE".equals(Reflection.find(gate.configuration, "getEditionCode")))
      factory.setAttribute(FEATURE + "allow-external-functions", allowsExtensions);
    gate.takeTexts();
    gate.takeCollections();
    gate.takeOthers(); // before the protocols, which would keep Saxon from its own copies too
    allowProtocols(factory);
  }

  private static void allowProtocols(TransformerFactory factory) {
    try {
      factory.setAttribute(FEATURE + "allowedProtocols",
          AddressGate.trustsAnyHost() ? LOCAL_PROTOCOLS + ",http,https" : LOCAL_PROTOCOLS);
    } catch (IllegalArgumentException e) {
      // Saxon 9 does not know it yet; the gate closes the same ways.
    }
  }

  private interface Answer {
    Object to(Object[] arguments) throws Exception;
  }

  // Puts `answer` in the place of the configuration's own way to answer.
  private void replace(String setterName, String method, Answer answer) throws Exception {
    Method setter = Reflection.method(configuration.getClass(), setterName, 1);
    Reflection.call(configuration, setter, Reflection.implement(setter.getParameterTypes()[0], (called, arguments) -> {
      if (!called.equals(method))
        throw new UnsupportedOperationException(called);
      return answer.to(arguments);
    }));
  }

  private void takeTexts() throws Exception {
    Object own = Reflection.call(configuration, "getUnparsedTextURIResolver");
    replace("setUnparsedTextURIResolver", "resolve", arguments -> {
      URI admitted = URI.create(admit(arguments[0].toString(), "FOUT1170"));
      return Reflection.call(own, "resolve", admitted, arguments[1], arguments[2]);
    });
  }

  private void takeCollections() throws Exception {
    Object own = Reflection.call(configuration, "getCollectionFinder");
    replace("setCollectionFinder", "findCollection", arguments -> {
      if (arguments[1] != null)
        arguments[1] = admitFolder(arguments[1].toString());
      return Reflection.call(own, "findCollection", arguments);
    });
  }

  // What is asked of the configuration itself, and not of a transformation.
  private void takeOthers() throws Exception {
    if (Reflection.method(configuration.getClass(), "setResourceResolver", 1) == null) {
      URIResolver resolver = (href, base) -> Documents.ofThread().unaskedSource(href, base);
      Reflection.call(configuration, "setURIResolver", resolver);
      return;
    }
    Object own = Reflection.call(configuration, "getResourceResolver");
    replace("setResourceResolver", "resolve", arguments -> resolve(own, arguments[0]));
  }

  private Object resolve(Object own, Object request) throws Exception {
    String nature = text(request, "nature");
    // Those that Saxon holds copies of; what it would open is left to the parser.
    if (text(request, "DTD_NATURE").equals(nature) || text(request, "EXTERNAL_ENTITY_NATURE").equals(nature))
      return own instanceof EntityResolver copies ? copyOf(copies, request) : null;
    String address = text(request, "uri");
    if (address == null)
      throw failure(Text.ADDRESS_UNUSABLE.with(text(request, "relativeUri")), "FODC0002");
    try {
      return text(request, "TEXT_NATURE").equals(nature) || text(request, "BINARY_NATURE").equals(nature)
          ? streamSource(address) : Documents.ofThread().unaskedSource(address, text(request, "baseUri"));
    } catch (javax.xml.transform.TransformerException e) {
      throw failure(e.getMessage(), "FODC0002");
    }
  }

  private static Source copyOf(EntityResolver copies, Object request) throws Exception {
    InputSource copy = copies.resolveEntity(text(request, "publicId"), text(request, "uri"));
    return copy == null || copy.getByteStream() == null ? null
                                                        : new StreamSource(copy.getByteStream(), copy.getSystemId());
  }

  private Source streamSource(String address) throws Exception {
    try {
      InputSource opened = AddressGate.open(Documents.ofThread().admitUnasked(address), null);
      return new StreamSource(opened.getByteStream(), opened.getSystemId());
    } catch (java.io.IOException e) {
      throw failure(Failures.textOf(e), "FODC0002");
    }
  }

  // The query of a collection says what of the folder is meant.
  private String admitFolder(String address) throws Exception {
    int query = address.indexOf('?');
    String folder = query < 0 ? address : address.substring(0, query);
    return admit(folder, "FODC0002") + address.substring(folder.length());
  }

  private String admit(String address, String code) throws Exception {
    try {
      return Documents.ofThread().admitUnasked(address);
    } catch (AddressGate.ReadFailure e) {
      throw failure(e.getMessage(), code);
    }
  }

  private Exception failure(String message, String code) throws Exception {
    return (Exception) exceptionType.getConstructor(String.class, String.class).newInstance(message, code);
  }

  private static String text(Object request, String name) throws Exception {
    Field field = request.getClass().getField(name);
    return (String) field.get(request);
  }
}
