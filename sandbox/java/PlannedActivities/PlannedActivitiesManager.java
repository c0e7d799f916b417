package PlannedActivities;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the planned activities. */
public class PlannedActivitiesManager extends TableManager<PlannedActivities> {
  public PlannedActivitiesManager() {
    super(PlannedActivities.TABLE, PlannedActivities::new);
  }

  public Enumeration<PlannedActivities> List(
      String fromConfiguration, String toConfiguration,
      String fromActivity, String toActivity,
      int fromActivityNumber, int toActivityNumber) {
    return select(
        fromConfiguration, toConfiguration, fromActivity, toActivity, fromActivityNumber,
        toActivityNumber);
  }
}
