package vlxslt;

import java.util.function.LongSupplier;
import net.sf.saxon.tree.util.DocumentNumberAllocator;

/** Passes on the numbers of trees to Saxon; the one class that is compiled against it. */
public final class SaxonDocumentNumbers extends DocumentNumberAllocator {
  private final LongSupplier numbers;

  public SaxonDocumentNumbers(LongSupplier numbers) {
    this.numbers = numbers;
  }

  @Override
  public long allocateDocumentNumber() {
    return numbers.getAsLong();
  }
}
