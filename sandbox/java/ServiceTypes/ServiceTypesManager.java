package ServiceTypes;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the service types. */
public class ServiceTypesManager extends TableManager<ServiceTypes> {
  public ServiceTypesManager() {
    super(ServiceTypes.TABLE, ServiceTypes::new);
  }

  public Enumeration<ServiceTypes> List(String from, String to) {
    return select(from, to);
  }
}
