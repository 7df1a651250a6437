import java.nio.file.Path;
import vlxslt.IVLXSLTJavaHandler;
import vlxslt.VLXSLTJavaLayer;

/**
 * Drives the Java layer as the native side does: for each stylesheet its path, then a line of severity, system identifier,
 * line, column, code and text, separated by tabs, for each call. Arguments: the factory's class, the input, a folder for
 * outputs, stylesheets.
 */
public final class LayerDriver implements IVLXSLTJavaHandler {
  public static void main(String[] arguments) {
    VLXSLTJavaLayer layer = VLXSLTJavaLayer.GetInstance();
    layer.SetVLXSLTJavaHandler(new LayerDriver());
    layer.SetClassPath("");
    for (int i = 3; i < arguments.length; i++) {
      System.out.println(arguments[i]);
      layer.SetTransformer(arguments[0]);
      layer.TransformXMLFile(arguments[1], arguments[i], Path.of(arguments[2], "out" + i).toString(), null);
    }
  }

  private static void tell(String severity, String file, int line, int column, String code, String text) {
    System.out.println(severity + "\t" + file + "\t" + line + "\t" + column + "\t" + (code == null ? "" : code) + "\t"
        + text.replace("\n", "\\n"));
  }

  @Override
  public void FatalError(String message, String publicId, String systemId, int line, int column, String code) {
    tell("Fatal Error", systemId, line, column, code, message);
  }

  @Override
  public void Error(String message, String publicId, String systemId, int line, int column, String code) {
    tell("Error", systemId, line, column, code, message);
  }

  @Override
  public void Warning(String message, String publicId, String systemId, int line, int column, String code) {
    tell("Warning", systemId, line, column, code, message);
  }

  @Override
  public void Message(String message) {
    tell("Message", "", -1, -1, null, message);
  }

  @Override
  public String ResolveEntity(String name, String publicId, String baseUri, String systemId) {
    return "";
  }

  @Override
  public void StartDocument(String filePath) {}

  @Override
  public void EndDocument() {}
}
