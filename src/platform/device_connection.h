#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "base/fault.h"

namespace qvrcom::platform {

// What one session may take at most.
struct DeviceLimits {
  std::uint64_t largest_file = 256ULL << 20U;  // bytes
  std::chrono::milliseconds connect = std::chrono::seconds(30);
  std::chrono::milliseconds idle = std::chrono::seconds(60);     // without a byte from or to the device
  std::chrono::milliseconds session = std::chrono::minutes(30);  // from the login on
};

struct DeviceLogin {
  std::string host;  // a name or an address; IPv6 without brackets
  std::uint16_t port = 21;
  std::string user;
  std::string password;
};

// How the reasons begin that the user can do something about; others are added behind them. Advice is chosen
// by these words, in a session's log as well.
namespace device_fault {
inline constexpr const char* kLoginRefused = "The device refused the login";
inline constexpr const char* kNoAddress = "The address is none";
inline constexpr const char* kUnknownHost = "The host name is not known";
inline constexpr const char* kUnreachable = "No connection to the device";
inline constexpr const char* kNoAnswer = "The device did not answer";
inline constexpr const char* kClosed = "The device closed the connection";
inline constexpr const char* kCutShort = "The transfer was cut short";
inline constexpr const char* kSilence = "No byte came or went";
}  // namespace device_fault

// How an operation ends that `cancel` interrupted.
class SessionCancelled : public base::Fault {
 public:
  explicit SessionCancelled(std::string detail) : Fault("Cancelled", std::move(detail)) {}
};

// A fetch that the device ended in good order, and yet the file is not whole: it may be tried once more.
class IncompleteFile : public base::Fault {
 public:
  IncompleteFile(std::string description, std::string detail, std::uint64_t least_bytes = 0)
      : Fault(std::move(description), std::move(detail)), least(least_bytes) {}

  std::uint64_t least;  // bytes that the whole file has
};

// One FTP session with a device on one control connection. Every operation waits for its end and throws a
// Fault: the description is what the device said ("550 No such file") or the network's reason, the detail
// what was tried. What the device said never shows the password: it is masked, or, where it is shorter than
// four characters and could not be told from other words, the answer to the login is left out.
// Only a reply 2yz completes an operation, 4yz and 5yz refuse it; any other is a fault that ends the session.
// After a fault `alive` says whether the session goes on; nothing logs in again by itself.
// Local files are suite paths. No link is followed for them.
class DeviceConnection {
 public:
  virtual ~DeviceConnection() = default;

  virtual void login(const DeviceLogin& login) = 0;

  // Selects the account ("part3") that the following operations work in.
  virtual void account(const std::string& name) = 0;

  // Fetches into `local_path` + ".part" and renames it over `local_path` once it is whole; a failed fetch
  // leaves the old file and no part. Whole is what came up to the end of the data connection, however long it
  // was announced, when the device has confirmed it; a file shorter than the device's own SIZE, or than
  // `least` bytes, is an IncompleteFile. Answers with the number of bytes.
  virtual std::uint64_t get(const std::string& remote_name, const std::string& local_path,
                            std::uint64_t least) = 0;
  virtual std::uint64_t put(const std::string& local_path, const std::string& remote_name) = 0;

  virtual void remove(const std::string& remote_name) = 0;
  virtual void close() = 0;

  // Whether the next operation would reach the device in the account that was selected: true after a success
  // and after a refusal, false once the connection is gone, cancelled, or may be out of step with its
  // replies.
  virtual bool alive() const = 0;

  // Ends the running operation, and every later one, with SessionCancelled. The one member that another
  // thread may call.
  virtual void cancel() = 0;
};

// Bytes moved by the running transfer so far; called on the thread that runs the operation.
using TransferProgress = std::function<void(std::uint64_t)>;

class DeviceConnections {
 public:
  virtual ~DeviceConnections() = default;
  virtual std::unique_ptr<DeviceConnection> make(const DeviceLimits& limits, TransferProgress progress) = 0;
};

}  // namespace qvrcom::platform
