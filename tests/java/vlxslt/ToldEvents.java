package vlxslt;

import java.util.ArrayList;
import java.util.List;
import java.util.TreeSet;
import org.xml.sax.Attributes;
import org.xml.sax.Locator;
import org.xml.sax.ext.Attributes2;
import org.xml.sax.ext.DefaultHandler2;

/**
 * Notes in lines what a parser tells of a document, and the layer of its problems. Of a document type only what is
 * declared to processors counts: comments, instructions and entities inside it are not compared.
 */
final class ToldEvents extends DefaultHandler2 implements IVLXSLTJavaHandler {
  private final DtdWorld world;
  private final List<String> lines = new ArrayList<>();
  private final StringBuilder text = new StringBuilder();
  private final TreeSet<String> declared = new TreeSet<>(); // their order means nothing
  private Locator locator;
  private boolean isInDtd;

  ToldEvents(DtdWorld world) {
    this.world = world;
  }

  List<String> lines() {
    add("end");
    lines.addAll(declared);
    return lines;
  }

  void add(String line) {
    if (!text.isEmpty()) {
      lines.add("text " + text);
      text.setLength(0);
    }
    if (!isInDtd)
      lines.add(line);
  }

  @Override
  public void setDocumentLocator(Locator documentLocator) {
    locator = documentLocator;
  }

  @Override
  public void startElement(String uri, String localName, String name, Attributes attributes) {
    StringBuilder line = new StringBuilder("start {" + uri + "}" + localName + " " + name);
    for (int i = 0; i < attributes.getLength(); i++)
      line.append(" {").append(attributes.getURI(i)).append("}").append(attributes.getQName(i)).append(" ")
          .append(attributes.getType(i)).append(((Attributes2) attributes).isSpecified(i) ? "=" : "~")
          .append(attributes.getValue(i));
    add(line + " at " + locator.getSystemId() + " " + locator.getLineNumber() + ":" + locator.getColumnNumber());
  }

  @Override
  public void endElement(String uri, String localName, String name) {
    add("end " + name);
  }

  @Override
  public void characters(char[] letters, int start, int length) {
    text.append(letters, start, length);
  }

  @Override
  public void ignorableWhitespace(char[] letters, int start, int length) {
    add("blank " + new String(letters, start, length));
  }

  @Override
  public void processingInstruction(String target, String data) {
    add("instruction " + target + " " + data);
  }

  @Override
  public void startPrefixMapping(String prefix, String uri) {
    add("prefix " + prefix + " " + uri);
  }

  @Override
  public void skippedEntity(String name) {
    add("skipped " + name);
  }

  @Override
  public void notationDecl(String name, String publicId, String systemId) {
    declared.add("notation " + name + " " + publicId + " " + systemId);
  }

  @Override
  public void unparsedEntityDecl(String name, String publicId, String systemId, String notation) {
    declared.add("unparsed " + name + " " + publicId + " " + systemId + " " + notation);
  }

  @Override
  public void startDTD(String name, String publicId, String systemId) {
    add("doctype " + name + " " + publicId + " " + systemId);
    isInDtd = true;
  }

  @Override
  public void endDTD() {
    isInDtd = false;
  }

  @Override
  public void startEntity(String name) {
    add("entity " + name);
  }

  @Override
  public void endEntity(String name) {
    add("end of entity " + name);
  }

  @Override
  public void startCDATA() {
    add("CDATA");
  }

  @Override
  public void comment(char[] letters, int start, int length) {
    add("comment " + new String(letters, start, length));
  }

  // What the layer asks and tells.

  @Override
  public String ResolveEntity(String name, String publicId, String baseUri, String systemId) {
    String answer = publicId == null ? null : world.catalog.get(publicId);
    return answer != null ? answer : world.catalog.getOrDefault(systemId, "");
  }

  @Override
  public void FatalError(String message, String publicId, String systemId, int line, int column, String code) {
    problem("fatal", message, systemId, line, column);
  }

  @Override
  public void Error(String message, String publicId, String systemId, int line, int column, String code) {
    problem("error", message, systemId, line, column);
  }

  @Override
  public void Warning(String message, String publicId, String systemId, int line, int column, String code) {
    problem("warning", message, systemId, line, column);
  }

  private void problem(String severity, String message, String systemId, int line, int column) {
    declared.add(severity + " " + systemId + " " + line + ":" + column + " " + message);
  }

  @Override
  public void Message(String message) {}

  @Override
  public void StartDocument(String path) {}

  @Override
  public void EndDocument() {}
}
