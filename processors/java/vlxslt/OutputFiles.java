package vlxslt;

import java.io.IOException;
import java.io.OutputStream;
import java.net.URI;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import java.util.Optional;
import java.util.function.BiConsumer;
import java.util.stream.Stream;

/** The files of all outputs of one job, committed together at its end. Closing without a commit leaves nothing behind. */
final class OutputFiles implements AutoCloseable {
  private final OutputFile principal;
  private final Path result;
  private final boolean besideOnly;
  private final List<OutputFile> files = new ArrayList<>();
  private OutputFile.WriteFailure refusal;

  /**
   * The caller will move the principal output to `result`, unless it is that file already. `besideOnly`: the stylesheet
   * is not trusted with other folders.
   */
  OutputFiles(Path principal, Path result, boolean besideOnly) throws IOException {
    this.principal = new OutputFile(principal, principal.equals(result));
    this.result = result;
    this.besideOnly = besideOnly;
    files.add(this.principal);
  }

  OutputFile principal() {
    return principal;
  }

  /**
   * Another result; the folders on the way to it are made. One that cannot be written fails when something is written
   * into it: processors tell of that like of any other error, but take it for a fault of ours when opening one throws.
   */
  OutputStream add(Path file) {
    try {
      WriteGate.admit(file, result, besideOnly);
      Files.createDirectories(file.toAbsolutePath().getParent());
      // A stylesheet that names its principal result itself means the file that is put in its place.
      OutputFile output =
          isResult(file) ? new OutputFile(principal.path(), principal.isFinal()) : new OutputFile(file, true);
      files.add(output);
      if (others().anyMatch(other -> other != output && other.hasTargetOf(output)))
        throw new IOException(Text.OUTPUT_TAKEN.with());
      return output;
    } catch (IOException e) {
      return refuse(new OutputFile.WriteFailure(
          file.toString(), Text.OUTPUT_NOT_WRITTEN.with(file, Failures.textOf(e)), e));
    }
  }

  /** A result that begins with what the file holds already, be it of this job or of an earlier one. */
  OutputStream append(Path file) {
    Optional<OutputFile> earlier = others().filter(other -> other.path().equals(file)).findAny();
    try {
      if (earlier.isPresent()) {
        earlier.get().reopen();
        return earlier.get();
      }
      boolean exists = Files.exists(file) && !isResult(file);
      OutputStream output = add(file);
      if (exists)
        Files.copy(file, output);
      return output;
    } catch (IOException e) {
      return refuse(new OutputFile.WriteFailure(
          file.toString(), Text.OUTPUT_NOT_WRITTEN.with(file, Failures.textOf(e)), e));
    }
  }

  /** Whether there is a result that cannot be written. */
  boolean hasRefused() {
    return refusal != null;
  }

  /** A result that has no place in a file. */
  OutputStream refuse(URI address) {
    return refuse(
        new OutputFile.WriteFailure(null, Text.OUTPUT_NOT_A_FILE.with(address), null));
  }

  // Stands in for a result that cannot be; the commit fails with the same words.
  private OutputStream refuse(OutputFile.WriteFailure why) {
    refusal = why;
    return new OutputStream() {
      @Override
      public void write(int b) throws IOException {
        throw why;
      }
    };
  }

  /** Puts all results in place and returns the paths of the secondary ones, in the order of writing. */
  List<String> commit() throws IOException {
    if (refusal != null)
      throw refusal;
    // All are complete before the first takes its place: a full disk shows here at the latest.
    for (OutputFile file : files)
      file.complete();
    // A stylesheet that names its principal result itself leaves nothing but a declaration in the unnamed one.
    if (others().anyMatch(principal::hasTargetOf)) {
      if (!principal.isBlank())
        throw new OutputFile.WriteFailure(principal.path().toString(),
            Text.TWO_RESULTS_ONE_FILE.with(principal.path()), null);
      principal.discard();
      files.remove(principal);
    }
    OutputFile.commitTogether(() -> {
      for (OutputFile file : files)
        file.commit();
    });
    return others().filter(file -> !file.hasTargetOf(principal)).map(file -> file.path().toString()).toList();
  }

  /** The files that change when all results are in place. */
  List<Path> places() {
    return Stream.concat(Stream.of(result), files.stream().map(OutputFile::path)).toList();
  }

  /** What could not be kept of the files that were replaced: the file and, in words, what. */
  void forEachLoss(BiConsumer<Path, String> consumer) {
    for (OutputFile file : files)
      file.losses().forEach(loss -> consumer.accept(file.path(), loss));
  }

  @Override
  public void close() {
    files.forEach(OutputFile::discard);
  }

  private boolean isResult(Path file) throws IOException {
    return Files.exists(file) && Files.exists(result) ? Files.isSameFile(file, result)
        : file.toAbsolutePath().normalize().equals(result.toAbsolutePath().normalize());
  }

  private Stream<OutputFile> others() {
    return files.stream().filter(file -> file != principal);
  }
}
