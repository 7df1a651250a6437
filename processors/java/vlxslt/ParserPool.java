package vlxslt;

import java.util.Queue;
import java.util.concurrent.ConcurrentLinkedQueue;
import org.apache.xerces.util.SymbolTable;
import org.apache.xerces.util.SynchronizedSymbolTable;
import org.xml.sax.SAXException;

/** Parsers and what they keep from document to document. Shared by all jobs. */
final class ParserPool {
  private final DtdCache dtds = new DtdCache();
  private final SymbolTable symbols = new SynchronizedSymbolTable();
  private final Queue<Parser> idle = new ConcurrentLinkedQueue<>();

  void startRun(int run) {
    dtds.startRun(run);
  }

  void clear() {
    dtds.clear();
    idle.clear();
  }

  Parser take() throws SAXException {
    Parser parser = idle.poll();
    return parser == null ? new Parser(dtds, symbols) : parser;
  }

  /** Only a parser that finished its document: one that failed may hold on to something. */
  void giveBack(Parser parser) {
    idle.add(parser);
  }
}
