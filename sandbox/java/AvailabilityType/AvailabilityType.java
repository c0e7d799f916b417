package AvailabilityType;

import orvan.Table;
import orvan.TableRecord;

/** An availability type. */
public class AvailabilityType extends TableRecord {
  static final Table TABLE =
      Table.named("tcccp001")
          .texts("ract", "dsca")
          .wholes("ptmu", "avlb")
          .numbers("hrsd")
          .key("ract")
          .build();

  public AvailabilityType() {
    super(TABLE);
  }

  public String getAvailabilityType() {
    return text("ract");
  }

  public String getDescription() {
    return text("dsca");
  }

  public Integer getPlanTimeUnit() {
    return whole("ptmu");
  }

  public Double getNoOfHoursPerDay() {
    return number("hrsd");
  }

  public Integer getAvailable() {
    return whole("avlb");
  }
}
