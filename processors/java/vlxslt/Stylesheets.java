package vlxslt;

import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import javax.xml.transform.TransformerConfigurationException;
import vlxslt.Diagnostic.Severity;
import vlxslt.ProcessorAdapter.Stylesheet;

/** Compiled stylesheets, kept while every module that was read for them is as it was. Shared by all jobs. */
final class Stylesheets {
  private static final class Entry {
    final Stylesheet stylesheet;
    final FilesRead modules;
    final List<Diagnostic> warnings;
    volatile int generation;

    Entry(Stylesheet stylesheet, FilesRead modules, List<Diagnostic> warnings, int generation) {
      this.stylesheet = stylesheet;
      this.modules = modules;
      this.warnings = warnings;
      this.generation = generation;
    }
  }

  /** What may not be shared: a processor's own compiled form of one stylesheet. */
  private record Key(ProcessorAdapter processor, String address) {}

  private final Map<Key, Entry> entries = new ConcurrentHashMap<>();
  private volatile int generation;

  /** A new run begins, and hears the warnings of kept stylesheets once. */
  void startRun(int run) {
    generation = run;
  }

  void clear() {
    entries.clear();
  }

  Stylesheet compile(ProcessorAdapter processor, String address, Job job) throws Exception {
    Key key = new Key(processor, address);
    Entry entry = entries.get(key);
    int run = generation;
    // What came from the network shows no change: good for one run.
    if (entry == null || !entry.modules.areCurrent() || entry.generation != run && !entry.modules.areFiles()) {
      entries.remove(key);
      entry = compileAnew(processor, address, job);
      if (entry.modules.areCurrent())
        entries.put(key, entry);
      return entry.stylesheet;
    }
    if (entry.generation != run)
      job.diagnostics().repeat(entry.warnings);
    entry.generation = run;
    job.filesRead().addAll(entry.modules);
    return entry.stylesheet;
  }

  private Entry compileAnew(ProcessorAdapter processor, String address, Job job) throws Exception {
    Diagnostics diagnostics = job.diagnostics();
    FilesRead modules = new FilesRead();
    int before = diagnostics.count();
    diagnostics.setSubject(address);
    job.documents().noteUnasked(modules);
    try {
      Stylesheet stylesheet = processor.compile(job.documents().source(address, modules), job, modules);
      diagnostics.failOn(Severity.ERROR);
      if (stylesheet == null)
        throw new TransformerConfigurationException(Text.STYLESHEET_NOT_COMPILED.with());
      return new Entry(stylesheet, modules, diagnostics.since(before), generation);
    } finally {
      job.documents().noteUnasked(job.filesRead());
      job.filesRead().addAll(modules);
    }
  }
}
