package audit;

/** Filters a key column of an audit query. */
public class Parameter {
  private String fieldName;
  private String from;
  private String to;

  public void setFieldName(String name) {
    fieldName = name;
  }

  public void setFrom(String bound) {
    from = bound;
  }

  public void setTo(String bound) {
    to = bound;
  }
}
