package ServiceAreas;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the service areas. */
public class ServiceAreasManager extends TableManager<ServiceAreas> {
  public ServiceAreasManager() {
    super(ServiceAreas.TABLE, ServiceAreas::new);
  }

  public Enumeration<ServiceAreas> List(String from, String to) {
    return select(from, to);
  }
}
