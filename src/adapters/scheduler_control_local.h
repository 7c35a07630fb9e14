#pragma once

#include <QJsonObject>
#include <memory>
#include <string>

#include "platform/scheduler_control.h"

namespace qvrcom::adapters {

// Asks the running scheduler program over its control socket. The wire is told in docs/protocol.md.
class SchedulerControlLocal : public platform::SchedulerControl {
 public:
  // Native paths, as for MessageChannelLocal.
  SchedulerControlLocal(std::string run_folder, std::string runtime_folder);

  platform::StatusAnswer status() override;
  platform::Reach stop() override;
  platform::StopOutcome stop_job(const std::string& job_name) override;

 private:
  platform::Reach request(const std::string& request, QJsonObject& answer) const;

  std::string run_folder_;
  std::string runtime_folder_;
};

// The scheduler program's end of that socket: hands each request to `target` while events are pumped.
class SchedulerControlServer {
 public:
  // Fault when another live program has the socket.
  SchedulerControlServer(const std::string& run_folder, const std::string& runtime_folder,
                         platform::SchedulerControl& target);
  ~SchedulerControlServer();

 private:
  struct Served;
  std::unique_ptr<Served> served_;
};

}  // namespace qvrcom::adapters
