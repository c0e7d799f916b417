package audit;

import java.time.LocalDate;

/** Narrows a key column of an audit query. Both bounds are inclusive. */
public class Parameter {
  private String fieldName = "";
  private Object from;
  private Object to;

  public void setFieldName(String name) {
    fieldName = name;
  }

  public void setFrom(String bound) {
    from = bound;
  }

  public void setFrom(double bound) {
    from = bound;
  }

  public void setFrom(LocalDate bound) {
    from = bound;
  }

  public void setTo(String bound) {
    to = bound;
  }

  public void setTo(double bound) {
    to = bound;
  }

  public void setTo(LocalDate bound) {
    to = bound;
  }

  String fieldName() {
    return fieldName;
  }

  Object from() {
    return from;
  }

  Object to() {
    return to;
  }
}
