#include "platform/port_settings.h"

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"

namespace tarnlink {
namespace {

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const auto settings = Tried([&] { return ParsePortSettings(text); });
  if (!settings) return;
  Claim(settings->speed >= 50 && settings->speed <= 4'000'000, "there is such a speed");
  Claim(settings->parity == 'N' || settings->parity == 'E' || settings->parity == 'O', "a parity");
  Claim(settings->data_bits >= 5 && settings->data_bits <= 8, "so many data bits");
  Claim(settings->stop_bits == 1 || settings->stop_bits == 2, "so many stop bits");
  const std::string written = std::to_string(settings->speed) + "," + settings->parity + "," +
                              std::to_string(settings->data_bits) + "," +
                              std::to_string(settings->stop_bits);
  Claim(ParsePortSettings(written) == *settings, "they are read as they are written");
}

std::vector<std::string> Seeds() {
  return {" 9600,N,8, 1", " 2400n,8,1", "4000000 , e , 5 , 2 ", "9600,N,8,1.5", "1e3,O,7,1",
          "9600,N,9,1",   "9600,N,4,1"};
}

}  // namespace

FuzzTarget PortSettingsTarget() { return {"port_settings", Run, Seeds}; }

}  // namespace tarnlink
