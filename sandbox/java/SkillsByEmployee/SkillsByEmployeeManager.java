package SkillsByEmployee;

import java.util.Enumeration;
import orvan.TableManager;

/** Lists the skills of service employees. */
public class SkillsByEmployeeManager extends TableManager<SkillsByEmployee> {
  public SkillsByEmployeeManager() {
    super(SkillsByEmployee.TABLE, SkillsByEmployee::new);
  }

  public Enumeration<SkillsByEmployee> List(
      String fromEmployee, String toEmployee,
      String fromSkill, String toSkill,
      String fromObjectGroup, String toObjectGroup) {
    return select(fromEmployee, toEmployee, fromSkill, toSkill, fromObjectGroup, toObjectGroup);
  }
}
