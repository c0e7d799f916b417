package other;

/** A class of another jar. */
public class Lonely {
  public Lonely() {}
}
