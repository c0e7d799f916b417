package ServiceOrderActivities;

import java.util.Date;
import orvan.Table;
import orvan.TableRecord;

/** An activity of a service order. */
public class ServiceOrderActivities extends TableRecord {
  static final Table TABLE =
      Table.named("tssoc210")
          .texts(
              "orno", "crac", "desc", "cstp", "cagr", "ccfg", "crob", "ccll", "crtc", "cprl",
              "cstn", "skla", "sklb", "sklc")
          .wholes("acln", "oseq", "prpr", "cupr", "obpr", "asta", "appo")
          .numbers("acdu")
          .moments("pstm", "pftm", "estm", "lftm", "astm", "aftm")
          .key("orno", "acln")
          .build();

  public ServiceOrderActivities() {
    super(TABLE);
  }

  public String getServiceOrder() {
    return text("orno");
  }

  public int getActivityLineNumber() {
    return whole("acln");
  }

  public String getReferenceActivity() {
    return text("crac");
  }

  public String getDescription() {
    return text("desc");
  }

  public String getServiceType() {
    return text("cstp");
  }

  public String getActivityGroup() {
    return text("cagr");
  }

  public String getConfiguration() {
    return text("ccfg");
  }

  public String getObject() {
    return text("crob");
  }

  public Integer getObjectNumber() {
    return whole("oseq");
  }

  public String getCall() {
    return text("ccll");
  }

  public String getResponseTime() {
    return text("crtc");
  }

  public Integer getProblemPriority() {
    return whole("prpr");
  }

  public Integer getCustomerPriority() {
    return whole("cupr");
  }

  public Integer getObjectPriority() {
    return whole("obpr");
  }

  public String getProblem() {
    return text("cprl");
  }

  public String getSolution() {
    return text("cstn");
  }

  public Integer getActivityStatus() {
    return whole("asta");
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

  public Double getActivityDuration() {
    return number("acdu");
  }

  public Integer getAppointment() {
    return whole("appo");
  }

  public Date getPlannedStartTime() {
    return moment("pstm");
  }

  public Date getPlannedFinishTime() {
    return moment("pftm");
  }

  public Date getPlannedEarliestStartTime() {
    return moment("estm");
  }

  public Date getPlannedLatestFinishTime() {
    return moment("lftm");
  }

  public Date getExecutionStartTime() {
    return moment("astm");
  }

  public Date getExecutionFinishTime() {
    return moment("aftm");
  }
}
