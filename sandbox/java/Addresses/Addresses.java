package Addresses;

import orvan.Table;
import orvan.TableRecord;

/** An address. */
public class Addresses extends TableRecord {
  static final Table TABLE =
      Table.named("tccom130")
          .texts("cadr", "nama", "namc", "hono", "name", "pstc")
          .key("cadr")
          .build();

  public Addresses() {
    super(TABLE);
  }

  public String getAddressCode() {
    return text("cadr");
  }

  public String getName() {
    return text("nama");
  }

  public String getAddress() {
    return text("namc");
  }

  public String getHouseNumber() {
    return text("hono");
  }

  public String getCity() {
    return text("name");
  }

  public String getZIPCodePostalCode() {
    return text("pstc");
  }
}
