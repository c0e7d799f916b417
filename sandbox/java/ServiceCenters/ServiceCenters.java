package ServiceCenters;

import orvan.Table;
import orvan.TableRecord;

/** A service center. */
public class ServiceCenters extends TableRecord {
  static final Table TABLE =
      Table.named("tsmdm100")
          .texts("cwoc", "desc", "cmwc", "cwar", "srep")
          .wholes("wctp", "srtp")
          .numbers("clrt")
          .key("cwoc")
          .build();

  public ServiceCenters() {
    super(TABLE);
  }

  public String getServiceCentersCode() {
    return text("cwoc");
  }

  public String getDescription() {
    return text("desc");
  }

  public Integer getServiceCenterType() {
    return whole("wctp");
  }

  public String getMainServiceCenter() {
    return text("cmwc");
  }

  public String getWarehouse() {
    return text("cwar");
  }

  public Double getLaborRate() {
    return number("clrt");
  }

  public Integer getFieldOfSupport() {
    return whole("srtp");
  }

  public String getSalesRepresentative() {
    return text("srep");
  }
}
