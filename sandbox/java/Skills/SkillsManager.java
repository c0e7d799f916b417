package Skills;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the skills. */
public class SkillsManager extends TableManager<Skills> {
  public SkillsManager() {
    super(Skills.TABLE, Skills::new);
  }

  public Enumeration<Skills> List(String from, String to) {
    return select(from, to);
  }
}
