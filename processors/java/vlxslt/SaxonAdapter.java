package vlxslt;

import java.io.OutputStream;
import java.lang.reflect.Method;
import java.net.URI;
import java.nio.file.Path;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.Callable;
import java.util.function.Function;
import javax.xml.transform.Source;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.URIResolver;
import vlxslt.Documents.Purpose;

/** Saxon 9.9 and later, through its s9api; the classes are those of whichever jar the user named. */
final class SaxonAdapter implements ProcessorAdapter {
  /** The attribute that names a class which sets up the configuration; Saxon's own command line has an option for it. */
  static final String INITIALISER = "http://saxon.sf.net/feature/initialiser";
  private static final String API = "net.sf.saxon.s9api.";

  private final TransformerFactory factory;
  private final FactoryAttributes attributes;
  private final ClassLoader loader;
  private final boolean numbersDocuments;
  private final SaxonTrees trees; // null when documents cannot be kept

  SaxonAdapter(TransformerFactory factory, FactoryAttributes attributes, boolean allowsExtensions) throws Exception {
    this.factory = factory;
    this.attributes = attributes;
    this.loader = factory.getClass().getClassLoader();
    SaxonGate.close(factory, allowsExtensions);
    numbersDocuments = DocumentNumbers.install(Reflection.call(factory, "getConfiguration"), loader);
    trees = isSetByAddress(factory)
        ? null : SaxonTrees.of(Reflection.call(factory, "getConfiguration"), version(), loader);
  }

  // Then a document depends on more of its address than the resolver is asked for.
  private static boolean isSetByAddress(TransformerFactory factory) {
    return !Boolean.FALSE.equals(factory.getAttribute("http://saxon.sf.net/feature/recognize-uri-query-parameters"));
  }

  static boolean isFor(TransformerFactory factory) {
    return Reflection.method(factory.getClass(), "getProcessor", 0) != null
        && Reflection.method(factory.getClass(), "getConfiguration", 0) != null;
  }

  static void initialise(TransformerFactory factory, String className) throws Exception {
    Class<?> type;
    try {
      type = Class.forName(className, true, Thread.currentThread().getContextClassLoader());
    } catch (ClassNotFoundException e) {
      throw new ClassNotFoundException(Text.CLASS_MISSING.with(), e);
    }
    Reflection.call(
        type.getDeclaredConstructor().newInstance(), "initialize", Reflection.call(factory, "getConfiguration"));
  }

  @Override
  public Stylesheet compile(Source source, Job job, FilesRead modules) throws Exception {
    return new Compilation(job, modules).compile(source);
  }

  @Override
  public Stylesheet compileEmbedded(Job job) throws Exception {
    return new Compilation(job, job.filesRead()).compileEmbedded(job.plainInputSource());
  }

  private final class Compilation {
    private final Object compiler = Reflection.call(processor(), "newXsltCompiler");
    private final StaticParameters statics;

    Compilation(Job job, FilesRead modules) throws Exception {
      Map<String, String> parameters = job.parameters();
      StaticParameters.Restart restart = new StaticParameters.Restart();
      job.diagnostics().ignore(restart);
      statics = new StaticParameters(
          parameters.keySet(), restart, name -> setParameter(compiler, name, parameters.get(name)));
      SaxonDiagnostics.connect(compiler, job.diagnostics());
      URIResolver resolver = job.documents().uriResolver(modules, Purpose.MODULE);
      Reflection.call(compiler, "setURIResolver", statics.watch(resolver));
    }

    Stylesheet compileEmbedded(Source input) throws Exception {
      return stylesheetOf(compileWhole(() -> (Source) Reflection.call(
          compiler, "getAssociatedStylesheet", statics.watch(input), null, null, null)), false);
    }

    Stylesheet compile(Source source) throws Exception {
      return stylesheetOf(compileWhole(() -> statics.watch(source)), true);
    }

    // With the values of all static parameters.
    private Object compileWhole(Callable<Source> source) throws Exception {
      Method compile = compiler.getClass().getMethod("compile", Source.class);
      while (true) {
        try {
          return Reflection.call(compiler, compile, source.call());
        } catch (Exception e) {
          if (!statics.takeRestart())
            throw e;
        }
      }
    }

    private Stylesheet stylesheetOf(Object executable, boolean isKept) throws Exception {
      Object keeper = isKept && trees != null && !usesPackages(executable) ? new Object() : null;
      return new Stylesheet() {
        @Override
        public void run(Job job, Outputs outputs) throws Exception {
          Object transformer = Reflection.call(executable, "load");
          for (Map.Entry<String, String> parameter : job.parameters().entrySet())
            if (!staticParameters().contains(parameter.getKey()))
              setParameter(transformer, parameter.getKey(), parameter.getValue());
          SaxonAdapter.this.run(transformer, keeper, job, outputs);
        }

        @Override
        public Set<String> staticParameters() {
          return statics.names();
        }
      };
    }
  }

  // Each has rules of its own for white space.
  private static boolean usesPackages(Object executable) throws Exception {
    Object compiled = Reflection.call(executable, "getUnderlyingCompiledStylesheet");
    Object used = Reflection.call(Reflection.call(compiled, "getTopLevelPackage"), "getUsedPackages");
    return ((Iterable<?>) used).iterator().hasNext();
  }

  /** `keeper` is what documents are kept for, the compiled stylesheet; null when they are not. */
  private void run(Object transformer, Object keeper, Job job, Outputs outputs) throws Exception {
    SaxonDiagnostics.connect(transformer, job.diagnostics());
    SaxonMessages.connect(transformer, job.diagnostics(), loader);
    SaxonDocuments kept = keeper == null ? null
        : new SaxonDocuments(trees, Reflection.call(transformer, "getUnderlyingController"), keeper, job);
    Reflection.call(transformer, "setURIResolver",
        kept == null ? job.documents().uriResolver(job.filesRead(), Purpose.DATA) : kept);
    Reflection.call(transformer, "setBaseOutputURI", job.outputAddress());
    Function<URI, Object> destinations = uri -> openResult(uri, outputs);
    Reflection.call(transformer, "setResultDocumentHandler", destinations);
    if (job.start().template() != null)
      Reflection.call(transformer, "setInitialTemplate", nameOf(job.start().template()));
    if (job.start().mode() != null)
      Reflection.call(transformer, "setInitialMode", nameOf(job.start().mode()));
    Reflection.call(transformer, "setSource", job.inputSource());
    Reflection.call(transformer, "setDestination", newSerializer(outputs.principal()));
    DocumentNumbers.startJob();
    try {
      Reflection.call(transformer, "transform");
    } finally {
      DocumentNumbers.endJob();
    }
    if (kept != null)
      kept.keep();
  }

  private Object openResult(URI uri, Outputs outputs) {
    Path file = Addresses.fileOf(uri.toString());
    OutputStream output = file != null ? outputs.add(file) : outputs.refuse(uri);
    try {
      Object serializer = newSerializer(output);
      // A book of many results must not hold them all open until its end.
      Class<?> action = Class.forName(API + "Action", true, loader);
      Reflection.call(serializer, "onClose", Reflection.implement(action, (method, arguments) -> {
        output.close();
        return null;
      }));
      return serializer;
    } catch (Exception e) {
      throw new IllegalStateException(e);
    }
  }

  private Object newSerializer(OutputStream output) throws Exception {
    Object processor = processor();
    return Reflection.call(processor, processor.getClass().getMethod("newSerializer", OutputStream.class), output);
  }

  // A value is an XPath expression; what is none, or needs a document to be looked up in, is the text itself.
  private void setParameter(Object target, String name, String expression) throws Exception {
    Reflection.call(target, "setParameter", nameOf(name), evaluate(expression));
  }

  private Object nameOf(String name) throws Exception {
    String known = name.startsWith("xsl:") ? "{http://www.w3.org/1999/XSL/Transform}" + name.substring(4) : name;
    Method parse = Class.forName(API + "QName", true, loader)
                       .getMethod(known.startsWith("{") ? "fromClarkName" : "fromEQName", String.class);
    return Reflection.call(null, parse, known);
  }

  private Object evaluate(String expression) throws Exception {
    Object value = Reflection.find(Reflection.call(processor(), "newXPathCompiler"), "evaluate", expression, null);
    return value != null ? value
                         : Class.forName(API + "XdmAtomicValue", true, loader).getConstructor(String.class)
                               .newInstance(expression);
  }

  @Override
  public boolean hasNamedStart() {
    return true;
  }

  @Override
  public boolean sharesStylesheets() {
    return numbersDocuments && attributes.areValues();
  }

  @Override
  public String version() {
    try {
      return String.valueOf(Reflection.call(processor(), "getSaxonProductVersion"));
    } catch (Exception e) {
      return null;
    }
  }

  private Object processor() throws Exception {
    return Reflection.call(factory, "getProcessor");
  }
}
