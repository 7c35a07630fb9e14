#pragma once

#include <curl/curl.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <string>

#include "adapters/ftp_control_line.h"
#include "adapters/ftp_reply.h"
#include "adapters/plain_file.h"
#include "base/fault.h"
#include "platform/device_connection.h"

namespace qvrcom::adapters {

// Something that is asked of the device: a command, or a file to be received or sent.
struct FtpStep {
  std::string tried;             // what a Fault tells as tried
  std::string command = {};      // "" for a file
  std::string remote_name = {};  // of the file
  PartFile* received = nullptr;
  SourceFile* sent = nullptr;
};

// An FTP session through libcurl, step by step: one easy handle on one control connection, which is given up
// as soon as the next reply might not belong to the next step. All members but `cancel` belong to one thread.
class FtpSessionCurl {
 public:
  FtpSessionCurl(const platform::DeviceLimits& limits, platform::TransferProgress progress);
  ~FtpSessionCurl();
  FtpSessionCurl(const FtpSessionCurl&) = delete;
  FtpSessionCurl& operator=(const FtpSessionCurl&) = delete;

  // Fault when the address is none, nobody answers there, or the device refuses.
  void login(const platform::DeviceLogin& login);

  // Takes a step and answers with the last line of its reply, which completes or refuses it. Fault when there
  // is no such reply, a limit is reached or it is cancelled.
  std::string ask(const FtpStep& step);

  // The same, and a Fault when it is refused. Answers with the number of bytes transferred.
  std::uint64_t need(const FtpStep& step);

  // Nothing more is asked: the last reply was not to what had been asked.
  void give_up() { in_step_ = false; }

  // Takes leave and hangs up; nothing without a login.
  void leave();

  // Whether a further step can be taken.
  bool alive() const;

  void cancel();

  // Words of the device as they may be told: short, and without the password.
  std::string said(const std::string& words) const;

 private:
  using MonotonicClock = std::chrono::steady_clock;

  void run(const FtpStep& step);
  void prepare();
  void prepare_callbacks();
  CURLcode drive();
  void need_alive(const std::string& tried);
  void keep_limits() const;
  [[noreturn]] void fail(CURLcode code);
  void touched() { last_byte_ = MonotonicClock::now(); }
  void moved(std::size_t bytes);

  // Runs inside a callback of the library, which no fault may pass: it is kept and thrown afterwards.
  template <class Body>
  bool guarded(Body&& body) {
    auto fault = base::fault_of(body);
    if (!fault) return true;
    trouble_ = std::move(fault);
    return false;
  }

  static std::size_t on_reply(char* text, std::size_t size, std::size_t count, void* self);
  static std::size_t on_received(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t on_wanted(char* buffer, std::size_t size, std::size_t count, void* self);
  static int on_waiting(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
  static curl_socket_t on_open(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int on_close(void* self, curl_socket_t socket);

  const platform::DeviceLimits limits_;
  const platform::TransferProgress progress_;
  CURLM* const multi_ = curl_multi_init();
  CURL* const easy_ = curl_easy_init();
  std::atomic<bool> cancelled_{false};

  platform::DeviceLogin login_;
  std::string place_;  // "ftp://host:port/"
  bool logged_in_ = false;
  FtpControlLine control_;
  MonotonicClock::time_point session_began_;
  bool in_step_ = false;  // every step so far has had its own reply

  // The running step.
  FtpStep step_;
  StepReplies replies_{StepReplies::Step::kLogin};
  MonotonicClock::time_point step_began_;
  MonotonicClock::time_point last_byte_;
  std::uint64_t bytes_ = 0;
  std::optional<base::Fault> trouble_;
  bool reconnect_refused_ = false;
};

}  // namespace qvrcom::adapters
