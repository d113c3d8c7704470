// A small INI file: sections of key=value lines, read tolerantly and written
// back whole, keeping sections and keys the program does not know about.
#pragma once

#include <string>
#include <utility>
#include <vector>

class TIniFile {
 public:
  TIniFile() = default;
  // Reads the file if it exists; a missing or unreadable file leaves the
  // object empty. Lines that are neither a section nor key=value are skipped.
  explicit TIniFile(const std::string& filename);

  void loadFromText(const std::string& text);
  std::string toText() const;
  // Writes to a temporary file beside the target and renames it over.
  // Throws std::runtime_error naming the file when that fails.
  void saveToFile(const std::string& filename) const;

  bool hasKey(const std::string& section, const std::string& key) const;
  std::string ReadString(const std::string& section, const std::string& key,
                         const std::string& def) const;
  int ReadInteger(const std::string& section, const std::string& key, int def) const;
  // Reads "true", "false" (any case) or a whole number, any but 0 being
  // true; anything else gives def.
  bool ReadBool(const std::string& section, const std::string& key, bool def) const;
  // A comma is taken as the decimal mark too.
  double ReadFloat(const std::string& section, const std::string& key, double def) const;

  void WriteString(const std::string& section, const std::string& key, const std::string& value);
  void WriteInteger(const std::string& section, const std::string& key, int value);
  // Written as 1 and 0.
  void WriteBool(const std::string& section, const std::string& key, bool value);
  // Written with a point as the decimal mark.
  void WriteFloat(const std::string& section, const std::string& key, double value);

 private:
  struct TSection {
    std::string name;
    std::vector<std::pair<std::string, std::string>> entries;
  };
  std::vector<TSection> FSections;
  const std::string* find(const std::string& section, const std::string& key) const;
};
