package vlxslt;

import java.util.LinkedHashMap;
import java.util.Map;
import org.xml.sax.ContentHandler;
import org.xml.sax.DTDHandler;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;

/** What a processor set on a reader before it parses; parsers are shared, so it is taken back afterwards. */
final class ParserSettings {
  ContentHandler content;
  DTDHandler dtd;
  final Map<String, Boolean> features = new LinkedHashMap<>();
  final Map<String, Object> properties = new LinkedHashMap<>();
  private final Map<String, Boolean> earlier = new LinkedHashMap<>();

  void apply(XMLReader reader, Diagnostics diagnostics) throws SAXException {
    reader.setContentHandler(content);
    reader.setDTDHandler(dtd);
    reader.setErrorHandler(diagnostics);
    for (Map.Entry<String, Boolean> feature : features.entrySet()) {
      earlier.putIfAbsent(feature.getKey(), reader.getFeature(feature.getKey()));
      reader.setFeature(feature.getKey(), feature.getValue());
    }
    for (Map.Entry<String, Object> property : properties.entrySet())
      reader.setProperty(property.getKey(), property.getValue());
  }

  void restore(XMLReader reader) throws SAXException {
    reader.setContentHandler(null);
    reader.setDTDHandler(null);
    reader.setErrorHandler(null);
    for (Map.Entry<String, Boolean> feature : earlier.entrySet())
      reader.setFeature(feature.getKey(), feature.getValue());
    for (String property : properties.keySet())
      reader.setProperty(property, null);
  }
}
