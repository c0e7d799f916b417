package ServiceOrders;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the service orders. */
public class ServiceOrdersManager extends TableManager<ServiceOrders> {
  public ServiceOrdersManager() {
    super(ServiceOrders.TABLE, ServiceOrders::new);
  }

  public Enumeration<ServiceOrders> listServiceOrders(String from, String to) {
    return select(from, to);
  }
}
