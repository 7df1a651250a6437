package vlxslt;

/**
 * The reader for what a processor opens without asking for a source first, such as the documents of a collection. The
 * processor makes it by its class, and may use it for several jobs.
 */
public final class OwnReader extends DocumentReader {
  public OwnReader() {
    super((input, settings) -> Documents.ofThread().readUnasked(input, settings), false);
  }
}
