package vlxslt;

import java.util.List;
import org.apache.xerces.impl.dtd.DTDGrammar;

/**
 * Grammars of external DTD subsets, so that a run over many topics reads each document type once. A grammar is used
 * again while every file that it was read from is unchanged and the host still resolves to the same files. Shared by
 * all jobs.
 */
final class DtdCache {
  /** One entity that was read for the DTD, and where it came from. */
  record Module(String name, String publicId, String baseUri, String systemId, String address, FileStamp stamp) {}

  static final class Entry {
    final DTDGrammar grammar;
    final List<Module> modules;
    private volatile int generation;

    Entry(DTDGrammar grammar, List<Module> modules, int generation) {
      this.grammar = grammar;
      this.modules = modules;
      this.generation = generation;
    }
  }

  // An estimate for dense DTDs, on the safe side; what the files say in comments counts too.
  private static final long BYTES_PER_BYTE = 12;
  private static final long BYTES_OF_SMALLEST = 64 << 10;

  private final BoundedCache<String, Entry> entries = new BoundedCache<>(BoundedCache.partOfHeap(8));
  private final SharedSymbols symbols = new SharedSymbols(BoundedCache.partOfHeap(16));
  private volatile int generation;

  DtdCache(int run) {
    generation = run;
  }

  /** The names in the grammars, which hold them by identity: all parsers of this cache share them. */
  SharedSymbols symbols() {
    return symbols;
  }

  /** A new run begins: the host's catalogs may have changed since the last one. */
  void startRun(int run) {
    generation = run;
  }

  Entry find(String publicId, String address, EntityResolution resolution) {
    String key = key(publicId, address);
    Entry entry = entries.get(key);
    if (entry == null || isCurrent(entry, resolution))
      return entry;
    entries.remove(key, entry);
    return null;
  }

  void keep(String publicId, String address, DTDGrammar grammar, List<Module> modules) {
    if (!modules.stream().allMatch(module -> module.stamp() != null))
      return;
    long read = modules.stream().mapToLong(module -> module.stamp().size()).sum();
    entries.put(key(publicId, address), new Entry(grammar, List.copyOf(modules), generation),
        BYTES_OF_SMALLEST + BYTES_PER_BYTE * read);
  }

  private boolean isCurrent(Entry entry, EntityResolution resolution) {
    if (!entry.modules.stream().allMatch(module -> module.stamp().isCurrent()))
      return false;
    int run = generation;
    // The first job of the run that uses it asks for all.
    resolution.turn().await(() -> entry.generation == run);
    if (entry.generation == run)
      return true;
    // The first is the subset itself, which the host has just been asked for.
    boolean isSame = entry.modules.stream().skip(1).allMatch(module -> module.address().equals(
        resolution.resolve(module.name(), module.publicId(), module.baseUri(), module.systemId())));
    if (isSame) {
      entry.generation = run;
      resolution.turn().settle();
    }
    return isSame;
  }

  private static String key(String publicId, String address) {
    return publicId + '\n' + address;
  }
}
