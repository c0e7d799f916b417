package Configurations;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the configurations. */
public class ConfigurationsManager extends TableManager<Configurations> {
  public ConfigurationsManager() {
    super(Configurations.TABLE, Configurations::new);
  }

  public Enumeration<Configurations> List(
      String fromConfiguration, String toConfiguration,
      String fromPartner, String toPartner,
      String fromCenter, String toCenter,
      String fromArea, String toArea) {
    return select(
        fromConfiguration, toConfiguration, fromPartner, toPartner, fromCenter, toCenter, fromArea,
        toArea);
  }
}
