#include "adapters/ftp_session_curl.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <utility>

#include "base/text.h"

namespace qvrcom::adapters {
namespace {

using base::Fault;
namespace device_fault = platform::device_fault;
using std::chrono::milliseconds;

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

bool is_host(const std::string& host) {
  return !host.empty() && std::all_of(host.begin(), host.end(), [](char c) {
    return base::is_letter_or_digit(c) || std::string_view(".-_:").find(c) != std::string_view::npos ||
           (static_cast<unsigned char>(c) & 0x80U) != 0;
  });
}

class CommandList {
 public:
  // The library hangs up when a command is refused, unless an asterisk stands before it.
  explicit CommandList(const std::string& command)
      : list_(command.empty() ? nullptr : curl_slist_append(nullptr, ('*' + command).c_str())) {}
  ~CommandList() { curl_slist_free_all(list_); }
  CommandList(const CommandList&) = delete;
  CommandList& operator=(const CommandList&) = delete;
  curl_slist* get() const { return list_; }

 private:
  curl_slist* list_;
};

bool is_transfer(const FtpStep& step) {
  return step.received != nullptr || step.sent != nullptr;
}

}  // namespace

FtpSessionCurl::FtpSessionCurl(const platform::DeviceLimits& limits, platform::TransferProgress progress)
    : limits_(limits), progress_(std::move(progress)) {
  if (multi_ == nullptr || easy_ == nullptr) throw Fault("The FTP library cannot be started");
}

FtpSessionCurl::~FtpSessionCurl() {
  control_.hang_up();
  curl_easy_cleanup(easy_);
  curl_multi_cleanup(multi_);
}

void FtpSessionCurl::login(const platform::DeviceLogin& login) {
  const std::string tried =
      "Login as " + login.user + " at " + login.host + " port " + std::to_string(login.port);
  if (!is_host(login.host)) throw Fault(device_fault::kNoAddress, tried);
  login_ = login;
  const bool bare_ipv6 = login.host.find(':') != std::string::npos;
  place_ =
      "ftp://" + (bare_ipv6 ? '[' + login.host + ']' : login.host) + ':' + std::to_string(login.port) + '/';
  session_began_ = MonotonicClock::now();
  run({tried});
  logged_in_ = true;
}

std::string FtpSessionCurl::ask(const FtpStep& step) {
  if (base::has_control_character(step.command)) throw Fault("A name holds a control character", step.tried);
  need_alive(step.tried);
  run(step);
  return replies_.last();
}

std::uint64_t FtpSessionCurl::need(const FtpStep& step) {
  const std::string reply = ask(step);
  if (refuses(reply)) throw Fault(said(reply), step.tried);
  return bytes_;
}

void FtpSessionCurl::leave() {
  if (!logged_in_) return;
  need({"Leaving the device", "QUIT"});
  logged_in_ = false;
  control_.hang_up();
}

bool FtpSessionCurl::alive() const {
  return in_step_ && !cancelled_ && control_.open() && control_.silent();
}

void FtpSessionCurl::cancel() {
  cancelled_ = true;
  curl_multi_wakeup(multi_);
  control_.hang_up();  // the library may be waiting for a reply, deaf to everything else
}

std::string FtpSessionCurl::said(const std::string& words) const {
  if (!logged_in_ && too_short_to_mask(login_.password))
    return std::string(device_fault::kLoginRefused) + "; its words are left out";
  return masked(words, login_.password).substr(0, kLongestReply);
}

// Ends with the reply that completes the step, 2yz, or one that refuses it.
void FtpSessionCurl::run(const FtpStep& step) {
  using Kind = StepReplies::Step;
  step_ = step;
  replies_ = StepReplies(!logged_in_ ? Kind::kLogin : is_transfer(step) ? Kind::kTransfer : Kind::kCommand);
  trouble_.reset();
  bytes_ = 0;
  const CommandList commands(step.command);
  prepare();
  curl_easy_setopt(easy_, CURLOPT_QUOTE, commands.get());
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
  if (trouble_) throw Fault(trouble_->description(), step.tried + ". " + trouble_->detail());
  const bool settled = is_kind(replies_.last(), '2') || refuses(replies_.last());
  if (code != CURLE_OK || !replies_.stray().empty() || !settled) fail(code);
  in_step_ = true;
}

// All options anew for every step, so that none of the step before is left. The connection stays.
void FtpSessionCurl::prepare() {
  const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(easy_, option, value); };
  curl_easy_reset(easy_);
  const std::string& name = step_.remote_name;
  char* escaped = curl_easy_escape(easy_, name.data(), static_cast<int>(name.size()));
  set(CURLOPT_URL, (place_ + (name.empty() ? "" : escaped)).c_str());
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
  // The library would stop at the length that was announced, while the counters of a device grow.
  if (step_.received != nullptr) set(CURLOPT_IGNORE_CONTENT_LENGTH, 1L);
  if (!is_transfer(step_)) set(CURLOPT_NOBODY, 1L);
  if (step_.sent != nullptr) {
    set(CURLOPT_UPLOAD, 1L);
    set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(step_.sent->length()));
  }
  prepare_callbacks();
}

void FtpSessionCurl::prepare_callbacks() {
  const auto set = [this](CURLoption function, auto* callback, CURLoption data) {
    curl_easy_setopt(easy_, function, callback);
    curl_easy_setopt(easy_, data, static_cast<void*>(this));
  };
  set(CURLOPT_HEADERFUNCTION, &on_reply, CURLOPT_HEADERDATA);
  set(CURLOPT_WRITEFUNCTION, &on_received, CURLOPT_WRITEDATA);
  set(CURLOPT_READFUNCTION, &on_wanted, CURLOPT_READDATA);
  set(CURLOPT_XFERINFOFUNCTION, &on_waiting, CURLOPT_XFERINFODATA);
  set(CURLOPT_OPENSOCKETFUNCTION, &on_open, CURLOPT_OPENSOCKETDATA);
  set(CURLOPT_CLOSESOCKETFUNCTION, &on_close, CURLOPT_CLOSESOCKETDATA);
  curl_easy_setopt(easy_, CURLOPT_NOPROGRESS, 0L);
}

CURLcode FtpSessionCurl::drive() {
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
void FtpSessionCurl::need_alive(const std::string& tried) {
  if (alive()) return;
  const bool was_in_step = std::exchange(in_step_, false);
  control_.hang_up();
  if (cancelled_) throw platform::SessionCancelled(tried);
  if (!control_.open()) throw Fault(device_fault::kClosed, tried);
  if (!was_in_step) throw Fault("The connection is given up", tried);
  const std::string words = control_.unread();
  if (words.empty())
    throw Fault(std::string(device_fault::kClosed) + ", or said more than it was asked", tried);
  throw Fault("The device said, without having been asked, " + said(words), tried);
}

void FtpSessionCurl::keep_limits() const {
  const auto now = MonotonicClock::now();
  if (cancelled_) throw platform::SessionCancelled(step_.tried);
  if (now - session_began_ > limits_.session)
    throw Fault("The session took longer than " + time_text(limits_.session), step_.tried);
  if (!logged_in_ && now - step_began_ > limits_.connect)
    throw Fault(std::string(device_fault::kNoAnswer) + " within " + time_text(limits_.connect), step_.tried);
  if (now - last_byte_ > limits_.idle)
    throw Fault(std::string(device_fault::kSilence) + " for " + time_text(limits_.idle), step_.tried);
}

// A refusal of the device says more than the library's code: a step that is answered 421 would read as a
// timeout.
void FtpSessionCurl::fail(CURLcode code) {
  const std::string& stray = replies_.stray();
  in_step_ = refuses(replies_.last()) && stray.empty();
  if (in_step_) throw Fault(said(replies_.last()), step_.tried);
  if (!stray.empty()) throw Fault("The device gave an answer that is none: " + said(stray), step_.tried);
  if (reconnect_refused_) throw Fault(device_fault::kClosed, step_.tried);
  if (code == CURLE_OK) throw Fault("The device did not say how it ended", step_.tried);
  throw Fault(text_of(code),
              bytes_ == 0 ? step_.tried : step_.tried + ", after " + std::to_string(bytes_) + " bytes");
}

void FtpSessionCurl::moved(std::size_t bytes) {
  touched();
  bytes_ += bytes;
  if (progress_) progress_(bytes_);
}

std::size_t FtpSessionCurl::on_reply(char* text, std::size_t size, std::size_t count, void* self) {
  auto& session = *static_cast<FtpSessionCurl*>(self);
  session.touched();
  session.control_.heard(size * count);
  session.replies_.hear({text, size * count});
  return size * count;
}

std::size_t FtpSessionCurl::on_received(char* bytes, std::size_t size, std::size_t count, void* self) {
  auto& session = *static_cast<FtpSessionCurl*>(self);
  const std::size_t length = size * count;
  const bool kept = session.guarded([&] {
    session.moved(length);
    if (session.bytes_ > session.limits_.largest_file)
      throw Fault("The file is larger than " + std::to_string(session.limits_.largest_file) + " bytes",
                  "The rest was not fetched.");
    if (session.step_.received != nullptr) session.step_.received->write({bytes, length});
  });
  return kept ? length : 0;
}

std::size_t FtpSessionCurl::on_wanted(char* buffer, std::size_t size, std::size_t count, void* self) {
  auto& session = *static_cast<FtpSessionCurl*>(self);
  std::size_t got = 0;
  const bool read = session.guarded([&] {
    if (session.step_.sent != nullptr) got = session.step_.sent->read(buffer, size * count);
    session.moved(got);
  });
  return read ? got : CURL_READFUNC_ABORT;
}

// The library asks once a second while it waits for the last word about a transfer, and looks at nothing
// else.
int FtpSessionCurl::on_waiting(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  auto& session = *static_cast<FtpSessionCurl*>(self);
  return session.guarded([&] { session.keep_limits(); }) ? 0 : 1;
}

// The library would log in again by itself when the device has dropped the control connection, without the
// account: the next file would land in another partition. So there is only the first one.
curl_socket_t FtpSessionCurl::on_open(void* self, curlsocktype, curl_sockaddr* address) {
  auto& session = *static_cast<FtpSessionCurl*>(self);
  if (session.cancelled_) return CURL_SOCKET_BAD;
  const bool to_control_port = port_of(*address) == session.login_.port;
  if (session.logged_in_ && to_control_port) {
    session.reconnect_refused_ = true;
    return CURL_SOCKET_BAD;
  }
  const curl_socket_t made = ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  if (!session.logged_in_ && to_control_port) session.control_.take(made);
  return made;
}

int FtpSessionCurl::on_close(void* self, curl_socket_t socket) {
  return static_cast<FtpSessionCurl*>(self)->control_.close(socket);
}

}  // namespace qvrcom::adapters
