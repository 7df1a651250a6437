package vlxslt;

import java.util.List;
import java.util.Map;
import java.util.Set;
import javax.xml.XMLConstants;
import javax.xml.transform.Source;
import javax.xml.transform.Templates;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerConfigurationException;
import javax.xml.transform.TransformerException;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.URIResolver;
import javax.xml.transform.sax.SAXSource;
import javax.xml.transform.sax.SAXTransformerFactory;
import javax.xml.transform.stream.StreamResult;
import javax.xml.xpath.XPath;
import javax.xml.xpath.XPathEvaluationResult;
import javax.xml.xpath.XPathExpressionException;
import javax.xml.xpath.XPathFactory;
import vlxslt.Documents.Purpose;

/** Any processor behind the common interface: Xalan, the JDK's own, and others. */
final class JaxpAdapter implements ProcessorAdapter {
  private final TransformerFactory factory;
  private final FactoryAttributes attributes;
  private final boolean allowsExtensions;

  /** Throws when the processor cannot be kept from calling code. */
  JaxpAdapter(TransformerFactory factory, FactoryAttributes attributes, boolean allowsExtensions) throws Exception {
    this.factory = factory;
    this.attributes = attributes;
    this.allowsExtensions = allowsExtensions;
    secure(factory);
  }

  // Sources come from the layer alone; an access of the processor's own is none of them.
  private void secure(TransformerFactory own) throws TransformerConfigurationException {
    // Xalan's own switch would turn off every extension.
    if (!allowsExtensions && !XalanGate.isFor(own))
      own.setFeature(XMLConstants.FEATURE_SECURE_PROCESSING, true);
    // An attribute may have turned them on for all, which a stylesheet that an input names must not have.
    if (!allowsExtensions && factory.getClass().getModule().isNamed())
      own.setFeature("http://www.oracle.com/xml/jaxp/properties/enableExtensionFunctions", false);
    for (String access : List.of(XMLConstants.ACCESS_EXTERNAL_DTD, XMLConstants.ACCESS_EXTERNAL_STYLESHEET)) {
      try {
        own.setAttribute(access, "");
      } catch (IllegalArgumentException e) {
        // Xalan knows neither.
      }
    }
  }

  @Override
  public Stylesheet compile(Source source, Job job, FilesRead modules) throws Exception {
    XsltcRedirect redirect = isXsltc() ? new XsltcRedirect() : null;
    URIResolver resolver = job.documents().uriResolver(modules, Purpose.MODULE);
    URIResolver prepared = redirect == null
        ? resolver : (href, base) -> redirect.prepare((SAXSource) resolver.resolve(href, base));
    return compile(newFactory(job, prepared), redirect == null ? source : redirect.prepare((SAXSource) source), redirect);
  }

  @Override
  public Stylesheet compileEmbedded(Job job) throws Exception {
    URIResolver others = job.documents().uriResolver(job.filesRead(), Purpose.MODULE);
    // Xalan asks for the input itself, and finds the part in it by the address.
    TransformerFactory own = newFactory(job, (href, base) ->
        href.startsWith("#") ? job.documents().source(job.input() + href, job.filesRead()) : others.resolve(href, base));
    return compile(own, own.getAssociatedStylesheet(job.plainInputSource(), null, null, null), null);
  }

  // To Java classes.
  private boolean isXsltc() {
    return factory.getClass().getName().contains(".xsltc.");
  }

  private Stylesheet compile(TransformerFactory own, Source source, XsltcRedirect redirect) throws Exception {
    Templates templates = own.newTemplates(source);
    if (templates == null)
      return null;
    Set<String> off = XalanGate.isFor(own) ? XalanGate.close(templates, allowsExtensions) : Set.of();
    return (job, outputs) -> {
      try {
        run(templates, redirect, job, outputs);
      } catch (TransformerException | RuntimeException e) {
        // It may have done without them, or not.
        if (!off.isEmpty())
          job.diagnostics().warn(Text.EXTENSIONS_OFF.with(String.join(", ", off)));
        throw e;
      }
    };
  }

  // A factory holds the listener and the resolver of one job.
  private TransformerFactory newFactory(Job job, URIResolver resolver) throws TransformerConfigurationException {
    TransformerFactory own =
        TransformerFactory.newInstance(factory.getClass().getName(), factory.getClass().getClassLoader());
    attributes.apply(own);
    secure(own);
    own.setErrorListener(JaxpListener.whileCompiling(job.diagnostics()));
    own.setURIResolver(resolver);
    return own;
  }

  private void run(Templates templates, XsltcRedirect redirect, Job job, Outputs outputs) throws TransformerException {
    Transformer transformer = templates.newTransformer();
    transformer.setErrorListener(JaxpListener.whileRunning(job.diagnostics(), isXsltc()));
    transformer.setURIResolver(job.documents().uriResolver(job.filesRead(), Purpose.DATA));
    XPath xpath = XPathFactory.newDefaultInstance().newXPath();
    for (Map.Entry<String, String> parameter : job.parameters().entrySet())
      transformer.setParameter(parameter.getKey(), evaluate(xpath, parameter.getValue()));
    StreamResult result = new StreamResult(outputs.principal());
    // Xalan cuts the path of further results out of it, and leaves escapes as they are.
    result.setSystemId("file://" + job.outputPath());
    XalanRedirect.setOutputs(outputs);
    try {
      transformer.transform(job.inputSource(),
          redirect == null ? result
                           : redirect.resultFor(transformer, (SAXTransformerFactory) factory, result, outputs));
    } finally {
      XalanRedirect.setOutputs(null);
    }
  }

  private static Object evaluate(XPath xpath, String expression) {
    try {
      XPathEvaluationResult<?> result = xpath.evaluateExpression(expression, (Object) null);
      return switch (result.type()) {
        case NUMBER, BOOLEAN, STRING -> result.value();
        default -> expression;
      };
    } catch (XPathExpressionException | RuntimeException e) {
      return expression;
    }
  }

  @Override
  public boolean hasNamedStart() {
    return false;
  }

  // Those that are known to.
  @Override
  public boolean sharesStylesheets() {
    return attributes.areValues() && (XalanGate.isFor(factory) || isXsltc());
  }

  @Override
  public String version() {
    try {
      Class<?> version = Class.forName("org.apache.xalan.Version", true, factory.getClass().getClassLoader());
      if (factory.getClass().getName().startsWith("org.apache."))
        return String.valueOf(version.getMethod("getVersion").invoke(null));
    } catch (ReflectiveOperationException | LinkageError e) {
      // It is another one then.
    }
    Package of = factory.getClass().getPackage();
    if (of.getImplementationVersion() != null)
      return of.getImplementationVersion();
    return factory.getClass().getModule().isNamed() ? "JDK " + Runtime.version() : null;
  }
}
