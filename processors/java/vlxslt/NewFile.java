package vlxslt;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.FileAttribute;
import java.nio.file.attribute.PosixFileAttributeView;
import java.nio.file.attribute.PosixFileAttributes;
import java.nio.file.attribute.PosixFilePermission;
import java.nio.file.attribute.PosixFilePermissions;
import java.security.SecureRandom;
import java.util.EnumSet;
import java.util.HexFormat;
import java.util.Set;

/**
 * A file that did not exist before, opened for writing. Its name cannot be guessed and no link is followed: in a folder
 * of several people, a link under a known name would lead the writer elsewhere.
 */
record NewFile(Path path, FileChannel channel) {
  private static final int MAX_NAMES = 100;
  private static final SecureRandom random = new SecureRandom();
  private static final Set<OpenOption> options =
      Set.of(StandardOpenOption.CREATE_NEW, StandardOpenOption.WRITE, LinkOption.NOFOLLOW_LINKS);

  /** A private one only its owner can read; another one is what the system makes of a new file. */
  static NewFile in(Path folder, String prefix, boolean isPrivate) throws IOException {
    FileAttribute<?>[] attributes = isPrivate && folder.getFileSystem().supportedFileAttributeViews().contains("posix")
        ? new FileAttribute<?>[] {PosixFilePermissions.asFileAttribute(PosixFilePermissions.fromString("rw-------"))}
        : new FileAttribute<?>[0];
    for (int tries = 1;; tries++) {
      Path path = folder.resolve(prefix + HexFormat.of().toHexDigits(random.nextLong()) + ".tmp");
      try {
        return new NewFile(path, FileChannel.open(path, options, attributes));
      } catch (FileAlreadyExistsException e) {
        if (tries == MAX_NAMES)
          throw e;
      }
    }
  }

  /**
   * Gives the file the owner, the group and the permissions of another one. The owner can be given only by a privileged
   * process, the group only to one of the caller's; where the group is lost, the new one gets no more than all others
   * have. The permissions come last, since a change of owner clears some. False when the file system refuses those.
   */
  static boolean takeAttributes(Path file, Path from) throws IOException {
    PosixFileAttributeView mine =
        Files.getFileAttributeView(file, PosixFileAttributeView.class, LinkOption.NOFOLLOW_LINKS);
    if (mine == null)
      return true;
    PosixFileAttributes wanted;
    try {
      wanted = Files.readAttributes(from, PosixFileAttributes.class);
    } catch (NoSuchFileException e) {
      return true;
    }
    PosixFileAttributes own = mine.readAttributes();
    if (!own.owner().equals(wanted.owner()))
      isDone(() -> mine.setOwner(wanted.owner()));
    boolean keepsGroup = own.group().equals(wanted.group()) || isDone(() -> mine.setGroup(wanted.group()));
    Set<PosixFilePermission> permissions = keepsGroup ? wanted.permissions() : withoutGroup(wanted.permissions());
    // What has the right permissions by itself, as on FAT, is not asked to take them.
    return mine.readAttributes().permissions().equals(permissions) || isDone(() -> mine.setPermissions(permissions));
  }

  private interface Step {
    void run() throws IOException;
  }

  private static boolean isDone(Step step) {
    try {
      step.run();
      return true;
    } catch (IOException e) {
      return false;
    }
  }

  private static Set<PosixFilePermission> withoutGroup(Set<PosixFilePermission> permissions) {
    Set<PosixFilePermission> kept = EnumSet.noneOf(PosixFilePermission.class);
    for (PosixFilePermission each : permissions) {
      if (each.name().startsWith("OWNER_"))
        kept.add(each);
      if (each.name().startsWith("OTHERS_")) {
        kept.add(each);
        kept.add(PosixFilePermission.valueOf(each.name().replace("OTHERS_", "GROUP_")));
      }
    }
    return kept;
  }
}
