package vlxslt;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.Comparator;
import java.util.List;
import java.util.Random;
import java.util.stream.Stream;

/**
 * A run of several jobs at once tells, asks and writes the same as one job after the other: random runs, with delays at
 * random places. Arguments: --seed N, the number of the first round; --rounds N; --factory CLASS, repeatable.
 */
public final class JobsAhead {
  private static final int[] THREADS = {2, 4, 16};

  /** Notes what a host is told and asked; it must be in the turn of a job. */
  private static final class Host implements IVLXSLTJavaHandler {
    final List<String> lines = new ArrayList<>();
    private final Random delays;
    private boolean isInTurn;

    Host(long seed) {
      delays = new Random(seed);
    }

    synchronized void setTurn(boolean isOn) {
      isInTurn = isOn;
    }

    private void add(String line) {
      int delay;
      synchronized (this) {
        if (!isInTurn)
          throw new AssertionError("out of turn: " + line);
        lines.add(line);
        delay = delays.nextInt(40);
      }
      pause(delay);
    }

    private static void pause(int delay) {
      try {
        if (delay < 3)
          Thread.sleep(delay);
      } catch (InterruptedException e) {
        throw new IllegalStateException(e);
      }
    }

    private void problem(String severity, String message, String systemId, int line, int column, String code) {
      add(severity + " " + message + " " + systemId + " " + line + ":" + column + " " + code);
    }

    @Override
    public void FatalError(String message, String publicId, String systemId, int line, int column, String code) {
      problem("fatal", message, systemId, line, column, code);
    }

    @Override
    public void Error(String message, String publicId, String systemId, int line, int column, String code) {
      problem("error", message, systemId, line, column, code);
    }

    @Override
    public void Warning(String message, String publicId, String systemId, int line, int column, String code) {
      problem("warning", message, systemId, line, column, code);
    }

    @Override
    public void Message(String message) {
      add("message " + message);
    }

    @Override
    public String ResolveEntity(String name, String publicId, String baseUri, String systemId) {
      add("question " + name + " " + publicId + " " + baseUri + " " + systemId);
      return "";
    }

    @Override
    public void StartDocument(String path) {
      add("start " + path);
    }

    @Override
    public void EndDocument() {
      add("end");
    }

    @Override
    public void JobDone(String[] secondary, String[] read) {
      add("results " + Arrays.toString(secondary) + " read " + Arrays.toString(read));
    }
  }

  private JobsAhead() {}

  // As deep as the host's Java thread and those that work ahead, or deep recursion would end differently.
  public static void main(String[] arguments) {
    new Thread(null, () -> {
      try {
        play(arguments);
      } catch (IOException | RuntimeException | AssertionError e) {
        e.printStackTrace();
        System.exit(1);
      }
    }, "main", 256L << 20).start();
  }

  private static void play(String[] arguments) throws IOException {
    List<String> words = Arrays.asList(arguments);
    long seed = number(words, "--seed", 1);
    long rounds = number(words, "--rounds", 30);
    List<String> factories = new ArrayList<>();
    for (int i = 0; i + 1 < words.size(); i++)
      if (words.get(i).equals("--factory"))
        factories.add(words.get(i + 1));
    int jobs = 0;
    int done = 0;
    for (long round = seed; round < seed + rounds; round++)
      for (String factory : factories) {
        int[] counts = play(round, factory);
        jobs += counts[0];
        done += counts[1];
      }
    System.out.println(jobs + " jobs, " + done + " of them done");
    // Or there would be too little to compare.
    if (done < jobs / 4 || done == jobs)
      throw new AssertionError("the runs are too much alike");
    System.exit(0);
  }

  private static long number(List<String> words, String option, long otherwise) {
    int at = words.indexOf(option);
    return at < 0 ? otherwise : Long.parseLong(words.get(at + 1));
  }

  private static int[] play(long round, String factory) throws IOException {
    Path folder = Files.createTempDirectory("jobs");
    List<String> expected = run(round, factory, 1, folder);
    for (int threads : THREADS) {
      List<String> found = run(round, factory, threads, folder);
      if (!expected.equals(found))
        fail(round, factory, threads, expected, found);
    }
    return new int[] {(int) expected.stream().filter(line -> line.startsWith("job ")).count(),
        (int) expected.stream().filter(line -> line.startsWith("job ") && line.endsWith(" 1")).count()};
  }

  private static void fail(long round, String factory, int threads, List<String> expected, List<String> found) {
    System.out.println("round " + round + ", " + factory + ", " + threads + " threads");
    for (int i = 0; i < Math.max(expected.size(), found.size()); i++) {
      String one = i < expected.size() ? expected.get(i) : "(nothing)";
      String other = i < found.size() ? found.get(i) : "(nothing)";
      System.out.println(one.equals(other) ? "  " + one : "- " + one + "\n+ " + other);
    }
    System.exit(1);
  }

  // What was told, asked and written.
  private static List<String> run(long round, String factory, int threads, Path folder) throws IOException {
    clear(folder);
    JobsWorld world = new JobsWorld(folder, round, factory.contains("saxon"));
    Host host = new Host(System.nanoTime());
    VLXSLTJavaLayer layer = VLXSLTJavaLayer.GetInstance();
    layer.SetVLXSLTJavaHandler(host);
    // All that is kept goes: it would show as questions that are not asked.
    layer.SetPolicy(new String[0], false, new String[] {"output"}, false);
    host.setTurn(true);
    if (layer.SetTransformer(factory) != 1)
      throw new AssertionError(host.lines.toString());
    host.setTurn(false);
    layer.SetThreads(threads);
    expectJobs(layer, world);
    for (int i = 0; i < world.inputs.size(); i++) {
      JobsWorld.Input input = world.inputs.get(i);
      if (input.isLeftOut())
        continue;
      host.setTurn(true);
      int result = layer.TransformXMLFile(i, input.file().toString(), null, input.stylesheet(),
          world.output(i).toString(), null, null, false, null, null);
      host.setTurn(false);
      host.lines.add("job " + i + " " + result);
    }
    layer.EndRun();
    List<String> lines = new ArrayList<>(host.lines);
    try (Stream<Path> files = Files.walk(folder.resolve("out"))) {
      for (Path each : files.filter(Files::isRegularFile).sorted().toList())
        lines.add(folder.relativize(each) + ": " + Files.readString(each));
    }
    return lines;
  }

  private static void expectJobs(VLXSLTJavaLayer layer, JobsWorld world) {
    for (int i = 1; i < world.inputs.size(); i++) {
      JobsWorld.Input input = world.inputs.get(i);
      if (input.isExpected())
        layer.ExpectJob(i, input.file().toString(), null, input.stylesheet(), world.output(i).toString(), null, null,
            false, null, null);
    }
  }

  private static void clear(Path folder) throws IOException {
    try (Stream<Path> all = Files.walk(folder)) {
      for (Path each : all.sorted(Comparator.reverseOrder()).filter(path -> !path.equals(folder)).toList())
        Files.delete(each);
    }
  }
}
