#include "desktop/messages_page.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include "desktop/device_texts.h"
#include "desktop/site_picker.h"
#include "desktop/tables.h"
#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

// A number where it is one, so that it is sorted as one.
QVariant number_of(const std::string& text) {
  bool is_number = false;
  const int number = ui::qt_text(text).toInt(&is_number);
  return is_number ? QVariant(number) : QVariant(ui::qt_text(text));
}

QString count_of(std::size_t messages, int partition) {
  const QString count =
      messages == 1 ? QStringLiteral("1 message") : QStringLiteral("%1 messages").arg(messages);
  return count + QStringLiteral(" in partition %1").arg(partition);
}

}  // namespace

MessagesPage::MessagesPage(const requests::SessionRequestParts& request, sitebook::SiteBook& sites,
                           QWidget* parent)
    : QWidget(parent),
      request_(request),
      picker_(new SitePicker(sites, SitePicker::Asks::kSiteAndPartition, this)),
      model_(new ValueTableModel({QStringLiteral("Partition"), QStringLiteral("Message")}, this)),
      sorted_(new ValueSort(model_, this)),
      table_(ui::named(new QTableView(this), "tblMessages", QStringLiteral("Messages on the device"))),
      lblState_(ui::named(new QLabel(this), "lblMessagesState", QStringLiteral("State of the messages"))),
      cmdView_(ui::captioned<QPushButton>("cmdViewMessages", QStringLiteral("&View Messages"), this)) {
  setObjectName(QStringLiteral("messagesPage"));
  lay_out();
  connect(picker_, &SitePicker::chosen, this, &MessagesPage::site_changed);
  connect(cmdView_, &QPushButton::clicked, this, &MessagesPage::view);
  site_changed(true);
}

void MessagesPage::lay_out() {
  prepare_row_table(*table_, *sorted_);
  table_->verticalHeader()->hide();
  table_->horizontalHeader()->setStretchLastSection(true);
  lblState_->setTextFormat(Qt::PlainText);
  lblState_->setWordWrap(true);
  cmdView_->setAutoDefault(true);
  picker_->append(cmdView_);
  auto* all = new QVBoxLayout(this);
  all->addWidget(picker_);
  all->addWidget(ui::label_for(table_, "lblMessages", QStringLiteral("Messages &on the device:"), this));
  all->addWidget(table_, 1);
  all->addWidget(lblState_);
  setFocusProxy(picker_);
}

void MessagesPage::reload_sites() {
  picker_->reload();
}

// What is listed belongs to the site that was asked.
void MessagesPage::site_changed(bool another) {
  cmdView_->setEnabled(picker_->usable());
  if (!another) return;
  model_->show({});
  lblState_->clear();
}

void MessagesPage::view() {
  const int partition = picker_->partition();
  const requests::ViewAnswer answer = requests::ViewRequest(request_).run(picker_->row(), partition);
  std::vector<QVariantList> rows;
  for (const std::string& message : answer.messages)
    rows.push_back({partition, number_of(message)});
  model_->show(std::move(rows));
  lblState_->setText(answer.result == requests::RequestResult::kDone
                         ? count_of(answer.messages.size(), partition)
                         : outcome_line(session::operation::kViewDevice, answer.result, {}));
}

}  // namespace qvrcom::desktop
