package ServiceEmployees;

import orvan.Table;
import orvan.TableRecord;

/** A service employee. */
public class ServiceEmployees extends TableRecord {
  static final Table TABLE =
      Table.named("tsmdm140")
          .texts("emno", "desc", "cwoc", "ccal", "frmn", "csar", "ccar", "user")
          .numbers("mopd")
          .key("emno")
          .bounds("emno", "cwoc", "csar")
          .build();

  public ServiceEmployees() {
    super(TABLE);
  }

  public String getServiceEmployee() {
    return text("emno");
  }

  public String getServiceEmployeeName() {
    return text("desc");
  }

  public String getServiceCenter() {
    return text("cwoc");
  }

  public String getCalendarCode() {
    return text("ccal");
  }

  public String getForeman() {
    return text("frmn");
  }

  public String getServiceArea() {
    return text("csar");
  }

  public String getServiceCar() {
    return text("ccar");
  }

  public String getLoginCode() {
    return text("user");
  }

  public Double getMaximumOvertimePerDay() {
    return number("mopd");
  }
}
