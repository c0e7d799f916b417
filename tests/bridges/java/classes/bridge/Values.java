package bridge;

import java.math.BigDecimal;
import java.math.BigInteger;
import java.time.LocalDate;
import java.time.LocalDateTime;
import java.util.Date;
import java.util.List;
import java.util.Map;

/** A value of every kind that Java may give. */
public class Values {
  public byte getByte() { return -128; }
  public short getShort() { return -32768; }
  public int getInt() { return -2147483648; }
  public long getSmallLong() { return 2147483647L; }
  public long getExactLong() { return 9007199254740992L; }
  public long getInexactLong() { return 9007199254740993L; }
  public float getFloat() { return 0.5f; }
  public double getDouble() { return 0.1; }
  public boolean getTrue() { return true; }
  public boolean getFalse() { return false; }
  public char getChar() { return '\u00e9'; }

  public Byte getByteBox() { return 127; }
  public Short getShortBox() { return 32767; }
  public Integer getIntBox() { return 70000; }
  public Long getLongBox() { return 5000000000L; }
  public Long getInexactLongBox() { return -9007199254740993L; }
  public Float getFloatBox() { return 1.25f; }
  public Double getDoubleBox() { return -2.5; }
  public Boolean getBooleanBox() { return true; }
  public Character getCharBox() { return 'x'; }
  public Object getIntAsObject() { return 7; }
  public Number getNumber() { return 7L; }

  public BigInteger getBigInteger() { return new BigInteger("123456789012345678901234567890"); }
  public BigDecimal getBigDecimal() { return new BigDecimal("1E+3"); }
  public BigDecimal getSmallBigDecimal() { return new BigDecimal("0.00000012340"); }

  public String getEmpty() { return ""; }
  public String getText() { return "abcdefghijklmnopqrst"; }
  public String getUnicode() { return "\u00e4 \u20ac \ud83d\ude9a"; }
  public String getLong() { return "\u00e4".repeat(100000); }
  public String getNul() { return "a\0b"; }
  public String getHalfAPair() { return "a\ud83d"; }
  public String getOtherHalf() { return "\ude9a"; }
  public Object getTextAsObject() { return "text"; }

  public String getNullText() { return null; }
  public Integer getNullNumber() { return null; }
  public BigDecimal getNullBigDecimal() { return null; }
  public LocalDate getNullMoment() { return null; }
  public Object getNullObject() { return null; }
  public Date getNullDate() { return null; }
  public Values getNullValues() { return null; }
  public void getNothing() {}

  public LocalDate getLocalDate() { return LocalDate.of(2026, 11, 20); }
  public LocalDateTime getLocalDateTime() { return LocalDateTime.of(1899, 12, 29, 23, 59, 58, 999999999); }
  public java.sql.Date getSqlDate() { return java.sql.Date.valueOf("2026-07-01"); }
  public java.sql.Timestamp getTimestamp() { return java.sql.Timestamp.valueOf("2026-07-01 14:05:09.5"); }
  @SuppressWarnings("deprecation")
  public Date getDate() { return new Date(126, 10, 20, 14, 5, 9); }
  @SuppressWarnings("deprecation")
  public Date getNoDate() { return new Date(0, 0, 1); }

  public String[] getArray() { return new String[] {"a"}; }
  public int[] getIntArray() { return new int[0]; }
  public Map<String, String> getMap() { return Map.of("a", "b"); }
  public List<String> getList() { return List.of("a", "b"); }
}
