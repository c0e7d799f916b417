package bridge;

import java.lang.reflect.Field;
import java.util.ArrayList;
import java.util.Enumeration;
import java.util.List;
import java.util.NoSuchElementException;

/** Service types whose manager, enumeration and record fail in the place that the property bridge.fail names. */
public class FailingErp {
  static void in(String place) {
    String failing = System.getProperty("bridge.fail", "");
    if (failing.equals("exit in " + place)) System.exit(0);
    if (failing.equals("deep in " + place)) in(place);
    if (failing.equals("thread in " + place)) {
      Thread thread = new Thread(() -> {
        for (;;) Thread.onSpinWait();
      });
      thread.setDaemon(false);
      thread.start();
    }
    if (failing.equals("crash in " + place)) crash();
    if (failing.equals("memory in " + place)) for (List<long[]> all = new ArrayList<>();;) all.add(new long[1 << 22]);
    if (failing.equals("null in " + place)) readNulls();
    if (failing.equals(place)) throw new IllegalStateException("fails in " + place);
  }

  // In compiled code the JVM learns of them by SIGSEGV.
  private static void readNulls() {
    int caught = 0;
    for (int i = 0; i < 50000; ++i) {
      try {
        caught += lengthOf(i % 50 == 0 ? null : "a");
      } catch (NullPointerException e) {
        caught += 2;
      }
    }
    if (caught != 51000) throw new IllegalStateException("caught " + caught);
  }
  private static int lengthOf(String text) { return text.length(); }

  // Writes where no memory is.
  private static void crash() {
    try {
      Class<?> type = Class.forName("sun.misc.Unsafe");
      Field field = type.getDeclaredField("theUnsafe");
      field.setAccessible(true);
      type.getMethod("putLong", long.class, long.class).invoke(field.get(null), 8L, 1L);
    } catch (ReflectiveOperationException e) {
      throw new IllegalStateException(e);
    }
  }

  public FailingErp() { in("constructor"); }

  public void initialize(String businessComponent) { in("initialize"); }

  public Enumeration<Type> list(String from, String to) {
    in("list");
    return new Types();
  }

  public void close() { in("close"); }

  private static class Types implements Enumeration<Type> {
    private int given;
    private final int count = System.getProperty("bridge.fail", "").startsWith("no end") ? 1 << 30 : 2;
    @Override public boolean hasMoreElements() {
      in("hasMoreElements");
      return given < count;
    }
    @Override public Type nextElement() {
      in("nextElement");
      if (given == count) throw new NoSuchElementException();
      return new Type("T" + ++given);
    }
  }

  /** One service type. */
  public static class Type {
    static {
      in("initializer");
    }
    private final String code;
    public Type() {
      this("");
      in("constructor of the record");
    }
    Type(String code) { this.code = code; }
    public String getServiceType() {
      in("getter");
      return code;
    }
    public String getServiceTypeDescription() { return ""; }
    public String getServiceProcedure() { return ""; }
    public String getAvailabilityType() { return ""; }
  }
}
