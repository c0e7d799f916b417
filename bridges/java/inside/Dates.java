package qmxdatacopy;

import java.lang.reflect.Method;
import java.time.LocalDate;
import java.util.Arrays;
import java.util.Date;

/**
 * The dates that the program holds. A record has many, and the program reads and releases each before it asks for the
 * next: a place in an array costs less than a reference of JNI.
 */
final class Dates {
  // From 1973 on all time zones differ from UTC by whole minutes. The last year is 9999.
  private static final long FIRST_OF_WHOLE_MINUTES = 94_694_400_000L;
  private static final long LAST = 253_402_300_799_999L;
  private static final int DAY = 86_400_000;
  private static final long NO_DATE = Long.MIN_VALUE;
  private static final Object[] NO_ARGUMENTS = {};

  // A place that the program has released keeps its object until it is used again.
  private static Object[] held = new Object[16];

  private Dates() {}

  /** Calls the getter and holds its result. Returns the fields of a java.util.Date, and NO_DATE for anything else. */
  static long get(Method getter, Object target, int place) throws Throwable {
    Object value = Bridge.invoke(getter, target, NO_ARGUMENTS);
    if (place >= held.length) held = Arrays.copyOf(held, 2 * place);
    held[place] = value;
    return value != null && value.getClass() == Date.class ? fields((Date) value) : NO_DATE;
  }

  static Object at(int place) {
    return held[place];
  }

  /** The fields in the JVM's time zone: year, month, day and second of the day, from the highest bits down. */
  @SuppressWarnings("deprecation")
  static long fields(Date date) {
    long time = date.getTime();
    if (time < FIRST_OF_WHOLE_MINUTES || time > LAST) {
      int second = (date.getHours() * 60 + date.getMinutes()) * 60 + date.getSeconds();
      return packed(date.getYear(), date.getMonth(), date.getDate()) | second;
    }
    // The date's own getters would make a calendar.
    long local = time - date.getTimezoneOffset() * 60_000L;
    int second = (int) (local % DAY) / 1000;
    LocalDate day = LocalDate.ofEpochDay(local / DAY);
    return packed(day.getYear() - 1900, day.getMonthValue() - 1, day.getDayOfMonth()) | second;
  }

  private static long packed(int year, int month, int day) {
    return (long) year << 26 | month << 22 | day << 17;
  }

  /**
   * Calls a setter of a field. Returns false for another method. Reflection would read the annotations of java.util.Date
   * first, which takes a third of a run that has nothing to do.
   */
  @SuppressWarnings("deprecation")
  static boolean set(Object target, Method setter, Object[] arguments) {
    if (target.getClass() != Date.class || arguments.length != 1 || !(arguments[0] instanceof Integer)) return false;
    Date date = (Date) target;
    int value = (Integer) arguments[0];
    switch (setter.getName()) {
      case "setYear": date.setYear(value); return true;
      case "setMonth": date.setMonth(value); return true;
      case "setDate": date.setDate(value); return true;
      case "setHours": date.setHours(value); return true;
      case "setMinutes": date.setMinutes(value); return true;
      case "setSeconds": date.setSeconds(value); return true;
      default: return false;
    }
  }

  @SuppressWarnings("deprecation")
  static Date make(int year, int month, int day, int hours, int minutes, int seconds) {
    return new Date(year, month, day, hours, minutes, seconds);
  }
}
