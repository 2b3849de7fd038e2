#include "platform/qt/ini_text.h"

namespace tarnlink {
namespace {

bool IsPlain(QChar character) {
  const char16_t code = character.unicode();
  return (code < 0x80 && character.isLetterOrNumber()) || code == '_' || code == '-' || code == '.';
}

QByteArray HexDigits(char16_t code, int digits) {
  return QByteArray::number(code, 16).toUpper().rightJustified(digits, '0');
}

// Names are letters and digits, and everything else by its number. What is left of a path ends up
// with the separator that the format has for it.
QByteArray Name(const QString& name) {
  QByteArray text;
  for (const QChar character : name) {
    const char16_t code = character.unicode();
    if (IsPlain(character)) {
      text += static_cast<char>(code);
    } else if (code == '/') {
      text += '\\';
    } else {
      text += code < 0x100 ? "%" + HexDigits(code, 2) : "%U" + HexDigits(code, 4);
    }
  }
  return text;
}

bool IsHexDigit(QChar character) {
  const char16_t code = character.unicode();
  return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f') ||
         (code >= 'A' && code <= 'F');
}

bool NeedsQuotes(const QString& value) {
  constexpr auto kSeparators = u";,=";
  if (value.startsWith(' ') || value.endsWith(' ')) return true;
  for (const QChar character : value) {
    if (QStringView(kSeparators).contains(character)) return true;
  }
  return false;
}

// Control characters by their number. A digit behind one would be read as a part of it.
QByteArray Escaped(const QString& value) {
  QByteArray text;
  QString plain;
  bool is_behind_number = false;
  for (const QChar character : value) {
    const char16_t code = character.unicode();
    const bool by_number =
        code < 0x20 || code == 0x7F || (is_behind_number && IsHexDigit(character));
    if (by_number) {
      text += plain.toUtf8() + "\\x" + QByteArray::number(code, 16);
      plain.clear();
    } else {
      if (code == '"' || code == '\\') plain += '\\';
      plain += character;
    }
    is_behind_number = by_number;
  }
  return text + plain.toUtf8();
}

// One that begins like a value of another type gets a sign in front that says that it is none.
QByteArray Value(const QString& value) {
  const QString text = value.startsWith('@') ? "@" + value : value;
  return NeedsQuotes(text) ? "\"" + Escaped(text) + "\"" : Escaped(text);
}

// "General" is the format's own word for keys without a section.
QByteArray SectionName(const QString& section) {
  const bool is_taken = section.compare("general", Qt::CaseInsensitive) == 0;
  return is_taken ? QByteArray("%General") : Name(section);
}

}  // namespace

QByteArray IniText(const std::map<QString, QString>& values) {
  std::map<QByteArray, QByteArray> sections;
  for (const auto& [path, value] : values) {
    const auto slash = path.indexOf('/');
    const QByteArray section = slash < 0 ? QByteArray("General") : SectionName(path.left(slash));
    sections[section] += Name(path.mid(slash + 1)) + "=" + Value(value) + "\n";
  }
  QByteArray text;
  for (const auto& [section, lines] : sections) {
    if (!text.isEmpty()) text += '\n';
    text += "[" + section + "]\n" + lines;
  }
  return text;
}

}  // namespace tarnlink
