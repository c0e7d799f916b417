package ResponseTimes;

import orvan.Table;
import orvan.TableRecord;

/** A response time. */
public class ResponseTimes extends TableRecord {
  static final Table TABLE =
      Table.named("tsclm020")
          .texts("crtc", "desc", "ccal")
          .numbers("rctt", "enst", "sltn")
          .key("crtc")
          .build();

  public ResponseTimes() {
    super(TABLE);
  }

  public String getResponseTime() {
    return text("crtc");
  }

  public String getResponseTimeDescription() {
    return text("desc");
  }

  public String getCalendar() {
    return text("ccal");
  }

  public Double getReactionPeriod() {
    return number("rctt");
  }

  public Double getSolutionStartPeriod() {
    return number("enst");
  }

  public Double getSolutionFinishPeriod() {
    return number("sltn");
  }
}
