// The settings file of qmxadmin, on a POSIX system /etc/default/qmxdatacopy, which the copies that systemd starts read
// too.
//
// A line is NAME=VALUE. The value may stand in double or single quotes. Empty lines and lines that begin with "#" or
// ";" are ignored. The text is UTF-8, with or without a byte order mark.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qmx {

class SettingsFile {
 public:
  // Reads the file that QMX_SETTINGS names, and UsualSettingsFile() if it is not set. A missing file has no
  // settings.
  static SettingsFile FromEnvironment();

  explicit SettingsFile(std::string path);

  // Sets the environment variables that are not set yet. QMX_CONNECTION and QMX_DATABASE belong together: if one of
  // them is set, neither is taken from the file.
  void ApplyToEnvironment() const;

  const std::string& Path() const { return path_; }

  // Returns one sentence per line that is not NAME=VALUE, and one for a text in UTF-16. No value is part of them.
  const std::vector<std::string>& Problems() const { return problems_; }

  // Returns why an existing file cannot be read, or an empty text. Only its group may read the usual file.
  const std::string& Unreadable() const { return unreadable_; }

 private:
  struct Setting {
    std::string name;
    std::string value;
  };

  void Read();
  void ReadLine(std::string_view text, int number);

  std::string path_;
  std::vector<Setting> settings_;
  std::vector<std::string> problems_;
  std::string unreadable_;
};

}  // namespace qmx
