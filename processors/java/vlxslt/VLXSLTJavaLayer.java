package vlxslt;

import java.io.IOException;
import java.net.MalformedURLException;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.file.Files;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.security.CodeSource;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import javax.xml.transform.Templates;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.TransformerFactoryConfigurationError;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import javax.xml.transform.stream.StreamResult;
import org.xml.sax.SAXParseException;

/** The one object that the native side drives. Results are 1 for success; why not is told to the handler. */
public final class VLXSLTJavaLayer {
  /** Stands for "leave the stylesheet's own default" where a value is expected. */
  private static final String NO_VALUE = "<no value>";

  private record Processor(TransformerFactory factory, Family family) {}

  private static final VLXSLTJavaLayer instance = new VLXSLTJavaLayer();

  private final Map<String, Processor> processors = new HashMap<>();
  private final Stylesheets stylesheets = new Stylesheets();
  private IVLXSLTJavaHandler handler;
  private Documents documents;
  private Processor current;
  private String currentClass;

  private VLXSLTJavaLayer() {}

  public static VLXSLTJavaLayer GetInstance() {
    return instance;
  }

  public void SetVLXSLTJavaHandler(IVLXSLTJavaHandler javaHandler) {
    handler = javaHandler;
    documents = new Documents(javaHandler);
  }

  /** The folders of the class path, separated by ";"; its jars are on Java's own. Processors may lie in either. */
  public void SetClassPath(String classPath) {
    List<URL> entries = new ArrayList<>();
    for (String entry : classPath.split(";")) {
      try {
        if (!entry.isEmpty())
          entries.add(Path.of(entry).toUri().toURL());
      } catch (MalformedURLException | InvalidPathException e) {
        handler.Message("The class path has an entry that cannot be used: " + entry);
      }
    }
    ClassLoader loader = new URLClassLoader(entries.toArray(new URL[0]), VLXSLTJavaLayer.class.getClassLoader());
    Thread.currentThread().setContextClassLoader(loader);
  }

  /** Selects the processor by the class of its factory. */
  public int SetTransformer(String tClass) {
    current = null;
    if (tClass == null || tClass.isEmpty())
      return 0;
    try {
      current = find(tClass);
      currentClass = tClass;
      documents.startRun();
      stylesheets.startRun();
      return 1;
    } catch (Throwable e) {
      handler.Message(whyNot(tClass, e));
      return 0;
    }
  }

  /** The factory's class, its version, where it came from, and what is wrong with it; the last empty if nothing is. */
  public String[] ProbeProcessor(String tClass) {
    try {
      Processor processor = find(tClass);
      TransformerFactory factory = processor.factory();
      CodeSource source = factory.getClass().getProtectionDomain().getCodeSource();
      String location = source == null || source.getLocation() == null ? System.getProperty("java.home")
                                                                       : Addresses.shown(source.getLocation().toString());
      String version = processor.family().version();
      return new String[] {factory.getClass().getName(), version == null ? "" : version, location, ""};
    } catch (Throwable e) {
      return new String[] {"", "", "", whyNot(tClass, e)};
    }
  }

  /** Runs one transformation to its end. */
  public int TransformXMLFile(String xmlFilePath, String xslFilePath, String outputFilePath,
      String[] stylesheetParams) {
    Diagnostics diagnostics = new Diagnostics(handler);
    try {
      if (current == null)
        throw new IllegalStateException("No processor is selected.");
      transform(xmlFilePath, xslFilePath == null ? "" : xslFilePath, outputFilePath, pairsOf(stylesheetParams),
          diagnostics);
      return 1;
    } catch (Throwable e) {
      if (e instanceof OutOfMemoryError)
        forgetEverything();
      diagnostics.end(e);
      return 0;
    }
  }

  private void transform(String xml, String xsl, String output, Map<String, String> parameters,
      Diagnostics diagnostics) throws Exception {
    Path target = Path.of(output);
    String input = Addresses.ofPath(xml);
    diagnostics.setSubject(input);
    if (Files.exists(target) && Files.exists(Path.of(xml)) && Files.isSameFile(target, Path.of(xml)))
      throw new IOException("The output is the input itself: " + output);
    Templates templates = compile(input, xsl, diagnostics);
    try (Outputs outputs = new Outputs(target)) {
      String address = Addresses.ofPath(output);
      diagnostics.setSubject(input);
      Transformer transformer = templates.newTransformer();
      transformer.setURIResolver(documents.uriResolver(diagnostics, read -> {}));
      current.family().connect(transformer, address, outputs, diagnostics);
      current.family().setParameters(transformer, parameters);
      StreamResult result = new StreamResult(outputs.principal());
      result.setSystemId(address);
      transformer.transform(documents.source(input, diagnostics, read -> {}), result);
      diagnostics.failOn(Diagnostics.Level.FATAL);
      outputs.commit();
    }
  }

  private Templates compile(String input, String xsl, Diagnostics diagnostics) throws Exception {
    String address;
    if (!xsl.isEmpty()) {
      address = Addresses.ofPath(xsl);
    } else {
      String href = StylesheetInstruction.find(documents.source(input, diagnostics, read -> {}));
      if (href == null)
        throw new SAXParseException(
            "No stylesheet: the input has no xml-stylesheet processing instruction for XSLT.", null, input, -1, -1);
      if (href.startsWith("#"))
        return compileEmbedded(input, diagnostics);
      address = documents.resolution().resolve(null, null, input, href.replace('\\', '/'));
    }
    return stylesheets.compile(currentClass + '\n' + address, address, current.factory(), documents, diagnostics);
  }

  // A stylesheet inside its input is good for that input only; not kept.
  private Templates compileEmbedded(String input, Diagnostics diagnostics) throws Exception {
    TransformerFactory factory = current.factory();
    factory.setErrorListener(diagnostics);
    URIResolver others = documents.uriResolver(diagnostics, read -> {});
    // Xalan asks for the input itself, and finds the part in it by the address.
    factory.setURIResolver((href, base) -> href.startsWith("#") ? documents.source(input + href, diagnostics, read -> {})
                                                                : others.resolve(href, base));
    SAXSource source = documents.source(input, diagnostics, read -> {});
    return factory.newTemplates(factory.getAssociatedStylesheet(source, null, null, null));
  }

  private Processor find(String tClass) {
    Processor processor = processors.get(tClass);
    if (processor == null) {
      TransformerFactory factory = TransformerFactory.newInstance(tClass, null);
      processor = new Processor(factory, Family.of(factory));
      processors.put(tClass, processor);
    }
    return processor;
  }

  private static Map<String, String> pairsOf(String[] stylesheetParams) {
    Map<String, String> pairs = new LinkedHashMap<>();
    for (int i = 0; stylesheetParams != null && i + 1 < stylesheetParams.length; i += 2) {
      String value = stylesheetParams[i + 1];
      if (!stylesheetParams[i].isBlank() && !value.isEmpty() && !value.equals(NO_VALUE))
        pairs.put(stylesheetParams[i].strip(), value);
    }
    return pairs;
  }

  private static String whyNot(String tClass, Throwable e) {
    Throwable cause = e instanceof TransformerFactoryConfigurationError error && error.getException() != null
        ? error.getException() : e;
    String reason = String.valueOf(cause.getMessage());
    if (cause instanceof ClassNotFoundException)
      reason = "no jar of the class path holds it.";
    else if (cause instanceof ClassCastException || reason.contains("not a subtype") || reason.contains("cannot be cast"))
      reason = "it is not a javax.xml.transform.TransformerFactory.";
    else if (cause instanceof NoClassDefFoundError)
      reason = "it needs the class " + reason.replace('/', '.') + ", which no jar of the class path holds.";
    return "Cannot load the XSLT processor " + tClass + ": " + reason;
  }

  private void forgetEverything() {
    stylesheets.clear();
    documents.forget();
  }
}
