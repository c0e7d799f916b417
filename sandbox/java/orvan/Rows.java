package orvan;

import java.sql.PreparedStatement;
import java.sql.ResultSet;
import java.sql.SQLException;
import java.util.List;

/**
 * The rows of a query, one after the other, beginning on the first row. After the last row it closes itself, so that
 * listings of one record do not accumulate open statements.
 */
final class Rows {
  private final SandboxFile file;
  private final String sql;
  private PreparedStatement statement;
  private ResultSet row;

  Rows(SandboxFile file, String sql, Object... parameters) {
    this.file = file;
    this.sql = sql;
    file.addUser();
    try {
      statement = file.prepare(sql);
      int place = 0;
      for (Object parameter : parameters) statement.setObject(++place, parameter);
      row = statement.executeQuery();
      next();
    } catch (SQLException failure) {
      throw failed(failure);
    }
  }

  boolean onRow() {
    return row != null;
  }

  void next() {
    try {
      if (!row.next()) close();
    } catch (SQLException failure) {
      throw failed(failure);
    }
  }

  /** The text of a column of the current row. Columns count from 1. */
  String text(int column) {
    try {
      return row.getString(column);
    } catch (SQLException failure) {
      throw failed(failure);
    }
  }

  /** Copies values of the current row, beginning with that column, into columns of a record. */
  void read(TableRecord record, List<Column> columns, int from) {
    try {
      for (Column column : columns) record.set(column, value(column.type(), from++));
    } catch (SQLException failure) {
      throw failed(failure);
    }
  }

  private Object value(ColumnType type, int column) throws SQLException {
    return switch (type) {
      case TEXT, DAY, MOMENT -> row.getString(column);
      case WHOLE -> row.getObject(column);
      case NUMBER -> {
        double number = row.getDouble(column);
        yield row.wasNull() ? null : Double.valueOf(number);
      }
    };
  }

  void close() {
    if (statement == null) return;
    try {
      statement.close();
    } catch (SQLException failure) {
      throw file.failed(sql, failure);
    } finally {
      statement = null;
      row = null;
      file.release();
    }
  }

  private SandboxException failed(SQLException cause) {
    SandboxException failure = file.failed(sql, cause);
    try {
      if (statement == null) file.release();
      close();
    } catch (SandboxException second) {
      failure.addSuppressed(second);
    }
    return failure;
  }
}
