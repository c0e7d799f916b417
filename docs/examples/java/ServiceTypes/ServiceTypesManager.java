package ServiceTypes;

import java.util.ArrayList;
import java.util.List;

/** Lists the service types. A real one reads them from the ERP, one by one. */
public class ServiceTypesManager {
  private static final String[][] TYPES = {
    {"INS", "Installation"}, {"PM", "Preventive maintenance"}, {"REP", "Repair"}
  };

  private String company;

  /** Receives the ERP's part of the command line, for example a connection, a company, a user. */
  public void initialize(String businessComponent) {
    company = businessComponent;
  }

  /** Includes both bounds. Could also return an Enumeration, an Iterator or a Stream. */
  public List<ServiceTypes> list(String from, String to) {
    if (company == null) throw new IllegalStateException("initialize has not been called");
    List<ServiceTypes> found = new ArrayList<>();
    for (String[] type : TYPES) {
      boolean wanted = type[0].compareTo(from) >= 0 && type[0].compareTo(to) <= 0;
      if (wanted) found.add(new ServiceTypes(type[0], type[1]));
    }
    return found;
  }

  public void close() {
    company = null;
  }
}
