package ResponseTimes;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the response times. */
public class ResponseTimesManager extends TableManager<ResponseTimes> {
  public ResponseTimesManager() {
    super(ResponseTimes.TABLE, ResponseTimes::new);
  }

  public Enumeration<ResponseTimes> List(String from, String to) {
    return select(from, to);
  }
}
