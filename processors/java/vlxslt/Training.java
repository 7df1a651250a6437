package vlxslt;

import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.List;
import java.util.stream.Stream;

/**
 * A program that loads the classes of a list and applies a small stylesheet of its own, so that the virtual machine can
 * archive what that needs, and ends.
 */
final class Training {
  /** Says nothing. */
  private static final class Silence implements IVLXSLTJavaHandler {
    @Override
    public void FatalError(String message, String publicId, String systemId, int line, int column, String code) {}

    @Override
    public void Error(String message, String publicId, String systemId, int line, int column, String code) {}

    @Override
    public void Warning(String message, String publicId, String systemId, int line, int column, String code) {}

    @Override
    public void Message(String message) {}

    @Override
    public String ResolveEntity(String name, String publicId, String baseURI, String systemId) {
      return "";
    }

    @Override
    public void StartDocument(String filePath) {}

    @Override
    public void EndDocument() {}
  }

  private static final List<String> FILES =
      List.of("training.xml", "training.dtd", "training-1.xsl", "training-2.xsl", "training-module.xsl");

  private Training() {}

  public static void main(String[] arguments) throws Exception {
    Path list = Path.of(arguments[0]);
    if (Files.exists(list))
      load(Files.readAllLines(list));
    if (!arguments[1].isEmpty())
      transform(arguments[1]);
  }

  private static void load(List<String> names) {
    ClassLoader loader = Training.class.getClassLoader();
    for (String name : names) {
      try {
        Class.forName(name.replace('/', '.'), false, loader);
      } catch (ClassNotFoundException | LinkageError e) {
        // Made at run time, or of a loader that is not here: nothing to archive.
      }
    }
  }

  private static void transform(String factory) throws IOException {
    Path folder = Files.createTempDirectory("vlxslt-training-");
    try {
      for (String file : FILES) {
        try (InputStream input = Training.class.getResourceAsStream(file)) {
          Files.copy(input, folder.resolve(file));
        }
      }
      VLXSLTJavaLayer layer = VLXSLTJavaLayer.GetInstance();
      layer.SetTexts(Stream.of(Text.values()).map(Text::name).toArray(String[]::new), ".vlxslt-training-");
      layer.SetVLXSLTJavaHandler(new Silence());
      layer.SetClassPath("");
      layer.SetPolicy(new String[0], false, new String[] {"output"}, false);
      if (layer.SetTransformer(factory) == 1) {
        // Processors of the first version fail at the second.
        for (String stylesheet : Arrays.asList("training-1.xsl", "training-2.xsl"))
          layer.TransformXMLFile(folder.resolve("training.xml").toString(), folder.resolve(stylesheet).toString(),
              folder.resolve("out.html").toString(), new String[] {"depth", "2", "title", "'A title'", "word", "bare"});
      }
    } finally {
      try (Stream<Path> files = Files.list(folder)) {
        for (Path file : files.toList())
          Files.delete(file);
      }
      Files.delete(folder);
    }
  }
}
