package ServiceOrders;

import java.util.Date;

/** The values of an order besides its number. The C server has the same. */
final class Model {
  static final Model[] MODELS = new Model[1000];

  private static final String[] BEGINNINGS = {
    "CFG00", "BP0", "Customer of order ", "ADR", "PRJ", "WC", "AREA", "E", "R", "CONTRACT-", "QUOTATION-", "BP1"
  };

  static {
    for (int k = 0; k < MODELS.length; ++k) MODELS[k] = new Model(k);
  }

  final String[] texts = new String[BEGINNINGS.length];
  final int[] wholes = new int[8];
  final double[] numbers = new double[2];
  final long[] times = new long[9];

  private Model(int k) {
    for (int i = 0; i < texts.length; ++i) texts[i] = BEGINNINGS[i] + threeDigits((k + i) % MODELS.length);
    for (int i = 0; i < wholes.length; ++i) wholes[i] = 1 + (k + i) % 2;
    for (int i = 0; i < numbers.length; ++i) numbers[i] = (k % 40 + i) / 4.0;
    for (int i = 0; i < times.length; ++i) times[i] = date(k, i).getTime();
  }

  private static String threeDigits(int number) {
    return Integer.toString(1000 + number).substring(1);
  }

  /** Two of three orders are not done yet. Year 0 and month 0 mean no date. */
  private static Date date(int k, int i) {
    if (i >= 6 && k % 3 > 0) return new Date(0, 0, 1);
    return new Date(126, (k + i) % 12, 1 + (k + i) % 28, 6 + k % 12, k % 60, i);
  }
}
