package ServiceOrders;

import java.util.Enumeration;
import java.util.NoSuchElementException;

/** Lists the thousand models again and again, with new numbers each time. */
public class ServiceOrdersManager {
  private int count;

  /** Takes "Memory, N": there are N orders. */
  public void initialize(String erp) {
    count = Integer.parseInt(erp.substring(erp.lastIndexOf(' ') + 1));
  }

  public Enumeration<ServiceOrders> listServiceOrders(String from, String to) {
    return new Enumeration<>() {
      private int next;

      @Override
      public boolean hasMoreElements() {
        return next < count;
      }

      @Override
      public ServiceOrders nextElement() {
        if (next == count) throw new NoSuchElementException();
        return new ServiceOrders(number(next), Model.MODELS[next++ % Model.MODELS.length]);
      }
    };
  }

  public void close() {}

  private static String number(int place) {
    String digits = Integer.toString(place);
    return "SO0000000".substring(0, 9 - digits.length()).concat(digits);
  }
}
