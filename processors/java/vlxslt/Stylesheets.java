package vlxslt;

import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.regex.Pattern;
import javax.xml.transform.TransformerConfigurationException;
import vlxslt.Diagnostic.Severity;
import vlxslt.ProcessorAdapter.Stylesheet;

/** Compiled stylesheets, kept while every module that was read for them is as it was. Shared by all jobs. */
final class Stylesheets {
  private static final class Entry {
    final Stylesheet stylesheet;
    final FilesRead modules;
    final List<Diagnostic> warnings;
    final int origin; // the run that it was compiled in
    volatile int generation;

    Entry(Stylesheet stylesheet, FilesRead modules, List<Diagnostic> warnings, int generation) {
      this.stylesheet = stylesheet;
      this.modules = modules;
      this.warnings = warnings;
      this.origin = generation;
      this.generation = generation;
    }
  }

  /** One stylesheet for one processor. */
  private record Subject(ProcessorAdapter processor, String address) {}

  /** What may not be shared: the form of a stylesheet that was compiled with these static parameters. */
  private record Key(Subject subject, Map<String, String> statics) {
    /** Other expressions may have another value by the next run. */
    boolean isConstant() {
      return statics.values().stream().allMatch(value -> CONSTANT.matcher(value).matches());
    }
  }

  private static final Pattern CONSTANT =
      Pattern.compile("'[^']*'|\"[^\"]*\"|-?[0-9.]+|true\\(\\)|false\\(\\)|[\\w.-]+");
  private static final int MAX_FORMS = 8; // of one stylesheet
  private static final int MAX_WITH_STATICS = 10_000;
  // Measured: compiled by Saxon, large stylesheets take 10 to 20 times the size of their source, dense ones up to 45
  // times. The others take half of that.
  private static final long BYTES_PER_BYTE = 24;
  private static final long BYTES_OF_SMALLEST = 32 << 10;

  private final BoundedCache<Key, Entry> entries = new BoundedCache<>(BoundedCache.partOfHeap(4));
  /** The static parameters that a stylesheet was ever seen to declare. */
  private final Map<Subject, Set<String>> statics = new ConcurrentHashMap<>();
  private volatile int generation;

  /** A new run begins, and hears the warnings of kept stylesheets once. */
  void startRun(int run) {
    generation = run;
  }

  void clear() {
    entries.clear();
    statics.clear();
  }

  Stylesheet compile(ProcessorAdapter processor, String address, Job job) throws Exception {
    Subject subject = new Subject(processor, address);
    // The first job of the run that needs it compiles it, or hears its warnings.
    job.turn().await(() -> isToldOf(entries.get(keyFor(subject, job))));
    Entry entry = findUsable(subject, job);
    if (!isToldOf(entry)) {
      job.turn().await();
      entry = findUsable(subject, job);
    }
    if (entry == null) {
      entry = compileAnew(processor, address, job);
      if (entry.modules.areCurrent())
        keep(subject, entry, job);
    } else {
      if (!isToldOf(entry))
        job.diagnostics().repeat(entry.warnings);
      entry.generation = generation;
      job.filesRead().addAll(entry.modules);
    }
    job.turn().settle();
    return entry.stylesheet;
  }

  private boolean isToldOf(Entry entry) {
    return entry != null && entry.generation == generation;
  }

  private Entry findUsable(Subject subject, Job job) {
    Key key = keyFor(subject, job);
    Entry entry = entries.get(key);
    if (entry == null)
      return null;
    // What came from the network shows no change: good for one run.
    boolean isLasting = entry.modules.areFiles() && key.isConstant();
    if (entry.modules.areCurrent() && (entry.origin == generation || isLasting))
      return entry;
    entries.remove(key, entry);
    return null;
  }

  // More names than a form depends on do no harm: they only tell forms apart that are alike.
  private Key keyFor(Subject subject, Job job) {
    Map<String, String> given = new HashMap<>(job.parameters());
    given.keySet().retainAll(statics.getOrDefault(subject, Set.of()));
    return new Key(subject, given);
  }

  private void keep(Subject subject, Entry entry, Job job) {
    if (statics.size() >= MAX_WITH_STATICS)
      clear();
    Set<String> declared = entry.stylesheet.staticParameters();
    if (!declared.isEmpty())
      statics.computeIfAbsent(subject, any -> ConcurrentHashMap.newKeySet()).addAll(declared);
    if (entries.count(key -> key.subject.equals(subject)) >= MAX_FORMS)
      entries.removeIf(key -> key.subject.equals(subject));
    entries.put(keyFor(subject, job), entry, BYTES_OF_SMALLEST + BYTES_PER_BYTE * entry.modules.bytes());
  }

  private Entry compileAnew(ProcessorAdapter processor, String address, Job job) throws Exception {
    Diagnostics diagnostics = job.diagnostics();
    FilesRead modules = new FilesRead();
    int before = diagnostics.count();
    diagnostics.setSubject(address);
    job.documents().noteUnasked(modules);
    try {
      Stylesheet stylesheet = processor.compile(job.documents().stylesheet(address, modules), job, modules);
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
