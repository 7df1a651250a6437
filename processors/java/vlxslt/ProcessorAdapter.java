package vlxslt;

import java.util.Set;
import javax.xml.transform.Source;
import javax.xml.transform.TransformerFactory;

/**
 * One way to drive a processor: through the common interface, or, where a processor offers more, through its own.
 * Shared by all jobs; what belongs to a job comes as an argument.
 */
interface ProcessorAdapter {
  /** A stylesheet that any number of jobs may run, also at the same time. */
  interface Stylesheet {
    /** Writes the principal result; the job's outputs take the others. */
    void run(Job job, Outputs outputs) throws Exception;

    /** The parameters whose values went into the compiled form, if they were given; in their canonical spelling. */
    default Set<String> staticParameters() {
      return Set.of();
    }
  }

  /** `allowsExtensions`: stylesheets may call code. */
  static ProcessorAdapter of(TransformerFactory factory, FactoryAttributes attributes, boolean allowsExtensions)
      throws Exception {
    return SaxonAdapter.isFor(factory) ? new SaxonAdapter(factory, attributes, allowsExtensions)
                                       : new JaxpAdapter(factory, attributes, allowsExtensions);
  }

  /** Problems go to the job's diagnostics, modules to `modules`; what has errors may still be returned. */
  Stylesheet compile(Source source, Job job, FilesRead modules) throws Exception;

  /** Compiles the stylesheet inside the job's own input. */
  Stylesheet compileEmbedded(Job job) throws Exception;

  /** Whether a transformation may begin with a named template or in a named mode. */
  boolean hasNamedStart();

  /** Whether several threads may apply one compiled stylesheet at the same time, each to its own job. */
  boolean sharesStylesheets();

  /** Null when the processor does not tell. */
  String version();
}
