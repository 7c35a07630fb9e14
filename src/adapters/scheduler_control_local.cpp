#include "adapters/scheduler_control_local.h"

#include <QDeadlineTimer>
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
#include "protocol/messages.h"

namespace qvrcom::adapters {

using platform::Reach;
using platform::SchedulerControl;
using platform::StopOutcome;
using protocol::JobState;
using protocol::ScheduledJob;
using protocol::SchedulerStatus;

namespace {

constexpr const char* kSocketName = "JOBPILOT control";
constexpr int kConnectLimit = 200;          // milliseconds
constexpr int kAnswerLimit = 5000;          // milliseconds; the scheduler answers in far less
constexpr int kLeaveLimit = 3000;           // milliseconds until a stopped program is gone
constexpr int kLookTime = 20;               // milliseconds
constexpr qsizetype kLongestRequest = 128;  // bytes
constexpr qsizetype kLongestAnswer = qsizetype{64} << 20U;

constexpr std::array<const char*, 6> kStates{
    "waiting", "running", "left alone", "finished", "finished, not listed yet", "damaged"};
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
    QJsonObject entry{{"name", text(job.name)},
                      {"description", text(job.description)},
                      {"state", kStates[static_cast<std::size_t>(job.state)]}};
    if (!job.reason.empty()) entry["reason"] = text(job.reason);
    jobs.append(entry);
  }
  return {{"version", text(status.version)},
          {"process", static_cast<qint64>(status.process)},
          {"running_job", text(status.running_job)},
          {"step", text(status.step)},
          {"bytes_done", static_cast<qint64>(status.bytes_done)},
          {"bytes_hinted", static_cast<qint64>(status.bytes_hinted)},
          {"jobs", jobs},
          {"jobs_left_out", static_cast<qint64>(status.jobs_left_out)}};
}

std::uint64_t count_from(const QJsonValue& json) {
  return static_cast<std::uint64_t>(std::max<qint64>(0, json.toInteger()));
}

SchedulerStatus status_from(const QJsonObject& json) {
  SchedulerStatus status;
  status.version = json["version"].toString().toStdString();
  status.process = json["process"].toInteger();
  status.running_job = json["running_job"].toString().toStdString();
  status.step = json["step"].toString().toStdString();
  status.bytes_done = count_from(json["bytes_done"]);
  status.bytes_hinted = count_from(json["bytes_hinted"]);
  status.jobs_left_out = count_from(json["jobs_left_out"]);
  for (const QJsonValue entry : json["jobs"].toArray()) {
    const std::size_t state = std::min(place_of(kStates, entry["state"].toString()), kStates.size() - 1);
    status.jobs.push_back({entry["name"].toString().toStdString(),
                           entry["description"].toString().toStdString(), static_cast<JobState>(state),
                           entry["reason"].toString().toStdString()});
  }
  return status;
}

// Nobody serves a path that has no socket, or one that refuses; a program whose queue is full is there.
Reach reach_of(QLocalSocket& socket, const QString& path) {
  socket.connectToServer(path);
  if (socket.waitForConnected(kConnectLimit)) return Reach::kAnswered;
  const auto error = socket.error();
  const bool nobody =
      error == QLocalSocket::ServerNotFoundError || error == QLocalSocket::ConnectionRefusedError;
  return nobody ? Reach::kNotRunning : Reach::kSilent;
}

QByteArray line_from(QLocalSocket& socket) {
  const QDeadlineTimer end(kAnswerLimit);
  QByteArray line;
  while (!line.contains('\n') && line.size() < kLongestAnswer &&
         socket.waitForReadyRead(static_cast<int>(end.remainingTime())))
    line += socket.readAll();
  return line;
}

// One request, one answer; an empty object when there is none.
Reach ask(const QString& path, const std::string& request, QJsonObject& answer) {
  QLocalSocket socket;
  const Reach reach = reach_of(socket, path);
  if (reach != Reach::kAnswered) return reach;
  socket.write((request + '\n').c_str());
  answer = QJsonDocument::fromJson(line_from(socket)).object();
  if (!answer.isEmpty()) return Reach::kAnswered;
  QLocalSocket again;  // a program that was about to leave has gone by now
  return reach_of(again, path) == Reach::kNotRunning ? Reach::kNotRunning : Reach::kSilent;
}

// The answer to a request without its line end.
QJsonObject answer_to(const QString& request, SchedulerControl& target) {
  const QString stop_job = "stop-job ";
  if (request == "status") {
    const auto status = target.status().status;
    return status ? to_json(*status) : QJsonObject{};
  }
  if (request == "stop") return {{"stopped", target.stop() == Reach::kAnswered}};
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

Reach SchedulerControlLocal::request(const std::string& request, QJsonObject& answer) const {
  const Reach reach = ask(local_socket_path(run_folder_, runtime_folder_, kSocketName), request, answer);
  if (reach != Reach::kNotRunning) return reach;
  // It is just coming up, or another maker's scheduler, which has no such socket.
  return socket_is_served(local_socket_path(run_folder_, runtime_folder_, protocol::kJobPilotTitle))
             ? Reach::kSilent
             : reach;
}

platform::StatusAnswer SchedulerControlLocal::status() {
  QJsonObject answer;
  const Reach reach = request("status", answer);
  if (reach != Reach::kAnswered) return {reach, {}};
  if (!answer.contains("process")) return {Reach::kSilent, {}};
  return {reach, status_from(answer)};
}

Reach SchedulerControlLocal::stop() {
  QJsonObject answer;
  const Reach reach = request("stop", answer);
  if (reach != Reach::kAnswered) return reach;
  const QString path = local_socket_path(run_folder_, runtime_folder_, kSocketName);
  for (int waited = 0; waited < kLeaveLimit; waited += kLookTime) {
    if (!socket_is_served(path)) return Reach::kAnswered;
    QThread::msleep(kLookTime);
  }
  return Reach::kSilent;
}

StopOutcome SchedulerControlLocal::stop_job(const std::string& job_name) {
  // A line end would be a second request; no job has one in its name.
  if (base::has_control_character(job_name)) return StopOutcome::kUnknownJob;
  QJsonObject answer;
  const Reach reach = request("stop-job " + job_name, answer);
  if (reach == Reach::kNotRunning) return StopOutcome::kNotRunning;
  if (reach == Reach::kSilent || !answer.contains("outcome")) return StopOutcome::kSilent;
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
