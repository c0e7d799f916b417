package ServiceOrders;

import java.util.Date;
import orvan.Table;
import orvan.TableRecord;

/** A service order. */
public class ServiceOrders extends TableRecord {
  static final Table TABLE =
      Table.named("tssoc200")
          .texts(
              "orno", "ccfg", "ofbp", "stna", "lcad", "cprj", "cwoc", "csar", "emno", "crit",
              "csco", "csqu", "stbp")
          .wholes("osta", "blyn", "ityn", "otim", "appo", "rsrp", "emer", "minu")
          .numbers("ordu", "tvdu")
          .moments("ordt", "pstm", "pftm", "estm", "lftm", "tstm", "astm", "aftm", "ract")
          .key("orno")
          .build();

  public ServiceOrders() {
    super(TABLE);
  }

  public String getServiceOrder() {
    return text("orno");
  }

  public String getConfiguration() {
    return text("ccfg");
  }

  public String getSoldToBusinessPartner() {
    return text("ofbp");
  }

  public String getSoldToBusinessPartnerName() {
    return text("stna");
  }

  public String getLocationAddress() {
    return text("lcad");
  }

  public String getProject() {
    return text("cprj");
  }

  public Date getOrderDate() {
    return moment("ordt");
  }

  public Integer getOrderStatus() {
    return whole("osta");
  }

  public String getServiceCenter() {
    return text("cwoc");
  }

  public String getServiceArea() {
    return text("csar");
  }

  public String getServiceEngineer() {
    return text("emno");
  }

  public Integer getBlocked() {
    return whole("blyn");
  }

  public Integer getInterrupted() {
    return whole("ityn");
  }

  public String getInterruptionReason() {
    return text("crit");
  }

  public Double getOrderDuration() {
    return number("ordu");
  }

  public Double getTravelDuration() {
    return number("tvdu");
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

  public Integer getOvertime() {
    return whole("otim");
  }

  public Integer getAppointment() {
    return whole("appo");
  }

  public Integer getRescheduleWithDetailSRP() {
    return whole("rsrp");
  }

  public Date getActualTravelStartTime() {
    return moment("tstm");
  }

  public Date getExecutionStartTime() {
    return moment("astm");
  }

  public Date getExecutionFinishTime() {
    return moment("aftm");
  }

  public String getServiceContract() {
    return text("csco");
  }

  public String getServiceOrderQuotation() {
    return text("csqu");
  }

  public String getShipToBusinessPartner() {
    return text("stbp");
  }

  public Integer getEmergencyOrder() {
    return whole("emer");
  }

  public Integer getPageFrequency() {
    return whole("minu");
  }

  public Date getDispatchTime() {
    return moment("ract");
  }
}
