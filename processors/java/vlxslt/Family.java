package vlxslt;

import java.util.Map;
import javax.xml.transform.Transformer;
import javax.xml.transform.TransformerFactory;

/** What processors offer beyond the common interface; one class per family, reached by reflection. */
interface Family {
  static Family of(TransformerFactory factory) {
    return SaxonFamily.isOne(factory) ? new SaxonFamily(factory) : new PlainFamily(factory);
  }

  /** Sends xsl:message to the diagnostics and secondary results to the outputs. */
  void connect(Transformer transformer, String outputAddress, Outputs outputs, Diagnostics diagnostics)
      throws ReflectiveOperationException;

  /** Values are XPath expressions; what is none, or needs a document to be looked up in, is the text itself. */
  void setParameters(Transformer transformer, Map<String, String> expressions) throws ReflectiveOperationException;

  /** Null when the processor does not tell. */
  String version();
}
