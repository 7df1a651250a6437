package vlxslt;

import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Random;

/** A random run: inputs, stylesheets and documents in a folder, the same for the same seed. */
final class JobsWorld {
  /** One input; without a stylesheet it names its own. */
  record Input(Path file, String stylesheet, boolean isLeftOut, boolean isExpected) {}

  private static final String XSL = "xmlns:xsl='http://www.w3.org/1999/XSL/Transform'";
  private static final String SAXON_RESULT =
      "<xsl:result-document href='{@second}'><s><xsl:value-of select='@say'/></s></xsl:result-document>";
  private static final String REDIRECT =
      "<r:write select='@second'><s><xsl:value-of select='@say'/></s></r:write>";

  final Path folder;
  final List<Input> inputs = new ArrayList<>();
  private final Random random;
  private final boolean isSaxon;

  JobsWorld(Path folder, long seed, boolean isSaxon) throws IOException {
    this.folder = folder;
    this.isSaxon = isSaxon;
    random = new Random(seed);
    Files.createDirectories(folder.resolve("out"));
    for (int i = 0; i < 3; i++) {
      write("entity" + i + ".ent", "text of entity " + i);
      write("doc" + i + ".xml", doctype(i) + "<doc>" + (chance(3) ? "&e;" : "") + "<part n='" + i + "'/></doc>");
    }
    write("broken.xml", "<doc><part></doc>");
    for (int i = 0; i < 3; i++)
      write("s" + i + ".xsl", stylesheet(i));
    int count = 4 + random.nextInt(12);
    for (int i = 0; i < count; i++)
      inputs.add(input(i));
  }

  boolean chance(int in) {
    return random.nextInt(in) == 0;
  }

  Path output(int number) {
    return folder.resolve("out/" + number + ".out");
  }

  private void write(String name, String text) throws IOException {
    Files.write(folder.resolve(name), text.getBytes(StandardCharsets.UTF_8));
  }

  private String doctype(int entity) {
    return "<!DOCTYPE doc [<!ENTITY e SYSTEM 'entity" + entity + ".ent'>]>";
  }

  // Version 1.0 but for the results; the last one gives a warning or an error when it is compiled.
  private String stylesheet(int number) {
    String wrong = number < 2 ? "" : chance(2) ? "<xsl:template match='never'><xsl:value-of select='$none'/></xsl:template>"
                                               : "<xsl:template match='/..'/>";
    return "<xsl:stylesheet version='" + (isSaxon ? "2.0" : "1.0") + "' " + XSL
        + " xmlns:r='http://xml.apache.org/xalan/redirect' extension-element-prefixes='r'>" + wrong
        + "<xsl:strip-space elements='*'/>"
        + "<xsl:template name='work'><xsl:param name='left'/><xsl:if test='$left &gt; 0'><xsl:call-template name='work'>"
        + "<xsl:with-param name='left' select='$left - 1'/></xsl:call-template></xsl:if></xsl:template>"
        + "<xsl:template match='/*'><out number='" + number + "' id='{generate-id()}'>"
        + "<xsl:call-template name='work'><xsl:with-param name='left' select='@work'/></xsl:call-template>"
        + "<xsl:for-each select='say'><xsl:message>says <xsl:value-of select='.'/></xsl:message></xsl:for-each>"
        + "<xsl:for-each select='ref'><xsl:copy-of select='document(.)'/>"
        + "<xsl:value-of select='generate-id(document(.)/*/*[1])'/></xsl:for-each>"
        + "<xsl:if test='@second'>" + (isSaxon ? SAXON_RESULT : REDIRECT) + "</xsl:if>"
        + "<xsl:for-each select='say'><xsl:message>said <xsl:value-of select='.'/></xsl:message></xsl:for-each>"
        + "<xsl:if test='@stop'><xsl:message terminate='yes'>stopped</xsl:message></xsl:if>"
        + "<xsl:apply-templates/></out></xsl:template></xsl:stylesheet>";
  }

  private Input input(int number) throws IOException {
    Path file = folder.resolve("i" + number + ".xml");
    StringBuilder text = new StringBuilder();
    boolean namesStylesheet = chance(6);
    if (namesStylesheet)
      text.append("<?xml-stylesheet type='text/xsl' href='s").append(random.nextInt(3)).append(".xsl'?>");
    text.append(chance(3) ? doctype(random.nextInt(3)) + "<doc" : "<doc");
    text.append(" work='").append(random.nextInt(random.nextInt(6) == 0 ? 3000 : 300)).append("'");
    if (chance(8))
      text.append(" stop='yes'");
    if (chance(4))
      text.append(" say='").append(number).append("' second='further")
          .append(chance(3) ? "/same.xml" : number + ".xml").append("'");
    text.append(">");
    for (int i = random.nextInt(4); i > 0; i--)
      text.append("<say>").append(number).append('.').append(i).append("</say>");
    for (int i = random.nextInt(4); i > 0; i--)
      text.append("<ref>").append(reference(number)).append("</ref>");
    text.append(chance(10) ? "<broken>" : "text").append("</doc>");
    if (!chance(12))
      Files.writeString(file, text);
    // Now and then the result of an earlier job.
    Path read = number > 0 && chance(10) ? output(random.nextInt(number)) : file;
    return new Input(read, namesStylesheet ? "" : folder.resolve("s" + (chance(5) ? 2 : random.nextInt(2)) + ".xsl").toString(),
        chance(8), !chance(10));
  }

  private String reference(int number) {
    return switch (random.nextInt(8)) {
      case 0 -> "missing.xml";
      case 1 -> "broken.xml";
      case 2 -> "out/" + random.nextInt(number + 1) + ".out";
      case 3 -> "out/further/same.xml";
      default -> "doc" + random.nextInt(3) + ".xml";
    };
  }
}
