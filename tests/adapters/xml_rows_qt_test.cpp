#include "adapters/xml_rows_qt.h"

#include <gmock/gmock.h>

#include "base/fault.h"

namespace qvrcom::adapters {
namespace {

const std::string kSpaces =
    "xmlns:s='uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882' xmlns:rs='urn:schemas-microsoft-com:rowset' "
    "xmlns:z='#RowsetSchema'";

std::string document(const std::string& columns, const std::string& rows) {
  return "<xml " + kSpaces + "><s:Schema id='RowsetSchema'><s:ElementType name='row'>" + columns +
         "</s:ElementType></s:Schema><rs:data>" + rows + "</rs:data></xml>";
}

TEST(QtXmlRows, ReadsColumnsRowsAndNulls) {
  const base::Rows rows = QtXmlRows().load(
      document("<s:AttributeType name='ID'/><s:AttributeType name='c1' rs:name='Login Name'/>",
               "<z:row ID='1' c1='&lt;a&amp;b&#10;&gt;'/><rs:insert><z:row ID=''/></rs:insert>"));
  EXPECT_EQ(rows.columns(), (std::vector<std::string>{"ID", "Login Name"}));
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0]["Login Name"], base::Field("<a&b\n>"));
  EXPECT_EQ(rows[1]["ID"], base::Field(""));
  EXPECT_EQ(rows[1]["Login Name"], base::Field());
  EXPECT_TRUE(QtXmlRows().load(document("<s:AttributeType name='ID'/>", "")).empty());
}

TEST(QtXmlRows, RefusesWhatIsNoTable) {
  const std::string column = "<s:AttributeType name='a'/>";
  const std::string whole = document(column, "<z:row a='1'/>");
  const std::string cases[] = {
      "",
      "OK",
      "<xml/>",
      whole.substr(0, whole.size() - 8),
      document("", ""),
      document(column + column, ""),
      document("<s:AttributeType/>", ""),
      document(column, "<z:row b='1'/>"),
      document(column, "<z:row a='1' a='2'/>"),
      "<!DOCTYPE xml [<!ENTITY e 'x'>]>" + document(column, "<z:row a='&e;'/>"),
      "<xml " + kSpaces + "><z:row a='1'/></xml>",
  };
  for (const std::string& text : cases)
    EXPECT_THROW(QtXmlRows().load(text), base::Fault) << text;
}

}  // namespace
}  // namespace qvrcom::adapters
