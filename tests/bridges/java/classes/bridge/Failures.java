package bridge;

import java.util.ArrayList;
import java.util.List;

/** Fails in every way. */
public class Failures {
  public static class OfConstructor {
    public OfConstructor() { throw new IllegalArgumentException("no licence"); }
  }
  public static class OfInitializer {
    static final int VALUE = Integer.parseInt("x");
    public OfInitializer() {}
  }
  public static class WithArgument {
    public WithArgument(int value) {}
  }
  public abstract static class Abstract {
    public Abstract() {}
  }
  static class NotPublic {
    public NotPublic() {}
  }
  public static class Silent extends RuntimeException {
    private static final long serialVersionUID = 1;
    @Override public String getMessage() { throw new IllegalStateException("no words"); }
  }

  public String locked() throws Exception {
    throw new Exception("The ERP is closed.", new IllegalStateException("locked", new RuntimeException()));
  }
  public int number() { throw new NumberFormatException("a number"); }
  public void with(String argument) { throw new UnsupportedOperationException(argument); }
  public void silent() { throw new Silent(); }
  public int deep() { return 1 + deep(); }
  public int memory() {
    List<long[]> all = new ArrayList<>();
    for (;;) all.add(new long[1 << 24]);
  }
  public void stayAwake() {
    Thread thread = new Thread(() -> {
      try {
        Thread.sleep(600000);
      } catch (InterruptedException e) {
        return;
      }
    });
    thread.setDaemon(false);
    thread.start();
  }
  /** Leaves a file when the JVM ends in order. */
  public void leaveNote(String file) {
    Runtime.getRuntime().addShutdownHook(new Thread(() -> {
      try {
        new java.io.File(file).createNewFile();
      } catch (java.io.IOException e) {
        e.printStackTrace();
      }
    }));
  }
  public void exit() { System.exit(0); }
  public String getZone() { return java.util.TimeZone.getDefault().getID(); }
}
