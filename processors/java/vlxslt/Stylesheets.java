package vlxslt;

import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;
import javax.xml.transform.Source;
import javax.xml.transform.Templates;
import javax.xml.transform.TransformerConfigurationException;
import javax.xml.transform.TransformerException;
import javax.xml.transform.TransformerFactory;

/** Compiled stylesheets, kept while every module that was read for them is as it was. */
final class Stylesheets {
  private static final class Entry {
    Templates templates;
    List<FileStamp> modules;
    List<Diagnostics.Problem> problems;
    int generation;
  }

  private final Map<String, Entry> entries = new HashMap<>();
  private int generation;

  /** A new run begins, and hears the warnings of kept stylesheets once. */
  void startRun() {
    generation++;
  }

  void clear() {
    entries.clear();
  }

  /** `key` tells apart what may not be shared: the processor and the stylesheet's address. */
  Templates compile(String key, String address, TransformerFactory factory, Documents documents,
      Diagnostics diagnostics) throws TransformerException {
    Entry entry = entries.get(key);
    if (entry == null || !entry.modules.stream().allMatch(FileStamp::isCurrent)) {
      entries.remove(key);
      return compileAnew(key, address, factory, documents, diagnostics);
    }
    if (entry.generation != generation)
      diagnostics.repeat(entry.problems);
    entry.generation = generation;
    return entry.templates;
  }

  private Templates compileAnew(String key, String address, TransformerFactory factory, Documents documents,
      Diagnostics diagnostics) throws TransformerException {
    List<String> read = new ArrayList<>();
    factory.setErrorListener(diagnostics);
    factory.setURIResolver(documents.uriResolver(diagnostics, read::add));
    Source source = documents.source(address, diagnostics, read::add);
    Entry entry = new Entry();
    diagnostics.setSubject(address);
    entry.templates = factory.newTemplates(source);
    if (entry.templates == null)
      throw new TransformerConfigurationException("The stylesheet cannot be compiled.");
    diagnostics.failOn(Diagnostics.Level.ERROR);
    entry.modules = new ArrayList<>(read.stream().distinct().map(FileStamp::of).collect(Collectors.toList()));
    entry.problems = diagnostics.problems();
    entry.generation = generation;
    if (entry.modules.stream().noneMatch(java.util.Objects::isNull))
      entries.put(key, entry);
    return entry.templates;
  }
}
