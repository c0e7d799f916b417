// Runs the real date object through the calls on standard input, one sequence a line, and writes what it reads.
//
// A line begins with "at YEAR MONTH DAY HOUR MINUTE SECOND" (year from 1900, month from 0); then calls follow: a
// setter's name with its value, or a getter's name, whose result goes out. Years must stay in the common era.
import java.io.BufferedReader;
import java.io.InputStreamReader;
import java.util.Date;
import java.util.Scanner;

public class DateOracle {
  @SuppressWarnings("deprecation")
  public static void main(String[] ignored) throws Exception {
    BufferedReader in = new BufferedReader(new InputStreamReader(System.in));
    StringBuilder out = new StringBuilder();
    for (String line; (line = in.readLine()) != null; out.append('\n')) {
      Scanner words = new Scanner(line);
      Date date = null;
      while (words.hasNext()) {
        String call = words.next();
        switch (call) {
          case "at":
            date = new Date(words.nextInt(), words.nextInt(), words.nextInt(), words.nextInt(), words.nextInt(),
                words.nextInt());
            break;
          case "setYear": date.setYear(words.nextInt()); break;
          case "setMonth": date.setMonth(words.nextInt()); break;
          case "setDate": date.setDate(words.nextInt()); break;
          case "setHours": date.setHours(words.nextInt()); break;
          case "setMinutes": date.setMinutes(words.nextInt()); break;
          case "setSeconds": date.setSeconds(words.nextInt()); break;
          case "getYear": out.append(date.getYear()).append(' '); break;
          case "getMonth": out.append(date.getMonth()).append(' '); break;
          case "getDate": out.append(date.getDate()).append(' '); break;
          case "getHours": out.append(date.getHours()).append(' '); break;
          case "getMinutes": out.append(date.getMinutes()).append(' '); break;
          case "getSeconds": out.append(date.getSeconds()).append(' '); break;
          default: throw new IllegalArgumentException(call);
        }
      }
    }
    System.out.print(out);
  }
}
