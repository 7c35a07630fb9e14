#include "adapters/device_connection_curl.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <mutex>
#include <optional>
#include <utility>

#include "adapters/ftp_reply.h"
#include "adapters/plain_file.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;
namespace device_fault = platform::device_fault;
using std::chrono::milliseconds;
using MonotonicClock = std::chrono::steady_clock;

constexpr int kPollTime = 10;               // milliseconds; curl's own waits can take a second
constexpr std::size_t kLongestReply = 500;  // bytes of a reply line that are told

struct ResultText {
  CURLcode code;
  const char* text;
};

constexpr std::array<ResultText, 9> kResultTexts{{
    {CURLE_COULDNT_RESOLVE_HOST, device_fault::kUnknownHost},
    {CURLE_COULDNT_CONNECT, device_fault::kUnreachable},
    {CURLE_REMOTE_ACCESS_DENIED, "The device refused access"},
    {CURLE_LOGIN_DENIED, device_fault::kLoginRefused},
    {CURLE_PARTIAL_FILE, device_fault::kCutShort},
    {CURLE_GOT_NOTHING, device_fault::kClosed},
    {CURLE_SEND_ERROR, device_fault::kClosed},
    {CURLE_RECV_ERROR, device_fault::kClosed},
    {CURLE_OPERATION_TIMEDOUT, device_fault::kNoAnswer},
}};

const char* text_of(CURLcode code) {
  const auto row = std::find_if(kResultTexts.begin(), kResultTexts.end(),
                                [code](const ResultText& text) { return text.code == code; });
  return row == kResultTexts.end() ? curl_easy_strerror(code) : row->text;
}

std::string time_text(milliseconds time) {
  if (time.count() % 1000 != 0) return std::to_string(time.count()) + " ms";
  return std::to_string(time.count() / 1000) + " s";
}

std::uint16_t port_of(const curl_sockaddr& address) {
  // Both kinds of address keep the port in the same place.
  const auto* any = reinterpret_cast<const sockaddr_in*>(&address.addr);
  return ntohs(any->sin_port);
}

// Bytes that have come in on a connection so far, read or not; nothing where the system does not count them.
std::optional<std::uint64_t> bytes_received(int socket) {
  tcp_info info{};
  socklen_t size = sizeof info;
  if (::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) != 0) return std::nullopt;
  if (size < offsetof(tcp_info, tcpi_bytes_received) + sizeof info.tcpi_bytes_received) return std::nullopt;
  return info.tcpi_bytes_received;
}

bool is_host(const std::string& host) {
  return !host.empty() && std::all_of(host.begin(), host.end(), [](unsigned char c) {
    return base::is_letter_or_digit(c) || c == '.' || c == '-' || c == '_' || c == ':' || c >= 0x80;
  });
}

bool is_one_word(const std::string& text) {
  return !text.empty() &&
         std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7F; });
}

class CommandList {
 public:
  explicit CommandList(const std::string& command) : list_(curl_slist_append(nullptr, command.c_str())) {}
  ~CommandList() { curl_slist_free_all(list_); }
  CommandList(const CommandList&) = delete;
  CommandList& operator=(const CommandList&) = delete;
  curl_slist* get() const { return list_; }

 private:
  curl_slist* list_;
};

class DeviceConnectionCurl : public platform::DeviceConnection {
 public:
  DeviceConnectionCurl(const platform::Files& files, const platform::DeviceLimits& limits,
                       platform::TransferProgress progress)
      : files_(files), limits_(limits), progress_(std::move(progress)) {
    if (multi_ == nullptr || easy_ == nullptr) throw Fault("The FTP library cannot be started");
  }
  ~DeviceConnectionCurl() override {
    hang_up();
    curl_easy_cleanup(easy_);
    curl_multi_cleanup(multi_);
  }

  void login(const platform::DeviceLogin& login) override;
  void account(const std::string& name) override { command("ACCT " + name, "Selecting " + name); }
  std::uint64_t get(const std::string& remote_name, const std::string& local_path,
                    std::uint64_t least) override;
  std::uint64_t put(const std::string& local_path, const std::string& remote_name) override;
  void remove(const std::string& remote_name) override {
    command("DELE " + remote_name, "Deleting " + remote_name);
  }
  void close() override;
  bool alive() const override;

  void cancel() override {
    cancelled_ = true;
    curl_multi_wakeup(multi_);
    hang_up();  // the library may be waiting for a reply, deaf to everything else
  }

 private:
  void command(const std::string& text, const std::string& tried);
  void ask(const std::string& text, const std::string& tried);
  std::optional<std::uint64_t> size_of(const std::string& remote_name, const std::string& tried);
  void prepare(const std::string& remote_name);
  void run(const std::string& tried);
  void step(const std::string& tried);
  CURLcode drive();
  void need_alive(const std::string& tried);
  void keep_limits() const;
  bool replied(char kind) const { return !reply_.empty() && reply_[0] == kind; }
  bool refused() const { return replied('4') || replied('5'); }
  bool belongs(const std::string& reply) const;
  std::string said(const std::string& words) const;
  [[noreturn]] void fail(CURLcode code);
  void touched() { last_byte_ = MonotonicClock::now(); }
  void moved(std::size_t bytes);
  void hang_up();

  // Runs inside a callback of the library, which no fault may pass: it is kept and thrown afterwards.
  template <class Body>
  bool guarded(Body&& body) {
    auto fault = base::fault_of(body);
    if (fault) trouble_ = std::move(fault);
    return !fault;
  }

  static std::size_t on_reply(char* text, std::size_t size, std::size_t count, void* self);
  static std::size_t on_received(char* bytes, std::size_t size, std::size_t count, void* self);
  static std::size_t on_wanted(char* buffer, std::size_t size, std::size_t count, void* self);
  static int on_waiting(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
  static curl_socket_t on_open(void* self, curlsocktype purpose, curl_sockaddr* address);
  static int on_close(void* self, curl_socket_t socket);

  const platform::Files& files_;
  const platform::DeviceLimits limits_;
  const platform::TransferProgress progress_;
  CURLM* const multi_ = curl_multi_init();
  CURL* const easy_ = curl_easy_init();
  std::atomic<bool> cancelled_{false};

  platform::DeviceLogin login_;
  std::string place_;  // "ftp://host:port/"
  bool logged_in_ = false;
  bool binary_ = false;
  std::mutex control_mutex_;  // so that nobody shuts down a number that has been closed and given away
  curl_socket_t control_ = CURL_SOCKET_BAD;  // changed on the session's thread, under the mutex
  std::uint64_t heard_ = 0;                  // bytes of the control connection that the library has passed on
  MonotonicClock::time_point session_began_;

  // The running step.
  std::string tried_;
  MonotonicClock::time_point step_began_;
  MonotonicClock::time_point last_byte_;
  std::string reply_;    // the last line of the device's last reply
  std::string stray_;    // likewise, of the first reply that does not belong to this step
  bool opened_ = false;  // the device has said that data follow
  std::uint64_t bytes_ = 0;
  PartFile* part_ = nullptr;
  SourceFile* source_ = nullptr;
  std::optional<Fault> trouble_;
  bool reconnect_refused_ = false;
  bool in_step_ = false;  // every command so far has had its own reply
};

void DeviceConnectionCurl::login(const platform::DeviceLogin& login) {
  const std::string tried =
      "Login as " + login.user + " at " + login.host + " port " + std::to_string(login.port);
  if (!is_host(login.host)) throw Fault(device_fault::kNoAddress, tried);
  login_ = login;
  const bool bare_ipv6 = login.host.find(':') != std::string::npos;
  place_ =
      "ftp://" + (bare_ipv6 ? '[' + login.host + ']' : login.host) + ':' + std::to_string(login.port) + '/';
  session_began_ = MonotonicClock::now();
  prepare({});
  curl_easy_setopt(easy_, CURLOPT_NOBODY, 1L);
  step(tried);
  logged_in_ = true;
}

void DeviceConnectionCurl::command(const std::string& text, const std::string& tried) {
  ask(text, tried);
  if (refused()) throw Fault(said(reply_), tried);
}

// A command on its own; it may be refused.
void DeviceConnectionCurl::ask(const std::string& text, const std::string& tried) {
  if (!is_one_word(text)) throw Fault("A name holds a control character", tried);
  need_alive(tried);
  // The library hangs up when a command is refused, unless an asterisk stands before it.
  const CommandList commands('*' + text);
  prepare({});
  curl_easy_setopt(easy_, CURLOPT_NOBODY, 1L);
  curl_easy_setopt(easy_, CURLOPT_QUOTE, commands.get());
  step(tried);
}

// What the device says that the file is long; nothing when it does not say.
std::optional<std::uint64_t> DeviceConnectionCurl::size_of(const std::string& remote_name,
                                                           const std::string& tried) {
  if (!binary_) command("TYPE I", tried);
  binary_ = true;
  ask("SIZE " + remote_name, tried);
  if (reply_.starts_with("421")) throw Fault(said(reply_), tried);
  if (refused()) return std::nullopt;
  if (const auto size = size_in(reply_)) return size;
  in_step_ = reply_.starts_with("213");
  throw Fault("The device tells no size of the file: " + said(reply_), tried);
}

std::uint64_t DeviceConnectionCurl::get(const std::string& remote_name, const std::string& local_path,
                                        std::uint64_t least) {
  const std::string tried = "Fetching " + remote_name;
  PartFile part(files_.native(local_path));
  const std::uint64_t whole = std::max(size_of(remote_name, tried).value_or(0), least);
  prepare(remote_name);
  part_ = &part;
  // The library would stop at the length that was announced, while the counters of a device grow.
  curl_easy_setopt(easy_, CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
  run(tried);
  if (part.length() < whole)
    throw platform::IncompleteFile("The file is not whole, " + std::to_string(part.length()) +
                                       " bytes came of at least " + std::to_string(whole),
                                   tried);
  part.keep();
  return part.length();
}

std::uint64_t DeviceConnectionCurl::put(const std::string& local_path, const std::string& remote_name) {
  SourceFile source(files_.native(local_path));
  const std::string tried = "Sending " + remote_name;
  if (source.length() > limits_.largest_file)
    throw Fault("The file is larger than " + std::to_string(limits_.largest_file) + " bytes", tried);
  prepare(remote_name);
  source_ = &source;
  curl_easy_setopt(easy_, CURLOPT_UPLOAD, 1L);
  curl_easy_setopt(easy_, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(source.length()));
  run(tried);
  return bytes_;
}

void DeviceConnectionCurl::close() {
  if (!logged_in_) return;
  command("QUIT", "Leaving the device");
  logged_in_ = false;
  hang_up();
}

bool DeviceConnectionCurl::alive() const {
  if (!in_step_ || cancelled_ || control_ == CURL_SOCKET_BAD) return false;
  // A word that nobody asked for is a farewell, or would be taken for the answer to the next command.
  char byte = 0;
  const bool silent = ::recv(control_, &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0;
  if (!silent || (errno != EAGAIN && errno != EWOULDBLOCK)) return false;
  // The library may have read it already, together with the reply before, and keep it for itself.
  return bytes_received(control_).value_or(heard_) == heard_;
}

// All options anew for every step, so that none of the step before is left. The connection stays.
void DeviceConnectionCurl::prepare(const std::string& remote_name) {
  const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(easy_, option, value); };
  curl_easy_reset(easy_);
  char* escaped = curl_easy_escape(easy_, remote_name.data(), static_cast<int>(remote_name.size()));
  set(CURLOPT_URL, (place_ + (remote_name.empty() ? "" : escaped)).c_str());
  curl_free(escaped);
  set(CURLOPT_USERNAME, login_.user.c_str());
  set(CURLOPT_PASSWORD, login_.password.c_str());
  set(CURLOPT_PROTOCOLS_STR, "ftp");
  set(CURLOPT_PROXY, "");
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_FTP_SKIP_PASV_IP, 1L);
  set(CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
  set(CURLOPT_QUICK_EXIT, 1L);  // a name that takes long to resolve holds up no cancel
  set(CURLOPT_MAXAGE_CONN, static_cast<long>(std::chrono::hours(24) / std::chrono::seconds(1)));
  // The limits of `keep_limits` are the ones that count; the library's own lie above them.
  set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits_.connect.count()) + 60000L);
  set(CURLOPT_SERVER_RESPONSE_TIMEOUT, static_cast<long>(limits_.idle.count() / 1000) + 60L);
  set(CURLOPT_HEADERFUNCTION, &on_reply);
  set(CURLOPT_HEADERDATA, static_cast<void*>(this));
  set(CURLOPT_WRITEFUNCTION, &on_received);
  set(CURLOPT_WRITEDATA, static_cast<void*>(this));
  set(CURLOPT_READFUNCTION, &on_wanted);
  set(CURLOPT_READDATA, static_cast<void*>(this));
  set(CURLOPT_NOPROGRESS, 0L);
  set(CURLOPT_XFERINFOFUNCTION, &on_waiting);
  set(CURLOPT_XFERINFODATA, static_cast<void*>(this));
  set(CURLOPT_OPENSOCKETFUNCTION, &on_open);
  set(CURLOPT_OPENSOCKETDATA, static_cast<void*>(this));
  set(CURLOPT_CLOSESOCKETFUNCTION, &on_close);
  set(CURLOPT_CLOSESOCKETDATA, static_cast<void*>(this));
  reply_.clear();
  stray_.clear();
  opened_ = false;
  trouble_.reset();
  bytes_ = 0;
  part_ = nullptr;
  source_ = nullptr;
}

// A transfer.
void DeviceConnectionCurl::run(const std::string& tried) {
  need_alive(tried);
  step(tried);
  if (refused()) throw Fault(said(reply_), tried);
}

// Ends with the reply that completes the step, 2yz, or one that refuses it.
void DeviceConnectionCurl::step(const std::string& tried) {
  tried_ = tried;
  step_began_ = MonotonicClock::now();
  touched();
  in_step_ = false;
  curl_multi_add_handle(multi_, easy_);
  struct Attached {
    CURLM* multi;
    CURL* easy;
    ~Attached() { curl_multi_remove_handle(multi, easy); }
  };
  CURLcode code = CURLE_OK;
  {
    const Attached attached{multi_, easy_};
    code = drive();
  }
  if (code != CURLE_OK || cancelled_) keep_limits();
  if (trouble_) throw Fault(trouble_->description(), tried + ". " + trouble_->detail());
  if (code != CURLE_OK || !stray_.empty() || !(replied('2') || refused())) fail(code);
  in_step_ = true;
}

CURLcode DeviceConnectionCurl::drive() {
  while (true) {
    int running = 0;
    keep_limits();
    curl_multi_perform(multi_, &running);
    if (running == 0) break;
    curl_multi_poll(multi_, nullptr, 0, kPollTime, nullptr);
  }
  int left = 0;
  const CURLMsg* message = curl_multi_info_read(multi_, &left);
  return message != nullptr && message->msg == CURLMSG_DONE ? message->data.result : CURLE_FAILED_INIT;
}

// A command to a device that has said more than it was asked would be answered with what it said before.
void DeviceConnectionCurl::need_alive(const std::string& tried) {
  if (alive()) return;
  const bool was_in_step = std::exchange(in_step_, false);
  hang_up();
  if (cancelled_) throw platform::SessionCancelled(tried);
  if (control_ == CURL_SOCKET_BAD) throw Fault(device_fault::kClosed, tried);
  if (!was_in_step) throw Fault("The connection is given up", tried);
  std::array<char, kLongestReply> words{};
  const ssize_t length = ::recv(control_, words.data(), words.size(), MSG_PEEK | MSG_DONTWAIT);
  if (length <= 0)
    throw Fault(std::string(device_fault::kClosed) + ", or said more than it was asked", tried);
  throw Fault("The device said, without having been asked, " +
                  said(std::string(words.data(), static_cast<std::size_t>(length))),
              tried);
}

void DeviceConnectionCurl::keep_limits() const {
  const auto now = MonotonicClock::now();
  if (cancelled_) throw platform::SessionCancelled(tried_);
  if (now - session_began_ > limits_.session)
    throw Fault("The session took longer than " + time_text(limits_.session), tried_);
  if (!logged_in_ && now - step_began_ > limits_.connect)
    throw Fault(std::string(device_fault::kNoAnswer) + " within " + time_text(limits_.connect), tried_);
  if (now - last_byte_ > limits_.idle)
    throw Fault(std::string(device_fault::kSilence) + " for " + time_text(limits_.idle), tried_);
}

// 3yz asks for more, which there is in a login alone; 1yz says once that the data of a transfer follow.
bool DeviceConnectionCurl::belongs(const std::string& reply) const {
  if (reply[0] == '3') return !logged_in_;
  if (reply[0] == '1') return !opened_ && (part_ != nullptr || source_ != nullptr);
  return reply[0] == '2' || reply[0] == '4' || reply[0] == '5';
}

std::string DeviceConnectionCurl::said(const std::string& words) const {
  if (!logged_in_ && too_short_to_mask(login_.password))
    return std::string(device_fault::kLoginRefused) + "; its words are left out";
  return masked(words, login_.password).substr(0, kLongestReply);
}

// A refusal of the device says more than the library's code: a step that is answered 421 would read as a
// timeout.
void DeviceConnectionCurl::fail(CURLcode code) {
  in_step_ = refused() && stray_.empty();
  if (in_step_) throw Fault(said(reply_), tried_);
  if (!stray_.empty()) throw Fault("The device gave an answer that is none: " + said(stray_), tried_);
  if (reconnect_refused_) throw Fault(device_fault::kClosed, tried_);
  if (code == CURLE_OK) throw Fault("The device did not say how it ended", tried_);
  throw Fault(text_of(code), bytes_ == 0 ? tried_ : tried_ + ", after " + std::to_string(bytes_) + " bytes");
}

void DeviceConnectionCurl::moved(std::size_t bytes) {
  touched();
  bytes_ += bytes;
  if (progress_) progress_(bytes_);
}

// So that whatever the library waits for, or a parting word of its own, fails at once.
void DeviceConnectionCurl::hang_up() {
  const std::lock_guard lock(control_mutex_);
  if (control_ != CURL_SOCKET_BAD) ::shutdown(control_, SHUT_RDWR);
}

std::size_t DeviceConnectionCurl::on_reply(char* text, std::size_t size, std::size_t count, void* self) {
  auto& connection = *static_cast<DeviceConnectionCurl*>(self);
  connection.touched();
  std::string_view line(text, size * count);
  connection.heard_ += line.size();
  while (!line.empty() && (line.back() == '\r' || line.back() == '\n'))
    line.remove_suffix(1);
  if (!ends_reply(line)) return size * count;
  connection.reply_ = line;
  if (connection.stray_.empty() && !connection.belongs(connection.reply_)) connection.stray_ = line;
  connection.opened_ |= line[0] == '1';
  return size * count;
}

std::size_t DeviceConnectionCurl::on_received(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& connection = *static_cast<DeviceConnectionCurl*>(self);
  const std::size_t length = size * count;
  const bool kept = connection.guarded([&] {
    connection.moved(length);
    if (connection.bytes_ > connection.limits_.largest_file)
      throw Fault("The file is larger than " + std::to_string(connection.limits_.largest_file) + " bytes",
                  "The rest was not fetched.");
    if (connection.part_ != nullptr) connection.part_->write({bytes, length});
  });
  return kept ? length : 0;
}

std::size_t DeviceConnectionCurl::on_wanted(char* buffer, std::size_t size, std::size_t count, void* self) {
  auto& connection = *static_cast<DeviceConnectionCurl*>(self);
  std::size_t got = 0;
  const bool read = connection.guarded([&] {
    if (connection.source_ != nullptr) got = connection.source_->read(buffer, size * count);
    connection.moved(got);
  });
  return read ? got : CURL_READFUNC_ABORT;
}

// The library asks once a second while it waits for the last word about a transfer, and looks at nothing
// else.
int DeviceConnectionCurl::on_waiting(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  auto& connection = *static_cast<DeviceConnectionCurl*>(self);
  return connection.guarded([&] { connection.keep_limits(); }) ? 0 : 1;
}

// The library would log in again by itself when the device has dropped the control connection, without the
// account: the next file would land in another partition. So there is only the first one.
curl_socket_t DeviceConnectionCurl::on_open(void* self, curlsocktype, curl_sockaddr* address) {
  auto& connection = *static_cast<DeviceConnectionCurl*>(self);
  if (connection.cancelled_) return CURL_SOCKET_BAD;
  const bool to_control_port = port_of(*address) == connection.login_.port;
  if (connection.logged_in_ && to_control_port) {
    connection.reconnect_refused_ = true;
    return CURL_SOCKET_BAD;
  }
  const curl_socket_t made = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  if (connection.logged_in_ || !to_control_port) return made;
  const std::lock_guard lock(connection.control_mutex_);
  connection.control_ = made;
  connection.heard_ = 0;
  return made;
}

int DeviceConnectionCurl::on_close(void* self, curl_socket_t socket) {
  auto& connection = *static_cast<DeviceConnectionCurl*>(self);
  const std::lock_guard lock(connection.control_mutex_);
  if (connection.control_ == socket) connection.control_ = CURL_SOCKET_BAD;
  return ::close(socket);
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
