#include "cli/site_answers.h"

#include <CLI/CLI.hpp>
#include <QJsonArray>
#include <algorithm>
#include <optional>
#include <ostream>

#include "cli/invocation.h"
#include "cli/json_text.h"
#include "cli/text_table.h"

namespace qvrcom::cli {
namespace {

const char* word_of(requests::RequestResult result) {
  switch (result) {
    case requests::RequestResult::kDone:
      return "done";
    case requests::RequestResult::kBusy:
      return "busy";
    case requests::RequestResult::kNotDone:
      break;
  }
  return "failed";
}

QJsonObject json_of(const sitebook::SiteRecord& site, const SiteAnswer& answer) {
  QJsonObject object = answer.values;
  object["site-id"] = site.site_id;
  object["name"] = json_or_null(site.name);
  object["id"] = json_or_null(site.identifier);
  object["result"] = word_of(answer.result);
  return object;
}

// Calls `take` with each line while it answers with true; as base::lines_of(), without a list of all of them.
template <class Take>
void for_each_line(std::string_view text, Take&& take) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!take(line)) return;
  }
}

void write_text(Console& console, const std::string& heading, const SiteAnswer& answer) {
  const bool has_lines = answer.lines.for_people && !answer.lines.text.empty();
  if (answer.rows.empty() && !has_lines) return;
  console.erase_status();
  if (!heading.empty()) console.print(heading);
  TextTable table(console.out());
  for (const auto& row : answer.rows)
    table.add(row);
  if (!has_lines) return;
  for_each_line(answer.lines.text, [&](std::string_view line) {
    console.print(line);
    return console.out().good();
  });
}

// The array of the answers, complete when it goes.
class JsonAnswers {
 public:
  explicit JsonAnswers(Console& console) : console_(console), out_(console.out()) {}
  ~JsonAnswers() { out_ << (is_empty_ ? "[]\n" : "\n]\n"); }
  JsonAnswers(const JsonAnswers&) = delete;
  JsonAnswers& operator=(const JsonAnswers&) = delete;

  void add(QJsonObject object, const LongText& lines) {
    if (!lines.key.empty()) object[QString::fromStdString(lines.key)] = QJsonArray();
    console_.erase_status();
    const char* separator = is_empty_ ? "[\n{" : ",\n{";
    for (auto value = object.constBegin(); value != object.constEnd(); ++value) {
      const std::string key = value.key().toStdString();
      out_ << separator << '\n' << json_text(key) << ": ";
      separator = ",";
      if (key == lines.key) {
        add_lines(lines.text);
      } else {
        out_ << json_value_text(value.value());
      }
    }
    out_ << "\n}";
    is_empty_ = false;
  }

 private:
  void add_lines(std::string_view text) {
    const char* separator = "";
    out_ << '[';
    for_each_line(text, [&](std::string_view line) {
      out_ << separator << '\n' << json_text(line);
      separator = ",";
      return out_.good();
    });
    out_ << ']';
  }

  Console& console_;
  std::ostream& out_;
  bool is_empty_ = true;
};

}  // namespace

void add_site_options(CLI::App& command, SiteOptions& options, Invocation& invocation) {
  command
      .add_option("--site", options.sites, "Key, identifier or \"name - identifier\" of a site; may repeat")
      ->required()
      ->allow_extra_args(false);
  command.add_flag("--wait", invocation.wait, "Wait for another program's session to end");
  command.add_flag("--json", options.as_json, "As a JSON array");
}

ExitCode ask_sites(CommandContext& context, const SiteOptions& options, const AskSite& ask) {
  const std::vector<sitebook::SiteRecord> sites = context.sites.find(options.sites);
  const bool headed = sites.size() > 1 && options.headings == Headings::kSites;
  std::optional<JsonAnswers> array;
  if (options.as_json) array.emplace(context.console);
  std::vector<SessionStep> steps;
  for (const sitebook::SiteRecord& site : sites) {
    steps.push_back({sitebook::title_of(site), [&, headed] {
                       const SiteAnswer answer = ask(context, site);
                       if (array)
                         array->add(json_of(site, answer), answer.lines);
                       else
                         write_text(context.console, headed ? sitebook::title_of(site) + ":" : "", answer);
                       if (answer.written) answer.written(context.console.flush());
                       return answer.result;
                     }});
  }
  return context.sessions.run(steps);
}

}  // namespace qvrcom::cli
