package PriorityTimeScale;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the priority time scales. */
public class PriorityTimeScaleManager extends TableManager<PriorityTimeScale> {
  public PriorityTimeScaleManager() {
    super(PriorityTimeScale.TABLE, PriorityTimeScale::new);
  }

  public Enumeration<PriorityTimeScale> List(double from, double to) {
    return select(from, to);
  }

  /** Takes bounds written as texts: "000.00", "999.99". */
  public Enumeration<PriorityTimeScale> List(String from, String to) {
    return select(from, to);
  }
}
