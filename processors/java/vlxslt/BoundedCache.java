package vlxslt;

import java.lang.ref.SoftReference;
import java.util.Iterator;
import java.util.LinkedHashMap;
import java.util.Map;
import java.util.function.Predicate;

/**
 * A cache up to a number of bytes, as its owner estimates them: what was not used for longest goes first, and everything
 * when Java needs the memory. The value that was kept last stays whatever its size. Any thread.
 */
final class BoundedCache<K, V> {
  private record Kept<V>(SoftReference<V> value, long bytes) {}

  private final long maxBytes;
  private final Map<K, Kept<V>> entries = new LinkedHashMap<>(16, 0.75f, true);
  private long bytes;

  /** Up to this part of what Java may use. */
  static long partOfHeap(int divisor) {
    return Runtime.getRuntime().maxMemory() / divisor;
  }

  BoundedCache(long maxBytes) {
    this.maxBytes = maxBytes;
  }

  /** Null when there is none, or none any more. */
  synchronized V get(K key) {
    Kept<V> kept = entries.get(key);
    V value = kept == null ? null : kept.value.get();
    if (kept != null && value == null)
      remove(key);
    return value;
  }

  synchronized void put(K key, V value, long size) {
    remove(key);
    entries.put(key, new Kept<>(new SoftReference<>(value), size));
    bytes += size;
    Iterator<Kept<V>> oldest = entries.values().iterator();
    while (bytes > maxBytes && entries.size() > 1) {
      bytes -= oldest.next().bytes;
      oldest.remove();
    }
  }

  synchronized void remove(K key) {
    Kept<V> removed = entries.remove(key);
    if (removed != null)
      bytes -= removed.bytes;
  }

  /** Only if it is still this one. */
  synchronized void remove(K key, V value) {
    Kept<V> kept = entries.get(key);
    if (kept != null && kept.value.get() == value)
      remove(key);
  }

  synchronized long count(Predicate<K> isMeant) {
    return entries.keySet().stream().filter(isMeant).count();
  }

  synchronized void removeIf(Predicate<K> isMeant) {
    entries.keySet().stream().filter(isMeant).toList().forEach(this::remove);
  }

  synchronized void clear() {
    entries.clear();
    bytes = 0;
  }
}
