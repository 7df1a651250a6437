package vlxslt;

import java.io.IOException;
import java.io.OutputStream;
import java.net.URI;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.function.BiConsumer;

/**
 * All outputs of one job, as a processor writes them. Ahead of the job's turn they are held in memory, and nothing of
 * them shows in the file system. Used by the thread that the job is on.
 */
final class Outputs implements AutoCloseable {
  private final Path result;
  private final boolean besideOnly;
  private final Turn turn;
  private final List<HeldOutput> held = new ArrayList<>();
  private OutputFiles files; // from the job's turn on

  /** As those of OutputFiles. */
  Outputs(Path principal, Path result, boolean besideOnly, Turn turn) throws IOException {
    this.result = result;
    this.besideOnly = besideOnly;
    this.turn = turn;
    if (turn.hasCome())
      files = new OutputFiles(principal, result, besideOnly);
    else
      held.add(new HeldOutput(null, turn));
  }

  /**
   * The job's turn has come: what is held goes into files. Throws when that fails, which shows otherwise in a job that
   * does not work ahead.
   */
  void open(Path target) throws IOException {
    files = new OutputFiles(target, result, besideOnly);
    for (HeldOutput output : held)
      output.moveTo(output.path() == null ? files.principal() : files.add(output.path()));
    if (files.hasRefused())
      throw new IOException(Text.OUTPUT_NOT_WRITTEN.with(target, ""));
  }

  OutputStream principal() {
    return files != null ? files.principal() : held.get(0);
  }

  /** Another result. One that cannot be written fails when something is written into it. */
  OutputStream add(Path file) {
    if (files != null)
      return files.add(file);
    held.add(new HeldOutput(file, turn));
    return held.get(held.size() - 1);
  }

  /** A result that begins with what the file holds already, be it of this job or of an earlier one. */
  OutputStream append(Path file) {
    turn.await();
    return files.append(file);
  }

  /** The file that a stylesheet means by a path, which is relative to the principal result, or by an address. */
  Path locate(String name) {
    Path named = Addresses.isOfFile(name) ? Addresses.fileOf(name) : Path.of(name);
    return result.toAbsolutePath().resolveSibling(named == null ? Path.of(name) : named).normalize();
  }

  /** A result that has no place in a file. */
  OutputStream refuse(URI address) {
    turn.await();
    return files.refuse(address);
  }

  /** In the job's turn: puts all results in place and returns the paths of the secondary ones, in the order of writing. */
  List<String> commit() throws IOException {
    return files.commit();
  }

  /** In the job's turn: the files that change when all results are in place. */
  List<Path> places() {
    return files.places();
  }

  /** What could not be kept of the files that were replaced: the file and, in words, what. */
  void forEachLoss(BiConsumer<Path, String> consumer) {
    files.forEachLoss(consumer);
  }

  @Override
  public void close() {
    if (files != null)
      files.close();
  }
}
