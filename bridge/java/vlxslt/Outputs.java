package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;

/** All outputs of one transformation, committed together at its end. Closing without a commit leaves nothing behind. */
final class Outputs implements AutoCloseable {
  private final OutputFile principal;
  private final List<OutputFile> files = new ArrayList<>();

  Outputs(Path principal) throws IOException {
    this.principal = new OutputFile(principal);
    files.add(this.principal);
  }

  OutputFile principal() {
    return principal;
  }

  /** Another result; the folders on the way to it are made. */
  OutputFile add(Path file) throws IOException {
    Files.createDirectories(file.toAbsolutePath().getParent());
    OutputFile output = new OutputFile(file);
    files.add(output);
    return output;
  }

  void commit() throws IOException {
    // All are closed before the first takes its place: a full disk shows here at the latest.
    for (OutputFile file : files)
      file.close();
    for (OutputFile file : files)
      file.commit();
  }

  @Override
  public void close() {
    files.forEach(OutputFile::discard);
  }
}
