package Skills;

import orvan.Table;
import orvan.TableRecord;

/** A skill. */
public class Skills extends TableRecord {
  static final Table TABLE =
      Table.named("tsmdm130")
          .texts("skll", "desc")
          .numbers("clrt")
          .key("skll")
          .build();

  public Skills() {
    super(TABLE);
  }

  public String getSkill() {
    return text("skll");
  }

  public String getDescription() {
    return text("desc");
  }

  public Double getLaborRate() {
    return number("clrt");
  }
}
