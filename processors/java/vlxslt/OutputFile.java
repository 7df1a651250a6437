package vlxslt;

import java.io.IOException;
import java.io.OutputStream;
import java.nio.charset.StandardCharsets;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.PosixFileAttributeView;
import java.nio.file.attribute.PosixFileAttributes;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.atomic.AtomicInteger;

/**
 * One output that appears whole or not at all: it is written beside its target and takes the target's place on commit.
 * A target that is a link keeps being one, an existing file keeps its owner and permissions.
 */
final class OutputFile extends OutputStream {
  private static final int MAX_LINKS = 40;
  private static final AtomicInteger counter = new AtomicInteger();
  private static final Set<OutputFile> unfinished = ConcurrentHashMap.newKeySet();
  private static String unfinishedPrefix = ".vlxslt-";
  private static volatile boolean isClosed; // for good

  private final Path named;
  private final Path target; // what it leads to, when it is a link
  private final Path written;
  private final boolean renames;
  private OutputStream stream;
  private IOException failure;

  OutputFile(Path target) throws IOException {
    named = target;
    this.target = followLinks(target);
    if (Files.isDirectory(this.target))
      throw new IOException(Text.OUTPUT_IS_FOLDER.with(target));
    boolean exists = Files.exists(this.target);
    if (exists && !Files.isWritable(this.target))
      throw new IOException(Text.OUTPUT_READ_ONLY.with(target));
    Path folder = this.target.toAbsolutePath().getParent();
    if (!Files.isDirectory(folder))
      throw new IOException(Text.OUTPUT_FOLDER_MISSING.with(folder));
    String name = unfinishedPrefix + counter.incrementAndGet() + ".tmp";
    // A device or a pipe cannot be replaced, nor a file in a folder that takes no new ones: those get a copy.
    renames = (!exists || Files.isRegularFile(this.target)) && Files.isWritable(folder);
    if (!renames && !exists)
      throw new IOException(Text.OUTPUT_FOLDER_READ_ONLY.with(folder));
    written = renames ? folder.resolve(name) : Files.createTempFile("vlxslt-", ".tmp");
    stream = new java.io.BufferedOutputStream(
        Files.newOutputStream(written, StandardOpenOption.CREATE, StandardOpenOption.TRUNCATE_EXISTING), 1 << 16);
    unfinished.add(this);
    if (isClosed)
      discard(); // the writer fails at its next write
  }

  /** How the names of files begin that are not whole yet; they tell which process writes them. */
  static void setUnfinishedPrefix(String prefix) {
    unfinishedPrefix = prefix;
  }

  /** Runs a commit of one or several files; not interrupted by `discardAll`, and refused after it. */
  static void commitTogether(Commit commit) throws IOException {
    synchronized (unfinished) {
      if (isClosed)
        throw new IOException("Outputs are discarded");
      commit.run();
    }
  }

  /** From any thread, while others write: what is unfinished goes, and nothing more takes its place. */
  static void discardAll() {
    synchronized (unfinished) {
      isClosed = true;
    }
    unfinished.forEach(OutputFile::delete);
  }

  @Override
  public void write(int b) throws IOException {
    remember(() -> open().write(b));
  }

  @Override
  public void write(byte[] bytes, int from, int count) throws IOException {
    remember(() -> open().write(bytes, from, count));
  }

  @Override
  public void flush() throws IOException {
    // Processors flush often, and some once more after closing; only the end matters.
  }

  @Override
  public void close() throws IOException {
    OutputStream open = stream;
    stream = null;
    if (open != null)
      remember(open::close);
  }

  /** Goes on behind what a closed file holds. */
  void reopen() throws IOException {
    if (stream == null)
      stream = new java.io.BufferedOutputStream(Files.newOutputStream(written, StandardOpenOption.APPEND), 1 << 16);
  }

  /** Only inside `commitTogether`. */
  void commit() throws IOException {
    close();
    if (failure != null)
      throw failure;
    if (!renames) {
      try (OutputStream out = Files.newOutputStream(target)) {
        Files.copy(written, out);
      }
      delete();
      return;
    }
    keepAttributes();
    try {
      Files.move(written, target, StandardCopyOption.ATOMIC_MOVE);
    } catch (AtomicMoveNotSupportedException e) {
      Files.move(written, target, StandardCopyOption.REPLACE_EXISTING);
    }
    unfinished.remove(this);
  }

  /** Removes what was written; the target is as it was. After a commit it does nothing. */
  void discard() {
    try {
      close();
    } catch (IOException e) {
      // The file goes anyway.
    }
    delete();
  }

  private void delete() {
    try {
      Files.deleteIfExists(written);
      unfinished.remove(this);
    } catch (IOException e) {
      written.toFile().deleteOnExit();
    }
  }

  boolean hasTargetOf(OutputFile other) {
    return target.equals(other.target);
  }

  /** Whether a closed file holds nothing but, perhaps, a declaration. */
  boolean isBlank() throws IOException {
    return Files.size(written) < 200
        && Files.readString(written, StandardCharsets.ISO_8859_1).matches("(<\\?xml[^?]*\\?>)?\\s*");
  }

  /** As it was asked for. */
  Path path() {
    return named;
  }

  private OutputStream open() throws IOException {
    if (stream == null)
      throw new IOException("The output is closed: " + target);
    return stream;
  }

  /** Its text says what went wrong; that of the processor's wrapper often does not. */
  static final class WriteFailure extends IOException {
    private static final long serialVersionUID = 1;

    private final String file;

    WriteFailure(String file, String message, IOException cause) {
      super(message, cause);
      this.file = file;
    }

    /** Its path; null when it is none. */
    String file() {
      return file;
    }
  }

  interface Commit {
    void run() throws IOException;
  }

  private interface Write {
    void run() throws IOException;
  }

  // Some serialisers swallow what goes wrong here, a full disk included.
  private void remember(Write write) throws IOException {
    try {
      write.run();
    } catch (IOException e) {
      if (failure == null)
        failure = new WriteFailure(named.toString(), Text.OUTPUT_NOT_WRITTEN.with(target, e.getMessage()), e);
      throw failure;
    }
  }

  private void keepAttributes() throws IOException {
    PosixFileAttributeView old = Files.getFileAttributeView(target, PosixFileAttributeView.class);
    if (old == null || !Files.exists(target))
      return;
    PosixFileAttributes attributes = old.readAttributes();
    PosixFileAttributeView mine = Files.getFileAttributeView(written, PosixFileAttributeView.class);
    try {
      mine.setOwner(attributes.owner());
      mine.setGroup(attributes.group());
    } catch (IOException e) {
      // Only a privileged process may give files away.
    }
    mine.setPermissions(attributes.permissions());
  }

  // A link may point at a file that does not exist yet; that file is then the target.
  private static Path followLinks(Path path) throws IOException {
    Path at = path.toAbsolutePath();
    for (int links = 0; Files.isSymbolicLink(at); links++) {
      if (links == MAX_LINKS)
        throw new IOException(Text.TOO_MANY_LINKS.with(path));
      at = at.resolveSibling(Files.readSymbolicLink(at));
    }
    return Files.exists(at, LinkOption.NOFOLLOW_LINKS) ? at.toRealPath() : at;
  }
}
