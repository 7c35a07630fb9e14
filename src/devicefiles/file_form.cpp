#include "devicefiles/file_form.h"

#include <string>

#include "base/fault.h"
#include "devicefiles/byte_reader.h"

namespace qvrcom::devicefiles {

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

}  // namespace qvrcom::devicefiles
