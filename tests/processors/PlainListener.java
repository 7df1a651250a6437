import java.nio.file.Path;
import javax.xml.transform.ErrorListener;
import javax.xml.transform.SourceLocator;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerException;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.stream.StreamResult;
import javax.xml.transform.stream.StreamSource;

/**
 * What a factory tells a plain listener: for each stylesheet its path, then a line of severity, system identifier, line,
 * column and text, separated by tabs, for each call. Arguments: the factory's class, the input, stylesheets.
 */
public final class PlainListener implements ErrorListener {
  private boolean isRunning;

  public static void main(String[] arguments) {
    for (int i = 2; i < arguments.length; i++) {
      System.out.println(arguments[i]);
      new PlainListener().transform(arguments[0], arguments[1], arguments[i]);
    }
  }

  private void transform(String factoryClass, String input, String stylesheet) {
    try {
      TransformerFactory factory = TransformerFactory.newInstance(factoryClass, null);
      factory.setErrorListener(this);
      var templates = factory.newTemplates(source(stylesheet));
      if (templates == null)
        return;
      isRunning = true;
      Transformer transformer = templates.newTransformer();
      transformer.setErrorListener(this);
      transformer.transform(source(input), new StreamResult(java.io.OutputStream.nullOutputStream()));
    } catch (TransformerException | RuntimeException e) {
      // The listener has heard of it.
    }
  }

  private static StreamSource source(String path) {
    return new StreamSource(Path.of(path).toUri().toString());
  }

  @Override
  public void warning(TransformerException e) {
    tell("Warning", e);
  }

  @Override
  public void error(TransformerException e) {
    tell("Error", e);
  }

  @Override
  public void fatalError(TransformerException e) throws TransformerException {
    tell("Fatal Error", e);
    if (isRunning)
      throw e;
  }

  private static void tell(String severity, TransformerException e) {
    SourceLocator place = e.getLocator();
    String file = place == null || place.getSystemId() == null ? "" : place.getSystemId();
    int line = place == null ? -1 : place.getLineNumber();
    int column = place == null ? -1 : place.getColumnNumber();
    System.out.println(severity + "\t" + file + "\t" + line + "\t" + column + "\t" + e.getMessage().replace("\n", "\\n"));
  }
}
