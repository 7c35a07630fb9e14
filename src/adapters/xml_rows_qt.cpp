#include "adapters/xml_rows_qt.h"

#include <QByteArray>
#include <QString>
#include <QXmlStreamReader>
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;
constexpr std::size_t kMostColumns = 1'000;
constexpr std::size_t kMostRows = 1'000'000;

constexpr QLatin1String kSchemaSpace("uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882");
constexpr QLatin1String kDataSpace("urn:schemas-microsoft-com:rowset");
constexpr QLatin1String kRowSpace("#RowsetSchema");

// Walks the document once: the schema names the columns, every row after it gives its fields as attributes.
class RowsReader {
 public:
  explicit RowsReader(std::string_view xml)
      : reader_(QByteArray::fromRawData(xml.data(), static_cast<qsizetype>(xml.size()))) {}

  base::Rows read() {
    while (!reader_.atEnd())
      step(reader_.readNext());
    if (reader_.hasError()) refuse(reader_.errorString().toStdString());
    if (!seen_data_) refuse("It has no rows element.");
    begin_rows();
    return std::move(rows_);
  }

 private:
  [[noreturn]] void refuse(const std::string& reason) const {
    throw base::Fault("Answer is not a table",
                      "Line " + std::to_string(reader_.lineNumber()) + ": " + reason);
  }

  void step(QXmlStreamReader::TokenType token) {
    if (token == QXmlStreamReader::DTD) refuse("It has a document type.");
    if (token != QXmlStreamReader::StartElement) return;
    if (is(kSchemaSpace, "AttributeType")) add_column();
    if (is(kDataSpace, "data")) seen_data_ = true;
    if (is(kRowSpace, "row")) add_row();
  }

  bool is(QLatin1String space, const char* name) const {
    return reader_.namespaceUri() == space && reader_.name() == QLatin1String(name);
  }

  // The attribute is called `name` in the rows; rs:name is the column's own name where that differs.
  void add_column() {
    if (begun_) refuse("A column follows the first row.");
    if (columns_.size() == kMostColumns) refuse("It has too many columns.");
    const QXmlStreamAttributes attributes = reader_.attributes();
    const std::string attribute = attributes.value(QLatin1String("name")).toString().toStdString();
    if (attribute.empty()) refuse("A column has no name.");
    if (!places_.emplace(attribute, columns_.size()).second)
      refuse("The column " + attribute + " is doubled.");
    const auto own_name = attributes.value(kDataSpace, QLatin1String("name"));
    columns_.push_back(own_name.isEmpty() ? attribute : own_name.toString().toStdString());
  }

  void begin_rows() {
    if (begun_) return;
    begun_ = true;
    if (columns_.empty()) refuse("Its schema has no columns.");
    rows_ = base::Rows(columns_);
  }

  void add_row() {
    if (!seen_data_) refuse("A row stands outside the rows element.");
    begin_rows();
    if (rows_.size() == kMostRows) refuse("It has too many rows.");
    std::vector<base::Field> fields(columns_.size());
    for (const QXmlStreamAttribute& attribute : reader_.attributes()) {
      const auto place = places_.find(attribute.name().toString().toStdString());
      if (place == places_.end()) refuse("A row has a field that the schema does not name.");
      fields[place->second] = attribute.value().toString().toStdString();
    }
    rows_.add(std::move(fields));
  }

  QXmlStreamReader reader_;
  std::vector<std::string> columns_;
  std::map<std::string, std::size_t, std::less<>> places_;  // of an attribute in `columns_`
  base::Rows rows_;
  bool seen_data_ = false;
  bool begun_ = false;
};

}  // namespace

base::Rows QtXmlRows::load(std::string_view xml) const {
  if (xml.size() > kMostBytes) throw base::Fault("Answer is not a table", "It is longer than 64 MiB.");
  return RowsReader(xml).read();
}

}  // namespace qvrcom::adapters
