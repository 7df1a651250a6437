package vlxslt;

import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.lang.reflect.Proxy;
import java.util.Map;
import java.util.Optional;
import java.util.concurrent.ConcurrentHashMap;

/** Calls into a processor's own classes, which the layer is not compiled against. */
final class Reflection {
  /** What an object of the layer does when the processor calls one of its methods. */
  interface Callback {
    Object called(String method, Object[] arguments) throws Exception;
  }

  private record Signature(String name, int parameterCount) {}

  private static final ClassValue<Map<Signature, Optional<Method>>> METHODS = new ClassValue<>() {
    @Override
    protected Map<Signature, Optional<Method>> computeValue(Class<?> type) {
      return new ConcurrentHashMap<>();
    }
  };

  private Reflection() {}

  /** Throws what the method throws. */
  static Object call(Object target, String name, Object... arguments) throws Exception {
    Method method = method(target.getClass(), name, arguments.length);
    if (method == null)
      throw new NoSuchMethodException(target.getClass().getName() + "." + name);
    return call(target, method, arguments);
  }

  static Object call(Object target, Method method, Object... arguments) throws Exception {
    try {
      return method.invoke(target, arguments);
    } catch (InvocationTargetException e) {
      if (e.getCause() instanceof Error error)
        throw error;
      throw e.getCause() instanceof Exception cause ? cause : e;
    }
  }

  /** Null when there is no such method, or it fails. */
  static Object find(Object target, String name, Object... arguments) {
    try {
      return call(target, name, arguments);
    } catch (Exception e) {
      return null;
    }
  }

  /** A public method by its name and the number of its parameters; null when there is none. */
  static Method method(Class<?> type, String name, int parameterCount) {
    return METHODS.get(type)
        .computeIfAbsent(new Signature(name, parameterCount), wanted -> Optional.ofNullable(search(type, wanted)))
        .orElse(null);
  }

  private static Method search(Class<?> type, Signature wanted) {
    for (Method method : type.getMethods()) {
      if (method.getName().equals(wanted.name) && method.getParameterCount() == wanted.parameterCount
          && Modifier.isPublic(method.getDeclaringClass().getModifiers()))
        return method;
    }
    return null;
  }

  /** An object of a processor's interface. */
  static Object implement(Class<?> type, Callback callback) {
    return Proxy.newProxyInstance(type.getClassLoader(), new Class<?>[] {type},
        (proxy, method, arguments) -> method.getDeclaringClass() == Object.class
            ? answerAsObject(proxy, method.getName(), arguments)
            : callback.called(method.getName(), arguments));
  }

  private static Object answerAsObject(Object proxy, String method, Object[] arguments) {
    return switch (method) {
      case "hashCode" -> System.identityHashCode(proxy);
      case "equals" -> proxy == arguments[0];
      default -> "vlxslt";
    };
  }
}
