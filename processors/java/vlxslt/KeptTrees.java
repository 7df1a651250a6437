package vlxslt;

import java.io.IOException;
import java.nio.file.Path;
import java.util.HashSet;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;

/**
 * Trees of the documents that stylesheets read by themselves, kept while every file that was read for them is as it was
 * when a run first uses them, and the host still resolves to the same files. What a job of the run writes is read anew.
 * Shared by all jobs; a tree is in the form of its processor, which may only read it.
 */
final class KeptTrees {
  /** A tree depends on the compiled stylesheet that read it (white space), and on whether it may include others. */
  record Key(Object stylesheet, String address, boolean includes) {}

  /** A tree, and what was read for it in the order of reading. */
  static final class Entry {
    final Object tree;
    final FilesRead files;
    private final Set<Integer> realFiles;
    private volatile int generation;

    private Entry(Object tree, FilesRead files, Set<Integer> realFiles, int generation) {
      this.tree = tree;
      this.files = files;
      this.realFiles = realFiles;
      this.generation = generation;
    }
  }

  private static final long BYTES_OF_SMALLEST = 8 << 10;

  private final BoundedCache<Key, Entry> entries = new BoundedCache<>(BoundedCache.partOfHeap(8));
  private final Set<Integer> written = ConcurrentHashMap.newKeySet(); // hashes: two alike only cost a reading
  private volatile int generation;

  /** A new run begins: files and the host's settings may have changed since the last one. */
  void startRun(int run) {
    generation = run;
    written.clear();
  }

  void clear() {
    entries.clear();
  }

  /** Before an output takes its place. */
  void noteWritten(Path output) {
    try {
      written.add(WriteGate.realPath(output).hashCode());
    } catch (IOException e) {
      clear(); // where it is written cannot be told
    }
  }

  /** Null when there is no tree, or none any more. The host may be asked for what the document refers to. */
  Entry find(Key key, EntityResolution resolution) {
    Entry entry = entries.get(key);
    if (entry == null || isCurrent(entry, resolution))
      return entry;
    entries.remove(key, entry);
    return null;
  }

  /** `before` is what the document's file was like before it was opened; `bytes` an estimate of the tree's size. */
  void keep(Key key, Object tree, FilesRead files, FileStamp before, long bytes) {
    if (before == null || !before.equals(files.stampOf(key.address)) || !files.areFiles() || files.areFlawed())
      return;
    try {
      Set<Integer> realFiles = new HashSet<>();
      for (String path : files.paths())
        realFiles.add(WriteGate.realPath(Path.of(path)).hashCode());
      entries.put(key, new Entry(tree, files, realFiles, generation), BYTES_OF_SMALLEST + bytes);
    } catch (IOException e) {
      // Gone meanwhile.
    }
  }

  private boolean isCurrent(Entry entry, EntityResolution resolution) {
    if (isWritten(entry))
      return false;
    int run = generation;
    if (entry.generation == run)
      return true;
    // The first job of the run that uses it asks for all.
    resolution.turn().await(() -> entry.generation == run);
    if (entry.generation == run)
      return true;
    if (!entry.files.areCurrent() || !entry.files.areResolved(resolution))
      return false;
    entry.generation = run;
    resolution.turn().settle();
    return true;
  }

  private boolean isWritten(Entry entry) {
    return !written.isEmpty() && entry.realFiles.stream().anyMatch(written::contains);
  }
}
