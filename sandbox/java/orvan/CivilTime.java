package orvan;

import java.time.LocalDate;
import java.time.LocalDateTime;
import java.time.temporal.Temporal;
import java.util.Date;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Days and moments without a time zone, in the forms that the sandbox file and the ERP's date objects have. */
public final class CivilTime {
  /** Day zero: the day of a record that has none. */
  static final LocalDate NO_DAY = LocalDate.of(1899, 12, 30);

  private static final Pattern FORM =
      Pattern.compile("(\\d{1,4})-(\\d{1,2})-(\\d{1,2})(?:[ T](\\d{1,2}):(\\d{1,2})(?::(\\d{1,2}))?)?");

  private CivilTime() {}

  /**
   * Reads "2026-11-20" or "2026-11-20 14:05:09". Leading zeros may be missing. A day that the month does not have counts
   * into the next month: 2038-02-29 is 2038-03-01.
   *
   * @return null for any other text
   */
  static LocalDateTime parse(String text) {
    Matcher parts = FORM.matcher(text);
    if (!parts.matches()) return null;
    int month = part(parts, 2);
    int day = part(parts, 3);
    int hour = part(parts, 4);
    int minute = part(parts, 5);
    int second = part(parts, 6);
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 24 || minute > 59 || second > 59) return null;
    return LocalDate.of(part(parts, 1), month, 1)
        .plusDays(day - 1L)
        .atTime(0, minute, second)
        .plusHours(hour);
  }

  private static int part(Matcher parts, int group) {
    return parts.group(group) == null ? 0 : Integer.parseInt(parts.group(group));
  }

  /** A date, with or without a time of day. */
  static LocalDateTime of(Temporal temporal) {
    if (temporal instanceof LocalDate day) return day.atStartOfDay();
    return LocalDateTime.from(temporal);
  }

  /** The text of a day: "2026-11-20". */
  static String dayText(LocalDate day) {
    return String.format("%04d-%02d-%02d", day.getYear(), day.getMonthValue(), day.getDayOfMonth());
  }

  /** The text of a moment: "2026-11-20 14:05:09". */
  static String text(LocalDateTime moment) {
    return dayText(moment.toLocalDate())
        + String.format(" %02d:%02d:%02d", moment.getHour(), moment.getMinute(), moment.getSecond());
  }

  /** The text of a date object in the time zone of this Java machine: "2026-11-20 14:05:09". */
  public static String text(Date date) {
    return String.format(
        "%04d-%02d-%02d %02d:%02d:%02d",
        date.getYear() + 1900,
        date.getMonth() + 1,
        date.getDate(),
        date.getHours(),
        date.getMinutes(),
        date.getSeconds());
  }

  /** A date object that shows the moment in the time zone of this Java machine. */
  static Date date(LocalDateTime moment) {
    return new Date(
        moment.getYear() - 1900,
        moment.getMonthValue() - 1,
        moment.getDayOfMonth(),
        moment.getHour(),
        moment.getMinute(),
        moment.getSecond());
  }

  /** The date object of year 0 and month 0, which stands for no date. */
  static Date noDate() {
    return new Date(0, 0, 1);
  }
}
