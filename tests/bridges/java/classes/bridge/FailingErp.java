package bridge;

import java.lang.reflect.Field;
import java.util.Enumeration;
import java.util.NoSuchElementException;

/** Service types whose manager, enumeration and record fail in the place that the property bridge.fail names. */
public class FailingErp {
  private static void in(String place) {
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
    if (failing.equals(place)) throw new IllegalStateException("fails in " + place);
  }

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
    @Override public boolean hasMoreElements() {
      in("hasMoreElements");
      return given < 2;
    }
    @Override public Type nextElement() {
      in("nextElement");
      if (given == 2) throw new NoSuchElementException();
      return new Type("T" + ++given);
    }
  }

  /** One service type. */
  public static class Type {
    private final String code;
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
