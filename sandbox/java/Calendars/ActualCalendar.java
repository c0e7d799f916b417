package Calendars;

import java.time.LocalDate;
import orvan.Table;
import orvan.TableRecord;

/** An interval of an actual calendar. */
public class ActualCalendar extends TableRecord {
  static final Table TABLE =
      Table.named("tcccp030")
          .texts("ccal", "ract")
          .wholes("sttm", "entm")
          .numbers("cutm", "ccap")
          .days("stdt", "endt")
          .key("ccal", "ract", "stdt", "sttm")
          .build();

  public ActualCalendar() {
    super(TABLE);
  }

  public String getCalendar() {
    return text("ccal");
  }

  public String getAvailabilityType() {
    return text("ract");
  }

  public LocalDate getStartDate() {
    return day("stdt");
  }

  public int getStartTime() {
    return whole("sttm");
  }

  public LocalDate getEndDate() {
    return day("endt");
  }

  public Integer getEndTime() {
    return whole("entm");
  }

  public Double getCumulativeTime() {
    return number("cutm");
  }

  public Double getCumulativeCapacity() {
    return number("ccap");
  }
}
