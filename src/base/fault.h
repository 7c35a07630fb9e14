#pragma once

#include <exception>
#include <optional>
#include <string>

namespace qvrcom::base {

// A failure on its way to the trap that reports it.
//   description  short English system text ("File not found"), shown in the box
//   detail       what failed, on what, and what the user can do; shown beside the box, never in it
class Fault : public std::exception {
 public:
  explicit Fault(std::string description, std::string detail = {})
      : description_(std::move(description)), detail_(std::move(detail)) {}

  const std::string& description() const noexcept { return description_; }
  const std::string& detail() const noexcept { return detail_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string description_;
  std::string detail_;
};

// The system descriptions that more than one place raises.
inline constexpr const char* kTypeMismatch = "Type mismatch";
inline constexpr const char* kOverflow = "Overflow";
inline constexpr const char* kSubscriptOutOfRange = "Subscript out of range";
inline constexpr const char* kFileNotFound = "File not found";
inline constexpr const char* kPathNotFound = "Path not found";
inline constexpr const char* kPermissionDenied = "Permission denied";
inline constexpr const char* kDiskFull = "Disk full";

// Runs `body` and gives the fault that ended it: for those who have nobody in front of them to show it to.
template <class Body>
std::optional<Fault> fault_of(Body&& body) {
  try {
    body();
  } catch (const Fault& fault) {
    return fault;
  } catch (const std::exception& error) {
    return Fault(error.what());
  }
  return std::nullopt;
}

// Likewise for one kind of fault; every other passes.
template <class Kind, class Body>
std::optional<Kind> fault_of_kind(Body&& body) {
  try {
    body();
  } catch (const Kind& fault) {
    return fault;
  }
  return std::nullopt;
}

}  // namespace qvrcom::base
