#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "devicefiles/bytes.h"
#include "devicefiles/line_statistics.h"
#include "devicefiles/node_types.h"

// The frame that "dbase", "linestat" and "nodestat" share: a header, sections of records of one length, a
// checksum; docs/formats/dbase.md. A section with an unknown tag is passed over, and so are the bytes of a
// record behind those that its reader knows: later programs may add either.

// What the readers of several files share.
namespace qvrcom::devicefiles {

// The version of every file form here; the byte behind the magic.
inline constexpr std::uint8_t kFileVersion = 1;

// No device file is longer; what is longer is refused before it is looked at.
inline constexpr std::size_t kLargestFile = std::size_t{1} << 20U;

struct FileForm {
  std::string_view magic;  // the first bytes of every file of the form
  std::string_view kind;   // in the user's words, "line statistics"
};

// Fault "Not a ... file of this suite" without the magic, "... file of another version" with another version.
void check_form(std::string_view bytes, const FileForm& form);

// Fault when the file is not exactly so long.
void check_length(std::string_view bytes, const FileForm& form, std::size_t length);

// What stands in the header behind magic and version.
struct FileHeader {
  std::uint32_t content = 0;    // what of its kind the file is; 0 where there is only one
  std::uint32_t partition = 0;  // 1 to 64, or 0 for the whole device

  bool operator==(const FileHeader&) const = default;
};

class SectionReader {
 public:
  // Checks magic, version, length and checksum. The bytes outlive the reader.
  SectionReader(std::string_view bytes, const FileForm& form);

  const FileHeader& header() const { return header_; }

  // Hands the records of a section one after the other to `read`; nothing to do when the file has no such
  // section. Fault when its records are shorter than `length`.
  void each(std::uint32_t tag, std::string_view name, std::size_t length,
            const std::function<void(ByteReader&)>& read) const;

  // Likewise for a section that has exactly one record.
  void one(std::uint32_t tag, std::string_view name, std::size_t length,
           const std::function<void(ByteReader&)>& read) const;

  [[noreturn]] void refuse(const std::string& reason) const { ByteReader({}, form_.kind).refuse(reason); }

 private:
  struct Section {
    std::size_t record_length;
    std::size_t count;
    std::string_view records;
  };
  void read_section(ByteReader& reader);

  FileForm form_;
  FileHeader header_;
  std::map<std::uint32_t, Section> sections_;
};

class SectionWriter {
 public:
  SectionWriter(const FileForm& form, const FileHeader& header);

  // A section of a record for each value of `values`; `write` fills one of `length` bytes.
  template <class Values, class Write>
  void section(std::uint32_t tag, std::size_t length, const Values& values, Write write) {
    begin_section(tag, length, values.size());
    for (const auto& value : values)
      write(body_, value);
  }

  // The whole file.
  std::string finish() const;

 private:
  void begin_section(std::uint32_t tag, std::size_t length, std::size_t count);

  FileForm form_;
  FileHeader header_;
  ByteWriter body_;
};

// A node's type (1 byte), an unused byte, its number (2 bytes).
inline constexpr std::size_t kNodeNameLength = 4;
NodeName read_node_name(ByteReader& reader);
// Likewise, or type and number 0 for none.
NodeName read_optional_node_name(ByteReader& reader);
void write_node_name(ByteWriter& writer, const NodeName& node);

inline constexpr std::uint32_t kCountedSection = 1;
inline constexpr std::size_t kCountedLength = 8;

CountedTime read_counted(const SectionReader& file);

// The partition of the header; Fault for a file of the whole device.
std::uint32_t read_partition(const SectionReader& file);

// Fault when two values have the same key; `what` names the values in the user's words.
template <class Values, class Key>
void require_unique(const SectionReader& file, const Values& values, const std::string& what, Key key) {
  std::set<decltype(key(values.front()))> seen;
  for (const auto& value : values) {
    if (!seen.insert(key(value)).second) file.refuse("One of its " + what + " stands in it twice");
  }
}

}  // namespace qvrcom::devicefiles
