package orvan;

import java.sql.SQLException;

/** The sandbox file failed while it was read. */
public class SandboxException extends RuntimeException {
  private static final long serialVersionUID = 1L;

  SandboxException(String path, String sql, SQLException cause) {
    super("The sandbox file \"" + path + "\" failed: " + cause.getMessage() + ", during: " + sql, cause);
  }
}
