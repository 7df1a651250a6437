package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;

/** Decides where a stylesheet may put further results. The principal one is placed by the person who runs it. */
final class WriteGate {
  /** The folder of the principal result, and all below it. */
  private static final String BESIDE_OUTPUT = "output";
  private static final String NOWHERE = "none";
  private static final String EVERYWHERE = "*";

  private static volatile List<String> folders = List.of(BESIDE_OUTPUT);

  private WriteGate() {}

  /** The folders from now on, or the words for them; none leaves the one beside the output. */
  static void allow(List<String> names) {
    folders = names.isEmpty() ? List.of(BESIDE_OUTPUT) : List.copyOf(names);
  }

  /** `besideOnly`: the stylesheet is not trusted with other folders than that of the result. */
  static void admit(Path file, Path result, boolean besideOnly) throws IOException {
    List<String> allowed = folders;
    if (!allowed.contains(NOWHERE)) {
      if (allowed.contains(EVERYWHERE) && !besideOnly)
        return;
      Path meant = realPath(file);
      for (String name : allowed)
        if (name.equals(BESIDE_OUTPUT) || name.equals(EVERYWHERE)
                ? meant.startsWith(realPath(result.toAbsolutePath().getParent()))
                : !besideOnly && meant.startsWith(realPath(Path.of(name))))
          return;
    }
    throw new IOException(Text.WRITE_REFUSED.with(file));
  }

  /** Through all links, as far as there is something; a link may lead to what is yet to be made. */
  static Path realPath(Path path) throws IOException {
    Path at = OutputFile.followLinks(path);
    Path parent = at.getParent();
    return Files.exists(at) || parent == null ? at : realPath(parent).resolve(at.getFileName()).normalize();
  }
}
