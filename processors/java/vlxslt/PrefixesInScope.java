package vlxslt;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import org.xml.sax.ContentHandler;
import org.xml.sax.SAXException;

/** The namespace prefixes that are declared where a document is being read, for an element that is cut out of it. */
final class PrefixesInScope {
  private record Prefix(String name, String uri) {}

  private final List<Prefix> prefixes = new ArrayList<>(); // the innermost last

  void start(String name, String uri) {
    prefixes.add(new Prefix(name, uri));
  }

  /** False when there is none of that name. */
  boolean end(String name) {
    for (int i = prefixes.size() - 1; i >= 0; i--)
      if (prefixes.get(i).name.equals(name)) {
        prefixes.remove(i);
        return true;
      }
    return false;
  }

  /** Declares them all for the element that `handler` is to begin with. */
  void declare(ContentHandler handler) throws SAXException {
    Map<String, String> inScope = new LinkedHashMap<>();
    prefixes.forEach(prefix -> inScope.put(prefix.name, prefix.uri));
    for (Map.Entry<String, String> prefix : inScope.entrySet())
      handler.startPrefixMapping(prefix.getKey(), prefix.getValue());
  }
}
