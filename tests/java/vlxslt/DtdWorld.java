package vlxslt;

import java.io.IOException;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileTime;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.TreeMap;

/**
 * Documents, DTDs and their modules in a folder, made of pieces that a random number chooses. Many share a name, a public
 * or a system identifier; some are broken.
 */
final class DtdWorld {
  private static final List<String> ELEMENTS = List.of("a", "b", "c", "p:d");
  private static final List<String> PUBLIC_IDS = List.of("-//P//0", "-//P//  0", "-//P//1");
  private static final int FILES = 3;

  final Path folder;
  /** What the host's catalogs answer, by public or system identifier. */
  final Map<String, String> catalog = new TreeMap<>();
  private final Random random;
  private long clock = 1_000_000;

  DtdWorld(Path folder, Random random) throws IOException {
    this.folder = folder;
    this.random = random;
    for (int i = 0; i < FILES; i++) {
      write("d" + i + ".dtd", subset(0));
      write("m" + i + ".mod", subset(1));
      write("x" + i + ".ent", pick("text " + i, "<b>&e;</b>", "<?xml encoding='UTF-8'?>ü", "&x0;", "<unclosed>"));
    }
    changeCatalog();
  }

  /** One file is another now. */
  void changeFile() throws IOException {
    int i = random.nextInt(FILES);
    switch (random.nextInt(3)) {
      case 0 -> write("d" + i + ".dtd", subset(0));
      case 1 -> write("m" + i + ".mod", subset(1));
      default -> Files.deleteIfExists(folder.resolve(pick("d", "m") .equals("d") ? "d" + i + ".dtd" : "m" + i + ".mod"));
    }
  }

  void changeCatalog() {
    catalog.clear();
    for (String id : List.of("-//P//0", "-//P//1", "m0.mod", "d0.dtd", "urn:dtd"))
      if (chance(3))
        catalog.put(id, folder.resolve(pick("d0.dtd", "d1.dtd", "m1.mod", "d2.dtd")).toString());
  }

  /** A new document; its name. */
  String writeDocument() throws IOException {
    String version = pick("1.0", "1.0", "1.0", "1.1");
    String encoding = pick("UTF-8", "UTF-8", "ISO-8859-1", "UTF-16");
    StringBuilder text = new StringBuilder();
    if (!version.equals("1.0") || !encoding.equals("UTF-8") || chance(2))
      text.append("<?xml version='").append(version).append("' encoding='").append(encoding).append("'")
          .append(pick("", "", " standalone='yes'", " standalone='no'")).append("?>\n");
    if (chance(4))
      text.append(pick("<!-- <!DOCTYPE a SYSTEM 'd1.dtd'> -->", "<?pi <!DOCTYPE?>", "\n\n"));
    if (!chance(8))
      text.append(doctype());
    text.append(element(0)).append(pick("", "\n", "<!-- end -->"));
    String name = pick("doc0.xml", "doc1.xml", "sub/doc.xml");
    write(name, text.toString(), Charset.forName(encoding));
    return name;
  }

  String read(String name) throws IOException {
    return new String(Files.readAllBytes(folder.resolve(name)), StandardCharsets.ISO_8859_1);
  }

  private void write(String name, String text) throws IOException {
    write(name, text, StandardCharsets.UTF_8);
  }

  private void write(String name, String text, Charset charset) throws IOException {
    Path file = folder.resolve(name);
    Files.createDirectories(file.getParent());
    Files.write(file, text.getBytes(charset));
    // Files tell the time less finely than this test writes them.
    Files.setLastModifiedTime(file, FileTime.fromMillis(clock += 1000));
  }

  private String doctype() {
    String system = systemId();
    String external = switch (random.nextInt(4)) {
      case 0 -> "";
      case 1 -> " PUBLIC '" + PUBLIC_IDS.get(random.nextInt(PUBLIC_IDS.size())) + "' '" + system + "'";
      default -> " SYSTEM \"" + system + "\"";
    };
    String internal = external.isEmpty() || chance(4) ? " [" + (chance(4) ? "" : subset(2)) + "]" : "";
    return "<!DOCTYPE " + pick("a", "a", "b") + external + internal + pick("", " ", "\n") + ">\n";
  }

  private String systemId() {
    String file = "d" + random.nextInt(FILES) + ".dtd";
    return pick(file, file, file, "./" + file, "../" + folder.getFileName() + "/" + file, folder.toUri() + file,
        file.replace("d", "%64"), "urn:dtd", "none.dtd", file + "#part");
  }

  // `level` 0: a DTD, 1: a module of it, 2: an internal subset.
  private String subset(int level) {
    StringBuilder text = new StringBuilder(level < 2 ? pick("", "", "<?xml version='1.0' encoding='UTF-8'?>\n",
        "<?xml version='1.1' encoding='UTF-8'?>\n") : "");
    for (int count = random.nextInt(level == 2 ? 3 : 8) + 1; count > 0; count--)
      text.append(declaration(level)).append(pick("\n", "\n", " ", ""));
    return chance(40) ? text.substring(0, random.nextInt(text.length())) : text.toString();
  }

  private String declaration(int level) {
    return switch (random.nextInt(12)) {
      case 0 -> "<!ELEMENT " + name() + " " + pick("ANY", "EMPTY", "(#PCDATA|b|c)*", "(b,c?)", "(b|c)+") + ">";
      case 1, 2, 3 -> attributes();
      case 4, 5 -> "<!ENTITY " + pick("e", "f", "g") + " \"" + entityText() + "\">";
      case 6 -> "<!ENTITY " + pick("e", "x0", "x1") + pick(" SYSTEM '", " PUBLIC '-//P//1' '") + "x" + random.nextInt(FILES)
          + ".ent'>";
      case 7 -> "<!NOTATION " + pick("n", "o") + pick(" SYSTEM 'n.exe'", " PUBLIC 'n'", " PUBLIC 'n' 'sub/n'") + ">";
      case 8 -> "<!ENTITY " + pick("pic", "e") + " SYSTEM 'p" + random.nextInt(3) + ".png' NDATA " + pick("n", "o") + ">";
      case 9 -> level == 1 ? "<!-- module -->" : "<!ENTITY % m SYSTEM 'm" + random.nextInt(FILES) + ".mod'>" + pick("", "%m;");
      case 10 -> level == 2 ? "<!ENTITY % c \"" + pick("INCLUDE", "IGNORE") + "\">"
          : "<!ENTITY % c '" + pick("INCLUDE", "IGNORE") + "'><![%c;[" + attributes() + "]]>";
      default -> pick("<?in dtd?>", "<!-- in the DTD -->", "%undeclared;", "<!ENTITY % q '<!ENTITY e \"q\">'>%q;",
          "<!ATTLIST a>", "<!ELEMENT a (b)><!ELEMENT a (c)>");
    };
  }

  private String attributes() {
    String one = switch (random.nextInt(9)) {
      case 0 -> "x CDATA '" + pick("one", "two", "&e;", "&lt;") + "'";
      case 1 -> "y (p|q) '" + pick("p", "q", "r") + "'";
      case 2 -> "id ID #IMPLIED";
      case 3 -> "n NMTOKENS '  t1   t2 '";
      case 4 -> "x CDATA #FIXED 'f" + random.nextInt(3) + "'";
      case 5 -> "xmlns CDATA '" + pick("urn:1", "urn:2", "") + "'";
      case 6 -> "xmlns:p CDATA #FIXED 'urn:p" + random.nextInt(3) + "'";
      case 7 -> "p:at CDATA 'v'";
      default -> "src ENTITY " + pick("#IMPLIED", "'pic'", "#REQUIRED");
    };
    return "<!ATTLIST " + name() + " " + one + ">";
  }

  private String entityText() {
    return pick("one", "two", "&f;", "&e;", "<b/>", "<b x='&g;'>&#38;</b>", "&#60;b/>", "", "</a>");
  }

  private String element(int depth) {
    String name = depth == 0 ? pick("a", "a", "a", "b") : name();
    StringBuilder text = new StringBuilder("<" + name);
    for (String each : List.of(" x='1'", " y=' q '", " id='i" + depth + "'", " src='pic'", " xmlns:p='urn:own'", " n=' u  v '",
        " z='&e;'"))
      if (chance(6))
        text.append(each);
    text.append(">");
    for (int count = depth > 2 ? 0 : random.nextInt(4); count > 0; count--)
      text.append(pick("text ", "&e;", "&f;", "&g;", "&x0;", "&x1;", "\n  ", "<![CDATA[&e;]]>", "<?pi in?>", "&undeclared;", "ü",
          element(depth + 1), element(depth + 1), element(depth + 1)));
    return chance(40) ? text.toString() : text.append("</").append(name).append(">").toString();
  }

  private String name() {
    return ELEMENTS.get(random.nextInt(ELEMENTS.size()));
  }

  boolean chance(int of) {
    return random.nextInt(of) == 0;
  }

  private String pick(String... texts) {
    return texts[random.nextInt(texts.length)];
  }
}
