package vlxslt;

/** Finds what documents refer to: the host is asked first, then the address itself is taken. Of one job. */
final class EntityResolution {
  private final IVLXSLTJavaHandler handler;
  private final HostAnswers answers;
  private final Turn turn;

  EntityResolution(IVLXSLTJavaHandler handler, HostAnswers answers, Turn turn) {
    this.handler = handler;
    this.answers = answers;
    this.turn = turn;
  }

  Turn turn() {
    return turn;
  }

  /** The address to read; null when there is nothing to go by. */
  String resolve(String name, String publicId, String baseUri, String systemId) {
    String answer = ask(name, publicId, baseUri, systemId);
    return answer.isEmpty() ? Addresses.resolve(baseUri, systemId) : Addresses.ofAnswer(answer);
  }

  // In the order of the run: the answer is known by then, or it is the job's turn.
  private String ask(String name, String publicId, String baseUri, String systemId) {
    HostAnswers.Question question = HostAnswers.Question.of(publicId, baseUri, systemId);
    turn.await(() -> answers.find(question) != null);
    String known = answers.find(question);
    if (known != null)
      return known;
    turn.await();
    String answer = handler.ResolveEntity(name, publicId, baseUri, systemId);
    String kept = answer == null ? "" : answer;
    answers.keep(question, kept);
    turn.settle();
    return kept;
  }
}
