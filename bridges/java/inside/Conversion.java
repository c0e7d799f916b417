package qmxdatacopy;

import java.math.BigDecimal;
import java.math.BigInteger;
import java.time.LocalDate;
import java.time.LocalDateTime;
import java.util.Date;
import java.util.List;

/** Converts the program's values to arguments. */
final class Conversion {
  private static final int NO = -1;
  private static final List<Class<?>> WHOLE = List.of(short.class, Short.class, int.class, Integer.class, long.class,
      Long.class, double.class, Double.class, float.class, Float.class, BigInteger.class, BigDecimal.class,
      Number.class, Object.class);
  private static final List<Class<?>> BROKEN = List.of(double.class, Double.class, float.class, Float.class,
      BigDecimal.class, Number.class, Object.class, long.class, Long.class, int.class, Integer.class, BigInteger.class,
      short.class, Short.class, byte.class, Byte.class);
  private static final int NARROWER = 50;
  private static final int ANY = 90;

  private Conversion() {}

  /** The distance of the value from the type: 0 is nearest, -1 is impossible. */
  static int cost(Object value, Class<?> type) {
    if (value == null) return type.isPrimitive() ? NO : 0;
    int cost = rank(value, type);
    return cost >= 0 && convert(value, type) == null ? NO : cost;
  }

  private static int rank(Object value, Class<?> type) {
    if (value instanceof Boolean) return in(List.of(boolean.class, Boolean.class), type, value);
    if (value instanceof Short) return whole(type, value, 0);
    if (value instanceof Integer) return whole(type, value, WHOLE.indexOf(int.class));
    if (value instanceof Double) return in(BROKEN, type, value);
    if (value instanceof String) {
      return in(List.of(String.class, CharSequence.class, char.class, Character.class), type, value);
    }
    if (value instanceof LocalDateTime) {
      if (type == LocalDateTime.class) return 0;
      return isMoment(type) ? 1 : in(List.of(), type, value);
    }
    if (value.getClass() == type) return 0;
    if (type.isInstance(value)) return type == Object.class ? ANY : 1;
    return value.getClass() == Date.class && isMoment(type) ? 2 : NO;
  }

  private static int whole(Class<?> type, Object value, int first) {
    int place = WHOLE.indexOf(type);
    if (place >= first) return place - first;
    boolean narrower = place >= 0 || type == byte.class || type == Byte.class;
    return narrower ? NARROWER : in(List.of(), type, value);
  }

  private static int in(List<Class<?>> types, Class<?> type, Object value) {
    int place = types.indexOf(type);
    if (place >= 0) return place;
    return type.isInstance(value) ? ANY : NO;
  }

  private static boolean isMoment(Class<?> type) {
    return type == LocalDateTime.class || type == LocalDate.class || type == Date.class
        || type.getName().equals("java.sql.Timestamp") || type.getName().equals("java.sql.Date");
  }

  /** Converts the value to the type; null if the result would not be the same value. */
  static Object convert(Object value, Class<?> type) {
    if (value == null) return null;
    if (value instanceof Number && (type.isPrimitive() || Number.class.isAssignableFrom(type))) {
      return number((Number) value, type);
    }
    if (value instanceof String && (type == char.class || type == Character.class)) {
      String text = (String) value;
      return text.length() == 1 ? (Object) text.charAt(0) : null;
    }
    if (type.isInstance(value) || value instanceof Boolean && type == boolean.class) return value;
    if (value instanceof LocalDateTime) return moment((LocalDateTime) value, type);
    return value.getClass() == Date.class ? moment(civil((Date) value), type) : null;
  }

  private static Object number(Number value, Class<?> type) {
    double exact = value.doubleValue();
    if (type == double.class || type == Double.class) return exact;
    if (type == float.class || type == Float.class) {
      return (float) exact == exact || exact != exact ? (Object) (float) exact : null;
    }
    if (type == Number.class) return value;
    if (Double.isNaN(exact) || Double.isInfinite(exact)) return null;
    if (type == BigDecimal.class) return value instanceof Double ? BigDecimal.valueOf(exact) : new BigDecimal(exact);
    if (exact != Math.rint(exact)) return null;
    if (type == BigInteger.class) return new BigDecimal(exact).toBigInteger();
    long whole = (long) exact;
    if (whole != exact || whole == Long.MAX_VALUE) return null;
    if (type == long.class || type == Long.class) return whole;
    if (type == int.class || type == Integer.class) return whole == (int) whole ? (Object) (int) whole : null;
    if (type == short.class || type == Short.class) return whole == (short) whole ? (Object) (short) whole : null;
    if (type == byte.class || type == Byte.class) return whole == (byte) whole ? (Object) (byte) whole : null;
    return null;
  }

  @SuppressWarnings("deprecation")
  private static Object moment(LocalDateTime value, Class<?> type) {
    boolean midnight = value.toLocalTime().toSecondOfDay() == 0;
    if (type == LocalDateTime.class) return value;
    if (type == LocalDate.class) return midnight ? value.toLocalDate() : null;
    Date date = new Date(value.getYear() - 1900, value.getMonthValue() - 1, value.getDayOfMonth(), value.getHour(),
        value.getMinute(), value.getSecond());
    if (type == Date.class) return date;
    if (type.getName().equals("java.sql.Date") && !midnight) return null;
    try {
      return type.getConstructor(long.class).newInstance(date.getTime());
    } catch (ReflectiveOperationException e) {
      return null;
    }
  }

  /** The civil time of that date in the JVM's time zone. */
  @SuppressWarnings("deprecation")
  static LocalDateTime civil(Date value) {
    Date date = new Date(value.getTime());  // a java.sql.Date refuses getHours
    return LocalDateTime.of(date.getYear() + 1900, date.getMonth() + 1, date.getDate(), date.getHours(),
        date.getMinutes(), date.getSeconds());
  }

  static String shown(Object argument) {
    if (argument == null) return "null";
    return "a " + argument.getClass().getName()
        + (argument instanceof Number || argument instanceof Boolean ? " (" + argument + ")" : "");
  }
}
