#include <CLI/CLI.hpp>
#include <QDate>
#include <QTime>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/invocation.h"
#include "cli/json_text.h"
#include "cli/site_answers.h"
#include "devicefiles/bytes.h"
#include "requests/system_request.h"

namespace qvrcom::cli {
namespace {

namespace operation = session::operation;
using requests::RequestResult;
using requests::SystemAnswer;
using requests::SystemOrder;

struct SystemOptions : SiteOptions {
  bool reset = false;
  bool reset_only = false;
  std::string output;  // native path, "" for none
  std::string moment;  // to set the clock to: "now", "2026-11-15 12:10:05", "" to read it
  int partition = 1;
  std::string file;  // native path
  bool force = false;
};

using Run = SiteAnswer (*)(CommandContext&, const sitebook::SiteRecord&, const SystemOptions&);

// Runs the order and tells what the answer lacks.
SystemAnswer run_order(CommandContext& context, const SystemOrder& order) {
  SystemAnswer answer = requests::SystemRequest(context.requests).run(order);
  if (!answer.shortfall.empty()) context.console.tell(answer.shortfall);
  return answer;
}

bool is_done(const SystemAnswer& answer) {
  return answer.result == RequestResult::kDone;
}

QJsonValue record_json(const std::string& record) {
  if (record.empty()) return {};
  return QString::fromLatin1(QByteArray::fromStdString(record).toHex());
}

const char* log_operation(const SystemOptions& options) {
  if (options.reset_only) return operation::kResetLog;
  return options.reset ? operation::kGetAndResetLog : operation::kGetLog;
}

SiteAnswer log(CommandContext& context, const sitebook::SiteRecord& site, const SystemOptions& options) {
  SystemOrder order{.site = site, .operation = log_operation(options), .keeps_log = options.output.empty()};
  if (!options.output.empty()) order.save_log_as = context.files.from_native(options.output);
  SystemAnswer answer = run_order(context, order);
  SiteAnswer shown{.result = answer.result};
  if (options.reset_only) return shown;
  const bool saved = is_done(answer) && !options.output.empty();
  shown.values = {{"log", QJsonValue()}, {"file", saved ? json(options.output) : QJsonValue()}};
  if (!is_done(answer)) return shown;
  shown.lines = {.key = "log", .text = std::move(answer.log), .for_people = !saved};
  // A log that nobody could read may be the only one there is.
  if (!saved) {
    shown.written = [&context](bool whole) { requests::SystemRequest(context.requests).end_log(whole); };
  }
  return shown;
}

SiteAnswer read_clock(CommandContext& context, const sitebook::SiteRecord& site) {
  const SystemAnswer answer = run_order(context, {.site = site, .operation = operation::kGetDateAndTime});
  const base::LocalTime pc = is_done(answer) ? answer.arrived : context.clock.now();
  SiteAnswer shown{.result = answer.result};
  shown.values = {{"device-clock", is_done(answer) ? json_moment(answer.clock) : QJsonValue()},
                  {"pc-clock", json_moment(pc)},
                  {"record", record_json(answer.record)}};
  if (is_done(answer))
    shown.rows = {{"Device clock", base::clock_text(answer.clock)},
                  {"PC clock", base::clock_text(pc)},
                  {"Difference", requests::clock_difference(answer.clock, pc)}};
  return shown;
}

// Nothing for a text that is no moment, or none that a device's clock can hold.
std::optional<base::LocalTime> parse_moment(const std::string& text) {
  const QString words = QString::fromStdString(text);
  const QDate date = QDate::fromString(words.section(' ', 0, 0), "yyyy-MM-dd");
  const QTime time = QTime::fromString(words.section(' ', 1), "HH:mm:ss");
  if (!date.isValid() || !time.isValid()) return {};
  const base::LocalTime moment =
      base::local_time(date.year(), static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                       time.hour(), time.minute(), time.second());
  const bool fits = devicefiles::moment_of(0) <= moment && moment <= devicefiles::moment_of(UINT32_MAX);
  return fits ? std::optional(moment) : std::nullopt;
}

SiteAnswer set_clock(CommandContext& context, const sitebook::SiteRecord& site, const std::string& text) {
  const base::LocalTime moment = parse_moment(text).value_or(context.clock.now());
  const SystemAnswer answer =
      run_order(context, {.site = site, .operation = operation::kSetDateAndTime, .clock = moment});
  SiteAnswer shown{.result = answer.result};
  shown.values = {{"set-to", is_done(answer) ? json_moment(moment) : QJsonValue()}};
  if (is_done(answer)) shown.rows = {{"Device clock set to", base::clock_text(moment)}};
  return shown;
}

SiteAnswer clock(CommandContext& context, const sitebook::SiteRecord& site, const SystemOptions& options) {
  return options.moment.empty() ? read_clock(context, site) : set_clock(context, site, options.moment);
}

// One value of the system information.
struct InformationRow {
  const char* key;
  const char* label;
  QJsonValue (*value)(const devicefiles::SystemInformation&);
  const char* unit = "";
};

QJsonValue number(std::uint32_t value) {
  return static_cast<qint64>(value);
}

using Information = devicefiles::SystemInformation;
const InformationRow kInformation[] = {
    {"firmware", "Firmware", [](const Information& i) { return json(i.firmware); }},
    {"serial-number", "Serial number", [](const Information& i) { return json(i.serial_number); }},
    {"model", "Model", [](const Information& i) { return json(i.model); }},
    {"machine-type", "Machine type", [](const Information& i) { return number(i.machine_type); }},
    {"lines", "Lines", [](const Information& i) { return number(i.lines); }},
    {"partitions", "Partitions", [](const Information& i) { return number(i.partitions); }},
    {"memory", "Message memory", [](const Information& i) { return number(i.memory); }, " samples"},
    {"memory-used", "Used", [](const Information& i) { return number(i.memory_used); }, " samples"},
    {"uptime", "Running for", [](const Information& i) { return number(i.uptime); }, " s"},
    {"device-clock", "Device clock", [](const Information& i) { return json_moment(i.moment); }},
};

SiteAnswer information(CommandContext& context, const sitebook::SiteRecord& site, const SystemOptions&) {
  const SystemAnswer answer =
      run_order(context, {.site = site, .operation = operation::kGetSystemInformation});
  SiteAnswer shown{.result = answer.result};
  for (const InformationRow& row : kInformation) {
    shown.values[row.key] = is_done(answer) ? row.value(answer.information) : QJsonValue();
    const std::string text = row.value(answer.information).toVariant().toString().toStdString();
    if (is_done(answer)) shown.rows.push_back({row.label, text + row.unit});
  }
  shown.values["record"] = record_json(answer.record);
  return shown;
}

QJsonValue seconds_json(const base::TimeRecord& time) {
  if (time == base::TimeRecord{}) return {};
  return QString::fromStdString(time.minutes).toInt() * 60 + QString::fromStdString(time.seconds).toInt();
}

std::string minutes_text(const base::TimeRecord& time) {
  return time.minutes + ":" + (time.seconds.size() < 2 ? "0" : "") + time.seconds;
}

SiteAnswer partition(CommandContext& context, const sitebook::SiteRecord& site,
                     const SystemOptions& options) {
  const SystemAnswer answer = run_order(context, {.site = site,
                                                  .operation = operation::kRetrieveMessageIndex,
                                                  .partition = std::to_string(options.partition)});
  const auto& [recorded, room] = answer.partition_times;
  SiteAnswer shown{.result = answer.result};
  shown.values = {{"partition", options.partition},
                  {"recorded-seconds", seconds_json(recorded)},
                  {"room-seconds", seconds_json(room)}};
  if (is_done(answer)) shown.rows = {{"Recorded", minutes_text(recorded)}, {"Room for", minutes_text(room)}};
  return shown;
}

template <const char* const& Operation>
SiteAnswer send_file(CommandContext& context, const sitebook::SiteRecord& site,
                     const SystemOptions& options) {
  return {run_order(context, {.site = site,
                              .operation = Operation,
                              .file = context.files.from_native(options.file),
                              .force = options.force})
              .result};
}

struct SystemCommand {
  CLI::App* app;
  std::shared_ptr<SystemOptions> options;
};

// A command that asks one site or several.
SystemCommand add_command(CLI::App& system, Invocation& invocation, const char* name, const char* about,
                          Run run) {
  SystemCommand added{system.add_subcommand(name, about), std::make_shared<SystemOptions>()};
  add_site_options(*added.app, *added.options, invocation);
  added.app->callback([options = added.options, run, &invocation] {
    invocation.command = [options, run](CommandContext& context) {
      return ask_sites(context, *options,
                       [&](auto& each, const auto& site) { return run(each, site, *options); });
    };
  });
  return added;
}

void add_log(CLI::App& system, Invocation& invocation) {
  const auto [command, options] = add_command(system, invocation, "log", "Fetch the device's log", log);
  CLI::Option* reset = command->add_flag("--reset", options->reset, "Start it anew afterwards");
  CLI::Option* output =
      command->add_option("--output", options->output, "Write it to FILE, as it came")->type_name("FILE");
  refuse_empty(*output, kNamesNoFile);
  command->add_flag("--reset-only", options->reset_only, "Start it anew without fetching it")
      ->excludes(reset)
      ->excludes(output);
  command->parse_complete_callback([options = options] {
    if (!options->output.empty() && options->sites.size() > 1)
      throw CLI::ValidationError("--output", "One file takes the log of one site");
  });
}

std::string check_moment(const std::string& text) {
  if (text == "now" || parse_moment(text)) return {};
  return "\"" + text + "\" is neither \"now\" nor a moment of 2000 to 2135 such as \"2026-11-15 12:10:05\"";
}

void add_clock(CLI::App& system, Invocation& invocation) {
  const auto [command, options] =
      add_command(system, invocation, "clock", "Show or set the device's clock", clock);
  command->add_option("--set", options->moment, "now or \"YYYY-MM-DD HH:MM:SS\"")
      ->check(CLI::Validator(check_moment, "MOMENT"));
}

void add_partition(CLI::App& system, Invocation& invocation) {
  const auto [command, options] =
      add_command(system, invocation, "partition", "Show a partition's recorded time and room", partition);
  command->add_option("N", options->partition, "1 to 64")->required()->check(CLI::Range(1, 64));
}

void add_send(CLI::App& system, Invocation& invocation, const char* name, const char* about, Run run) {
  const auto [command, options] = add_command(system, invocation, name, about, run);
  refuse_empty(*command->add_option("FILE", options->file, "The file to send")->required(), kNamesNoFile);
  command->add_flag("--force", options->force, "Send an empty file, too");
}

}  // namespace

void add_system_commands(CLI::App& app, Invocation& invocation) {
  CLI::App* system = app.add_subcommand("system", "The device as a whole");
  system->require_subcommand(1);
  add_log(*system, invocation);
  add_clock(*system, invocation);
  add_command(*system, invocation, "info", "Show firmware, memory and other facts", information);
  add_partition(*system, invocation);
  add_send(*system, invocation, "firmware", "Send a firmware file", send_file<operation::kSendFirmware>);
  add_send(*system, invocation, "prompts", "Send a file of canned messages",
           send_file<operation::kSendCannedMessages>);
  add_telnet_command(*system, invocation);
}

}  // namespace qvrcom::cli
