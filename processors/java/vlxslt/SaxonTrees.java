package vlxslt;

import java.lang.reflect.Constructor;
import java.lang.reflect.Field;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import javax.xml.transform.Source;

/**
 * Saxon's trees, for use by any number of transformations at once. Each gets a copy of its own, which shares the arrays
 * with the nodes and has an identity, and with it a place in document order, as if it had just been built. What Saxon
 * fills in later, it fills in in the copy.
 */
final class SaxonTrees {
  // Each copy has its own of these: its identity, and what is found out while it is used.
  private static final Set<String> OWN = Set.of("root", "documentRoot", "documentNumber", "userData", "idTable",
      "knownBaseUris", "spaceStrippingRule", "prior", "localNameIndex", "typedValueArray", "attTypedValue");
  private static final String IDENTIFIERS = "idTable";
  // Nodes of other trees, in Saxon 9.
  private static final String FOREIGN = "externalNodes";
  private static final Set<String> VERSIONS = Set.of("9.9", "10", "11", "12");
  private static final Set<String> TEXTS = Set.of("charBuffer", "textBuffer");
  private static final long BYTES_OF_NODE = 32;
  private static final long BYTES_OF_ATTRIBUTE = 80;
  private static final long BYTES_OF_LETTER = 2;

  private static final StackWalker STACK = StackWalker.getInstance(StackWalker.Option.RETAIN_CLASS_REFERENCE);
  private static final int MAX_FRAMES_TO_READER = 30;

  private final Class<?> treeType;
  private final Class<?> documentFunction;
  private final Class<?> transformFunction;
  private final Constructor<?> newTree;
  private final Object smallest;
  private final List<Field> shared = new ArrayList<>();
  private final Field texts;
  private final Field identifiers;
  private final Field foreign; // null where there is none
  private final Field treesOfPool;

  private SaxonTrees(ClassLoader loader) throws ReflectiveOperationException {
    treeType = Class.forName("net.sf.saxon.tree.tiny.TinyTree", true, loader);
    documentFunction = Class.forName("net.sf.saxon.functions.DocumentFn", true, loader);
    transformFunction = Class.forName("net.sf.saxon.functions.TransformFn", true, loader);
    Class<?> statistics = Class.forName("net.sf.saxon.tree.tiny.Statistics", true, loader);
    smallest = statistics.getConstructor(int.class, int.class, int.class, int.class).newInstance(1, 1, 1, 1);
    newTree = treeType.getConstructor(Class.forName("net.sf.saxon.Configuration", true, loader), statistics);
    for (Class<?> type = treeType; type != Object.class; type = type.getSuperclass())
      for (Field field : type.getDeclaredFields())
        if (!Modifier.isStatic(field.getModifiers()) && !OWN.contains(field.getName()))
          shared.add(accessible(field));
    texts = shared.stream().filter(field -> TEXTS.contains(field.getName())).findAny().orElseThrow();
    identifiers = accessible(treeType.getDeclaredField(IDENTIFIERS));
    foreign = shared.stream().filter(field -> field.getName().equals(FOREIGN)).findAny().orElse(null);
    treesOfPool = accessible(
        Class.forName("net.sf.saxon.om.DocumentPool", true, loader).getDeclaredField("documentNameMap"));
  }

  /** Null for what is not known to work: other versions, and editions that annotate trees with types. */
  static SaxonTrees of(Object configuration, String version, ClassLoader loader) {
    boolean isKnown = VERSIONS.stream().anyMatch(known -> version != null && version.startsWith(known + "."));
    if (!isKnown || !"HE".equals(Reflection.find(configuration, "getEditionCode")))
      return null;
    try {
      return new SaxonTrees(loader);
    } catch (ReflectiveOperationException | RuntimeException e) {
      return null;
    }
  }

  /**
   * Whether what calls a resolver now makes a tree that the transformation itself uses. A resolver is asked for other
   * purposes too, and for the transformations that a stylesheet starts, which have rules of their own.
   */
  boolean areAskedFor() {
    boolean isReader = STACK.walk(frames -> frames.limit(MAX_FRAMES_TO_READER)
        .anyMatch(frame -> frame.getDeclaringClass() == documentFunction && frame.getMethodName().equals("makeDoc")));
    return isReader && STACK.walk(frames -> frames.noneMatch(frame -> frame.getDeclaringClass() == transformFunction));
  }

  /** The trees of all documents that a transformation has read. */
  List<Object> treesOf(Object controller) throws Exception {
    Map<?, ?> trees = (Map<?, ?>) treesOfPool.get(Reflection.call(controller, "getDocumentPool"));
    return List.copyOf(trees.values());
  }

  static Object rootOf(Object tree) throws Exception {
    return Reflection.call(tree, "getRootNode");
  }

  /** A copy for no transformation, of a tree that none uses any more; null when it cannot be kept. */
  Object keep(Object tree) throws Exception {
    return tree.getClass() != treeType || foreign != null && foreign.get(tree) != null ? null : copy(tree);
  }

  /** The document node of another copy, as a source; the white space that `rule` names was left out of it. */
  Source open(Object kept, Object rule) throws Exception {
    Object tree = copy(kept);
    Reflection.call(tree, "getDocumentNumber"); // has it from now on, as a tree that was built
    Reflection.call(tree, "setSpaceStrippingRule", rule);
    Object root = rootOf(tree);
    return root instanceof Source source ? source : (Source) Reflection.call(root, "asActiveSource");
  }

  /** An estimate of what a tree occupies. */
  long bytesOf(Object kept) throws Exception {
    long nodes = (Integer) Reflection.call(kept, "getNumberOfNodes");
    long attributes = (Integer) Reflection.call(kept, "getNumberOfAttributes");
    long letters = (Integer) Reflection.call(texts.get(kept), "length");
    return nodes * BYTES_OF_NODE + attributes * BYTES_OF_ATTRIBUTE + letters * BYTES_OF_LETTER;
  }

  private Object copy(Object tree) throws Exception {
    Object copy = newTree.newInstance(Reflection.call(tree, "getConfiguration"), smallest);
    for (Field field : shared)
      field.set(copy, field.get(tree));
    if (identifiers.get(tree) instanceof Map<?, ?> nodes)
      identifiers.set(copy, nodesIn(copy, nodes));
    return copy;
  }

  private static Map<Object, Object> nodesIn(Object copy, Map<?, ?> nodes) throws Exception {
    Map<Object, Object> own = new HashMap<>();
    for (Map.Entry<?, ?> each : nodes.entrySet()) {
      Method numberOf = Reflection.method(each.getValue().getClass(), "getNodeNumber", 0);
      own.put(each.getKey(), Reflection.call(copy, "getNode", Reflection.call(each.getValue(), numberOf)));
    }
    return own;
  }

  private static Field accessible(Field field) {
    field.setAccessible(true);
    return field;
  }
}
