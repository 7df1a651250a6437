package vlxslt;

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
  }

  static ProcessorAdapter of(TransformerFactory factory) {
    return SaxonAdapter.isFor(factory) ? new SaxonAdapter(factory) : new JaxpAdapter(factory);
  }

  /** Problems go to the job's diagnostics, modules to `modules`; what has errors may still be returned. */
  Stylesheet compile(Source source, Job job, FilesRead modules) throws Exception;

  /** Compiles the stylesheet inside the job's own input. */
  Stylesheet compileEmbedded(Job job) throws Exception;

  /** Null when the processor does not tell. */
  String version();
}
