package vlxslt;

import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Objects;
import java.util.Set;

/** What was read, in the order of reading, and what each file looked like then. */
final class FilesRead {
  // By address; without a stamp where there is no file behind it.
  private final Map<String, FileStamp> files = new LinkedHashMap<>();
  private final List<DtdCache.Module> modules = new ArrayList<>(); // what the host was asked for
  private final FilesRead whole;
  private boolean areFlawed;

  FilesRead() {
    this(null);
  }

  /** Those of one document; they join `whole` as they are read. */
  FilesRead(FilesRead whole) {
    this.whole = whole;
  }

  void add(String address) {
    if (!files.containsKey(address))
      add(address, FileStamp.of(address));
  }

  void add(String address, FileStamp stamp) {
    files.putIfAbsent(address, stamp);
    if (whole != null)
      whole.add(address, stamp);
  }

  void add(DtdCache.Module module) {
    add(module.address(), module.stamp());
    modules.add(module);
  }

  /** A problem was found in them, or something that was looked for is not there. */
  void setFlawed() {
    areFlawed = true;
  }

  boolean areFlawed() {
    return areFlawed;
  }

  /** Null when it was not read, or is no file. */
  FileStamp stampOf(String address) {
    return files.get(address);
  }

  /** Whether what they refer to still leads to the same addresses. */
  boolean areResolved(EntityResolution resolution) {
    return modules.stream().allMatch(module -> module.address().equals(
        resolution.resolve(module.name(), module.publicId(), module.baseUri(), module.systemId())));
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
