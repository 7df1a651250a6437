package vlxslt;

import java.io.IOException;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Objects;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;

/** What was read, in the order of reading, and what each file looked like then. */
final class FilesRead {
  private static final int MAX_FOLDERS = 10_000;
  private static final Map<Path, Path> REAL_FOLDERS = new ConcurrentHashMap<>();

  // By address; without a stamp where there is no file behind it.
  private final Map<String, FileStamp> files = new LinkedHashMap<>();
  private final Set<String> missed = new HashSet<>();
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

  /** A problem was found in them. */
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
    missed.addAll(others.missed);
  }

  /** What could not be opened. */
  void miss(String address) {
    missed.add(address);
    areFlawed = true;
    if (whole != null)
      whole.miss(address);
  }

  /** Whether one of them is among these, or the folder of one: then reading it again may give something else. */
  boolean haveAny(Set<Path> written) {
    if (written.isEmpty())
      return false;
    Set<Path> changed = new HashSet<>();
    for (Path path : written) {
      Path real = withRealFolder(path);
      changed.add(real);
      changed.add(real.getParent());
    }
    return files.entrySet().stream().anyMatch(each -> leadsTo(changed, each.getKey(), each.getValue()))
        || missed.stream().anyMatch(address -> leadsTo(changed, address, null));
  }

  private static boolean leadsTo(Set<Path> changed, String address, FileStamp stamp) {
    Path file = stamp == null ? Addresses.fileOf(address) : stamp.file();
    return file != null && changed.contains(withRealFolder(file));
  }

  // Two names of one folder must not hide that a file is the same.
  private static Path withRealFolder(Path file) {
    Path plain = file.toAbsolutePath().normalize();
    Path folder = plain.getParent();
    if (folder == null)
      return plain;
    if (REAL_FOLDERS.size() >= MAX_FOLDERS)
      REAL_FOLDERS.clear();
    return REAL_FOLDERS.computeIfAbsent(folder, FilesRead::realPathOf).resolve(plain.getFileName());
  }

  private static Path realPathOf(Path folder) {
    try {
      return folder.toRealPath();
    } catch (IOException e) {
      return folder;
    }
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
