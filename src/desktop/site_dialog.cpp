#include "desktop/site_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "desktop/site_table_model.h"
#include "ui/attempt.h"
#include "ui/elements.h"

namespace qvrcom::desktop {
namespace {

constexpr int kReasonLines = 3;

QString object_name_of(const sitebook::SiteColumn& column) {
  return QStringLiteral("field-") + ui::qt_text(column.key);
}

}  // namespace

SiteDialog::SiteDialog(const QString& title, const sitebook::SiteRecord& site, Problems problems,
                       QWidget* parent)
    : QDialog(parent),
      stored_(site),
      problems_(std::move(problems)),
      lblReasons_(ui::named(new QLabel(this), "lblReasons", QStringLiteral("Why the site is refused"))) {
  setObjectName(QStringLiteral("siteDialog"));
  setWindowTitle(title);
  auto* form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  add_fields(*form);

  lblReasons_->setWordWrap(true);
  lblReasons_->setTextFormat(Qt::PlainText);
  lblReasons_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  lblReasons_->setMinimumHeight(lblReasons_->fontMetrics().lineSpacing() * kReasonLines);

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  ok_ = buttons->button(QDialogButtonBox::Ok);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* all = new QVBoxLayout(this);
  all->addLayout(form);
  all->addWidget(lblReasons_);
  all->addWidget(buttons);
  setMinimumWidth(480);
  check();
}

void SiteDialog::add_fields(QFormLayout& form) {
  ui::Mnemonics mnemonics(QStringLiteral("OCW"));  // of the buttons and the box below
  for (const sitebook::SiteColumn& column : sitebook::kSiteColumns) {
    QWidget* field = make_field(column);
    fields_.push_back(field);
    const QString caption = ui::qt_text(column.label) + QLatin1Char(':');
    ui::named(field, qPrintable(object_name_of(column)), ui::qt_text(column.label));
    auto* label = new QLabel(mnemonics.give(caption), this);
    label->setBuddy(field);
    form.addRow(label, field);
    if (column.member != &sitebook::SiteRecord::access_code) continue;
    auto* code = static_cast<QLineEdit*>(field);
    auto* shown = ui::captioned<QCheckBox>("chkShowAccessCode", QStringLiteral("Sho&w access code"), this);
    connect(shown, &QCheckBox::toggled, code,
            [code](bool on) { code->setEchoMode(on ? QLineEdit::Normal : QLineEdit::Password); });
    form.addRow({}, shown);
  }
}

QWidget* SiteDialog::make_field(const sitebook::SiteColumn& column) {
  if (column.member == &sitebook::SiteRecord::method) return make_method_field();
  QLineEdit* field = make_text_field(column);
  if (column.member == &sitebook::SiteRecord::access_code) field->setEchoMode(QLineEdit::Password);
  return field;
}

// Each entry's data is the stored text. A stored value that has no name gets an entry of its own.
QComboBox* SiteDialog::make_method_field() {
  auto* field = new QComboBox(this);
  field->addItem(QStringLiteral("(not set)"));
  for (const char* method : {"0", "1", "2"})
    field->addItem(method_text(method), QString::fromLatin1(method));
  if (stored_.method && field->findData(ui::qt_text(*stored_.method)) < 0)
    field->addItem(method_text(stored_.method), ui::qt_text(*stored_.method));
  field->setCurrentIndex(stored_.method ? field->findData(ui::qt_text(*stored_.method)) : 0);
  connect(field, &QComboBox::currentIndexChanged, this, [this] { check(); });
  return field;
}

QLineEdit* SiteDialog::make_text_field(const sitebook::SiteColumn& column) {
  auto* field = new QLineEdit(ui::qt_text((stored_.*column.member).value_or("")), this);
  field->setClearButtonEnabled(true);
  connect(field, &QLineEdit::textChanged, this, [this] { check(); });
  return field;
}

base::Field SiteDialog::entered(std::size_t column) const {
  if (const auto* list = qobject_cast<const QComboBox*>(fields_[column])) {
    const QVariant stored = list->currentData();
    return stored.isValid() ? base::Field(ui::utf8(stored.toString())) : std::nullopt;
  }
  const std::string text = ui::utf8(static_cast<const QLineEdit*>(fields_[column])->text());
  if (text.empty() && stored_.*sitebook::kSiteColumns[column].member != base::Field("")) return std::nullopt;
  return text;
}

sitebook::SiteRecord SiteDialog::site() const {
  sitebook::SiteRecord site = stored_;
  for (std::size_t i = 0; i < fields_.size(); ++i)
    site.*sitebook::kSiteColumns[i].member = entered(i);
  return site;
}

void SiteDialog::begin_with(std::string_view key) {
  for (std::size_t i = 0; i < fields_.size(); ++i)
    if (sitebook::kSiteColumns[i].key == key) fields_[i]->setFocus();
}

void SiteDialog::check() {
  if (ok_ == nullptr) return;
  const std::vector<sitebook::SiteProblem> problems = problems_(site());
  lblReasons_->setText(ui::qt_text(sitebook::reasons_of(problems)));
  ok_->setEnabled(problems.empty());
}

bool edit_stored_site(sitebook::SiteBook& sites, platform::UserInterface& ui,
                      const sitebook::SiteRecord& stored, QWidget* parent, std::string_view first) {
  SiteDialog dialog(
      QStringLiteral("Edit Site"), stored, [&](const auto& site) { return sites.problems(site); }, parent);
  dialog.begin_with(first);
  if (dialog.exec() != QDialog::Accepted || dialog.site() == stored) return false;
  return ui::attempt(ui, "The site cannot be changed.", [&] { sites.edit(stored, dialog.site()); });
}

}  // namespace qvrcom::desktop
