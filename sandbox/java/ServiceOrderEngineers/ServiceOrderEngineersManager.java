package ServiceOrderEngineers;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the engineers of service orders. */
public class ServiceOrderEngineersManager extends TableManager<ServiceOrderEngineers> {
  public ServiceOrderEngineersManager() {
    super(ServiceOrderEngineers.TABLE, ServiceOrderEngineers::new);
  }

  public Enumeration<ServiceOrderEngineers> List(
      String fromOrder, String toOrder, int fromLine, int toLine) {
    return select(fromOrder, toOrder, fromLine, toLine);
  }
}
