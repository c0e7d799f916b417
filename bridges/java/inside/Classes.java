package qmxdatacopy;

import java.io.File;
import java.lang.reflect.InvocationTargetException;
import java.lang.reflect.Modifier;
import java.net.MalformedURLException;
import java.net.URL;
import java.net.URLClassLoader;
import java.util.Locale;

/** Finds the classes of a classpath and creates their objects. */
final class Classes {
  private Classes() {}

  static ClassLoader loader(String[] paths) throws MalformedURLException {
    URL[] urls = new URL[paths.length];
    for (int i = 0; i < paths.length; ++i) urls[i] = new File(paths[i]).toURI().toURL();
    return new URLClassLoader(urls, ClassLoader.getPlatformClassLoader());
  }

  /** The class of that name, or of one that differs in case if that is allowed; null if there is none. */
  static Class<?> load(ClassLoader loader, String name, String[] paths, boolean anyCase) throws Exception {
    Class<?> type = load(loader, name);
    if (type != null || !anyCase) return type;
    String other = Names.in(paths).get(name.toLowerCase(Locale.ROOT));
    return other == null ? null : load(loader, other);
  }

  private static Class<?> load(ClassLoader loader, String name) {
    try {
      return Class.forName(name, false, loader);
    } catch (ClassNotFoundException e) {
      return null;
    }
  }

  /** Why no object of the class can be created; null if one can. */
  static String flaw(Class<?> type) {
    if (type.isInterface() || Modifier.isAbstract(type.getModifiers())) return "is abstract";
    if (!Bridge.isOpen(type)) return "is not public";
    try {
      type.getConstructor();
      return null;
    } catch (NoSuchMethodException e) {
      return "has no public constructor without arguments";
    }
  }

  static Object make(Class<?> type) throws Throwable {
    try {
      return type.getConstructor().newInstance();
    } catch (InvocationTargetException e) {
      throw e.getCause();
    }
  }
}
