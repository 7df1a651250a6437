package vlxslt;

import org.apache.xerces.util.SymbolTable;

/**
 * The names that parsers have met, each once. Never gets smaller, so it tells when to begin with another one. Any thread.
 */
final class SharedSymbols extends SymbolTable {
  // With what a processor keeps of each name: Saxon has a pool of its own.
  private static final long BYTES_OF_EACH = 300;
  private static final long BYTES_OF_LETTER = 4;

  private final long maxBytes;
  private long bytes;

  SharedSymbols(long maxBytes) {
    this.maxBytes = maxBytes;
  }

  synchronized boolean areTooMany() {
    return bytes > maxBytes;
  }

  @Override
  public synchronized String addSymbol(String symbol) {
    int before = fCount;
    return count(super.addSymbol(symbol), before);
  }

  @Override
  public synchronized String addSymbol(char[] buffer, int offset, int length) {
    int before = fCount;
    return count(super.addSymbol(buffer, offset, length), before);
  }

  @Override
  public synchronized boolean containsSymbol(String symbol) {
    return super.containsSymbol(symbol);
  }

  @Override
  public synchronized boolean containsSymbol(char[] buffer, int offset, int length) {
    return super.containsSymbol(buffer, offset, length);
  }

  private String count(String symbol, int before) {
    if (fCount > before)
      bytes += BYTES_OF_EACH + BYTES_OF_LETTER * symbol.length();
    return symbol;
  }
}
