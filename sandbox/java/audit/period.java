package audit;

import java.util.Date;
import orvan.CivilTime;

/** The period of an audit query, which includes both ends. A reader's initialize reads it. */
public class period {
  private Date from;
  private Date to;

  public void setFrom(Date date) {
    from = required(date, "setFrom");
  }

  public void setTo(Date date) {
    to = required(date, "setTo");
  }

  String from() {
    if (from == null) {
      throw new IllegalStateException("The audit period has no beginning. Call setFrom with a date object.");
    }
    return CivilTime.text(from);
  }

  String to() {
    if (to == null) throw new IllegalStateException("The audit period has no end. Call setTo with a date object.");
    return CivilTime.text(to);
  }

  private static Date required(Date date, String member) {
    if (date != null) return date;
    throw new IllegalArgumentException(
        member + " of audit.period takes a date object, but no object was passed.");
  }
}
