package ServiceTypes;

import orvan.Table;
import orvan.TableRecord;

/** A service type. */
public class ServiceTypes extends TableRecord {
  static final Table TABLE =
      Table.named("tsmdm030")
          .texts("cstp", "desc", "proc", "ract")
          .key("cstp")
          .build();

  public ServiceTypes() {
    super(TABLE);
  }

  public String getServiceType() {
    return text("cstp");
  }

  public String getServiceTypeDescription() {
    return text("desc");
  }

  public String getServiceProcedure() {
    return text("proc");
  }

  public String getAvailabilityType() {
    return text("ract");
  }
}
