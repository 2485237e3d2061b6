// How values of the base read in the cells of the lists. It knows no column.
#pragma once

#include <QDate>
#include <QString>
#include <QVariant>
#include <string>

#include "data/number.h"
#include "data/text.h"
#include "data/value.h"

namespace tarvik::desktop {

inline QString Text(const data::Value& value) { return QString::fromStdString(data::ToText(value)); }

inline QString Formatted(double number, const std::string& pattern) {
  return QString::fromStdString(data::FormatNumber(number, pattern));
}

// By the pattern; empty for no value.
inline QString Number(const data::Value& value, const std::string& pattern) {
  return value.IsNull() ? QString() : Formatted(data::ToNumber(value), pattern);
}

inline QString Shown(const data::Date& date) {
  return QDate(date.year, date.month, date.day).toString(QStringLiteral("dd/MM/yyyy"));
}

inline QString DateText(const data::Value& value) {
  const auto date = data::ToDate(value);
  return date ? Shown(*date) : QString();
}

// "COM  Compra a proveedor"
inline QString Joined(const QString& key, const QString& text) {
  return key.isEmpty() || text.isEmpty() ? key + text : key + QStringLiteral("  ") + text;
}

inline QVariant AlignedAs(bool number) {
  return QVariant(Qt::AlignVCenter | (number ? Qt::AlignRight : Qt::AlignLeft));
}

}  // namespace tarvik::desktop
