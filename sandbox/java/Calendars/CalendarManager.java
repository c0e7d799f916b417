package Calendars;

import java.time.LocalDate;
import java.util.Enumeration;
import orvan.TableManager;

/** Lists the intervals of actual calendars. */
public class CalendarManager extends TableManager<ActualCalendar> {
  public CalendarManager() {
    super(ActualCalendar.TABLE, ActualCalendar::new);
  }

  /** Takes start dates written as texts: "2026-11-20" or "2026-9-1". */
  public Enumeration<ActualCalendar> listActualCalendar(
      String fromCalendar, String toCalendar,
      String fromAvailabilityType, String toAvailabilityType,
      String fromStartDate, String toStartDate,
      int fromStartTime, int toStartTime) {
    return select(
        fromCalendar, toCalendar, fromAvailabilityType, toAvailabilityType, fromStartDate,
        toStartDate, fromStartTime, toStartTime);
  }

  public Enumeration<ActualCalendar> listActualCalendar(
      String fromCalendar, String toCalendar,
      String fromAvailabilityType, String toAvailabilityType,
      LocalDate fromStartDate, LocalDate toStartDate,
      int fromStartTime, int toStartTime) {
    return select(
        fromCalendar, toCalendar, fromAvailabilityType, toAvailabilityType, fromStartDate,
        toStartDate, fromStartTime, toStartTime);
  }
}
