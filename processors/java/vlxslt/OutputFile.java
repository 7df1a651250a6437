package vlxslt;

import java.io.BufferedOutputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.nio.channels.Channels;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.util.ArrayList;
import java.util.List;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;

/**
 * One output that appears whole or not at all: it is written beside its target and takes the target's place on commit.
 * Its data is on disk by then, so that a power cut leaves the old file or the new one; the folder is the caller's to
 * sync. A target that is a link keeps being one, an existing file keeps its owner and permissions, and other names of
 * it (hard links) keep the old content.
 */
final class OutputFile extends OutputStream {
  private static final int MAX_LINKS = 40;
  private static final Set<OutputFile> unfinished = ConcurrentHashMap.newKeySet();
  private static String unfinishedPrefix = ".vlxslt-";
  private static volatile boolean isClosed; // for good
  private static volatile boolean syncs = true;

  private final Path named;
  private final Path target; // what it leads to, when it is a link
  private final Path written;
  private final boolean renames;
  private final boolean isFinal;
  private FileChannel channel;
  private final List<String> losses = new ArrayList<>();
  private OutputStream stream;
  private IOException failure;
  private boolean isReopened; // perhaps often: it is synced once, on commit

  /** One that is not final goes to another place in the end, by other means: it is private and need not be synced. */
  OutputFile(Path target, boolean isFinal) throws IOException {
    named = target;
    this.isFinal = isFinal;
    this.target = followLinks(target);
    if (Files.isDirectory(this.target))
      throw new IOException(Text.OUTPUT_IS_FOLDER.with(target));
    boolean exists = Files.exists(this.target);
    if (exists && !Files.isWritable(this.target))
      throw new IOException(Text.OUTPUT_READ_ONLY.with(target));
    Path folder = this.target.toAbsolutePath().getParent();
    if (!Files.isDirectory(folder))
      throw new IOException(Text.OUTPUT_FOLDER_MISSING.with(folder));
    // A device or a pipe cannot be replaced: it gets a copy. A file could be lost that way.
    renames = !exists || Files.isRegularFile(this.target);
    if (renames && !Files.isWritable(folder))
      throw new IOException(Text.OUTPUT_FOLDER_READ_ONLY.with(folder));
    // What replaces a private file must not be readable for a moment either.
    NewFile file = renames ? NewFile.in(folder, unfinishedPrefix, exists || !isFinal)
                           : NewFile.in(Path.of(System.getProperty("java.io.tmpdir")), unfinishedPrefix, true);
    written = file.path();
    channel = file.channel();
    stream = new BufferedOutputStream(Channels.newOutputStream(channel), 1 << 16);
    unfinished.add(this);
    if (isClosed)
      discard(); // the writer fails at its next write
  }

  /** How the names of files begin that are not whole yet; they tell which process writes them. */
  static void setUnfinishedPrefix(String prefix) {
    unfinishedPrefix = prefix;
  }

  /** Whether data is on disk before an output takes its place. */
  static void setSyncs(boolean isOn) {
    syncs = isOn;
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
      remember(() -> finish(open));
  }

  /** Goes on behind what a closed file holds. */
  void reopen() throws IOException {
    if (stream != null)
      return;
    channel = FileChannel.open(written, StandardOpenOption.APPEND, LinkOption.NOFOLLOW_LINKS);
    stream = new BufferedOutputStream(Channels.newOutputStream(channel), 1 << 16);
    isReopened = true;
  }

  /** Before `commit`: nothing more is written. */
  void complete() throws IOException {
    close();
    if (failure != null)
      throw failure;
    if (isSynced() && isReopened)
      remember(this::syncAgain);
  }

  /** Only inside `commitTogether`, of a complete file. */
  void commit() throws IOException {
    if (!renames) {
      try (OutputStream out = Files.newOutputStream(target, StandardOpenOption.WRITE)) {
        Files.copy(written, out);
      }
      delete();
      return;
    }
    noteOtherNames();
    if (Files.exists(target) && !NewFile.takeAttributes(written, target))
      losses.add(Text.PERMISSIONS_NOT_KEPT.with(target));
    try {
      Files.move(written, target, StandardCopyOption.ATOMIC_MOVE);
    } catch (AtomicMoveNotSupportedException e) {
      Files.move(written, target, StandardCopyOption.REPLACE_EXISTING);
    }
    unfinished.remove(this);
  }

  /** Removes what was written; the target is as it was. After a commit it does nothing. */
  void discard() {
    stream = null;
    try {
      channel.close();
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

  boolean isFinal() {
    return isFinal;
  }

  boolean hasTargetOf(OutputFile other) {
    return target.equals(other.target);
  }

  /** Whether a closed file holds nothing but, perhaps, a declaration. */
  boolean isBlank() throws IOException {
    return Files.size(written) < 200
        && Files.readString(written, StandardCharsets.ISO_8859_1).matches("(<\\?xml[^?]*\\?>)?\\s*");
  }

  /** What the target had and could not be kept when this file took its place, in words. */
  List<String> losses() {
    return losses;
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

  private void finish(OutputStream open) throws IOException {
    boolean isOnDisk = false;
    try (FileChannel closed = channel) {
      open.flush();
      if (isSynced() && !isReopened) {
        closed.force(true);
        isOnDisk = true;
      }
    } catch (IOException e) {
      // To close what is on disk loses nothing, even when a signal interrupts it.
      if (!isOnDisk)
        throw e;
    }
  }

  private boolean isSynced() {
    return syncs && isFinal && renames;
  }

  private void syncAgain() throws IOException {
    try (FileChannel written = FileChannel.open(this.written, StandardOpenOption.WRITE, LinkOption.NOFOLLOW_LINKS)) {
      written.force(true);
    }
  }

  private void noteOtherNames() throws IOException {
    if (!Files.exists(target) || !target.getFileSystem().supportedFileAttributeViews().contains("unix"))
      return;
    int names = (Integer) Files.getAttribute(target, "unix:nlink");
    if (names > 1)
      losses.add(Text.OTHER_NAMES_KEEP_OLD.with(target, names - 1));
  }

  // A link may point at a file that does not exist yet; that file is then the target.
  static Path followLinks(Path path) throws IOException {
    Path at = path.toAbsolutePath();
    for (int links = 0; Files.isSymbolicLink(at); links++) {
      if (links == MAX_LINKS)
        throw new IOException(Text.TOO_MANY_LINKS.with(path));
      at = at.resolveSibling(Files.readSymbolicLink(at));
    }
    return Files.exists(at, LinkOption.NOFOLLOW_LINKS) ? at.toRealPath() : at;
  }
}
