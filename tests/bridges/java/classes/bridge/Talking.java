package bridge;

/** What another class gets from its interface. */
public interface Talking {
  default String getDefault() { return "default"; }
}
