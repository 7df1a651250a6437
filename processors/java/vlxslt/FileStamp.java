package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;

/** A file as it was when something was made from it. */
record FileStamp(Path file, FileTime modified, long size) {
  /** Null when the address is no file, which makes whatever was read from it impossible to keep. */
  static FileStamp of(String address) {
    Path file = Addresses.fileOf(address);
    try {
      return file == null ? null : of(file);
    } catch (IOException e) {
      return null;
    }
  }

  boolean isCurrent() {
    try {
      return equals(of(file));
    } catch (IOException e) {
      return false;
    }
  }

  private static FileStamp of(Path file) throws IOException {
    BasicFileAttributes attributes = Files.readAttributes(file, BasicFileAttributes.class);
    return new FileStamp(file, attributes.lastModifiedTime(), attributes.size());
  }
}
