package ServiceTypes;

/** One service type, with the getters that the program calls. */
public class ServiceTypes {
  private final String code;
  private final String description;

  /** The program creates an empty record to ask for its class. */
  public ServiceTypes() {
    this("", "");
  }

  ServiceTypes(String code, String description) {
    this.code = code;
    this.description = description;
  }

  public String getServiceType() { return code; }

  public String getServiceTypeDescription() { return description; }

  public String getServiceProcedure() { return null; } // becomes null in the database

  public String getAvailabilityType() { return "STD"; }
}
