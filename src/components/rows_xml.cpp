#include "components/rows_xml.h"

#include <string_view>

namespace qvrcom::components {
namespace {

constexpr std::string_view kHead =
    "<xml xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' "
    "xmlns:dt='uuid:C2F41010-65B3-11d1-A29F-00AA00C14882' xmlns:rs='urn:schemas-microsoft-com:rowset' "
    "xmlns:z='#RowsetSchema'>\r\n<s:Schema id='RowsetSchema'>\r\n"
    "<s:ElementType name='row' content='eltOnly'>\r\n";

constexpr std::string_view kBetween =
    "<s:extends type='rs:rowbase'/>\r\n</s:ElementType>\r\n</s:Schema>\r\n<rs:data>\r\n";

constexpr std::string_view kTail = "</rs:data>\r\n</xml>\r\n";

// What stands for a character inside an attribute value.
std::string escaped(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\'':
      return "&apos;";
    case '\t':
      return "&#9;";  // a bare tab or line end would be read back as a blank
    case '\n':
      return "&#10;";
    case '\r':
      return "&#13;";
    default:
      return static_cast<unsigned char>(c) < 0x20 ? std::string{} : std::string(1, c);
  }
}

std::string attribute(std::string_view name, std::string_view value) {
  std::string text = " " + std::string(name) + "='";
  for (const char c : value)
    text += escaped(c);
  return text + "'";
}

// Column names may hold what an attribute's name may not, so the rows use numbered names.
std::string field_name(std::size_t column) {
  return "c" + std::to_string(column);
}

std::string column_xml(const std::string& name, std::size_t column) {
  return "<s:AttributeType" + attribute("name", field_name(column)) + attribute("rs:name", name) +
         attribute("rs:number", std::to_string(column + 1)) + " rs:nullable='true'>" +
         "<s:datatype dt:type='string'/></s:AttributeType>\r\n";
}

}  // namespace

std::string rows_xml(const base::Rows& rows) {
  std::string xml(kHead);
  for (std::size_t i = 0; i < rows.columns().size(); ++i)
    xml += column_xml(rows.columns()[i], i);
  xml += kBetween;
  for (const base::Row row : rows) {
    xml += "<z:row";
    for (std::size_t i = 0; i < rows.columns().size(); ++i) {
      if (const base::Field& field = row[rows.columns()[i]]) xml += attribute(field_name(i), *field);
    }
    xml += "/>\r\n";
  }
  xml += kTail;
  return xml;
}

}  // namespace qvrcom::components
