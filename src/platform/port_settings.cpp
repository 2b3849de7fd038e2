#include "platform/port_settings.h"

#include <charconv>
#include <string>

#include "common/run_time_error.h"
#include "common/shown_text.h"

namespace tarnlink {
namespace {

constexpr int kSlowest = 50;
constexpr int kFastest = 4'000'000;

// Walks through the text from left to right.
class SettingsReader {
 public:
  explicit SettingsReader(std::string_view text) : text_(text), rest_(text) {}

  int Number(int lowest, int highest) {
    SkipBlanks();
    int number = 0;
    const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
    if (error != std::errc() || number < lowest || number > highest) Refuse();
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return number;
  }

  char Parity() {
    SkipBlanks();
    const char letter = rest_.empty() ? '\0' : static_cast<char>(rest_.front() & ~0x20);
    if (letter != 'N' && letter != 'E' && letter != 'O') Refuse();
    rest_.remove_prefix(1);
    return letter;
  }

  bool SkipComma() {
    SkipBlanks();
    if (!rest_.starts_with(',')) return false;
    rest_.remove_prefix(1);
    return true;
  }

  void Comma() {
    if (!SkipComma()) Refuse();
  }

  void End() {
    SkipBlanks();
    if (!rest_.empty()) Refuse();
  }

 private:
  void SkipBlanks() {
    while (rest_.starts_with(' ')) rest_.remove_prefix(1);
  }

  [[noreturn]] void Refuse() const {
    throw RunTimeError(kTypeMismatch,
                       "\"" + ShownText(text_) + "\" are no settings of a serial port.");
  }

  std::string_view text_;
  std::string_view rest_;
};

}  // namespace

PortSettings ParsePortSettings(std::string_view text) {
  PortSettings settings;
  SettingsReader reader(text);
  settings.speed = reader.Number(kSlowest, kFastest);
  reader.SkipComma();
  settings.parity = reader.Parity();
  reader.Comma();
  settings.data_bits = reader.Number(5, 8);
  reader.Comma();
  settings.stop_bits = reader.Number(1, 2);
  reader.End();
  return settings;
}

}  // namespace tarnlink
