// The text of an INI file as QSettings reads it.
#pragma once

#include <QByteArray>
#include <QString>
#include <map>

namespace tarnlink {

// The values by "section/key"; a key without a section is one of "General".
QByteArray IniText(const std::map<QString, QString>& values);

}  // namespace tarnlink
