#include "adapters/device_connection_curl.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "adapters/ftp_session_curl.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;

class DeviceConnectionCurl : public platform::DeviceConnection {
 public:
  DeviceConnectionCurl(const platform::Files& files, const platform::DeviceLimits& limits,
                       platform::TransferProgress progress)
      : files_(files), largest_file_(limits.largest_file), session_(limits, std::move(progress)) {}

  void login(const platform::DeviceLogin& login) override { session_.login(login); }
  void account(const std::string& name) override { session_.need({"Selecting " + name, "ACCT " + name}); }
  std::uint64_t get(const std::string& remote_name, const std::string& local_path,
                    std::uint64_t least) override;
  std::uint64_t put(const std::string& local_path, const std::string& remote_name) override;
  void remove(const std::string& remote_name) override {
    session_.need({"Deleting " + remote_name, "DELE " + remote_name});
  }
  void close() override { session_.leave(); }
  bool alive() const override { return session_.alive(); }
  void cancel() override { session_.cancel(); }

 private:
  std::optional<std::uint64_t> size_of(const std::string& remote_name, const std::string& tried);

  const platform::Files& files_;
  const std::uint64_t largest_file_;
  FtpSessionCurl session_;
  bool binary_ = false;
};

// What the device says that the file is long; nothing when it does not say.
std::optional<std::uint64_t> DeviceConnectionCurl::size_of(const std::string& remote_name,
                                                           const std::string& tried) {
  if (!binary_) session_.need({tried, "TYPE I"});
  binary_ = true;
  const std::string reply = session_.ask({tried, "SIZE " + remote_name});
  if (refuses(reply)) return std::nullopt;
  if (const auto size = size_in(reply)) return size;
  if (!reply.starts_with("213")) session_.give_up();
  throw Fault("The device tells no size of the file: " + session_.said(reply), tried);
}

std::uint64_t DeviceConnectionCurl::get(const std::string& remote_name, const std::string& local_path,
                                        std::uint64_t least) {
  const std::string tried = "Fetching " + remote_name;
  PartFile part(files_.native(local_path));
  const std::uint64_t whole = std::max(size_of(remote_name, tried).value_or(0), least);
  session_.need({.tried = tried, .remote_name = remote_name, .received = &part});
  if (part.length() < whole)
    throw platform::IncompleteFile("The file is not whole, " + std::to_string(part.length()) +
                                       " bytes came of at least " + std::to_string(whole),
                                   tried, whole);
  part.keep();
  return part.length();
}

std::uint64_t DeviceConnectionCurl::put(const std::string& local_path, const std::string& remote_name) {
  SourceFile source(files_.native(local_path));
  const std::string tried = "Sending " + remote_name;
  if (source.length() > largest_file_)
    throw Fault("The file is larger than " + std::to_string(largest_file_) + " bytes", tried);
  return session_.need({.tried = tried, .remote_name = remote_name, .sent = &source});
}

}  // namespace

DeviceConnectionsCurl::DeviceConnectionsCurl(const platform::Files& files) : files_(files) {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

std::unique_ptr<platform::DeviceConnection> DeviceConnectionsCurl::make(const platform::DeviceLimits& limits,
                                                                        platform::TransferProgress progress) {
  return std::make_unique<DeviceConnectionCurl>(files_, limits, std::move(progress));
}

}  // namespace qvrcom::adapters
