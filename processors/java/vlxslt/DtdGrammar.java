package vlxslt;

import java.lang.reflect.Field;
import java.lang.reflect.Method;
import org.xml.sax.DTDHandler;
import org.xml.sax.SAXException;
import org.xml.sax.SAXParseException;

/** What the bridge needs of the bundled parser's grammar classes, reached without compiling against them. */
final class DtdGrammar {
  private static final String PACKAGE = "org.apache.xerces.";

  private final Class<?> pool = Class.forName(PACKAGE + "xni.grammars.XMLGrammarPool");
  private final Class<?> entityClass = Class.forName(PACKAGE + "impl.dtd.XMLEntityDecl");
  private final Class<?> notationClass = Class.forName(PACKAGE + "impl.dtd.XMLNotationDecl");
  private final Method getPublicId;
  private final Method getSystemId;
  private final Method getBaseUri;
  private final Method getEntity;
  private final Method getNotation;
  private final Method addInternal;
  private final Method addExternal;
  private final Method addUnparsed;

  DtdGrammar() throws ReflectiveOperationException {
    Class<?> identifier = Class.forName(PACKAGE + "xni.XMLResourceIdentifier");
    getPublicId = identifier.getMethod("getPublicId");
    getSystemId = identifier.getMethod("getLiteralSystemId");
    getBaseUri = identifier.getMethod("getBaseSystemId");
    Class<?> grammar = Class.forName(PACKAGE + "impl.dtd.DTDGrammar");
    getEntity = grammar.getMethod("getEntityDecl", int.class, entityClass);
    getNotation = grammar.getMethod("getNotationDecl", int.class, notationClass);
    Class<?> manager = Class.forName(PACKAGE + "impl.XMLEntityManager");
    Class<?> text = String.class;
    addInternal = manager.getMethod("addInternalEntity", text, text);
    addExternal = manager.getMethod("addExternalEntity", text, text, text, text);
    addUnparsed = manager.getMethod("addUnparsedEntity", text, text, text, text, text);
  }

  Class<?> poolInterface() {
    return pool;
  }

  String publicId(Object description) throws ReflectiveOperationException {
    return (String) getPublicId.invoke(description);
  }

  String systemId(Object description) throws ReflectiveOperationException {
    return (String) getSystemId.invoke(description);
  }

  String baseUri(Object description) throws ReflectiveOperationException {
    return (String) getBaseUri.invoke(description);
  }

  /** The problem, at the place in the document that the parser has come to. */
  SAXException locate(Object manager, Exception problem) {
    try {
      Object scanner = manager.getClass().getMethod("getEntityScanner").invoke(manager);
      Class<?> type = scanner.getClass();
      return new SAXParseException(problem.getMessage(), null, (String) type.getMethod("getExpandedSystemId").invoke(scanner),
          (Integer) type.getMethod("getLineNumber").invoke(scanner),
          (Integer) type.getMethod("getColumnNumber").invoke(scanner), problem);
    } catch (ReflectiveOperationException e) {
      return new SAXException(problem);
    }
  }

  /** Declares the general entities to the parser, and notations and unparsed entities to the application. */
  void declareEntities(Object grammar, Object manager, DTDHandler handler)
      throws ReflectiveOperationException, SAXException {
    Object entity = entityClass.getDeclaredConstructor().newInstance();
    Object notation = notationClass.getDeclaredConstructor().newInstance();
    for (int i = 0; (Boolean) getNotation.invoke(grammar, i, notation); i++) {
      if (handler != null)
        handler.notationDecl(text(notation, "name"), text(notation, "publicId"), address(notation));
    }
    for (int i = 0; (Boolean) getEntity.invoke(grammar, i, entity); i++) {
      if (!entityClass.getField("isPE").getBoolean(entity))
        declare(entity, manager, handler);
    }
  }

  private void declare(Object entity, Object manager, DTDHandler handler)
      throws ReflectiveOperationException, SAXException {
    String name = text(entity, "name");
    String publicId = text(entity, "publicId");
    String systemId = text(entity, "systemId");
    String base = text(entity, "baseSystemId");
    String notation = text(entity, "notation");
    if (systemId == null && publicId == null) {
      addInternal.invoke(manager, name, text(entity, "value"));
    } else if (notation == null) {
      addExternal.invoke(manager, name, publicId, systemId, base);
    } else {
      addUnparsed.invoke(manager, name, publicId, systemId, base, notation);
      if (handler != null)
        handler.unparsedEntityDecl(name, publicId, address(entity), notation);
    }
  }

  private static String address(Object declaration) throws ReflectiveOperationException {
    return Addresses.resolve(text(declaration, "baseSystemId"), text(declaration, "systemId"));
  }

  private static String text(Object declaration, String name) throws ReflectiveOperationException {
    Field field = declaration.getClass().getField(name);
    return (String) field.get(declaration);
  }
}
