package vlxslt;

import java.io.IOException;
import java.io.StringReader;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Random;
import java.util.stream.Stream;
import org.xml.sax.InputSource;
import org.xml.sax.SAXException;
import org.xml.sax.XMLReader;

/**
 * What a document gives does not depend on what was read before it: each is read by parsers that have read others, and by
 * new ones, and both tell the same. Arguments: --seed N, the number of the first round; --rounds N.
 */
public final class DtdMutations {
  private static final String SAX = "http://xml.org/sax/";
  private static final int DOCUMENTS = 12;

  /** How a processor sets its reader up. */
  private record Setup(boolean validates, boolean loadsDtd, boolean hasPrefixes, boolean fromText) {
    static Setup choose(DtdWorld world) {
      return new Setup(world.chance(12), !world.chance(12), world.chance(6), world.chance(15));
    }
  }

  private final DtdWorld world;
  private final ParserPool warm = new ParserPool();
  private int run;

  private DtdMutations(Path folder, long seed) throws IOException {
    world = new DtdWorld(folder, new Random(seed));
    warm.startRun(run);
  }

  public static void main(String[] arguments) throws IOException {
    List<String> words = Arrays.asList(arguments);
    long seed = number(words, "--seed", 1);
    long rounds = number(words, "--rounds", 300);
    int parsed = 0;
    int whole = 0;
    for (long round = seed; round < seed + rounds; round++) {
      Path folder = Files.createTempDirectory("dtd");
      try {
        DtdMutations mutations = new DtdMutations(folder, round);
        for (int i = 0; i < DOCUMENTS; i++, parsed++)
          whole += mutations.readOne(round) ? 1 : 0;
      } finally {
        remove(folder);
      }
    }
    System.out.println(parsed + " documents, " + whole + " of them well-formed");
    // Or the test would have nothing to compare.
    if (whole < parsed / 10)
      throw new AssertionError("too few documents are well-formed");
  }

  private static long number(List<String> words, String option, long otherwise) {
    int at = words.indexOf(option);
    return at < 0 ? otherwise : Long.parseLong(words.get(at + 1));
  }

  private static void remove(Path folder) throws IOException {
    try (Stream<Path> all = Files.walk(folder)) {
      for (Path each : all.sorted(Comparator.reverseOrder()).toList())
        Files.delete(each);
    }
  }

  // Whether the document was well-formed.
  private boolean readOne(long round) throws IOException {
    if (world.chance(4))
      world.changeFile();
    if (world.chance(6)) {
      world.changeCatalog();
      warm.startRun(++run);
    }
    String name = world.writeDocument();
    Setup setup = Setup.choose(world);
    List<String> expected = read(name, setup, new ParserPool());
    // The second time it may find its own DTD.
    for (int times = 0; times < 2; times++) {
      List<String> found = read(name, setup, warm);
      if (!expected.equals(found))
        fail(round, name, setup, expected, found);
    }
    return expected.stream().noneMatch(line -> line.startsWith("thrown"));
  }

  private void fail(long round, String name, Setup setup, List<String> expected, List<String> found) throws IOException {
    System.out.println("round " + round + ": " + name + " differs after others (" + setup + ")");
    System.out.println(world.read(name) + "\n-- new parsers:\n" + String.join("\n", expected) + "\n-- used parsers:\n"
        + String.join("\n", found) + "\n-- catalogs: " + world.catalog);
    try (Stream<Path> all = Files.list(world.folder)) {
      for (Path each : all.filter(path -> !path.toString().endsWith(".xml") && Files.isRegularFile(path)).sorted().toList())
        System.out.println("== " + each.getFileName() + "\n" + world.read(each.getFileName().toString()));
    }
    System.exit(1);
  }

  // What is told of the document, what is wrong with it, and the files that were read for it.
  private List<String> read(String name, Setup setup, ParserPool pool) throws IOException {
    ToldEvents told = new ToldEvents(world);
    Diagnostics diagnostics = new Diagnostics(told);
    FilesRead files = new FilesRead();
    Documents documents = new Documents(
        told, diagnostics, pool, new EntityResolution(told, new HostAnswers(), new WorkAhead(null).now()), false);
    String address = Addresses.ofPath(world.folder.resolve(name).toString());
    XMLReader reader = documents.source(address, files).getXMLReader();
    InputSource input = new InputSource(address);
    if (setup.fromText)
      input.setCharacterStream(new StringReader(world.read(name)));
    try {
      reader.setFeature(SAX + "features/validation", setup.validates);
      reader.setFeature(SAX + "features/namespace-prefixes", setup.hasPrefixes);
      reader.setFeature(Parser.LOAD_DTD, setup.loadsDtd);
      reader.setProperty(SAX + "properties/lexical-handler", told);
      reader.setContentHandler(told);
      reader.setDTDHandler(told);
      reader.parse(input);
    } catch (IOException | SAXException e) {
      told.add("thrown " + e);
    }
    List<String> all = new ArrayList<>(told.lines());
    for (String path : files.paths())
      all.add("read " + path);
    return all;
  }
}
