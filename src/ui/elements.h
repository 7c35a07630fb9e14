#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QSizePolicy>
#include <QWidget>

#include "ui/widget_text.h"

// Small steps that every window of this folder takes while it is built.
namespace qvrcom::ui {

// A widget with its object name and the name that a screen reader says.
template <class Widget>
Widget* named(Widget* widget, const char* object_name, const QString& accessible_name) {
  widget->setObjectName(QLatin1String(object_name));
  widget->setAccessibleName(accessible_name);
  return widget;
}

// A widget with a caption, which is its accessible name too.
template <class Widget>
Widget* captioned(const char* object_name, const QString& caption, QWidget* parent) {
  return named(new Widget(caption, parent), object_name, shown_caption(caption));
}

// A label that leads to a field and names it.
inline QLabel* label_for(QWidget* field, const char* object_name, const QString& caption, QWidget* parent) {
  auto* label = captioned<QLabel>(object_name, caption, parent);
  label->setBuddy(field);
  return label;
}

// Hidden, the widget keeps its room, so that nothing around it moves.
inline void keep_room(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

}  // namespace qvrcom::ui
