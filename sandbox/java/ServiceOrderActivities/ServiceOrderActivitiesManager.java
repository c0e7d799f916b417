package ServiceOrderActivities;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the activities of service orders. */
public class ServiceOrderActivitiesManager extends TableManager<ServiceOrderActivities> {
  public ServiceOrderActivitiesManager() {
    super(ServiceOrderActivities.TABLE, ServiceOrderActivities::new);
  }

  public Enumeration<ServiceOrderActivities> List(
      String fromOrder, String toOrder, int fromLine, int toLine) {
    return select(fromOrder, toOrder, fromLine, toLine);
  }
}
