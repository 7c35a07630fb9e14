#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qvrcom::platform {

// Who may read a file that is written anew. Nobody but its owner may write it.
enum class Readers { kEverybody, kOwner };

// Whole operations on suite paths (UTF-8, backslashes between the names). A failing operation throws a Fault
// whose description is the system's short text and whose detail names the file.
//
// `load`, `save` and the source of `copy` are for paths that the user named: a link is followed to its file.
// The others are for the suite's own files, where a link is refused. In any of them a pipe, a device or
// anything else that is no plain file is refused and never waited for.
class Files {
 public:
  virtual ~Files() = default;

  virtual bool file_exists(const std::string& path) const = 0;
  virtual bool folder_exists(const std::string& path) const = 0;

  // False when nothing at all lies there. What `read` would refuse counts (a folder, a pipe, a link to
  // nothing), and so does what cannot be looked at.
  virtual bool is_taken(const std::string& path) const = 0;

  // Whether the last name of the path is a link to something else. A path to nothing is none.
  virtual bool is_link(const std::string& path) const = 0;

  virtual std::uint64_t length(const std::string& path) const = 0;

  // The whole file, at most kReadLimit bytes.
  static constexpr std::uint64_t kReadLimit = 256ULL << 20U;
  virtual std::string read(const std::string& path) const = 0;
  virtual std::string load(const std::string& path) const = 0;

  // "" when nothing lies there; whatever else cannot be read is a Fault.
  std::string read_or_empty(const std::string& path) const {
    return is_taken(path) ? read(path) : std::string{};
  }

  // Adds to the end; a missing file is created, readable by its owner alone.
  virtual void append(const std::string& path, std::string_view text) = 0;

  // Adds `line` (one line, or several joined by CR LF) and CR LF, on a line of its own: a last line that
  // lacks its end gets one first. It is on the disk when this returns; a failed call leaves what was there. A
  // missing file is created, readable by its owner alone.
  virtual void append_line(const std::string& path, std::string_view line) = 0;

  // The file holds exactly `text` afterwards. Another program that reads the path meanwhile sees the old
  // content or the new one, never a part: the text is written aside and renamed over the old file, and is on
  // the disk when this returns. Where the rename is refused the file is rewritten in place. A file that was
  // there keeps its rights; a new one may be read by everybody whom the user lets, and written by its owner
  // alone.
  virtual void replace(const std::string& path, std::string_view text) = 0;

  // `replace` for what the user named. With kOwner the file is its owner's alone from its first byte
  // on, whatever rights one had that was there: for whatever holds an access code.
  virtual void save(const std::string& path, std::string_view text, Readers readers) = 0;

  // As `replace`, with the content of another file of any size.
  virtual void copy(const std::string& from, const std::string& to) = 0;
  virtual void remove(const std::string& path) = 0;

  // Names (not paths) of the plain files in a folder, in no particular order.
  virtual std::vector<std::string> list(const std::string& folder) const = 0;

  // Names of the folders in a folder, links to folders left out, in no particular order.
  virtual std::vector<std::string> list_folders(const std::string& folder) const = 0;

  // One level; the folder is open to its owner alone. An existing folder is a Fault.
  virtual void make_folder(const std::string& path) = 0;
  // Fault when it is not empty.
  virtual void remove_folder(const std::string& path) = 0;

  // The path as the operating system writes it, for messages, logs and other programs.
  virtual std::string native(const std::string& path) const = 0;

  // The suite's path of a native one that the user named, relative ones taken from the current folder;
  // whatever its names hold, it means that very file.
  virtual std::string from_native(const std::string& path) const = 0;
};

}  // namespace qvrcom::platform
