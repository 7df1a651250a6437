package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileTime;
import java.util.ArrayList;
import java.util.List;
import java.util.Objects;
import java.util.stream.Collectors;
import java.util.stream.Stream;

/**
 * Several runs of one process over a stylesheet that reads a document: what is kept of it, when it is read anew, and that
 * the host hears the same either way. Argument: the class path of a Saxon.
 */
public final class KeptDocuments implements IVLXSLTJavaHandler {
  private static final String STYLESHEET = """
      <xsl:stylesheet version="2.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
      <xsl:output method="text"/><xsl:template match="/"><xsl:value-of
      select="/in, document('d.xml'), document('d.xml')/d/no/'no part'"/></xsl:template></xsl:stylesheet>""";
  private static final String DOCUMENT = """
      <!DOCTYPE d PUBLIC "-//kept//d" "d.dtd"><d xmlns:xi="http://www.w3.org/2001/XInclude">%s &e;<xi:include
      href="part.xml"><xi:fallback><no/></xi:fallback></xi:include></d>""";

  private final VLXSLTJavaLayer layer = VLXSLTJavaLayer.GetInstance();
  private final Path folder;
  private final List<String> told = new ArrayList<>();
  private List<String> filesRead;
  private String dtd = "";

  private KeptDocuments(Path folder) {
    this.folder = folder;
  }

  /** The argument is the folder of a Saxon's jars. */
  public static void main(String[] arguments) throws IOException {
    Path folder = Files.createTempDirectory("kept").toRealPath();
    KeptDocuments test = new KeptDocuments(folder);
    test.layer.SetVLXSLTJavaHandler(test);
    try (Stream<Path> jars = Files.list(Path.of(arguments[0]))) {
      test.layer.SetClassPath(jars.map(Path::toString).collect(Collectors.joining(";")));
    }
    try {
      test.play();
    } finally {
      for (Path each : Files.list(folder).toList())
        Files.delete(each);
      Files.delete(folder);
    }
  }

  private void play() throws IOException {
    write("in.xml", "<in/>");
    write("s.xsl", STYLESHEET);
    write("d.dtd", "<!ENTITY e 'first'>");
    write("other.dtd", "<!ENTITY e 'other'>");
    write("real.xml", DOCUMENT.formatted("one"));
    startRun();
    expect("one first", transform(false));
    List<String> toldFirst = List.copyOf(told);
    List<String> readFirst = filesRead;
    expect(paths("s.xsl", "in.xml", "real.xml", "d.dtd"), readFirst);
    // Such a change cannot be seen: what comes out shows that the document is kept, and its files are not looked at again.
    change("real.xml", DOCUMENT.formatted("two"));
    expect("one first", transform(false));
    expect(told.stream().filter(line -> line.startsWith("start")).toList(),
        toldFirst.stream().filter(line -> line.startsWith("start") && !line.contains("s.xsl")).toList());
    expect(readFirst, filesRead);
    startRun();
    expect("one first", transform(false));
    touch("real.xml");
    expect("one first", transform(false));
    startRun();
    expect("two first", transform(false));

    write("d.dtd", "<!ENTITY e 'second'>");
    startRun();
    expect("two second", transform(false));
    dtd = folder.resolve("other.dtd").toString();
    startRun();
    expect("two other", transform(false));
    expect(paths("s.xsl", "in.xml", "real.xml", "other.dtd"), filesRead);

    // A form for jobs with inclusions; what was looked for in vain may be there by the next run.
    expect("two other no part", transform(true));
    write("part.xml", "<p>part</p>");
    expect("two other", transform(false));
    startRun();
    expect("two otherpart", transform(true));

    // The input itself, whose content is in another file.
    write("replaced.xml", "<d>replaced</d>");
    expect("replaced", transform("real.xml", folder.resolve("replaced.xml").toString(), false));
    expect("two other", transform(false));
    readOwnOutput();
  }

  // An output of the run has the size and the time of what it replaces.
  private void readOwnOutput() throws IOException {
    write("real.xml", "<d>old</d>");
    startRun();
    expect("old", transform(false));
    write("in2.xml", "<in>&lt;d>new&lt;/d></in>");
    write("plain.xsl", STYLESHEET.replaceFirst("in, .*part'", "in"));
    FileTime before = Files.getLastModifiedTime(folder.resolve("real.xml"));
    expect(1, layer.TransformXMLFile(path("in2.xml"), path("plain.xsl"), path("real.xml"), new String[0]));
    Files.setLastModifiedTime(folder.resolve("real.xml"), before);
    expect("new", transform(false));
    change("real.xml", "<d>few</d>");
    expect("few", transform(false)); // not kept in this run any more
    startRun();
    expect("few", transform(false));
    change("real.xml", "<d>dew</d>");
    expect("few", transform(false));
  }

  private void startRun() {
    expect(1, layer.SetTransformer("net.sf.saxon.TransformerFactoryImpl"));
  }

  private String transform(boolean includes) throws IOException {
    return transform("in.xml", null, includes);
  }

  private String transform(String input, String content, boolean includes) throws IOException {
    told.clear();
    int status = layer.TransformXMLFile(
        -1, path(input), content, path("s.xsl"), path("out.txt"), null, new String[0], includes, null, null);
    if (status != 1)
      throw new AssertionError(String.join("\n", told));
    return Files.readString(folder.resolve("out.txt")).strip().replaceAll("\\s+", " ");
  }

  private String path(String name) {
    return folder.resolve(name).toString();
  }

  private List<String> paths(String... names) {
    return List.of(names).stream().map(this::path).toList();
  }

  private void write(String name, String text) throws IOException {
    Files.writeString(folder.resolve(name), text);
  }

  private void change(String name, String text) throws IOException {
    FileTime before = Files.getLastModifiedTime(folder.resolve(name));
    expect(Files.size(folder.resolve(name)), (long) text.length());
    write(name, text);
    Files.setLastModifiedTime(folder.resolve(name), before);
  }

  private void touch(String name) throws IOException {
    FileTime before = Files.getLastModifiedTime(folder.resolve(name));
    Files.setLastModifiedTime(folder.resolve(name), FileTime.fromMillis(before.toMillis() + 2000));
  }

  private static void expect(Object expected, Object actual) {
    if (!Objects.equals(expected, actual))
      throw new AssertionError("expected " + expected + ", but was " + actual);
  }

  @Override
  public void StartDocument(String filePath) {
    told.add("start " + filePath);
  }

  @Override
  public void EndDocument() {
    told.add("end");
  }

  @Override
  public String ResolveEntity(String name, String publicId, String baseUri, String systemId) {
    return publicId != null ? dtd : systemId.equals("d.xml") ? path("real.xml") : "";
  }

  @Override
  public void JobDone(String[] secondaryOutputs, String[] files) {
    filesRead = List.of(files);
  }

  @Override
  public void Message(String message) {
    told.add(message);
  }

  @Override
  public void FatalError(String message, String publicId, String systemId, int line, int column, String code) {
    told.add(message);
  }

  @Override
  public void Error(String message, String publicId, String systemId, int line, int column, String code) {
    told.add(message);
  }

  @Override
  public void Warning(String message, String publicId, String systemId, int line, int column, String code) {
    told.add(message);
  }
}
