package ServiceOrders;

import java.util.Date;

/** A service order, with getters in usual Java: dates are copied, because a Date can be changed. */
public class ServiceOrders {
  private final String number;
  private final Model model;

  /** The program creates an empty record to ask for its class. */
  public ServiceOrders() {
    this("", null);
  }

  ServiceOrders(String number, Model model) {
    this.number = number;
    this.model = model;
  }

  public String getServiceOrder() {
    return number;
  }

  public String getConfiguration() {
    return model.texts[0];
  }

  public String getSoldToBusinessPartner() {
    return model.texts[1];
  }

  public String getSoldToBusinessPartnerName() {
    return model.texts[2];
  }

  public String getLocationAddress() {
    return model.texts[3];
  }

  public String getProject() {
    return model.texts[4];
  }

  public String getServiceCenter() {
    return model.texts[5];
  }

  public String getServiceArea() {
    return model.texts[6];
  }

  public String getServiceEngineer() {
    return model.texts[7];
  }

  public String getInterruptionReason() {
    return model.texts[8];
  }

  public String getServiceContract() {
    return model.texts[9];
  }

  public String getServiceOrderQuotation() {
    return model.texts[10];
  }

  public String getShipToBusinessPartner() {
    return model.texts[11];
  }

  public int getOrderStatus() {
    return model.wholes[0];
  }

  public int getBlocked() {
    return model.wholes[1];
  }

  public int getInterrupted() {
    return model.wholes[2];
  }

  public int getOvertime() {
    return model.wholes[3];
  }

  public int getAppointment() {
    return model.wholes[4];
  }

  public int getRescheduleWithDetailSRP() {
    return model.wholes[5];
  }

  public int getEmergencyOrder() {
    return model.wholes[6];
  }

  public int getPageFrequency() {
    return model.wholes[7];
  }

  public Double getOrderDuration() {
    return model.numbers[0];
  }

  public Double getTravelDuration() {
    return model.numbers[1];
  }

  public Date getOrderDate() {
    return new Date(model.times[0]);
  }

  public Date getPlannedStartTime() {
    return new Date(model.times[1]);
  }

  public Date getPlannedFinishTime() {
    return new Date(model.times[2]);
  }

  public Date getPlannedEarliestStartTime() {
    return new Date(model.times[3]);
  }

  public Date getPlannedLatestFinishTime() {
    return new Date(model.times[4]);
  }

  public Date getDispatchTime() {
    return new Date(model.times[5]);
  }

  public Date getActualTravelStartTime() {
    return new Date(model.times[6]);
  }

  public Date getExecutionStartTime() {
    return new Date(model.times[7]);
  }

  public Date getExecutionFinishTime() {
    return new Date(model.times[8]);
  }
}
