package ServiceCenters;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the service centers. */
public class ServiceCentersManager extends TableManager<ServiceCenters> {
  public ServiceCentersManager() {
    super(ServiceCenters.TABLE, ServiceCenters::new);
  }

  public Enumeration<ServiceCenters> List(String from, String to) {
    return select(from, to);
  }
}
