package ServiceObjects;

import orvan.Table;
import orvan.TableRecord;

/** A service object. */
public class ServiceObjects extends TableRecord {
  static final Table TABLE =
      Table.named("tscfg200")
          .texts("ccfg", "crob", "desc", "cogr", "cusc", "manu", "ccal", "cdel")
          .wholes("oseq")
          .key("ccfg", "crob", "oseq")
          .build();

  public ServiceObjects() {
    super(TABLE);
  }

  public String getConfiguration() {
    return text("ccfg");
  }

  public String getServiceObject() {
    return text("crob");
  }

  public int getObjectNumber() {
    return whole("oseq");
  }

  public String getDescription() {
    return text("desc");
  }

  public String getObjectGroup() {
    return text("cogr");
  }

  public String getUsageClass() {
    return text("cusc");
  }

  public String getManufacturedBy() {
    return text("manu");
  }

  public String getCalendar() {
    return text("ccal");
  }

  public String getLocationAddress() {
    return text("cdel");
  }
}
