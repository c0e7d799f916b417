package bridge;

import java.sql.Timestamp;
import java.util.Date;
import java.util.TimeZone;

/** Dates of any moment and zone, and what Java itself says of them. */
public class Dates {
  private Date date = new Date(0);

  public void setTime(double milliseconds) { date = new Date((long) milliseconds); }

  /** The same object at each call. */
  public Date getDate() { return date; }

  public Date getCopy() { return new Date(date.getTime()); }
  public Object getDateAsObject() { return date; }
  public Date getTimestampAsDate() { return new Timestamp(date.getTime()); }
  public Date getFailing() { throw new IllegalStateException("no date"); }
  public boolean isDate(Date other) { return other == date; }

  @SuppressWarnings("deprecation")
  public String getShown() {
    return date.getYear() + " " + date.getMonth() + " " + date.getDate() + " " + date.getHours() + " "
        + date.getMinutes() + " " + date.getSeconds();
  }

  /** Until the zone is given back. */
  public void setZone(String id) { TimeZone.setDefault(id.isEmpty() ? null : TimeZone.getTimeZone(id)); }
}
