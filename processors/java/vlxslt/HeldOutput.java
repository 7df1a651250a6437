package vlxslt;

import java.io.ByteArrayOutputStream;
import java.io.IOException;
import java.io.OutputStream;
import java.nio.file.Path;

/** One output of a job that works ahead: held in memory until there is a file for it. */
final class HeldOutput extends OutputStream {
  private final Path path;
  private final Turn turn;
  private ByteArrayOutputStream held = new ByteArrayOutputStream();
  private OutputStream file;
  private boolean isClosed;

  /** The path is null for the principal one. */
  HeldOutput(Path path, Turn turn) {
    this.path = path;
    this.turn = turn;
  }

  Path path() {
    return path;
  }

  /** What was written goes there, and all that follows. */
  void moveTo(OutputStream opened) throws IOException {
    file = opened;
    held.writeTo(file);
    held = null;
    if (isClosed)
      file.close();
  }

  @Override
  public void write(int b) throws IOException {
    write(new byte[] {(byte) b}, 0, 1);
  }

  @Override
  public void write(byte[] bytes, int from, int count) throws IOException {
    if (file == null)
      turn.hold(count);
    if (file != null)
      file.write(bytes, from, count);
    else if (isClosed)
      throw new IOException("The output is closed: " + path);
    else
      held.write(bytes, from, count);
  }

  @Override
  public void close() throws IOException {
    isClosed = true;
    if (file != null)
      file.close();
  }
}
