package AvailabilityType;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the availability types. */
public class AvailabilityTypeManager extends TableManager<AvailabilityType> {
  public AvailabilityTypeManager() {
    super(AvailabilityType.TABLE, AvailabilityType::new);
  }

  public Enumeration<AvailabilityType> ListAllAvailable(String from, String to) {
    return select(from, to);
  }
}
