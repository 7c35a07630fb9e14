#include "adapters/scheduler_control_local.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>
#include <algorithm>
#include <array>

#include "adapters/local_socket.h"
#include "base/text.h"

namespace qvrcom::adapters {

using platform::JobState;
using platform::ScheduledJob;
using platform::SchedulerControl;
using platform::SchedulerStatus;
using platform::StopOutcome;

namespace {

constexpr const char* kSocketName = "JOBPILOT control";
constexpr int kConnectLimit = 200;          // milliseconds
constexpr int kAnswerLimit = 5000;          // milliseconds; a session ends in far less
constexpr int kLeaveLimit = 3000;           // milliseconds until a stopped program is gone
constexpr int kLookTime = 20;               // milliseconds
constexpr qsizetype kLongestRequest = 128;  // bytes
constexpr qsizetype kLongestAnswer = qsizetype{64} << 20U;

constexpr std::array<const char*, 5> kStates{"waiting", "running", "left alone", "finished", "damaged"};
constexpr std::array<const char*, 3> kStops{"stopped", "taken out", "unknown job"};

// The place of a word in a table; its length when it is not there.
template <std::size_t Size>
std::size_t place_of(const std::array<const char*, Size>& words, const QString& word) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](const char* each) { return word == QLatin1String(each); });
  return static_cast<std::size_t>(found - words.begin());
}

QString text(const std::string& value) {
  return QString::fromStdString(value);
}

QJsonObject to_json(const SchedulerStatus& status) {
  QJsonArray jobs;
  for (const ScheduledJob& job : status.jobs) {
    jobs.append(QJsonObject{{"name", text(job.name)},
                            {"description", text(job.description)},
                            {"state", kStates[static_cast<std::size_t>(job.state)]}});
  }
  return {{"version", text(status.version)},
          {"process", static_cast<qint64>(status.process)},
          {"running_job", text(status.running_job)},
          {"step", text(status.step)},
          {"bytes_done", static_cast<qint64>(status.bytes_done)},
          {"bytes_hinted", static_cast<qint64>(status.bytes_hinted)},
          {"jobs", jobs}};
}

SchedulerStatus status_from(const QJsonObject& json) {
  SchedulerStatus status;
  status.version = json["version"].toString().toStdString();
  status.process = json["process"].toInteger();
  status.running_job = json["running_job"].toString().toStdString();
  status.step = json["step"].toString().toStdString();
  status.bytes_done = static_cast<std::uint64_t>(std::max<qint64>(0, json["bytes_done"].toInteger()));
  status.bytes_hinted = static_cast<std::uint64_t>(std::max<qint64>(0, json["bytes_hinted"].toInteger()));
  for (const QJsonValue entry : json["jobs"].toArray()) {
    const std::size_t state = std::min(place_of(kStates, entry["state"].toString()), kStates.size() - 1);
    status.jobs.push_back({entry["name"].toString().toStdString(),
                           entry["description"].toString().toStdString(), static_cast<JobState>(state)});
  }
  return status;
}

// One request, one answer; an empty object when nobody answers in time.
QJsonObject ask(const QString& path, const std::string& request) {
  QLocalSocket socket;
  socket.connectToServer(path);
  if (!socket.waitForConnected(kConnectLimit)) return {};
  socket.write((request + '\n').c_str());
  QByteArray answer;
  while (!answer.contains('\n') && answer.size() < kLongestAnswer && socket.waitForReadyRead(kAnswerLimit))
    answer += socket.readAll();
  return QJsonDocument::fromJson(answer).object();
}

// The answer to a request without its line end.
QJsonObject answer_to(const QString& request, SchedulerControl& target) {
  const QString stop_job = "stop-job ";
  if (request == "status") {
    const auto status = target.status();
    return status ? to_json(*status) : QJsonObject{};
  }
  if (request == "stop") return {{"stopped", target.stop()}};
  if (request.startsWith(stop_job)) {
    const auto outcome =
        static_cast<std::size_t>(target.stop_job(request.mid(stop_job.size()).toStdString()));
    return {{"outcome", kStops[std::min(outcome, kStops.size() - 1)]}};
  }
  return {{"error", "unknown request"}};
}

void serve(QLocalSocket* peer, SchedulerControl& target) {
  if (!peer->canReadLine()) {
    if (peer->bytesAvailable() >= kLongestRequest) peer->abort();
    return;
  }
  const QByteArray line = peer->readLine(kLongestRequest);
  if (!line.endsWith('\n')) return peer->abort();
  const QJsonObject answer = answer_to(QString::fromUtf8(line.chopped(1)), target);
  peer->write(QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n');
  peer->disconnectFromServer();  // after the last byte has gone
}

void welcome(QLocalSocket* peer, SchedulerControl& target) {
  peer->setReadBufferSize(2 * kLongestRequest);
  QObject::connect(peer, &QLocalSocket::readyRead, peer, [peer, &target] { serve(peer, target); });
  QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
  QTimer::singleShot(kAnswerLimit, peer, [peer] { peer->abort(); });
  if (peer->bytesAvailable() > 0) serve(peer, target);
}

}  // namespace

SchedulerControlLocal::SchedulerControlLocal(std::string run_folder, std::string runtime_folder)
    : run_folder_(std::move(run_folder)), runtime_folder_(std::move(runtime_folder)) {}

QJsonObject SchedulerControlLocal::request(const std::string& request) const {
  return ask(local_socket_path(run_folder_, runtime_folder_, kSocketName), request);
}

std::optional<SchedulerStatus> SchedulerControlLocal::status() {
  const QJsonObject answer = request("status");
  if (!answer.contains("process")) return std::nullopt;
  return status_from(answer);
}

bool SchedulerControlLocal::stop() {
  if (!request("stop")["stopped"].toBool()) return false;
  const QString path = local_socket_path(run_folder_, runtime_folder_, kSocketName);
  for (int waited = 0; waited < kLeaveLimit && socket_is_served(path); waited += kLookTime)
    QThread::msleep(kLookTime);
  return true;
}

StopOutcome SchedulerControlLocal::stop_job(const std::string& job_name) {
  // A line end would be a second request; no job has one in its name.
  if (base::has_control_character(job_name)) return StopOutcome::kUnknownJob;
  const QJsonObject answer = request("stop-job " + job_name);
  if (!answer.contains("outcome")) return StopOutcome::kNotReachable;
  return static_cast<StopOutcome>(
      std::min(place_of(kStops, answer["outcome"].toString()), kStops.size() - 1));
}

struct SchedulerControlServer::Served {
  OwnedServer owned;
  explicit Served(const QString& path) : owned(path) {}
};

SchedulerControlServer::SchedulerControlServer(const std::string& run_folder,
                                               const std::string& runtime_folder, SchedulerControl& target)
    : served_(std::make_unique<Served>(local_socket_path(run_folder, runtime_folder, kSocketName))) {
  QLocalServer& server = served_->owned.server();
  QObject::connect(&server, &QLocalServer::newConnection, &server, [&server, &target] {
    while (QLocalSocket* peer = server.nextPendingConnection())
      welcome(peer, target);
  });
}

SchedulerControlServer::~SchedulerControlServer() = default;

}  // namespace qvrcom::adapters
