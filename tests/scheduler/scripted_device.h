#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/device_connection.h"
#include "platform/dialer.h"
#include "platform/terminal_relay.h"

namespace qvrcom::scheduler {

// A device in memory, shared by the connections that are made to it. It notes what it is told ("get
// allstats.csv > \data\...") and answers as it is told to; its own state alone is locked.
class ScriptedDevice : public platform::DeviceConnections,
                       public platform::TerminalRelays,
                       public platform::Dialer {
 public:
  struct Trouble {
    std::string at;     // the beginning of an operation
    std::string reply;  // "" does it all the same
    bool cut = false;   // the connection is gone afterwards
    int times = 1;
  };
  std::vector<Trouble> troubles;
  std::string fails_at;  // the beginning of an operation, "get allstats"
  std::string reply;     // what it then says; "" hangs until it is cancelled
  std::atomic<int> reached_hang{0};
  std::multiset<std::string>
      empty;                      // local files; each fetch into one of them takes it out and brings nothing
  std::uint64_t least = 0;        // bytes that a fetch had to bring at least
  std::atomic<bool> deaf{false};  // hangs on, cancelled or not
  std::vector<std::chrono::milliseconds> session_limits;  // of each connection

  std::vector<std::string> told() const {
    const std::lock_guard lock(mutex_);
    return told_;
  }

  std::unique_ptr<platform::DeviceConnection> make(const platform::DeviceLimits& limits,
                                                   platform::TransferProgress progress) override {
    session_limits.push_back(limits.session);
    return std::make_unique<Connection>(*this, std::move(progress));
  }

  std::unique_ptr<platform::TerminalRelay> make(platform::TransferProgress progress) override {
    return std::make_unique<Relay>(*this, std::move(progress));
  }

  void dial(const std::string& program, const std::string& connection, const std::string& number,
            std::chrono::milliseconds, const std::atomic<bool>& cancelled) override {
    hear("dial " + program + " " + connection + " " + number, cancelled);
  }

 private:
  class Connection : public platform::DeviceConnection {
   public:
    Connection(ScriptedDevice& device, platform::TransferProgress progress)
        : device_(device), progress_(std::move(progress)) {}
    void login(const platform::DeviceLogin& login) override {
      hear("login " + login.user + ":" + login.password + "@" + login.host + ":" +
           std::to_string(login.port));
    }
    void account(const std::string& name) override { hear("account " + name); }
    std::uint64_t get(const std::string& remote, const std::string& local, std::uint64_t least) override {
      progress_(100);
      hear("get " + remote + " > " + local);
      const auto found = device_.empty.find(local);
      device_.least = std::max(device_.least, least);
      if (found == device_.empty.end()) return 1234;
      device_.empty.erase(found);
      if (least > 0) throw platform::IncompleteFile("Nothing came", "Trying to get " + remote, 1234);
      return 0;
    }
    std::uint64_t put(const std::string& local, const std::string& remote) override {
      hear("put " + local + " > " + remote);
      return 1;
    }
    void remove(const std::string& remote) override { hear("remove " + remote); }
    void close() override { hear("close"); }
    bool alive() const override { return !cut_ && !cancelled_; }
    void cancel() override { cancelled_ = true; }

   private:
    void hear(const std::string& operation) { device_.hear(operation, cancelled_, &cut_); }

    ScriptedDevice& device_;
    platform::TransferProgress progress_;
    std::atomic<bool> cancelled_{false};
    bool cut_ = false;
  };

  // A terminal that attaches at once and leaves at once.
  class Relay : public platform::TerminalRelay {
   public:
    Relay(ScriptedDevice& device, platform::TransferProgress progress)
        : device_(device), progress_(std::move(progress)) {}
    platform::TerminalTraffic hold(const platform::TerminalOrder& order,
                                   const std::function<void(platform::TerminalStage)>& reached) override {
      device_.hear("telnet " + order.job_name + " " + order.host + ":" + std::to_string(order.port),
                   cancelled_);
      reached(platform::TerminalStage::kConnected);
      reached(platform::TerminalStage::kAttached);
      progress_(100);
      device_.hear("attached", cancelled_);
      return {platform::TerminalEnd::kHungUp, 100, 1};
    }
    void cancel() override { cancelled_ = true; }

   private:
    ScriptedDevice& device_;
    platform::TransferProgress progress_;
    std::atomic<bool> cancelled_{false};
  };

  void hear(const std::string& operation, const std::atomic<bool>& cancelled, bool* cut = nullptr) {
    {
      const std::lock_guard lock(mutex_);
      told_.push_back(operation);
    }
    for (Trouble& trouble : troubles) {
      if (trouble.times == 0 || !operation.starts_with(trouble.at)) continue;
      --trouble.times;
      if (cut != nullptr) *cut = trouble.cut;
      if (!trouble.reply.empty()) throw fault(trouble.reply, operation);
      break;
    }
    if (fails_at.empty() || !operation.starts_with(fails_at)) return;
    if (!reply.empty()) throw fault(reply, operation);
    ++reached_hang;
    while (!cancelled || deaf)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    throw platform::SessionCancelled(operation);
  }

  static base::Fault fault(const std::string& reply, const std::string& operation) {
    return base::Fault(reply, "Trying to " + operation.substr(0, operation.find(':')));  // never the password
  }

  mutable std::mutex mutex_;
  std::vector<std::string> told_;
};

}  // namespace qvrcom::scheduler
