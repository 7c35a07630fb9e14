#pragma once

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <stdexcept>
#include <string>
#include <vector>

namespace qvrcom::adapters {

// A simulated device on a free port, for as long as the object lives.
class SimulatedDevice {
 public:
  static constexpr const char* kPassword = "open sesame";

  explicit SimulatedDevice(const std::vector<std::string>& faults = {}) {
    QStringList arguments{"--password",     kPassword, "--clock", "2026-11-15 12:10:05",
                          "--clock-stands", "--log",   log_file()};
    for (const std::string& fault : faults)
      arguments << "--fault" << QString::fromStdString(fault);
    process_.setStandardErrorFile(QProcess::nullDevice());
    process_.start(QVRCOM_SIMULATED_DEVICE, arguments);
    if (!process_.waitForReadyRead(20000)) throw std::runtime_error("the simulated device does not start");
    const QByteArray greeting = process_.readLine().trimmed();
    port_ = greeting.mid(greeting.lastIndexOf(':') + 1).toUShort();
  }
  ~SimulatedDevice() {
    process_.terminate();
    process_.waitForFinished();
  }

  std::uint16_t port() const { return port_; }

  // What the device was told, "part3 RETR allstats.csv 226".
  std::vector<std::string> commands() const {
    QFile file(log_file());
    std::vector<std::string> lines;
    if (!file.open(QIODevice::ReadOnly)) return lines;
    for (const QByteArray& line : file.readAll().split('\n')) {
      if (!line.isEmpty()) lines.push_back(line.mid(line.indexOf(' ') + 1).toStdString());
    }
    return lines;
  }

 private:
  QString log_file() const { return folder_.filePath("commands.log"); }

  QTemporaryDir folder_;
  QProcess process_;
  std::uint16_t port_ = 0;
};

}  // namespace qvrcom::adapters
