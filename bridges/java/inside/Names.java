package qmxdatacopy;

import java.io.File;
import java.io.IOException;
import java.util.Collections;
import java.util.HashMap;
import java.util.Locale;
import java.util.Map;
import java.util.jar.JarEntry;
import java.util.jar.JarFile;

/** The names of the classes in a classpath, by their lower case. */
final class Names {
  private static final Map<String, Map<String, String>> read = new HashMap<>();

  private Names() {}

  static Map<String, String> in(String[] paths) throws IOException {
    String key = String.join(File.pathSeparator, paths);
    Map<String, String> names = read.get(key);
    if (names == null) {
      names = new HashMap<>();
      for (String path : paths) addAll(new File(path), names);
      read.put(key, names);
    }
    return names;
  }

  private static void addAll(File path, Map<String, String> names) throws IOException {
    if (path.isDirectory()) {
      addFolder(path, "", names);
    } else if (path.isFile()) {
      try (JarFile jar = new JarFile(path)) {
        for (JarEntry entry : Collections.list(jar.entries())) add(entry.getName(), names);
      } catch (IOException e) {
        throw new IOException(path + " cannot be read", e);
      }
    }
  }

  private static void addFolder(File folder, String prefix, Map<String, String> names) {
    File[] files = folder.listFiles();
    if (files == null) return;
    for (File file : files) {
      if (file.isDirectory()) {
        addFolder(file, prefix + file.getName() + "/", names);
      } else {
        add(prefix + file.getName(), names);
      }
    }
  }

  private static void add(String file, Map<String, String> names) {
    if (!file.endsWith(".class")) return;
    String name = file.substring(0, file.length() - ".class".length()).replace('/', '.');
    names.putIfAbsent(name.toLowerCase(Locale.ROOT), name);
  }
}
