package orvan;

import java.io.File;
import java.io.FileNotFoundException;
import java.io.IOException;
import java.sql.Connection;
import java.sql.DriverManager;
import java.sql.PreparedStatement;
import java.sql.SQLException;
import java.util.Properties;

/**
 * A sandbox file, opened for reading. It counts its users, and closes when the last one releases it: a listing in use
 * outlives its manager's Close. A file that nobody releases closes with the JVM.
 */
final class SandboxFile {
  private static final String READ_ONLY = "1"; // SQLITE_OPEN_READONLY
  private static final String BUSY_MILLISECONDS = "30000";

  static {
    try {
      // Registers the driver even if the driver manager sees other classes than this one.
      Class.forName("org.sqlite.JDBC");
    } catch (ClassNotFoundException missing) {
      throw new IllegalStateException(
          "The SQLite driver is missing. Install libxerial-sqlite-jdbc-java and add sqlite-jdbc.jar to the classpath.",
          missing);
    }
  }

  private final String path;
  private final Connection connection;
  private final Thread closing = new Thread(this::close);
  private int users = 1;

  private SandboxFile(String path, Connection connection) {
    this.path = path;
    this.connection = connection;
    Runtime.getRuntime().addShutdownHook(closing);
  }

  /** Opens a file for one user. */
  static SandboxFile open(String path) throws IOException {
    if (!new File(path).isFile()) {
      throw new FileNotFoundException(
          "There is no sandbox file \""
              + path
              + "\". Check the path in the business component, or make the file with: orvan-sandbox make "
              + path);
    }
    Properties settings = new Properties();
    settings.setProperty("open_mode", READ_ONLY);
    settings.setProperty("busy_timeout", BUSY_MILLISECONDS);
    try {
      Connection connection = DriverManager.getConnection("jdbc:sqlite:" + path, settings);
      // Opening reads nothing. Only a first query tells a database from another file.
      try (PreparedStatement look = connection.prepareStatement("SELECT count(*) FROM sqlite_schema")) {
        look.executeQuery();
      } catch (SQLException failure) {
        connection.close();
        throw failure;
      }
      return new SandboxFile(path, connection);
    } catch (SQLException failure) {
      throw new IOException(
          "The sandbox file \""
              + path
              + "\" cannot be used: "
              + failure.getMessage()
              + ". Check that it was made by orvan-sandbox and that this user may read it.",
          failure);
    }
  }

  boolean hasTable(String name) {
    Rows found = new Rows(this, "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?", name);
    boolean has = found.onRow();
    found.close();
    return has;
  }

  PreparedStatement prepare(String sql) throws SQLException {
    return connection.prepareStatement(sql);
  }

  SandboxException failed(String sql, SQLException cause) {
    return new SandboxException(path, sql, cause);
  }

  void addUser() {
    ++users;
  }

  void release() {
    if (--users > 0) return;
    Runtime.getRuntime().removeShutdownHook(closing);
    close();
  }

  private void close() {
    try {
      connection.close();
    } catch (SQLException failure) {
      throw failed("close", failure);
    }
  }
}
