#include <unistd.h>

#include <CLI/CLI.hpp>
#include <istream>
#include <map>

#include "base/fault.h"
#include "base/text.h"
#include "cli/arguments.h"
#include "cli/command_context.h"
#include "cli/commands.h"
#include "cli/hidden_input.h"
#include "cli/json_text.h"
#include "cli/local_file.h"
#include "cli/text_table.h"
#include "sitebook/site_csv.h"

namespace qvrcom::cli {
namespace {

using sitebook::SiteColumn;
using sitebook::SiteRecord;

constexpr std::string_view kAccessCode = "access-code";

// ---- list

struct ListOptions {
  bool as_json = false;
  bool show_access_codes = false;

  bool shows(const SiteColumn& column) const { return show_access_codes || column.key != kAccessCode; }
};

// Numbers are numbers where the table holds one.
QJsonValue json_of(const SiteColumn& column, const base::Field& field) {
  if (column.text != sitebook::SiteText::kNumber || !field) return json_or_null(field);
  bool is_number = false;
  const int number = QString::fromStdString(*field).toInt(&is_number);
  return is_number ? QJsonValue(number) : json_or_null(field);
}

std::string list_as_json(const std::vector<SiteRecord>& sites, const ListOptions& options) {
  QJsonArray array;
  for (const SiteRecord& site : sites) {
    QJsonObject object{{"site-id", site.site_id}};
    for (const SiteColumn& column : sitebook::kSiteColumns)
      if (options.shows(column))
        object[QString::fromUtf8(column.key.data(), static_cast<qsizetype>(column.key.size()))] =
            json_of(column, site.*column.member);
    array.append(object);
  }
  return json_document(array);
}

void list_as_table(const std::vector<SiteRecord>& sites, const ListOptions& options, std::ostream& out) {
  std::vector<std::string> cells{"SITE"};
  for (const SiteColumn& column : sitebook::kSiteColumns)
    if (options.shows(column)) cells.push_back(base::to_upper(column.key));
  TextTable table(out);
  table.add(cells);
  for (const SiteRecord& site : sites) {
    cells = {std::to_string(site.site_id)};
    for (const SiteColumn& column : sitebook::kSiteColumns)
      if (options.shows(column)) cells.push_back((site.*column.member).value_or(""));
    table.add(cells);
  }
}

ExitCode list(CommandContext& context, const ListOptions& options) {
  const std::vector<SiteRecord> sites = context.sites.list();
  if (options.show_access_codes) keep_to_owner(STDOUT_FILENO);
  if (options.as_json) {
    context.console.out() << list_as_json(sites, options);
  } else {
    list_as_table(sites, options, context.console.out());
  }
  return ExitCode::kDone;
}

// ---- add, edit, remove

struct ColumnOptions {
  std::string key;                             // of the site to edit
  std::map<std::string, std::string> columns;  // those that were given, by column key
  std::string access_code_file;
  std::vector<std::string> unset;

  bool reads_access_code() const {
    const auto given = columns.find(std::string(kAccessCode));
    return given != columns.end() && given->second == "-";
  }
  bool gives(const std::string& column) const {
    return columns.contains(column) || (column == kAccessCode && !access_code_file.empty());
  }
  bool empty() const { return columns.empty() && access_code_file.empty() && unset.empty(); }
};

// From the stream or, when that is null, the file. One that holds nothing is no code: a program that should
// have written it has failed. Code that is too long is cut, and too long for the book all the same.
std::string read_access_code(std::istream* stream, const std::string& file) {
  constexpr std::size_t kLimit = sitebook::kSiteTextLimit + 2;
  std::string code;
  if (stream != nullptr) {
    const HiddenInput hidden;
    code = read_line(*stream, kLimit);
  } else {
    code = read_first_line(file, kLimit);
  }
  if (!code.empty()) return code;
  throw base::Fault("No access code", (stream != nullptr ? "Standard input" : "\"" + file + "\"") +
                                          " holds none in its first line. \"--access-code ''\" stores an "
                                          "empty one, \"sites edit SITE --unset access-code\" none.");
}

void take_over(CommandContext& context, const ColumnOptions& options, SiteRecord& site) {
  for (const SiteColumn& column : sitebook::kSiteColumns) {
    const std::string key(column.key);
    if (const auto given = options.columns.find(key); given != options.columns.end())
      site.*column.member = given->second;
    if (std::count(options.unset.begin(), options.unset.end(), key) != 0) site.*column.member = std::nullopt;
  }
  if (options.reads_access_code()) {
    site.access_code = read_access_code(&context.in, {});
  } else if (!options.access_code_file.empty()) {
    site.access_code = read_access_code(nullptr, options.access_code_file);
  }
}

ExitCode add(CommandContext& context, const ColumnOptions& options) {
  SiteRecord site;
  take_over(context, options, site);
  context.console.print(std::to_string(context.sites.add(site)));
  return ExitCode::kDone;
}

ExitCode edit(CommandContext& context, const ColumnOptions& options) {
  const SiteRecord stored = context.sites.find({options.key}).front();
  SiteRecord site = stored;
  take_over(context, options, site);
  context.sites.edit(stored, site);
  return ExitCode::kDone;
}

ExitCode remove(CommandContext& context, const std::vector<std::string>& keys) {
  context.sites.remove(context.sites.find(keys));
  return ExitCode::kDone;
}

// ---- import, export

struct FileOptions {
  std::string path;  // "-" for standard input or output
  bool without_access_codes = false;

  bool is_stream() const { return path == "-"; }
};

ExitCode import_file(CommandContext& context, const FileOptions& options) {
  const std::string text = options.is_stream() ? read_all(context.in) : read_local_file(options.path);
  const sitebook::ImportResult result = sitebook::import_csv(context.sites, text);
  if (result.problems.empty()) {
    context.console.print("Sites added: " + std::to_string(result.added));
    if (result.changed > 0) context.console.print("Sites changed: " + std::to_string(result.changed));
    return ExitCode::kDone;
  }
  const std::string source = options.is_stream() ? "standard input" : options.path;
  std::string reasons;
  for (const sitebook::ImportProblem& problem : result.problems)
    reasons += source + ":" + std::to_string(problem.line) + ": " + problem.reason + "\n";
  context.console.tell("No site was added or changed.", reasons);
  return ExitCode::kFailed;
}

ExitCode export_file(CommandContext& context, const FileOptions& options) {
  const std::vector<SiteRecord> sites = context.sites.list();
  const std::string text =
      sitebook::export_csv(sites, options.without_access_codes ? sitebook::AccessCodes::kLeftOut
                                                               : sitebook::AccessCodes::kIncluded);
  if (options.is_stream()) {
    if (!options.without_access_codes) keep_to_owner(STDOUT_FILENO);
    context.console.out() << text;
    return ExitCode::kDone;
  }
  context.files.save(context.files.from_native(options.path), text, platform::Readers::kOwner);
  context.console.print("Sites written: " + std::to_string(sites.size()));
  return ExitCode::kDone;
}

// ---- options

std::string help_of(const SiteColumn& column) {
  std::string help(column.label);
  if (column.key == "method") help += ": 1 modem, 2 direct, anything else LAN";
  if (column.key == kAccessCode) help += "; - reads it from standard input";
  return help;
}

std::shared_ptr<ColumnOptions> add_column_options(CLI::App& command) {
  auto options = std::make_shared<ColumnOptions>();
  CLI::Option* code = nullptr;
  for (const SiteColumn& column : sitebook::kSiteColumns) {
    const std::string key(column.key);
    CLI::Option* option = command.add_option_function<std::string>(
        "--" + key, [options, key](const std::string& text) { options->columns[key] = text; },
        help_of(column));
    if (key == kAccessCode) code = option;
  }
  CLI::Option* file = command.add_option("--access-code-file", options->access_code_file,
                                         "File whose first line is the access code");
  file->excludes(code);
  refuse_empty(*file, kNamesNoFile);
  return options;
}

void add_list(CLI::App& sites, Invocation& invocation) {
  auto options = std::make_shared<ListOptions>();
  CLI::App* command = sites.add_subcommand("list", "Show the site book");
  command->add_flag("--json", options->as_json, "As a JSON array");
  command->add_flag("--show-access-codes", options->show_access_codes, "With the access codes");
  command->callback([options, &invocation] {
    invocation.command = [options](CommandContext& context) { return list(context, *options); };
  });
}

void add_add(CLI::App& sites, Invocation& invocation) {
  CLI::App* command = sites.add_subcommand("add", "Add a site; prints its key");
  const auto options = add_column_options(*command);
  command->callback([options, &invocation] {
    invocation.command = [options](CommandContext& context) { return add(context, *options); };
  });
}

void add_edit(CLI::App& sites, Invocation& invocation) {
  CLI::App* command = sites.add_subcommand("edit", "Change columns of a site");
  const auto options = add_column_options(*command);
  std::vector<std::string> keys;
  for (const SiteColumn& column : sitebook::kSiteColumns)
    keys.emplace_back(column.key);
  command->add_option("SITE", options->key, "Key, identifier or \"name - identifier\"")->required();
  command->add_option("--unset", options->unset, "Column that shall hold nothing; may repeat")
      ->allow_extra_args(false)
      ->check(CLI::IsMember(keys));
  command->callback([options, &invocation] {
    if (options->empty()) throw CLI::ValidationError("sites edit", "no column is given");
    for (const std::string& key : options->unset) {
      if (options->gives(key))
        throw CLI::ValidationError("--unset " + key,
                                   "The column is given a text, too. Leave out one of the two");
    }
    invocation.command = [options](CommandContext& context) { return edit(context, *options); };
  });
}

void add_remove(CLI::App& sites, Invocation& invocation) {
  auto keys = std::make_shared<std::vector<std::string>>();
  CLI::App* command = sites.add_subcommand("remove", "Remove sites");
  command->add_option("SITE", *keys, "Key, identifier or \"name - identifier\"")->required();
  command->callback([keys, &invocation] {
    invocation.command = [keys](CommandContext& context) { return remove(context, *keys); };
  });
}

struct FileCommand {
  CLI::App* app;
  std::shared_ptr<FileOptions> options;
};

FileCommand add_file_command(CLI::App& sites, Invocation& invocation, const char* name, const char* help,
                             ExitCode (*run_on)(CommandContext&, const FileOptions&)) {
  const FileCommand added{sites.add_subcommand(name, help), std::make_shared<FileOptions>()};
  CLI::Option* file =
      added.app->add_option("FILE", added.options->path, "A CSV file; - is standard input or output");
  refuse_empty(*file->required(), kNamesNoFile);
  added.app->callback([options = added.options, run_on, &invocation] {
    invocation.command = [options, run_on](CommandContext& context) { return run_on(context, *options); };
  });
  return added;
}

}  // namespace

void add_sites_commands(CLI::App& app, Invocation& invocation) {
  CLI::App* sites = app.add_subcommand("sites", "The site book");
  sites->require_subcommand(1);
  add_list(*sites, invocation);
  add_add(*sites, invocation);
  add_edit(*sites, invocation);
  add_remove(*sites, invocation);
  add_file_command(*sites, invocation, "import",
                   "Add the sites of a CSV file, and change those it knows by their identifier: all or none",
                   import_file);
  const FileCommand exporting = add_file_command(
      *sites, invocation, "export", "Write the site book, access codes included, to a CSV file", export_file);
  exporting.app->add_flag("--without-access-codes", exporting.options->without_access_codes,
                          "Leave the access codes out");
}

}  // namespace qvrcom::cli
