package vlxslt;

import javax.xml.transform.SourceLocator;
import org.xml.sax.SAXParseException;

/** Where a problem is. Lines and columns count from 1 and are -1 when unknown; an unknown file is null. */
record Place(String publicId, String systemId, int line, int column) {
  static final Place UNKNOWN = new Place(null, null, -1, -1);

  static Place of(SAXParseException e) {
    return of(e.getPublicId(), e.getSystemId(), e.getLineNumber(), e.getColumnNumber());
  }

  static Place of(SourceLocator locator) {
    SourceLocator known = locator;
    // Inside an expression, Saxon counts from the expression's start; around that is the place in the file.
    while (known != null && known.getClass().getSimpleName().equals("NestedLocation"))
      known = (SourceLocator) Reflection.find(known, "getContainingLocation");
    return known == null ? UNKNOWN
                         : of(known.getPublicId(), known.getSystemId(), known.getLineNumber(), known.getColumnNumber());
  }

  private static Place of(String publicId, String systemId, int line, int column) {
    String file = systemId == null || systemId.isEmpty() ? null : systemId;
    return new Place(publicId, file, line > 0 ? line : -1, line > 0 && column > 0 ? column : -1);
  }

  static Place of(String systemId) {
    return new Place(null, systemId, -1, -1);
  }

  /** This one in a file that is known otherwise, unless it names one itself; without a line, that place as it is. */
  Place in(Place known) {
    if (systemId != null)
      return this;
    return line < 0 ? known : new Place(publicId, known.systemId, line, column);
  }

  boolean isSameAs(Place other) {
    return line == other.line && (column == other.column || column < 0 || other.column < 0)
        && systemId.equals(other.systemId);
  }
}
