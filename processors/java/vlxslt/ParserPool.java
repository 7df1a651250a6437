package vlxslt;

import java.lang.ref.SoftReference;
import java.util.Queue;
import java.util.concurrent.ConcurrentLinkedQueue;
import org.xml.sax.SAXException;

/** Parsers and what they keep from document to document. Shared by all jobs. */
final class ParserPool {
  private volatile DtdCache dtds = new DtdCache(0);
  private final KeptTrees trees = new KeptTrees();
  // Softly: one that has read a huge document keeps buffers of that size.
  private final Queue<SoftReference<Parser>> idle = new ConcurrentLinkedQueue<>();
  private int run;

  void startRun(int begun) {
    run = begun;
    dtds.startRun(begun);
    trees.startRun(begun);
  }

  KeptTrees trees() {
    return trees;
  }

  void clear() {
    dtds = new DtdCache(run);
    idle.clear();
    trees.clear();
  }

  /** Whether it is time to clear: names come with every document type, and never go by themselves. */
  boolean hasTooManyNames() {
    return dtds.symbols().areTooMany();
  }

  Parser take() throws SAXException {
    DtdCache current = dtds;
    for (SoftReference<Parser> next = idle.poll(); next != null; next = idle.poll()) {
      Parser parser = next.get();
      if (parser != null && parser.isOf(current))
        return parser;
    }
    return new Parser(current);
  }

  /** Only a parser that finished its document: one that failed may hold on to something. */
  void giveBack(Parser parser) {
    idle.add(new SoftReference<>(parser));
  }
}
