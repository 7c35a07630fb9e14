#include "adapters/database_qt.h"

#include <fcntl.h>

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QString>
#include <QUrl>
#include <QVariant>
#include <algorithm>
#include <atomic>
#include <set>
#include <string_view>
#include <vector>

#include "adapters/plain_file.h"
#include "adapters/posix_fault.h"
#include "base/fault.h"
#include "base/text.h"

namespace qvrcom::adapters {
namespace {

constexpr const char* kOptions = "QSQLITE_BUSY_TIMEOUT=2000;QSQLITE_OPEN_URI";
constexpr std::string_view kFileHeader{"SQLite format 3\0", 16};

QString to_qt(const std::string& text) {
  // A default-made QString is null, and a null one would be bound as NULL: an empty text stays a text.
  return text.empty() ? QString(QLatin1String("")) : QString::fromStdString(text);
}

[[noreturn]] void refuse(const char* description, const std::string& file, const std::string& what) {
  throw base::Fault(description, "The database " + file + " " + what);
}

// Result codes of the engine, by their first byte; extended codes carry more above it.
struct EngineError {
  int code;
  const char* description;
  const char* what;
};

constexpr EngineError kEngineErrors[] = {
    {5, "Database is locked", "is in use by another program. Close it, or try again in a moment."},
    {6, "Database is locked", "is in use by another program. Close it, or try again in a moment."},
    {8, "Database cannot be written", "may only be read. Check the rights of the file and its folder."},
    {10, "Database cannot be read", "cannot be read or written. Check the disk."},
    {11, "Database is damaged", "is damaged. Put back a copy of it."},
    {13, "Disk full", "cannot grow: the disk is full."},
    {14, "Database cannot be opened", "cannot be opened. Check the rights of the file and its folder."},
    {26, "Database is damaged", "is damaged. Put back a copy of it."},
};

[[noreturn]] void raise(const QSqlError& error, const std::string& file, const std::string& sql) {
  const std::string text = error.databaseText().toStdString();
  const int code = error.nativeErrorCode().toInt() & 0xFF;
  for (const EngineError& known : kEngineErrors) {
    if (known.code == code) refuse(known.description, file, std::string(known.what) + " (" + text + ")");
  }
  throw base::Fault("Database command failed", text + ", in: " + sql + " (" + file + ")");
}

bool is_name_character(char c) {
  return base::is_letter_or_digit(c) || c == '_';
}

// The names behind ":" outside of quotes. An unquoted "?" is refused too: it would be a value by position.
std::set<std::string, std::less<>> placeholders(std::string_view sql) {
  std::set<std::string, std::less<>> names;
  for (std::size_t at = 0; at < sql.size(); ++at) {
    const char c = sql[at];
    if (c == '\'' || c == '"' || c == '`') {
      at = std::min(sql.find(c, at + 1), sql.size());
    } else if (c == ':') {
      const auto end =
          std::find_if_not(sql.begin() + static_cast<std::ptrdiff_t>(at) + 1, sql.end(), is_name_character);
      const auto length = static_cast<std::size_t>(end - sql.begin()) - at - 1;
      names.emplace(sql.substr(at + 1, length));
      at += length;
    } else if (c == '?') {
      throw base::Fault("Wrong number of arguments", "A value stands by position in: " + std::string(sql));
    }
  }
  return names;
}

// The engine takes a missing value for NULL and drops a superfluous one without a word.
void check_values(const std::string& sql, std::span<const platform::NamedValue> values) {
  auto missing = placeholders(sql);
  for (const platform::NamedValue& value : values) {
    if (missing.erase(value.name) == 0)
      throw base::Fault("Wrong number of arguments",
                        "No place for the value \"" + value.name + "\" in: " + sql);
  }
  if (!missing.empty())
    throw base::Fault("Wrong number of arguments", "No value for \"" + *missing.begin() + "\" in: " + sql);
}

// A connection name of its own, given back when the connection goes.
class Connection {
 public:
  explicit Connection(const std::string& file) : name_(next_name()) {
    database_ = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name_);
    database_.setConnectOptions(QLatin1String(kOptions));
    // The engine makes a missing file unless it is told not to.
    const QUrl url = QUrl::fromLocalFile(QString::fromStdString(file));
    database_.setDatabaseName(url.toString(QUrl::FullyEncoded) + QStringLiteral("?mode=rw"));
  }
  ~Connection() {
    database_.close();
    database_ = QSqlDatabase();
    QSqlDatabase::removeDatabase(name_);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  QSqlDatabase& get() { return database_; }

 private:
  static QString next_name() {
    static std::atomic<unsigned> count{0};
    return QStringLiteral("qvrcom-%1").arg(++count);
  }

  QString name_;
  QSqlDatabase database_;
};

class QtDatabase : public platform::Database {
 public:
  explicit QtDatabase(std::string file) : file_(std::move(file)), connection_(file_) {
    if (!connection_.get().isValid())
      refuse("Database cannot be opened", file_, "needs the Qt driver QSQLITE.");
    if (!connection_.get().open()) raise(connection_.get().lastError(), file_, "open");
  }

  base::Rows run(const std::string& sql, std::span<const platform::NamedValue> values) override;
  void transaction(const std::function<void()>& work) override;

 private:
  base::Rows snapshot(QSqlQuery& query, const std::string& sql) const;

  std::string file_;
  Connection connection_;
};

base::Field field_of(const QVariant& value) {
  if (value.isNull()) return std::nullopt;
  return value.toString().toStdString();
}

base::Rows QtDatabase::snapshot(QSqlQuery& query, const std::string& sql) const {
  const QSqlRecord record = query.record();
  const auto count = static_cast<std::size_t>(record.count());
  std::vector<std::string> columns;
  columns.reserve(count);
  for (int i = 0; i < record.count(); ++i)
    columns.push_back(record.fieldName(i).toStdString());
  base::Rows rows(columns);
  while (query.next()) {
    std::vector<base::Field> fields;
    fields.reserve(count);
    for (int i = 0; i < record.count(); ++i)
      fields.push_back(field_of(query.value(i)));
    rows.add(std::move(fields));
  }
  if (query.lastError().isValid()) raise(query.lastError(), file_, sql);
  return rows;
}

base::Rows QtDatabase::run(const std::string& sql, std::span<const platform::NamedValue> values) {
  check_values(sql, values);
  QSqlQuery query(connection_.get());
  query.setForwardOnly(true);
  if (!query.prepare(QString::fromStdString(sql))) raise(query.lastError(), file_, sql);
  for (const platform::NamedValue& value : values) {
    query.bindValue(QLatin1Char(':') + QString::fromStdString(value.name),
                    value.value ? QVariant(to_qt(*value.value)) : QVariant(QMetaType(QMetaType::QString)));
  }
  if (!query.exec()) raise(query.lastError(), file_, sql);
  return query.isSelect() ? snapshot(query, sql) : base::Rows{};
}

// Takes back what was done since BEGIN unless it was kept. Some failures have ended the transaction already;
// then there is nothing to take back.
class Rollback {
 public:
  explicit Rollback(QSqlDatabase& database) : database_(database) {}
  ~Rollback() {
    if (!kept_) QSqlQuery(database_).exec(QStringLiteral("ROLLBACK"));
  }
  Rollback(const Rollback&) = delete;
  Rollback& operator=(const Rollback&) = delete;

  void keep() { kept_ = true; }

 private:
  QSqlDatabase& database_;
  bool kept_ = false;
};

// Takes the write lock at once, so that nothing read inside can be out of date when it is written back.
void QtDatabase::transaction(const std::function<void()>& work) {
  run("BEGIN IMMEDIATE", {});
  Rollback rollback(connection_.get());
  work();
  run("COMMIT", {});
  rollback.keep();
}

// The suite path behind "Data Source=".
std::string data_source(const std::string& connection_text) {
  for (const std::string_view part : base::split(connection_text, ";")) {
    const auto equals = part.find('=');
    if (equals != std::string_view::npos &&
        base::equals_ignoring_case(base::trim(part.substr(0, equals)), "Data Source"))
      return std::string(base::trim(part.substr(equals + 1)));
  }
  throw base::Fault("Database cannot be opened", "The connection text names no \"Data Source\".");
}

std::string path_of(const std::string& connection_text, const platform::Files& files) {
  return files.native(data_source(connection_text));
}

// Reads the first bytes, so that a foreign file is told from a damaged one. An empty file is an empty
// database.
void check_header(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly))
    refuse("Database cannot be opened", path, "cannot be opened: " + file.errorString().toStdString() + ".");
  const QByteArray bytes = file.read(static_cast<qint64>(kFileHeader.size()));
  const std::string_view header(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (header.empty() || header == kFileHeader) return;
  const bool old_desktop = header.starts_with(std::string_view("\x00\x01\x00\x00", 4));
  refuse("Database is foreign", path,
         old_desktop ? "was made by an old desktop database program and cannot be used. Move it away and run "
                       "\"qvrcomctl setup\"."
                     : "is not a database of this suite. Move it away and run \"qvrcomctl setup\".");
}

}  // namespace

std::unique_ptr<platform::Database> QtDatabaseEngine::open(const std::string& connection_text) {
  const std::string path = path_of(connection_text, files_);
  if (!files_.is_taken(suite_path(path)))
    refuse(base::kFileNotFound, path, "is missing. Run \"qvrcomctl setup\", or put back a copy of it.");
  need_plain(path);
  check_header(path);
  auto database = std::make_unique<QtDatabase>(path);
  // The first look into the file: a lock or damage shows here and not in the middle of the work.
  database->run("SELECT COUNT(*) FROM sqlite_master", {});
  return database;
}

std::unique_ptr<platform::Database> QtDatabaseEngine::create(const std::string& connection_text) {
  const std::string path = path_of(connection_text, files_);
  need_plain(path);
  // The empty file comes first, with its rights: the engine's own would be open to the group.
  open_plain("Making the database", path, O_WRONLY | O_CREAT | O_EXCL, Links::kRefused, 0600);
  return std::make_unique<QtDatabase>(path);
}

}  // namespace qvrcom::adapters
