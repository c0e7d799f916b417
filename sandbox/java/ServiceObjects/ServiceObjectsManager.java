package ServiceObjects;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the service objects. */
public class ServiceObjectsManager extends TableManager<ServiceObjects> {
  public ServiceObjectsManager() {
    super(ServiceObjects.TABLE, ServiceObjects::new);
  }

  public Enumeration<ServiceObjects> List(
      String fromConfiguration, String toConfiguration,
      String fromObject, String toObject,
      int fromObjectNumber, int toObjectNumber) {
    return select(
        fromConfiguration, toConfiguration, fromObject, toObject, fromObjectNumber, toObjectNumber);
  }
}
