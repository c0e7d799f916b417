package audit;

import java.util.Date;

/** The period of an audit query. */
public class period {
  private Date from;
  private Date to;

  public void setFrom(Date date) {
    from = date;
  }

  public void setTo(Date date) {
    to = date;
  }
}
