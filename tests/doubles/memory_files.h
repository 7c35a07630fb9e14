#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include "base/fault.h"
#include "platform/files.h"

namespace qvrcom::doubles {

// Files in memory. Paths are compared without regard to ASCII case nowhere: they are what they are. Two
// threads may call its operations; a test that looks at `content` has to know that nobody does.
class MemoryFiles : public platform::Files {
 public:
  bool file_exists(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    return content.contains(path);
  }
  bool folder_exists(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    return without_end(path).empty() || folders.contains(without_end(path));
  }
  bool is_taken(const std::string& path) const override { return file_exists(path) || folder_exists(path); }
  bool is_link(const std::string& path) const override { return links.contains(path); }
  std::uint64_t length(const std::string& path) const override { return read(path).size(); }
  std::string native(const std::string& path) const override { return path; }
  std::string from_native(const std::string& path) const override { return path; }

  std::string read(const std::string& path) const override {
    const std::lock_guard lock(mutex_);
    about_to("read", path);
    const auto found = content.find(path);
    if (found == content.end()) throw base::Fault(base::kFileNotFound, path);
    return found->second;
  }
  std::string load(const std::string& path) const override { return read(path); }
  void append(const std::string& path, std::string_view text) override {
    const std::lock_guard lock(mutex_);
    about_to("append", path);
    need_parent(path);
    content[path].append(text);
  }
  void append_line(const std::string& path, std::string_view line) override {
    const std::lock_guard lock(mutex_);
    about_to("append", path);
    need_parent(path);
    std::string& text = content[path];
    if (!text.empty() && !text.ends_with('\n')) text += "\r\n";
    text.append(line).append("\r\n");
  }
  void replace(const std::string& path, std::string_view text) override {
    const std::lock_guard lock(mutex_);
    about_to("replace", path);
    need_parent(path);
    content[path] = text;
    ++replaced;
  }
  void save(const std::string& path, std::string_view text, platform::Readers) override {
    replace(path, text);
  }
  void copy(const std::string& from, const std::string& to) override {
    const std::lock_guard lock(mutex_);
    about_to("copy", from);
    need_parent(to);
    content[to] = read(from);
  }
  void remove(const std::string& path) override {
    const std::lock_guard lock(mutex_);
    about_to("remove", path);
    if (content.erase(path) == 0) throw base::Fault(base::kFileNotFound, path);
  }

  std::vector<std::string> list(const std::string& folder) const override {
    const std::lock_guard lock(mutex_);
    if (!folder_exists(folder)) throw base::Fault(base::kPathNotFound, folder);
    std::vector<std::string> names;
    for (const auto& [path, bytes] : content) {
      if (parent_of(path) == without_end(folder)) names.push_back(path.substr(path.rfind('\\') + 1));
    }
    return names;
  }
  std::vector<std::string> list_folders(const std::string& folder) const override {
    std::vector<std::string> names;
    for (const std::string& path : folders) {
      if (path != without_end(folder) && parent_of(path) == without_end(folder))
        names.push_back(path.substr(path.rfind('\\') + 1));
    }
    return names;
  }
  void make_folder(const std::string& path) override {
    const std::lock_guard lock(mutex_);
    about_to("make_folder", path);
    if (folder_exists(path)) throw base::Fault("Path/File access error", path);
    need_parent(path);
    folders.insert(without_end(path));
  }
  void remove_folder(const std::string& path) override {
    const std::lock_guard lock(mutex_);
    about_to("remove_folder", path);
    if (!folders.contains(without_end(path))) throw base::Fault(base::kPathNotFound, path);
    const std::string below = without_end(path) + '\\';
    const auto file = content.lower_bound(below);
    const auto folder = folders.lower_bound(below);
    if ((file != content.end() && file->first.starts_with(below)) ||
        (folder != folders.end() && folder->starts_with(below)))
      throw base::Fault("Path/File access error", path);
    folders.erase(without_end(path));
  }

  // Makes a folder and every folder above it.
  void make_folders(const std::string& path) {
    for (std::string step = without_end(path); !step.empty(); step = parent_of(step))
      folders.insert(step);
  }

  // Called before each changing operation with its name ("append", "replace", "copy", "remove",
  // "make_folder", "remove_folder") or "read", and the path; throws to make it fail.
  std::function<void(std::string_view, const std::string&)> before;

  std::map<std::string, std::string> content;  // path to bytes
  std::set<std::string> folders;               // without a trailing backslash
  std::set<std::string> links;                 // paths among them that are links
  int replaced = 0;                            // how many times a file was rewritten whole

 private:
  mutable std::recursive_mutex mutex_;

  static std::string without_end(const std::string& path) {
    return path.substr(0, path.find_last_not_of('\\') + 1);
  }
  static std::string parent_of(const std::string& path) {
    const auto end = without_end(path).rfind('\\');
    return end == std::string::npos ? std::string{} : path.substr(0, end);
  }
  void about_to(std::string_view operation, const std::string& path) const {
    if (before) before(operation, path);
  }
  void need_parent(const std::string& path) const {
    if (!folder_exists(parent_of(path))) throw base::Fault(base::kPathNotFound, path);
  }
};

}  // namespace qvrcom::doubles
