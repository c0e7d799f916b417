package bridge;

import java.math.BigDecimal;
import java.math.BigInteger;
import java.time.LocalDate;
import java.time.LocalDateTime;
import java.util.Date;

/** Shows what arguments arrive as. */
public class Arguments {
  public static class Base { public Base() {} }
  public static class Derived extends Base { public Derived() {} }

  private static String show(Object value) {
    return value == null ? "null" : value.getClass().getName() + " " + value;
  }

  public String ofByte(byte value) { return show(value); }
  public String ofShort(short value) { return show(value); }
  public String ofInt(int value) { return show(value); }
  public String ofLong(long value) { return show(value); }
  public String ofFloat(float value) { return show(value); }
  public String ofDouble(double value) { return show(value); }
  public String ofBoolean(boolean value) { return show(value); }
  public String ofChar(char value) { return show(value); }
  public String ofIntegerBox(Integer value) { return show(value); }
  public String ofBooleanBox(Boolean value) { return show(value); }
  public String ofBigInteger(BigInteger value) { return show(value); }
  public String ofBigDecimal(BigDecimal value) { return show(value); }
  public String ofNumber(Number value) { return show(value); }
  public String ofString(String value) { return show(value); }
  public String ofCharSequence(CharSequence value) { return show(value); }
  public String ofObject(Object value) { return show(value); }
  public String ofLocalDate(LocalDate value) { return show(value); }
  public String ofLocalDateTime(LocalDateTime value) { return show(value); }
  public String ofTimestamp(java.sql.Timestamp value) { return show(value); }
  public String ofSqlDate(java.sql.Date value) { return show(value); }
  @SuppressWarnings("deprecation")
  public String ofDate(Date value) {
    return value == null ? "null" : value.getYear() + " " + value.getMonth() + " " + value.getDate() + " "
        + value.getHours() + " " + value.getMinutes() + " " + value.getSeconds();
  }
  public String ofArguments(Arguments value) { return value == this ? "this" : show(value); }
  public String ofArray(String[] value) { return show(value); }
  public String ofTwo(String one, int two) { return one + two; }

  // Overloads, from near to far.
  public String number(int value) { return "int"; }
  public String number(Integer value) { return "Integer"; }
  public String number(long value) { return "long"; }
  public String number(double value) { return "double"; }
  public String number(Object value) { return "Object"; }
  public String wide(long value) { return "long"; }
  public String wide(double value) { return "double"; }
  public String wide(Object value) { return "Object"; }
  public String text(String value) { return "String"; }
  public String text(char value) { return "char"; }
  public String text(Object value) { return "Object"; }
  public String letter(char value) { return "char"; }
  public String letter(Object value) { return "Object"; }
  public String kind(Base value) { return "Base"; }
  public String kind(Derived value) { return "Derived"; }
  public String count() { return "none"; }
  public String count(int one) { return "one"; }
  public String count(int one, int two) { return "two"; }
  public String clash(int one, long two) { return "int, long"; }
  public String clash(long one, int two) { return "long, int"; }
  public String special(String value) { return "String"; }
  public String special(Object value) { return "Object"; }
  public String onlyText(String value) { return "String"; }
  public String onlyText(Character value) { return "Character"; }
}
