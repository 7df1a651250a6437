package vlxslt;

import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.HashSet;
import java.util.List;
import java.util.Set;
import java.util.concurrent.SynchronousQueue;
import java.util.concurrent.ThreadPoolExecutor;
import java.util.concurrent.TimeUnit;
import java.util.function.BooleanSupplier;

/**
 * Carries out the jobs that are expected next on threads of its own, ahead of their turn. What they say and write is held
 * until then, and held bytes have a bound. A job whose result may differ in its turn is dropped and done again there:
 * what it read has changed, or its outputs cannot be written. Announced and taken by the Java thread of the host.
 */
final class WorkAhead {
  /** Makes and transforms jobs; called on any thread. */
  interface Worker {
    Job newJob(Job.Request request, Turn turn);

    void transform(Job job) throws Exception;
  }

  private enum State { EXPECTED, RUNNING, WAITING, DONE }

  private static final long STACK_SIZE = 256L << 20; // as that of the host's Java thread
  private static final int IDLE_SECONDS = 10;
  private static final int MAX_DROPPED = 3;
  private static final long BYTES_PER_THREAD = 128L << 20;
  private static final long BYTES_PER_BYTE = 16; // of an input, as a tree
  private static final int BYTES_OF_JOB = 4 << 10;

  private final Worker worker;
  private final ThreadPoolExecutor pool = new ThreadPoolExecutor(
      0, Integer.MAX_VALUE, IDLE_SECONDS, TimeUnit.SECONDS, new SynchronousQueue<>(), WorkAhead::newThread);
  private final Turn now = new NowTurn();
  private final long maxHeld = BoundedCache.partOfHeap(16);

  // Guarded by this.
  private final Deque<Ahead> expected = new ArrayDeque<>(); // in the order of the run
  private final Deque<Written> written = new ArrayDeque<>(); // since the oldest job ahead was begun
  private List<Path> lastResults = List.of(); // of the turn before
  private final Set<Ahead> begun = new HashSet<>();
  private int threads = 1;
  private int dropped;
  private long held;
  private long clock;
  private boolean isTurnRunning; // a job that does not work ahead
  private boolean isAlone;       // until the end of the turn

  private record Written(long time, Path path) {}

  WorkAhead(Worker worker) {
    this.worker = worker;
  }

  private static Thread newThread(Runnable work) {
    Thread thread = new Thread(null, work, "vlxslt-ahead", STACK_SIZE);
    thread.setDaemon(true);
    return thread;
  }

  /** The turn of a job that does not work ahead. */
  Turn now() {
    return now;
  }

  /** A run begins, of at most so many jobs at once; 0 leaves that to the machine. */
  synchronized void startRun(int jobs) {
    dropAll();
    expected.clear();
    written.clear();
    lastResults = List.of();
    dropped = 0;
    isAlone = false;
    isTurnRunning = true; // of the first job
    long fitting = Math.max(1, Runtime.getRuntime().maxMemory() / BYTES_PER_THREAD);
    threads = jobs > 0 ? jobs : (int) Math.min(Runtime.getRuntime().availableProcessors(), fitting);
  }

  /** Nothing is expected any more. Jobs under way end by themselves, unheard. */
  synchronized void endRun() {
    dropAll();
    expected.clear();
    written.clear();
    lastResults = List.of();
  }

  /** A job that will be asked for after those before it, unless it is left out. */
  synchronized void expect(int number, Job.Request request) {
    if (threads > 1)
      expected.add(new Ahead(number, request));
    startMore();
  }

  /** A job's turn, done up to its commit by a thread of this object. Null when it is to be done by the caller. */
  Attempt take(int number, Job.Request request) {
    Ahead ahead = awaitRest(number, request);
    if (ahead == null)
      return null;
    if (Failures.isOutOfMemory(ahead.failure)) {
      drop(ahead);
      runAlone();
      return null;
    }
    if (!ahead.isGood(writtenSince(ahead.began))) {
      dropTaken(ahead);
      return null;
    }
    try {
      ahead.job.beginTurn(request.output());
    } catch (Exception | OutOfMemoryError e) {
      ahead.job.close();
      dropTaken(ahead);
      return null;
    }
    ahead.goOn();
    return new Attempt(ahead.job, ahead.failure);
  }

  /** The caller does a job itself. */
  synchronized void beginTurn() {
    isTurnRunning = true;
  }

  /** A job has ended; these files are its results. */
  synchronized void endTurn(List<Path> results) {
    isTurnRunning = false;
    isAlone = false;
    lastResults = threads > 1 ? results : List.of();
    startMore();
  }

  /** The job ran out of memory while others ran too: returns when they have let go of theirs. False when none did. */
  synchronized boolean makeRoom() {
    if (begun.isEmpty())
      return false;
    runAlone();
    return true;
  }

  // From now on fewer run at once, and none beside this one until the turn ends.
  private synchronized void runAlone() {
    threads = Math.max(1, threads / 2);
    isAlone = true;
    List<Ahead> others = beginAnew();
    while (others.stream().anyMatch(ahead -> ahead.state != State.DONE))
      await(this);
  }

  /** What is under way ahead is dropped and done again. Returns that. */
  synchronized List<Ahead> beginAnew() {
    List<Ahead> others = new ArrayList<>(begun);
    dropAll();
    others.sort((one, other) -> other.number - one.number);
    others.forEach(ahead -> expected.addFirst(new Ahead(ahead.number, ahead.request)));
    return others;
  }

  // The job in question, which waits or is done; null when it was not begun.
  private synchronized Ahead awaitRest(int number, Job.Request request) {
    noteLastResults();
    while (!expected.isEmpty() && expected.peek().number < number)
      expected.remove();
    begun.stream().filter(ahead -> ahead.number < number).toList().forEach(this::drop);
    Ahead ahead = begun.stream().filter(each -> each.number == number).findAny().orElse(null);
    if (ahead == null) {
      if (!expected.isEmpty() && expected.peek().number == number)
        expected.remove();
      return null;
    }
    if (!ahead.request.isLike(request)) {
      drop(ahead);
      return null;
    }
    while (ahead.state == State.RUNNING)
      await(this);
    ahead.isTaken = true;
    return ahead;
  }

  // Not before the next turn: the caller may have put them in place after the last one had ended.
  private void noteLastResults() {
    lastResults.forEach(path -> written.add(new Written(++clock, path)));
    lastResults = List.of();
    long oldest = begun.stream().mapToLong(ahead -> ahead.began).min().orElse(clock);
    while (!written.isEmpty() && written.peek().time <= oldest)
      written.remove();
  }

  private synchronized Set<Path> writtenSince(long time) {
    Set<Path> paths = new HashSet<>();
    written.stream().filter(each -> each.time > time).forEach(each -> paths.add(each.path));
    return paths;
  }

  // The work was in vain; a run of which that is true too often goes on one by one.
  private synchronized void dropTaken(Ahead ahead) {
    if (++dropped >= MAX_DROPPED)
      threads = 1;
    drop(ahead);
  }

  private synchronized void drop(Ahead ahead) {
    ahead.isDropped = true;
    begun.remove(ahead);
    held -= ahead.held;
    ahead.held = 0;
    notifyAll();
  }

  private void dropAll() {
    List.copyOf(begun).forEach(this::drop);
  }

  private void startMore() {
    while (threads > 1 && !expected.isEmpty() && mayStart(expected.peek())) {
      Ahead next = expected.remove();
      begun.add(next);
      next.began = clock;
      next.state = State.RUNNING;
      next.loader = Thread.currentThread().getContextClassLoader();
      try {
        pool.execute(next);
      } catch (OutOfMemoryError e) {
        // No more threads are to be had: the job is done in its turn.
        begun.remove(next);
        threads = 1;
      }
    }
  }

  private boolean mayStart(Ahead next) {
    long running = begun.stream().filter(ahead -> ahead.state == State.RUNNING).count() + (isTurnRunning ? 1 : 0);
    long waiting = begun.stream().filter(ahead -> ahead.state == State.WAITING).count();
    long trees = begun.stream().filter(ahead -> ahead.state != State.DONE).mapToLong(Ahead::treeSize).sum();
    return !isAlone && running < threads && waiting < threads && begun.size() < 4 * threads + 8 && held < maxHeld / 2
        && (trees == 0 || trees + next.treeSize() < Runtime.getRuntime().maxMemory() / 2);
  }

  private static void await(Object monitor) {
    try {
      monitor.wait();
    } catch (InterruptedException e) {
      // The layer interrupts no thread, and a stylesheet's code must not end a job that way.
    }
  }

  /** A job up to its commit, and what ended it before, if anything did. */
  record Attempt(Job job, Throwable failure) {}

  private final class NowTurn implements Turn {
    @Override
    public boolean hasCome() {
      return true;
    }

    @Override
    public void await(BooleanSupplier isSettled) {}

    @Override
    public void settle() {
      synchronized (WorkAhead.this) {
        WorkAhead.this.notifyAll();
      }
    }

    @Override
    public void hold(long bytes) {}
  }

  private final class Ahead implements Runnable, Turn {
    final int number;
    final Job.Request request;
    ClassLoader loader;
    Job job;
    Throwable failure;
    long began;
    // Guarded by the outer object; read by the job's own thread at any time.
    State state = State.EXPECTED;
    boolean isTaken;
    volatile boolean hasTurn;
    volatile boolean isDropped;
    long held;
    private long treeSize = -1;

    Ahead(int number, Job.Request request) {
      this.number = number;
      this.request = request;
    }

    long treeSize() {
      if (treeSize < 0)
        treeSize = Path.of(request.inputContent()).toFile().length() * BYTES_PER_BYTE;
      return treeSize;
    }

    @Override
    public void run() {
      Thread.currentThread().setContextClassLoader(loader);
      try {
        hold(BYTES_OF_JOB);
        job = worker.newJob(request, this);
        worker.transform(job);
      } catch (Throwable e) {
        failure = e;
      }
      synchronized (WorkAhead.this) {
        state = State.DONE;
        if (isDropped)
          job = null;
        WorkAhead.this.notifyAll();
        startMore();
      }
    }

    /** While the job's thread waits or is done. */
    boolean isGood(Set<Path> written) {
      return job != null && !job.filesRead().haveAny(written);
    }

    /** The turn has come: returns when the job is done. */
    void goOn() {
      synchronized (WorkAhead.this) {
        begun.remove(this);
        WorkAhead.this.held -= held;
        held = 0;
        hasTurn = true;
        WorkAhead.this.notifyAll();
        startMore();
        while (state != State.DONE)
          WorkAhead.await(WorkAhead.this);
      }
    }

    @Override
    public boolean hasCome() {
      return hasTurn;
    }

    @Override
    public void await(BooleanSupplier isSettled) {
      if (hasTurn)
        return;
      synchronized (WorkAhead.this) {
        if (isDropped)
          throw new Dropped();
        if (isSettled.getAsBoolean())
          return;
        state = State.WAITING;
        WorkAhead.this.notifyAll();
        startMore();
        while (!hasTurn && !isDropped && (isTaken || !isSettled.getAsBoolean()))
          WorkAhead.await(WorkAhead.this);
        state = State.RUNNING;
        if (isDropped)
          throw new Dropped();
      }
    }

    @Override
    public void settle() {
      now.settle();
    }

    @Override
    public void hold(long bytes) {
      if (hasTurn)
        return;
      boolean isTooMuch;
      synchronized (WorkAhead.this) {
        if (isDropped)
          throw new Dropped();
        held += bytes;
        WorkAhead.this.held += bytes;
        isTooMuch = WorkAhead.this.held > maxHeld;
      }
      if (isTooMuch)
        await();
    }
  }
}
