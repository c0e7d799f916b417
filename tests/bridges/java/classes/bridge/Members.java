package bridge;

import java.util.Enumeration;
import java.util.Iterator;
import java.util.List;
import java.util.NoSuchElementException;
import java.util.Vector;
import java.util.stream.Stream;

/** Members of every origin, and enumerations of every kind. */
public class Members extends Parent implements Talking {
  public interface Closed {
    String getOpen();
  }
  private static class Hidden implements Closed {
    @Override public String getOpen() { return "open"; }
    public String getShut() { return "shut"; }
  }
  public static class Big {
    private final byte[] content = new byte[1000];
    public Big() {}
    public int getSize() { return content.length; }
  }

  private String mixed = "";
  private int closed;

  @Override public String getCovariant() { return "child"; }
  public String getMIXED() { return mixed; }
  public void setMixed(String value) { mixed = value; }
  public String getTwice() { return "getTwice"; }
  public String gettwice() { return "gettwice"; }
  public static String getStatic() { return "static"; }
  public Object getHidden() { return new Hidden(); }
  public Members getSelf() { return this; }
  public boolean isSelf(Object other) { return other == this; }
  public Big getBig() { return new Big(); }

  public Enumeration<String> enumeration() { return new Vector<>(List.of("a", "b")).elements(); }
  public Iterator<String> iterator() { return List.of("a", "b").iterator(); }
  public Iterable<String> iterable() { return List.of("a", "b"); }
  public Stream<String> stream() { return Stream.of("a", "b"); }
  public Stream<String> openStream() { return Stream.of("a", "b").onClose(() -> ++closed); }
  public Stream<String> stuckStream() {
    return Stream.of("a").onClose(() -> { throw new IllegalStateException("does not close"); });
  }
  public int getClosed() { return closed; }
  public Iterable<String> noIterator() { return () -> null; }
  public Enumeration<Object> mixture() {
    return new Enumeration<Object>() {
      private int next;
      @Override public boolean hasMoreElements() { return next < 3; }
      @Override public Object nextElement() {
        switch (next++) {
          case 0: return 1;
          case 1: return "two";
          case 2: return null;
          default: throw new NoSuchElementException("no more");
        }
      }
    };
  }
}
