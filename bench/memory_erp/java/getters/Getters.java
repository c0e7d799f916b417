package getters;

/** Two getters by themselves. */
public class Getters {
  private final int number = 42;
  private final String text = "twenty letters exact";

  public int getNumber() {
    return number;
  }

  public String getText() {
    return text;
  }
}
