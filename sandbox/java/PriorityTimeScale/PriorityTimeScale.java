package PriorityTimeScale;

import orvan.Table;
import orvan.TableRecord;

/** A priority time scale. */
public class PriorityTimeScale extends TableRecord {
  static final Table TABLE =
      Table.named("tsclm024")
          .texts("desc")
          .numbers("sltt")
          .key("sltt")
          .build();

  public PriorityTimeScale() {
    super(TABLE);
  }

  public double getSolutionTimeInMinutes() {
    return number("sltt");
  }

  public String getDescription() {
    return text("desc");
  }
}
