package Configurations;

import orvan.Table;
import orvan.TableRecord;

/** A configuration. */
public class Configurations extends TableRecord {
  static final Table TABLE =
      Table.named("tscfg220")
          .texts(
              "ccfg", "desc", "ofbp", "cwoc", "csar", "tecr", "teca", "tecb", "cusc", "czon",
              "ccal", "cadr")
          .numbers("dist", "trti")
          .key("ccfg")
          .bounds("ccfg", "ofbp", "cwoc", "csar")
          .build();

  public Configurations() {
    super(TABLE);
  }

  public String getConfiguration() {
    return text("ccfg");
  }

  public String getDescription() {
    return text("desc");
  }

  public String getSoldToBusinessPartner() {
    return text("ofbp");
  }

  public String getServiceCenter() {
    return text("cwoc");
  }

  public String getServiceArea() {
    return text("csar");
  }

  public String getResponsibleEngineer() {
    return text("tecr");
  }

  public String getPreferredEngineer1() {
    return text("teca");
  }

  public String getPreferredEngineer2() {
    return text("tecb");
  }

  public String getUsageClass() {
    return text("cusc");
  }

  public String getDistanceZone() {
    return text("czon");
  }

  public Double getTravelDistance() {
    return number("dist");
  }

  public Double getTravelingTime() {
    return number("trti");
  }

  public String getCalendar() {
    return text("ccal");
  }

  public String getLocationAddress() {
    return text("cadr");
  }
}
