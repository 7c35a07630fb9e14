#include "devicefiles/sections.h"

#include <array>
#include <string>

#include "base/fault.h"
#include "devicefiles/bytes.h"

namespace qvrcom::devicefiles {
namespace {

constexpr std::size_t kHeaderLength = 12;
constexpr std::size_t kChecksumLength = 4;
constexpr std::uint32_t kHighestNode = 32767;

}  // namespace

void check_form(std::string_view bytes, const FileForm& form) {
  const std::string kind(form.kind);
  if (bytes.size() <= form.magic.size() || !bytes.starts_with(form.magic)) {
    throw base::Fault("Not a " + kind + " file of this suite",
                      "Its first bytes are not \"" + std::string(form.magic) +
                          "\". The device keeps it in another form, which is not read.");
  }
  if (bytes.size() > kLargestFile)
    ByteReader(bytes, form.kind)
        .refuse("It has " + std::to_string(bytes.size()) + " bytes, more than " +
                std::to_string(kLargestFile));
  const int version = static_cast<unsigned char>(bytes[form.magic.size()]);
  if (version != kFileVersion) {
    throw base::Fault("The " + kind + " file is of another version",
                      "It has version " + std::to_string(version) + ", this program reads " +
                          std::to_string(kFileVersion) + ". Use programs that fit the device's firmware.");
  }
}

void check_length(std::string_view bytes, const FileForm& form, std::size_t length) {
  if (bytes.size() != length) {
    ByteReader(bytes, form.kind)
        .refuse("It has " + std::to_string(bytes.size()) + " bytes, not " + std::to_string(length));
  }
}

SectionReader::SectionReader(std::string_view bytes, const FileForm& form) : form_(form) {
  check_form(bytes, form);
  if (bytes.size() < kHeaderLength + kChecksumLength)
    check_length(bytes, form, kHeaderLength + kChecksumLength);
  const std::size_t end = bytes.size() - kChecksumLength;
  ByteReader reader(bytes.substr(0, end), form_.kind);
  reader.skip(form.magic.size() + 1);
  header_.content = reader.u8("content");
  header_.partition = reader.in_range("partition", 2, 0, 64);
  const std::size_t length = reader.u32("length");
  if (length != bytes.size()) check_length(bytes, form, length);
  if (ByteReader(bytes.substr(end), form_.kind).u32("checksum") != crc32(bytes.substr(0, end)))
    refuse("Its checksum is wrong");
  while (reader.remaining() > 0)
    read_section(reader);
}

void SectionReader::read_section(ByteReader& reader) {
  const std::uint32_t tag = reader.u16("section");
  Section section{};
  section.record_length = reader.in_range("record length", 2, 1, 0xFFFF);
  section.count = reader.u32("record count");
  // The product fits 64 bits and is held against what is there before anything is read.
  section.records =
      reader.bytes("records of section " + std::to_string(tag), section.record_length * section.count);
  if (!sections_.emplace(tag, section).second)
    refuse("Section " + std::to_string(tag) + " stands in it twice");
}

void SectionReader::each(std::uint32_t tag, std::string_view name, std::size_t length,
                         const std::function<void(ByteReader&)>& read) const {
  const auto found = sections_.find(tag);
  if (found == sections_.end()) return;
  const Section& section = found->second;
  if (section.record_length < length) {
    refuse("The records of \"" + std::string(name) + "\" have " + std::to_string(section.record_length) +
           " bytes, fewer than " + std::to_string(length));
  }
  for (std::size_t i = 0; i < section.count; ++i) {
    ByteReader record(section.records.substr(i * section.record_length, section.record_length), form_.kind);
    read(record);
  }
}

void SectionReader::one(std::uint32_t tag, std::string_view name, std::size_t length,
                        const std::function<void(ByteReader&)>& read) const {
  const auto found = sections_.find(tag);
  if (found == sections_.end() || found->second.count != 1)
    refuse("It does not have exactly one record of \"" + std::string(name) + "\"");
  each(tag, name, length, read);
}

SectionWriter::SectionWriter(const FileForm& form, const FileHeader& header) : form_(form), header_(header) {}

void SectionWriter::begin_section(std::uint32_t tag, std::size_t length, std::size_t count) {
  body_.u16("section", tag);
  body_.u16("record length", static_cast<std::uint32_t>(length));
  body_.u32(static_cast<std::uint32_t>(count));
}

std::string SectionWriter::finish() const {
  ByteWriter file;
  file.bytes(form_.magic);
  file.u8("version", kFileVersion);
  file.u8("content", header_.content);
  file.u16("partition", header_.partition);
  file.u32(static_cast<std::uint32_t>(kHeaderLength + body_.str().size() + kChecksumLength));
  file.bytes(body_.str());
  file.u32(crc32(file.str()));
  return file.str();
}

NodeName read_node_name(ByteReader& reader) {
  NodeName node;
  node.type = reader.in_range("node type", 1, 1, static_cast<std::uint32_t>(kNodeTypeWords.size()));
  reader.skip(1);
  node.number = reader.in_range("node number", 2, 1, kHighestNode);
  return node;
}

NodeName read_optional_node_name(ByteReader& reader) {
  ByteReader ahead = reader;
  if (ahead.u32("node") == 0) {
    reader.skip(kNodeNameLength);
    return {};
  }
  return read_node_name(reader);
}

void write_node_name(ByteWriter& writer, const NodeName& node) {
  writer.u8("node type", node.type);
  writer.u8("unused", 0);
  writer.u16("node number", node.number);
}

CountedTime read_counted(const SectionReader& file) {
  CountedTime counted;
  file.one(kCountedSection, "counted time", kCountedLength, [&](ByteReader& record) {
    counted.since = record.moment("counted since");
    counted.until = record.moment("counted until");
  });
  return counted;
}

std::uint32_t read_partition(const SectionReader& file) {
  if (file.header().partition == 0) file.refuse("It names no partition");
  return file.header().partition;
}

}  // namespace qvrcom::devicefiles
