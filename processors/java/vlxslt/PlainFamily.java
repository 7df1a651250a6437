package vlxslt;

import java.util.Map;
import javax.xml.transform.SourceLocator;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerException;
import javax.xml.transform.TransformerFactory;
import javax.xml.xpath.XPath;
import javax.xml.xpath.XPathEvaluationResult;
import javax.xml.xpath.XPathExpressionException;
import javax.xml.xpath.XPathFactory;

/** XSLT 1.0 processors: Xalan, and the compiler of the JDK that descends from it. */
final class PlainFamily implements Family {
  private final TransformerFactory factory;

  PlainFamily(TransformerFactory factory) {
    this.factory = factory;
  }

  @Override
  public void connect(Transformer transformer, String outputAddress, Outputs outputs, Diagnostics diagnostics) {
    diagnostics.treatAsMessages(this::isMessage);
    transformer.setErrorListener(diagnostics);
  }

  // Both hand xsl:message to the listener as a warning: the one with the instruction itself as its place, the other
  // with no place at all.
  private boolean isMessage(TransformerException e) {
    SourceLocator place = e.getLocator();
    return place == null ? factory.getClass().getName().contains(".xsltc.")
                         : place.getClass().getSimpleName().equals("ElemMessage");
  }

  @Override
  public void setParameters(Transformer transformer, Map<String, String> expressions) {
    XPath xpath = XPathFactory.newDefaultInstance().newXPath();
    expressions.forEach((name, expression) -> transformer.setParameter(name, evaluate(xpath, expression)));
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
