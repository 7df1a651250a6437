package vlxslt;

import org.apache.xerces.xni.XMLLocator;

/**
 * The place in a document, for as long as it is read. Some processors ask for it afterwards, when the parser may be at
 * another document, on another thread.
 */
final class EndingLocator implements XMLLocator {
  private XMLLocator parser; // null when the document has been read

  EndingLocator(XMLLocator parser) {
    this.parser = parser;
  }

  void end() {
    parser = null;
  }

  @Override
  public String getPublicId() {
    return parser == null ? null : parser.getPublicId();
  }

  @Override
  public String getLiteralSystemId() {
    return parser == null ? null : parser.getLiteralSystemId();
  }

  @Override
  public String getBaseSystemId() {
    return parser == null ? null : parser.getBaseSystemId();
  }

  @Override
  public String getExpandedSystemId() {
    return parser == null ? null : parser.getExpandedSystemId();
  }

  @Override
  public int getLineNumber() {
    return parser == null ? -1 : parser.getLineNumber();
  }

  @Override
  public int getColumnNumber() {
    return parser == null ? -1 : parser.getColumnNumber();
  }

  @Override
  public int getCharacterOffset() {
    return parser == null ? -1 : parser.getCharacterOffset();
  }

  @Override
  public String getEncoding() {
    return parser == null ? null : parser.getEncoding();
  }

  @Override
  public String getXMLVersion() {
    return parser == null ? null : parser.getXMLVersion();
  }
}
