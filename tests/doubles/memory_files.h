#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>

#include "platform/files.h"

namespace qvrcom::doubles {

// Files in memory. Paths are compared without regard to ASCII case nowhere: they are what they are.
class MemoryFiles : public platform::Files {
 public:
  bool file_exists(const std::string& path) const override;
  bool folder_exists(const std::string& path) const override;
  bool is_link(const std::string& path) const override { return links.contains(path); }
  std::uint64_t length(const std::string& path) const override;
  std::string read(const std::string& path) const override;
  void append(const std::string& path, std::string_view text) override;
  void replace(const std::string& path, std::string_view text) override;
  void copy(const std::string& from, const std::string& to) override;
  void remove(const std::string& path) override;
  std::vector<std::string> list(const std::string& folder) const override;
  void make_folder(const std::string& path) override;
  void remove_folder(const std::string& path) override;
  std::string native(const std::string& path) const override;

  // Makes a folder and every folder above it.
  void make_folders(const std::string& path);

  // Called before each changing operation with its name ("append", "replace", "copy", "remove",
  // "make_folder", "remove_folder") or "read", and the path; throws to make it fail.
  std::function<void(std::string_view, const std::string&)> before;

  std::map<std::string, std::string> content;  // path to bytes
  std::set<std::string> folders;               // without a trailing backslash
  std::set<std::string> links;                 // paths among them that are links
  int replaced = 0;                            // how many times a file was rewritten whole

 private:
  void about_to(std::string_view operation, const std::string& path) const;
  void need_parent(const std::string& path) const;
};

}  // namespace qvrcom::doubles
