#pragma once

#include <QHBoxLayout>
#include <QPushButton>
#include <QWidget>
#include <cstddef>

#include "ui/elements.h"

namespace qvrcom::desktop {

// One button of a page's strip: where the page keeps it, its object name, its caption with a mnemonic, and
// what a click does.
template <class Page>
struct StripButton {
  QPushButton* Page::*button;
  const char* name;
  const char* caption;
  void (Page::*action)();
};

// The buttons side by side, the first `left` of them at the left edge and the others at the right one.
template <class Page, std::size_t kCount>
QWidget* button_strip(Page* page, const StripButton<Page> (&rows)[kCount], int left) {
  auto* strip = new QWidget(page);
  auto* line = new QHBoxLayout(strip);
  line->setContentsMargins({});
  for (const StripButton<Page>& row : rows) {
    auto* button = ui::captioned<QPushButton>(row.name, QString::fromLatin1(row.caption), strip);
    button->setAutoDefault(true);
    QObject::connect(button, &QPushButton::clicked, page, row.action);
    page->*row.button = button;
    line->addWidget(button);
  }
  line->insertStretch(left);
  return strip;
}

}  // namespace qvrcom::desktop
