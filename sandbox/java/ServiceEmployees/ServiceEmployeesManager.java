package ServiceEmployees;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the service employees. */
public class ServiceEmployeesManager extends TableManager<ServiceEmployees> {
  public ServiceEmployeesManager() {
    super(ServiceEmployees.TABLE, ServiceEmployees::new);
  }

  public Enumeration<ServiceEmployees> List(
      String fromEmployee, String toEmployee,
      String fromCenter, String toCenter,
      String fromArea, String toArea) {
    return select(fromEmployee, toEmployee, fromCenter, toCenter, fromArea, toArea);
  }
}
