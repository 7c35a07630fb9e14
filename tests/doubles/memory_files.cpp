#include "doubles/memory_files.h"

#include "base/fault.h"

namespace qvrcom::doubles {
namespace {

std::string without_end(std::string path) {
  while (path.ends_with('\\'))
    path.pop_back();
  return path;
}

std::string parent_of(const std::string& path) {
  const std::string plain = without_end(path);
  const auto end = plain.rfind('\\');
  return end == std::string::npos ? std::string{} : plain.substr(0, end);
}

std::string name_of(const std::string& path) {
  return path.substr(path.rfind('\\') + 1);
}

}  // namespace

void MemoryFiles::about_to(std::string_view operation, const std::string& path) const {
  if (before) before(operation, path);
}

void MemoryFiles::need_parent(const std::string& path) const {
  if (!folder_exists(parent_of(path))) throw base::Fault(base::kPathNotFound, path);
}

bool MemoryFiles::file_exists(const std::string& path) const {
  return content.contains(path);
}
bool MemoryFiles::folder_exists(const std::string& path) const {
  return without_end(path).empty() || folders.contains(without_end(path));
}
std::uint64_t MemoryFiles::length(const std::string& path) const {
  return read(path).size();
}

std::string MemoryFiles::read(const std::string& path) const {
  about_to("read", path);
  const auto found = content.find(path);
  if (found == content.end()) throw base::Fault(base::kFileNotFound, path);
  return found->second;
}

void MemoryFiles::append(const std::string& path, std::string_view text) {
  about_to("append", path);
  need_parent(path);
  content[path].append(text);
}

void MemoryFiles::replace(const std::string& path, std::string_view text) {
  about_to("replace", path);
  need_parent(path);
  content[path] = text;
  ++replaced;
}

void MemoryFiles::copy(const std::string& from, const std::string& to) {
  about_to("copy", from);
  need_parent(to);
  content[to] = read(from);
}

void MemoryFiles::remove(const std::string& path) {
  about_to("remove", path);
  if (content.erase(path) == 0) throw base::Fault(base::kFileNotFound, path);
}

std::vector<std::string> MemoryFiles::list(const std::string& folder) const {
  if (!folder_exists(folder)) throw base::Fault(base::kPathNotFound, folder);
  std::vector<std::string> names;
  for (const auto& [path, bytes] : content) {
    if (parent_of(path) == without_end(folder)) names.push_back(name_of(path));
  }
  return names;
}

void MemoryFiles::make_folder(const std::string& path) {
  about_to("make_folder", path);
  if (folder_exists(path)) throw base::Fault("Path/File access error", path);
  need_parent(path);
  folders.insert(without_end(path));
}

void MemoryFiles::make_folders(const std::string& path) {
  for (std::string step = without_end(path); !step.empty(); step = parent_of(step))
    folders.insert(step);
}

void MemoryFiles::remove_folder(const std::string& path) {
  about_to("remove_folder", path);
  const std::string plain = without_end(path);
  if (!folders.contains(plain)) throw base::Fault(base::kPathNotFound, path);
  for (const auto& [file, bytes] : content) {
    if (file.starts_with(plain + '\\')) throw base::Fault("Path/File access error", path);
  }
  for (const std::string& folder : folders) {
    if (folder.starts_with(plain + '\\')) throw base::Fault("Path/File access error", path);
  }
  folders.erase(plain);
}

std::string MemoryFiles::native(const std::string& path) const {
  return path;
}

}  // namespace qvrcom::doubles
