package vlxslt;

import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;

/** What the host answered to questions about entities in this run: each is asked once. Shared by all jobs. */
final class HostAnswers {
  /** References in documents of one folder mean the same. */
  record Question(String publicId, String systemId, String folder) {
    static Question of(String publicId, String baseUri, String systemId) {
      return new Question(publicId, systemId, baseUri == null ? null : baseUri.substring(0, baseUri.lastIndexOf('/') + 1));
    }
  }

  private static final int MAX_ANSWERS = 100_000;

  private final Map<Question, String> answers = new ConcurrentHashMap<>();

  /** The host's catalogs may have changed since the last run. */
  void startRun() {
    answers.clear();
  }

  /** Null when there is none yet. */
  String find(Question question) {
    return answers.get(question);
  }

  void keep(Question question, String answer) {
    if (answers.size() >= MAX_ANSWERS)
      answers.clear();
    answers.put(question, answer);
  }
}
