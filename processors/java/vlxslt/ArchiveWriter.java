package vlxslt;

import java.io.IOException;
import java.io.InputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.ArrayList;
import java.util.Enumeration;
import java.util.List;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;
import java.util.jar.Manifest;
import java.util.regex.Pattern;
import java.util.zip.CRC32;
import java.util.zip.ZipEntry;
import java.util.zip.ZipOutputStream;

/**
 * A program that makes what a virtual machine starts quickly with, in a folder: copies of jars that Java would not
 * archive as they are, without their signatures, the archive of classes, and last of all the list of these files.
 */
final class ArchiveWriter {
  private static final Pattern SIGNATURE =
      Pattern.compile("META-INF/(SIG-[^/]*|[^/]*\\.(SF|RSA|DSA|EC))", Pattern.CASE_INSENSITIVE);
  // Java 24 keeps what we need in two steps, and is not worth them.
  private static final int FIRST_WITH_CACHE = 25;

  private final Path folder;
  private final String list;
  private final String factory;
  private final List<String> options;
  private final List<Path> classPath = new ArrayList<>();

  private ArchiveWriter(Path folder, String list, String factory, List<String> options) {
    this.folder = folder;
    this.list = list;
    this.factory = factory;
    this.options = options;
  }

  /** FOLDER, LIST of classes, FACTORY's class, CLASSPATH, OPTIONS of Java. The list is removed when all is well. */
  public static void main(String[] arguments) throws Exception {
    Path folder = Path.of(arguments[0]);
    ArchiveWriter writer = new ArchiveWriter(
        folder, arguments[1], arguments[2], List.of(arguments).subList(4, arguments.length));
    Files.createDirectories(folder);
    Files.setPosixFilePermissions(folder, PosixFilePermissions.fromString("rwxr-xr-x"));
    Files.deleteIfExists(folder.resolve("ready"));
    writer.copyJars(arguments[3].split(":"));
    Path archive = writer.writeArchive();
    if (archive == null)
      System.exit(1);
    writer.writeManifest(archive);
    Files.deleteIfExists(Path.of(arguments[1]));
  }

  private void copyJars(String[] jars) throws IOException {
    for (String jar : jars) {
      Path path = Path.of(jar);
      // Reads what is signed only as it was signed; of a jar that was changed since there is no copy.
      try (JarFile zip = new JarFile(path.toFile(), true)) {
        if (isSigned(zip) || !isPlain(path) && isPlain(folder))
          path = copy(zip, folder.resolve(classPath.size() + "-" + path.getFileName()));
      }
      classPath.add(path);
    }
  }

  private static boolean isSigned(JarFile jar) {
    return jar.stream().anyMatch(entry -> SIGNATURE.matcher(entry.getName()).matches());
  }

  // Java 17 does not recognise jars whose URLs have escapes, and archives nothing of them.
  private static boolean isPlain(Path path) {
    return path.toString().matches("[\\w/.-]*");
  }

  private static Path copy(JarFile from, Path to) throws IOException {
    Path unfinished = to.resolveSibling(to.getFileName() + ".new");
    try (ZipOutputStream output = new ZipOutputStream(Files.newOutputStream(unfinished))) {
      for (Enumeration<JarEntry> entries = from.entries(); entries.hasMoreElements();) {
        ZipEntry entry = entries.nextElement();
        if (SIGNATURE.matcher(entry.getName()).matches())
          continue;
        if (entry.getName().equals(JarFile.MANIFEST_NAME)) {
          output.putNextEntry(new ZipEntry(entry.getName()));
          try (InputStream input = from.getInputStream(entry)) {
            withoutDigests(new Manifest(input)).write(output);
          }
        } else {
          putStored(output, entry, from);
        }
        output.closeEntry();
      }
    }
    put(unfinished, to);
    return to;
  }

  private static Manifest withoutDigests(Manifest manifest) {
    manifest.getEntries().values().forEach(
        attributes -> attributes.keySet().removeIf(name -> name.toString().contains("-Digest")));
    manifest.getEntries().values().removeIf(attributes -> attributes.isEmpty());
    return manifest;
  }

  private static void putStored(ZipOutputStream output, ZipEntry entry, JarFile from) throws IOException {
    byte[] content;
    try (InputStream input = from.getInputStream(entry)) {
      content = input.readAllBytes();
    }
    CRC32 checksum = new CRC32();
    checksum.update(content);
    ZipEntry stored = new ZipEntry(entry.getName());
    stored.setMethod(ZipEntry.STORED);
    stored.setSize(content.length);
    stored.setCrc(checksum.getValue());
    output.putNextEntry(stored);
    output.write(content);
  }

  // What another process has open stays as it is.
  private static void put(Path unfinished, Path target) throws IOException {
    Files.setPosixFilePermissions(unfinished, PosixFilePermissions.fromString("rw-r--r--"));
    Files.move(unfinished, target, StandardCopyOption.ATOMIC_MOVE);
  }

  /** Null when Java does not write one. */
  private Path writeArchive() throws Exception {
    boolean hasCache = Runtime.version().feature() >= FIRST_WITH_CACHE;
    Path archive = folder.resolve(hasCache ? "classes.aot" : "classes.jsa");
    Path unfinished = folder.resolve("new-" + archive.getFileName());
    String option = (hasCache ? "-XX:AOTCacheOutput=" : "-XX:ArchiveClassesAtExit=") + unfinished;
    // Classes that are made at run time have been seen to be too much for it.
    for (String trained : List.of(factory, "")) {
      Files.deleteIfExists(unfinished);
      List<String> command = new ArrayList<>(List.of(System.getProperty("java.home") + "/bin/java"));
      command.addAll(options);
      command.addAll(List.of(option, "-XX:ErrorFile=/dev/null", "-XX:-CreateCoredumpOnCrash", "-cp",
          String.join(":", classPath.stream().map(Path::toString).toList()), "vlxslt.Training", list, trained));
      int status = new ProcessBuilder(command).redirectErrorStream(true)
                       .redirectOutput(ProcessBuilder.Redirect.DISCARD).start().waitFor();
      if (status == 0 && Files.isRegularFile(unfinished)) {
        put(unfinished, archive);
        return archive;
      }
    }
    return null;
  }

  private void writeManifest(Path archive) throws IOException {
    List<Path> files = new ArrayList<>(List.of(archive));
    files.addAll(classPath);
    StringBuilder lines = new StringBuilder();
    for (Path file : files)
      lines.append(Files.size(file)).append(' ').append(Files.getLastModifiedTime(file).toMillis()).append(' ')
          .append(file).append('\n');
    Path unfinished = folder.resolve("ready.new");
    Files.writeString(unfinished, lines);
    put(unfinished, folder.resolve("ready"));
    dropOthers(files);
  }

  // Of earlier times, when a jar had another place or was signed.
  private void dropOthers(List<Path> kept) throws IOException {
    try (var entries = Files.newDirectoryStream(folder)) {
      for (Path entry : entries)
        if (!kept.contains(entry) && !entry.endsWith("ready"))
          Files.deleteIfExists(entry);
    }
  }
}
