package vlxslt;

import java.io.IOException;
import org.apache.xerces.impl.XMLEntityManager;
import org.apache.xerces.impl.XMLEntityScanner;
import org.apache.xerces.impl.dtd.DTDGrammar;
import org.apache.xerces.impl.dtd.XMLEntityDecl;
import org.apache.xerces.impl.dtd.XMLNotationDecl;
import org.xml.sax.DTDHandler;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;

/** What the parser leaves out when it takes a DTD from its grammar pool. */
final class DtdGrammar {
  private DtdGrammar() {}

  /** The problem, at the place in the document that the parser has come to. */
  static SAXParseException locate(XMLEntityManager manager, IOException problem) {
    XMLEntityScanner scanner = manager.getEntityScanner();
    return new SAXParseException(problem.getMessage(), null, scanner.getExpandedSystemId(), scanner.getLineNumber(),
        scanner.getColumnNumber(), problem);
  }

  /** Declares the general entities to the parser, and notations and unparsed entities to the application. */
  static void declareEntities(DTDGrammar grammar, XMLEntityManager manager, DTDHandler handler)
      throws IOException, SAXException {
    XMLNotationDecl notation = new XMLNotationDecl();
    for (int i = 0; handler != null && grammar.getNotationDecl(i, notation); i++)
      handler.notationDecl(notation.name, notation.publicId,
          Addresses.resolve(notation.baseSystemId, notation.systemId));
    XMLEntityDecl entity = new XMLEntityDecl();
    // Where they were declared counts: a standalone document may not use them.
    manager.startExternalSubset();
    for (int i = 0; grammar.getEntityDecl(i, entity); i++) {
      if (!entity.isPE)
        declare(entity, manager, handler);
    }
    manager.endExternalSubset();
  }

  private static void declare(XMLEntityDecl entity, XMLEntityManager manager, DTDHandler handler)
      throws IOException, SAXException {
    if (entity.systemId == null && entity.publicId == null) {
      manager.addInternalEntity(entity.name, entity.value);
    } else if (entity.notation == null) {
      manager.addExternalEntity(entity.name, entity.publicId, entity.systemId, entity.baseSystemId);
    } else {
      manager.addUnparsedEntity(entity.name, entity.publicId, entity.systemId, entity.baseSystemId, entity.notation);
      if (handler != null)
        handler.unparsedEntityDecl(entity.name, entity.publicId,
            Addresses.resolve(entity.baseSystemId, entity.systemId), entity.notation);
    }
  }
}
