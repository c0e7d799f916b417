package ServiceAreas;

import orvan.Table;
import orvan.TableRecord;

/** A service area. */
public class ServiceAreas extends TableRecord {
  static final Table TABLE =
      Table.named("tsmdm105")
          .texts("csar", "desc", "cmsa", "cwoc", "cwar", "ccur")
          .wholes("artp")
          .numbers("trti", "dist", "ccha", "clrt")
          .key("csar")
          .build();

  public ServiceAreas() {
    super(TABLE);
  }

  public String getServiceArea() {
    return text("csar");
  }

  public String getServiceAreaDescription() {
    return text("desc");
  }

  public Integer getServiceAreaType() {
    return whole("artp");
  }

  public String getMainServiceArea() {
    return text("cmsa");
  }

  public String getServiceCenter() {
    return text("cwoc");
  }

  public String getWarehouse() {
    return text("cwar");
  }

  public Double getAverageTravelingTime() {
    return number("trti");
  }

  public Double getAverageTravelingDistance() {
    return number("dist");
  }

  public Double getCallOutCharge() {
    return number("ccha");
  }

  public String getCurrency() {
    return text("ccur");
  }

  public Double getLaborRate() {
    return number("clrt");
  }
}
