#pragma once

#include <gmock/gmock.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <memory>

#include "adapters/files_posix.h"
#include "adapters/posix_fault.h"
#include "desktop/device_page.h"
#include "desktop/messages_page.h"
#include "desktop/same_logs_page.h"
#include "ui/memory_windows.h"
#include "ui/modal_driver.h"
#include "ui/widget_text.h"

namespace qvrcom::desktop {

using doubles::ManualScheduler;
using ui::child;
using ui::MemoryWindows;
using ui::ModalDriver;
using ui::press;

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

// A page in sight, and what a user does to it.
struct PageTest : ::testing::Test {
  void TearDown() override { page.reset(); }  // before what it stands on
  template <class Page>
  Page& open(std::unique_ptr<Page> made) {
    page = std::move(made);
    page->show();
    return static_cast<Page&>(*page);
  }
  QPushButton& button(const char* name) { return child<QPushButton>(*page, name); }
  void click(const char* name) { button(name).click(); }
  std::string label(const char* name) { return ui::utf8(child<QLabel>(*page, name).text()); }
  std::string text(const char* name) { return ui::utf8(child<QPlainTextEdit>(*page, name).toPlainText()); }
  // Every cell of a column, from the top.
  std::vector<std::string> column(const char* table, int number) {
    const QAbstractItemModel& cells = *child<QTableView>(*page, table).model();
    std::vector<std::string> texts;
    for (int row = 0; row < cells.rowCount(); ++row)
      texts.push_back(ui::utf8(cells.index(row, number).data().toString()));
    return texts;
  }

  std::unique_ptr<QWidget> page;
};

}  // namespace qvrcom::desktop
