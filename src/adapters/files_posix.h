#pragma once

#include "platform/files.h"

namespace qvrcom::adapters {

class FilesPosix : public platform::Files {
 public:
  bool file_exists(const std::string& path) const override;
  bool folder_exists(const std::string& path) const override;
  bool is_taken(const std::string& path) const override;
  bool is_link(const std::string& path) const override;
  std::uint64_t length(const std::string& path) const override;
  std::string read(const std::string& path) const override;
  std::string load(const std::string& path) const override;
  void append(const std::string& path, std::string_view text) override;
  void append_line(const std::string& path, std::string_view line) override;
  void replace(const std::string& path, std::string_view text) override;
  void save(const std::string& path, std::string_view text, platform::Readers readers) override;
  void copy(const std::string& from, const std::string& to) override;
  void remove(const std::string& path) override;
  std::vector<std::string> list(const std::string& folder) const override;
  std::vector<std::string> list_folders(const std::string& folder) const override;
  void make_folder(const std::string& path) override;
  void remove_folder(const std::string& path) override;
  std::string native(const std::string& path) const override;
  std::string from_native(const std::string& path) const override;
};

}  // namespace qvrcom::adapters
