package bridge;

/** What another class inherits. */
public class Parent {
  public String getInherited() { return "inherited"; }
  protected String getProtected() { return "protected"; }
  public Object getCovariant() { return "parent"; }
}
