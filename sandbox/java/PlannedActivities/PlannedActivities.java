package PlannedActivities;

import java.util.Date;
import orvan.Table;
import orvan.TableRecord;

/** A planned activity. */
public class PlannedActivities extends TableRecord {
  static final Table TABLE =
      Table.named("tsspc200")
          .texts(
              "ccfg", "crac", "desc", "cagr", "cstp", "cwoc", "crob", "skla", "sklb", "sklc",
              "orno")
          .wholes("aseq", "oseq", "appo", "stat", "acln")
          .numbers("adur", "trtm")
          .moments("esct", "psct", "pfct", "lfct")
          .key("ccfg", "crac", "aseq")
          .build();

  public PlannedActivities() {
    super(TABLE);
  }

  public String getConfiguration() {
    return text("ccfg");
  }

  public String getActivity() {
    return text("crac");
  }

  public int getActivityNumber() {
    return whole("aseq");
  }

  public String getDescription() {
    return text("desc");
  }

  public String getActivityGroup() {
    return text("cagr");
  }

  public String getServiceType() {
    return text("cstp");
  }

  public String getServiceCenter() {
    return text("cwoc");
  }

  public String getObject() {
    return text("crob");
  }

  public Integer getObjectNumber() {
    return whole("oseq");
  }

  public Date getEarliestStartTime() {
    return moment("esct");
  }

  public Date getPlannedStartTime() {
    return moment("psct");
  }

  public Date getPlannedFinishTime() {
    return moment("pfct");
  }

  public Date getLatestFinishTime() {
    return moment("lfct");
  }

  public Double getActivityDuration() {
    return number("adur");
  }

  public Double getTravelingTime() {
    return number("trtm");
  }

  public String getSkill1() {
    return text("skla");
  }

  public String getSkill2() {
    return text("sklb");
  }

  public String getSkill3() {
    return text("sklc");
  }

  public Integer getAppointment() {
    return whole("appo");
  }

  public Integer getActivityStatus() {
    return whole("stat");
  }

  public String getServiceOrder() {
    return text("orno");
  }

  public Integer getActivityLineNumber() {
    return whole("acln");
  }
}
