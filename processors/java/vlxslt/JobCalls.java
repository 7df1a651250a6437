package vlxslt;

import java.util.ArrayList;
import java.util.List;
import java.util.function.Consumer;

/**
 * Takes what one job tells its host. Ahead of the job's turn it is held; from then on it is passed on at once. Used by
 * the thread that the job is on.
 */
final class JobCalls implements IVLXSLTJavaHandler {
  private static final long BYTES_OF_CALL = 100;

  private final IVLXSLTJavaHandler host;
  private final Turn turn;
  private final List<Consumer<IVLXSLTJavaHandler>> held = new ArrayList<>();
  private boolean isPassing;
  private long skipped; // to come
  private long passed;

  /** `known` calls were passed on by an attempt that came to nothing; they are not told again. */
  JobCalls(IVLXSLTJavaHandler host, Turn turn, long known) {
    this.host = host;
    this.turn = turn;
    isPassing = turn.hasCome();
    skipped = known;
  }

  /** How many calls the host has got of this job. */
  long passed() {
    return passed;
  }

  /** The job's turn has come. */
  void passOn() {
    isPassing = true;
    held.forEach(this::pass);
    held.clear();
  }

  private void tell(int size, Consumer<IVLXSLTJavaHandler> call) {
    if (!isPassing)
      turn.hold(BYTES_OF_CALL + 2L * size);
    if (isPassing)
      pass(call);
    else
      held.add(call);
  }

  private void pass(Consumer<IVLXSLTJavaHandler> call) {
    passed++;
    if (skipped > 0)
      skipped--;
    else
      call.accept(host);
  }

  private static int sizeOf(String text) {
    return text == null ? 0 : text.length();
  }

  @Override
  public void FatalError(String message, String publicId, String systemId, int line, int column, String code) {
    tell(sizeOf(message), to -> to.FatalError(message, publicId, systemId, line, column, code));
  }

  @Override
  public void Error(String message, String publicId, String systemId, int line, int column, String code) {
    tell(sizeOf(message), to -> to.Error(message, publicId, systemId, line, column, code));
  }

  @Override
  public void Warning(String message, String publicId, String systemId, int line, int column, String code) {
    tell(sizeOf(message), to -> to.Warning(message, publicId, systemId, line, column, code));
  }

  @Override
  public void Message(String message) {
    tell(sizeOf(message), to -> to.Message(message));
  }

  /** Only in the job's turn: the answer cannot wait. */
  @Override
  public String ResolveEntity(String name, String publicId, String baseUri, String systemId) {
    return host.ResolveEntity(name, publicId, baseUri, systemId);
  }

  @Override
  public void StartDocument(String filePath) {
    tell(sizeOf(filePath), to -> to.StartDocument(filePath));
  }

  @Override
  public void EndDocument() {
    tell(0, IVLXSLTJavaHandler::EndDocument);
  }

  @Override
  public void JobDone(String[] secondaryOutputs, String[] filesRead) {
    tell(0, to -> to.JobDone(secondaryOutputs, filesRead));
  }
}
