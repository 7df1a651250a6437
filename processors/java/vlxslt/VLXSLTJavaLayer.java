package vlxslt;

import java.net.MalformedURLException;
import java.net.URL;
import java.net.URLClassLoader;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.security.CodeSource;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import javax.xml.transform.TransformerFactory;
import javax.xml.transform.TransformerFactoryConfigurationError;

/**
 * The one object that the native side drives. Results are 1 for success; why not is told to the handler. It holds what
 * jobs share; what belongs to one transformation is in its Job.
 */
public final class VLXSLTJavaLayer {
  /** Stands for "leave the stylesheet's own default" where a value is expected. */
  private static final String NO_VALUE = "<no value>";

  private record Processor(TransformerFactory factory, ProcessorAdapter adapter) {}

  private record FactoryKey(String className, FactoryAttributes attributes, boolean allowsExtensions) {
    FactoryKey withoutExtensions() {
      return new FactoryKey(className, attributes, false);
    }
  }

  private static final VLXSLTJavaLayer instance = new VLXSLTJavaLayer();

  private final Map<FactoryKey, Processor> processors = new HashMap<>();
  private final Stylesheets stylesheets = new Stylesheets();
  private final ParserPool parsers = new ParserPool();
  private final HostAnswers answers = new HostAnswers();
  private final WorkAhead workAhead = new WorkAhead(new WorkAhead.Worker() {
    @Override
    public Job newJob(Job.Request request, Turn turn) {
      return VLXSLTJavaLayer.this.newJob(request, turn, 0);
    }

    @Override
    public void transform(Job job) throws Exception {
      VLXSLTJavaLayer.this.transform(job);
    }
  });
  private IVLXSLTJavaHandler handler;
  private volatile Processor current;
  private volatile FactoryKey currentKey;
  private boolean allowsExtensions;
  private int run;

  private VLXSLTJavaLayer() {
    AddressGate.install();
  }

  public static VLXSLTJavaLayer GetInstance() {
    return instance;
  }

  /** What the layer says to people, in the order of Text, and how the names of its unfinished files begin. */
  public void SetTexts(String[] texts, String unfinishedPrefix) {
    Text.setTable(texts);
    OutputFile.setUnfinishedPrefix(unfinishedPrefix);
  }

  public void SetVLXSLTJavaHandler(IVLXSLTJavaHandler javaHandler) {
    handler = javaHandler;
  }

  /** What comes behind Java's own class path, in its order, separated by ";". Processors may lie in either. */
  public void SetClassPath(String classPath) {
    List<URL> entries = new ArrayList<>();
    for (String entry : classPath.split(";")) {
      try {
        if (!entry.isEmpty())
          entries.add(Path.of(entry).toUri().toURL());
      } catch (MalformedURLException | InvalidPathException e) {
        handler.Message(Text.CLASS_PATH_ENTRY_UNUSABLE.with(entry));
      }
    }
    ClassLoader loader = new URLClassLoader(entries.toArray(new URL[0]), VLXSLTJavaLayer.class.getClassLoader());
    Thread.currentThread().setContextClassLoader(loader);
  }

  /**
   * What documents and stylesheets are trusted with from now on: the hosts that may be fetched from, code that
   * stylesheets call, the folders for their further results; and whether outputs are on disk before success is told.
   */
  public void SetPolicy(String[] hosts, boolean extensions, String[] writeFolders, boolean syncsOutputs) {
    AddressGate.trust(List.of(hosts));
    WriteGate.allow(List.of(writeFolders));
    allowsExtensions = extensions;
    OutputFile.setSyncs(syncsOutputs);
    workAhead.endRun();
    forgetProcessors();
    forgetEverything();
  }

  /** Selects the processor by the class of its factory; a new run begins. */
  public int SetTransformer(String tClass) {
    return SetTransformer(tClass, null);
  }

  /** The same for a factory that is set up with attributes: name, type and value alternately. */
  public int SetTransformer(String tClass, String[] attributes) {
    current = null;
    if (tClass == null || tClass.isEmpty())
      return 0;
    try {
      currentKey = keyOf(tClass, attributes);
      current = find(currentKey);
      run++;
      answers.startRun();
      parsers.startRun(run);
      stylesheets.startRun(run);
      workAhead.startRun(1);
      return 1;
    } catch (Throwable e) {
      handler.Message(whyNot(tClass, e));
      return 0;
    }
  }

  /** The factory's class, its version, where it came from, and what is wrong with it; the last empty if nothing is. */
  public String[] ProbeProcessor(String tClass, String[] attributes) {
    try {
      Processor processor = find(keyOf(tClass, attributes));
      TransformerFactory factory = processor.factory();
      CodeSource source = factory.getClass().getProtectionDomain().getCodeSource();
      String location = source == null || source.getLocation() == null ? System.getProperty("java.home")
                                                                       : Addresses.shown(source.getLocation().toString());
      String version = processor.adapter().version();
      return new String[] {factory.getClass().getName(), version == null ? "" : version, location, ""};
    } catch (Throwable e) {
      return new String[] {"", "", "", whyNot(tClass, e)};
    }
  }

  /** How many jobs of this run may be done at once; 0 leaves that to the machine. */
  public void SetThreads(int threads) {
    Processor chosen = current;
    boolean isSafe = chosen != null && !currentKey.allowsExtensions && chosen.adapter().sharesStylesheets();
    workAhead.startRun(isSafe ? threads : 1);
  }

  /** A job that will follow, after those that were expected before it, and unless the run ends or leaves it out. */
  public void ExpectJob(int number, String xmlFilePath, String xmlContentPath, String xslFilePath,
      String outputFilePath, String resultFilePath, String[] stylesheetParams, boolean includes,
      String initialTemplate, String initialMode) {
    workAhead.expect(number, requestOf(xmlFilePath, xmlContentPath, xslFilePath, outputFilePath, resultFilePath,
        stylesheetParams, new Job.Start(includes, initialTemplate, initialMode)));
  }

  /** No expected job follows. */
  public void EndRun() {
    workAhead.endRun();
  }

  /** Runs one transformation to its end; the handler hears of its results last. */
  public int TransformXMLFile(String xmlFilePath, String xslFilePath, String outputFilePath,
      String[] stylesheetParams) {
    return TransformXMLFile(
        -1, xmlFilePath, null, xslFilePath, outputFilePath, null, stylesheetParams, false, null, null);
  }

  /**
   * The same for an input whose content is in `xmlContentPath`, and an output that the caller will put in the place of
   * `resultFilePath`, unless these are null; with XInclude on request, and with another start than the stylesheet's own
   * unless the names are null. `number` is that of an expected job, or -1.
   */
  public int TransformXMLFile(int number, String xmlFilePath, String xmlContentPath, String xslFilePath,
      String outputFilePath, String resultFilePath, String[] stylesheetParams, boolean includes,
      String initialTemplate, String initialMode) {
    Job.Request request = requestOf(xmlFilePath, xmlContentPath, xslFilePath, outputFilePath, resultFilePath,
        stylesheetParams, new Job.Start(includes, initialTemplate, initialMode));
    WorkAhead.Attempt attempt = workAhead.take(number, request);
    if (attempt == null)
      attempt = attempt(request, 0);
    // What others held may have been the cause. What this attempt told is told.
    if (Failures.isOutOfMemory(attempt.failure()) && workAhead.makeRoom()) {
      forgetEverything();
      attempt.job().close();
      attempt = attempt(request, attempt.job().callsMade());
    }
    return conclude(attempt);
  }

  private WorkAhead.Attempt attempt(Job.Request request, long callsMade) {
    workAhead.beginTurn();
    Job job = newJob(request, workAhead.now(), callsMade);
    try {
      if (parsers.hasTooManyNames())
        startAnew();
      transform(job);
      return new WorkAhead.Attempt(job, null);
    } catch (Throwable e) {
      return new WorkAhead.Attempt(job, e);
    }
  }

  private int conclude(WorkAhead.Attempt attempt) {
    List<Path> written = List.of();
    try (Job job = attempt.job()) {
      try {
        if (attempt.failure() != null)
          throw attempt.failure();
        job.commit();
        written = job.writtenFiles();
        return 1;
      } catch (Throwable e) {
        if (Failures.isOutOfMemory(e))
          forgetEverything();
        job.end(e);
        return 0;
      } finally {
        job.tellResult();
      }
    } finally {
      workAhead.endTurn(written);
    }
  }

  private Job newJob(Job.Request request, Turn turn, long callsMade) {
    return new Job(request, new Job.Shared(handler, parsers, answers, stylesheets), turn, callsMade);
  }

  private void transform(Job job) throws Exception {
    Processor chosen = current;
    if (chosen == null)
      throw new IllegalStateException(Text.NO_PROCESSOR_SELECTED.with());
    // A stylesheet that the input names is trusted no more than the input.
    Processor processor = job.namesStylesheet() ? find(currentKey.withoutExtensions()) : chosen;
    job.transform(processor.adapter());
  }

  private static Job.Request requestOf(String input, String content, String stylesheet, String output, String result,
      String[] parameters, Job.Start start) {
    return new Job.Request(input, content == null ? input : content, stylesheet == null ? "" : stylesheet, output,
        result == null ? output : result, pairsOf(parameters), start);
  }

  /** From any thread, and for good: nothing more is written, and what is unfinished is removed. */
  public void DiscardOutputs() {
    OutputFile.discardAll();
  }

  private FactoryKey keyOf(String tClass, String[] attributes) {
    FactoryAttributes given = FactoryAttributes.of(attributes);
    return new FactoryKey(tClass, given, allowsExtensions || given.allowExtensions());
  }

  private Processor find(FactoryKey key) throws Exception {
    synchronized (processors) {
      return findFor(key);
    }
  }

  private Processor findFor(FactoryKey key) throws Exception {
    Processor processor = processors.get(key);
    if (processor == null) {
      TransformerFactory factory = TransformerFactory.newInstance(key.className, null);
      key.attributes.apply(factory);
      processor = new Processor(factory, ProcessorAdapter.of(factory, key.attributes, key.allowsExtensions));
      processors.put(key, processor);
    }
    return processor;
  }

  private static Map<String, String> pairsOf(String[] stylesheetParams) {
    Map<String, String> pairs = new LinkedHashMap<>();
    for (int i = 0; stylesheetParams != null && i + 1 < stylesheetParams.length; i += 2) {
      String value = stylesheetParams[i + 1];
      if (!stylesheetParams[i].isBlank() && !value.isEmpty() && !value.equals(NO_VALUE))
        pairs.put(StaticParameters.canonicalName(stylesheetParams[i].strip()), value);
    }
    return pairs;
  }

  private static String whyNot(String tClass, Throwable e) {
    Throwable cause = e instanceof TransformerFactoryConfigurationError error && error.getException() != null
        ? error.getException() : e;
    String reason = String.valueOf(cause.getMessage());
    if (cause instanceof ClassNotFoundException)
      reason = Text.CLASS_MISSING.with();
    else if (cause instanceof ClassCastException || reason.contains("not a subtype") || reason.contains("cannot be cast"))
      reason = Text.NO_TRANSFORMER_FACTORY.with();
    else if (cause instanceof NoClassDefFoundError)
      reason = Text.NEEDED_CLASS_MISSING.with(reason.replace('/', '.'));
    return Text.PROCESSOR_NOT_LOADED.with(tClass, reason);
  }

  private void forgetProcessors() {
    synchronized (processors) {
      processors.clear();
    }
  }

  private void forgetEverything() {
    stylesheets.clear();
    parsers.clear();
  }

  // Processors have pools of names too, which grow as those of the parsers do.
  private void startAnew() throws Exception {
    workAhead.beginAnew();
    forgetEverything();
    forgetProcessors();
    current = find(currentKey);
  }
}
