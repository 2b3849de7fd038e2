#include "monitor/gen_parameter_file.h"

#include <cstdint>
#include <limits>
#include <string_view>

#include "common/numbers.h"
#include "common/text_file.h"
#include "files/parameter_file.h"

namespace tarnlink {

namespace {

constexpr int kIdClass = 5;
constexpr std::int64_t kHighByte = 256;
constexpr std::int64_t kLargestByte = 255;
constexpr char kEepromPage = '8';
constexpr char kRamPage = 'F';
constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";

std::string Header(const frm_Main& main, const std::string& file) {
  Platform& platform = main.platform();
  const std::string day =
      FormatDate(platform.clock().Now(), "dd-mmm-yyyy", platform.locale().Months());
  return ParameterComment("Generated with " + std::string(kProgramTitle) +
                          " Version " TARNLINK_VERSION) +
         ParameterComment("from " + file + " at " + day) +
         ParameterComment(
             "Class 5 writes a word while the value is byte in MSB, class 7 writes one byte only");
}

bool IsMadeOf(std::string_view text, std::string_view digits) {
  return !text.empty() && text.find_first_not_of(digits) == std::string_view::npos;
}

// False for what is no value of a controller: the place-holder of a box that was never answered,
// "-", "can not read", and the state of a single bit.
bool IsNumber(const std::string& text, std::int32_t representation) {
  switch (representation) {
    case kHexadecimal:
      return IsMadeOf(text, kHexDigits);
    case kBinary:
      return IsMadeOf(text, "01");
    case kOctal:
      return IsMadeOf(text, "01234567");
    default:
      return IsMadeOf(std::string_view(text).substr(text.starts_with('-') ? 1 : 0), "0123456789");
  }
}

// `Val` knows no "&B", so that a binary value gives 0.
std::int64_t ValueOf(const std::string& text, std::int32_t representation) {
  const char* prefix = representation == kHexadecimal ? "&H"
                       : representation == kBinary    ? "&B"
                       : representation == kOctal     ? "&O"
                                                      : "";
  return ValInt(prefix + text, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

std::string Lines(const Location& location, const std::string& text, std::int32_t data_class,
                  std::int64_t value) {
  return ParameterComment(location.Alias + " <- " + text) +
         ParameterLine(data_class, location.Address, value);
}

std::string IdLines(const Location& location, const std::string& text) {
  std::int64_t value = ValueOf(text, location.Representation);
  if (location.SelectByte == kMsb) value *= kHighByte;
  return Lines(location, text, location.Class, value);
}

std::string MemoryLines(const Location& location, const std::string& text,
                        const ParameterSelection& selection) {
  std::int64_t value = ValueOf(text, location.Representation);
  if (value > kLargestByte) value &= kLargestByte;
  const char page = location.Address.front();
  const bool goes_in =
      (selection.Class7EEPROM && page == kEepromPage) || (selection.Class7RAM && page == kRamPage);
  return goes_in ? Lines(location, text, kMemoryParameterClass, value) : std::string();
}

// Nothing for a Location that is not to go in.
std::string LinesOf(const frm_Main& main, int index, const ParameterSelection& selection) {
  if (!main.IsShown(index)) return {};
  const Location& location = main.Locations[index];
  const std::string& text = main.RAM_LOC_VAL(index).Text;
  // Not what was written, typed or left over.
  if (!main.Reads.Holds(index, location, text)) return {};
  if (!IsNumber(text, location.Representation)) return {};
  // Of any other address the line would say something else.
  if (location.Address.size() != 4 || !IsMadeOf(location.Address, kHexDigits)) return {};
  if (location.Specification == 0) return MemoryLines(location, text, selection);
  const bool is_parameter = location.Specification == 1 && location.Class == kIdClass;
  return is_parameter && selection.Class5 ? IdLines(location, text) : std::string();
}

}  // namespace

ParameterCount CountParameters(const frm_Main& main, const ParameterSelection& selection) {
  ParameterCount count;
  for (int i = 1; i <= main.MaxId; ++i) {
    if (LinesOf(main, i, selection).empty()) continue;
    ++count.all;
    if (main.Locations[i].Representation == kBinary) ++count.binary;
  }
  return count;
}

void GenParameterFile(const frm_Main& main, const ParameterSelection& selection,
                      const std::string& FileName) {
  std::string text = Header(main, FileName);
  for (int i = 1; i <= main.MaxId; ++i) text += LinesOf(main, i, selection);
  main.platform().files().WriteWhole(FileName, EncodeText(text));
}

}  // namespace tarnlink
