package vlxslt;

import java.util.function.BooleanSupplier;

/**
 * When a job may do what others must see in the order of the run. A job that works ahead waits for its turn there, or
 * until what it needs has been settled by an earlier job.
 */
interface Turn {
  /** Ends a job that is no longer wanted; nothing of it is told or written. */
  final class Dropped extends Error {
    private static final long serialVersionUID = 1;

    Dropped() {
      super("The job was dropped", null, false, false);
    }
  }

  boolean hasCome();

  /** Returns when it is the job's turn, or `isSettled`. Throws Dropped. */
  void await(BooleanSupplier isSettled);

  /** Something has been settled that later jobs may wait for. */
  void settle();

  /** Something is held in memory until the turn; waits for the turn when that is too much. */
  void hold(long bytes);

  default void await() {
    await(() -> false);
  }
}
