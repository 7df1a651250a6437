package vlxslt;

import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.Map;
import java.util.Objects;
import java.util.Set;

/** What was read, in the order of reading, and what each file looked like then. */
final class FilesRead {
  // By address; without a stamp where there is no file behind it.
  private final Map<String, FileStamp> files = new LinkedHashMap<>();

  void add(String address) {
    if (!files.containsKey(address))
      files.put(address, FileStamp.of(address));
  }

  void add(String address, FileStamp stamp) {
    files.putIfAbsent(address, stamp);
  }

  void addAll(FilesRead others) {
    others.files.forEach(files::putIfAbsent);
  }

  /** Whether the files among them are as they were. */
  boolean areCurrent() {
    return files.entrySet().stream().allMatch(
        each -> each.getValue() == null ? !Addresses.isOfFile(each.getKey()) : each.getValue().isCurrent());
  }

  boolean areFiles() {
    return files.values().stream().allMatch(Objects::nonNull);
  }

  /** How long the files among them are together. */
  long bytes() {
    return files.values().stream().filter(Objects::nonNull).mapToLong(FileStamp::size).sum();
  }

  /** Paths, or addresses of what is no file; each once, however its address was written. */
  String[] paths() {
    Set<String> paths = new LinkedHashSet<>();
    files.forEach((address, stamp) -> paths.add(stamp == null ? Addresses.shown(address) : stamp.file().toString()));
    return paths.toArray(new String[0]);
  }
}
