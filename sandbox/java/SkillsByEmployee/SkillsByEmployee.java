package SkillsByEmployee;

import orvan.Table;
import orvan.TableRecord;

/** A skill of a service employee. */
public class SkillsByEmployee extends TableRecord {
  static final Table TABLE =
      Table.named("tsmdm135")
          .texts("emno", "skll", "cogr")
          .numbers("afct")
          .key("emno", "skll", "cogr")
          .build();

  public SkillsByEmployee() {
    super(TABLE);
  }

  public String getServiceEmployee() {
    return text("emno");
  }

  public String getSkill() {
    return text("skll");
  }

  public String getObjectGroup() {
    return text("cogr");
  }

  public Double getSkillFactor() {
    return number("afct");
  }
}
