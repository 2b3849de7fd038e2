#include "platform/qt/file_filter.h"

#include "platform/qt/qt_text.h"

namespace tarnlink {
namespace {

QStringList Patterns(const QString& list, bool both_cases) {
  QStringList patterns;
  for (const QString& part : list.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    const QString pattern =
        part.trimmed() == QStringLiteral("*.*") ? QStringLiteral("*") : part.trimmed();
    patterns << pattern;
    if (both_cases && pattern.toUpper() != pattern) patterns << pattern.toUpper();
  }
  return patterns;
}

// Without the patterns in brackets that most descriptions end with: Qt shows its own.
QString WithoutBrackets(const QString& description) {
  const qsizetype bracket = description.lastIndexOf(QLatin1Char('('));
  if (bracket <= 0 || !description.trimmed().endsWith(QLatin1Char(')'))) {
    return description.trimmed();
  }
  return description.left(bracket).trimmed();
}

}  // namespace

QStringList ToNameFilters(std::string_view filter, bool both_cases) {
  QStringList filters;
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString description = WithoutBrackets(parts[i]);
    if (description.startsWith(QLatin1Char('('))) description.clear();
    const QString patterns = Patterns(parts[i + 1], both_cases).join(QLatin1Char(' '));
    if (description.isEmpty()) description = patterns;
    filters << description + QStringLiteral(" (") + patterns + QLatin1Char(')');
  }
  return filters;
}

}  // namespace tarnlink
