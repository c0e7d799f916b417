package Addresses;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the addresses. */
public class AddressesManager extends TableManager<Addresses> {
  public AddressesManager() {
    super(Addresses.TABLE, Addresses::new);
  }

  public Enumeration<Addresses> List(String from, String to) {
    return select(from, to);
  }
}
