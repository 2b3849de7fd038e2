#include "files/screen_file.h"

#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/text_file.h"

namespace tarnlink {
namespace {

bool IsTag(std::string_view text, char tag) { return text.size() == 1 && text[0] == tag; }

// Builds one line of fields.
class Line {
 public:
  void Tag(char tag) { Text({&tag, 1}); }
  void Text(std::string_view text) { Add(QuotedField(text)); }
  void Whole(std::int32_t number) { Add(std::to_string(number)); }
  void Single(float number) { Add(FormatSingle(number)); }
  void Boolean(bool value) { Add(BooleanField(value)); }

  void EndIn(std::string& file) const { file.append(text_).append(kLineEnd); }

 private:
  void Add(std::string_view field) {
    if (!text_.empty()) text_ += ',';
    text_ += field;
  }

  std::string text_;
};

Line LocationLine(const LocationRecord& record) {
  const Location& location = record.location;
  Line line;
  line.Tag(record.tag);
  line.Whole(location.Specification);
  line.Whole(location.StorageType);
  line.Text(location.Address);
  line.Whole(location.BitAddress);
  line.Text(location.Alias);
  line.Text(location.ActualVariable);
  line.Whole(location.SpareByte);
  line.Whole(location.LogEnable);
  line.Whole(location.ScanFlags);
  line.Whole(location.DDEEnable);
  line.Text(location.ExcelColumn);
  line.Whole(location.Representation);
  line.Single(record.value_top);
  line.Single(record.value_left);
  line.Single(record.name_top);
  line.Single(record.name_left);
  line.Text(location.LocSlaveAddress);
  if (record.tag == kMemoryTag) return line;
  line.Whole(location.Class);
  line.Whole(location.SelectByte);
  if (record.tag == kIdTag) return line;
  line.Text(location.FunctionCode);
  line.Whole(location.NumReg);
  line.Boolean(location.RegisterFollower);
  return line;
}

Line LabelLine(const LabelRecord& label) {
  Line line;
  line.Tag(kLabelTag);
  line.Text(label.caption);
  line.Single(label.top);
  line.Single(label.left);
  line.Text(label.font.name);
  line.Single(label.font.size);
  line.Boolean(label.font.bold);
  line.Boolean(label.font.italic);
  line.Whole(label.colour);
  return line;
}

}  // namespace

int ScreenFileReader::InferProtocol(std::string_view text) {
  int protocol = 0;
  FieldStream fields(text);
  while (const std::optional<Field> field = fields.Next()) {
    if (IsTag(field->text, kIdTag)) protocol = kZoltProtocol;
    if (IsTag(field->text, kModbusTag)) protocol = kModbusProtocol;
  }
  return protocol;
}

std::optional<ScreenRecord> ScreenFileReader::Next() {
  while (const std::optional<Field> field = fields_.Next()) {
    if (IsTag(field->text, kLabelTag)) return ReadLabel();
    for (const char tag : {kMemoryTag, kIdTag, kModbusTag}) {
      if (IsTag(field->text, tag)) return ReadLocation(tag);
    }
  }
  return std::nullopt;
}

LocationRecord ScreenFileReader::ReadLocation(char tag) {
  if (location_count_ == kLastLocation) {
    throw RunTimeError(kSubscript,
                       "The file holds more than " + std::to_string(kLastLocation) + " Locations.");
  }
  ++location_count_;
  LocationRecord record;
  record.tag = tag;
  Location& location = record.location;
  location.Specification = fields_.ReadLong("Specification");
  location.StorageType = fields_.ReadLong("StorageType");
  location.Address = FixedAddress(fields_.ReadText("Address"));
  location.BitAddress = fields_.ReadByte("BitAddress");
  location.Alias = fields_.ReadText("Alias");
  location.ActualVariable = fields_.ReadText("ActualVariable");
  location.SpareByte = fields_.ReadByte("SpareByte");
  location.LogEnable = fields_.ReadByte("LogEnable");
  location.ScanFlags = fields_.ReadByte("ScanFlags");
  location.DDEEnable = fields_.ReadByte("DDEEnable");
  location.ExcelColumn = fields_.ReadText("ExcelColumn");
  location.Representation = fields_.ReadLong("Representation");
  record.value_top = fields_.ReadSingle("the value box's Top");
  record.value_left = fields_.ReadSingle("the value box's Left");
  record.name_top = fields_.ReadSingle("the name box's Top");
  record.name_left = fields_.ReadSingle("the name box's Left");
  location.LocSlaveAddress = fields_.ReadText("LocSlaveAddress");
  if (tag == kMemoryTag) return record;
  location.Class = fields_.ReadByte("Class");
  location.SelectByte = fields_.ReadByte("SelectByte");
  if (tag == kIdTag) return record;
  location.FunctionCode = fields_.ReadText("FunctionCode");
  location.NumReg = fields_.ReadInteger("NumReg");
  location.RegisterFollower = fields_.ReadBoolean("RegisterFollower");
  return record;
}

LabelRecord ScreenFileReader::ReadLabel() {
  LabelRecord label;
  label.caption = fields_.ReadText("the caption");
  label.top = fields_.ReadSingle("the label's Top");
  label.left = fields_.ReadSingle("the label's Left");
  label.font.name = fields_.ReadText("the font's name");
  label.font.size = fields_.ReadSingle("the font's size");
  label.font.bold = fields_.ReadBoolean("Bold");
  label.font.italic = fields_.ReadBoolean("Italic");
  label.colour = fields_.ReadLong("the text's colour");
  return label;
}

char LocationTag(const Location& location, bool modbus_selected) {
  if (location.Specification == 0) return kMemoryTag;
  return modbus_selected ? kModbusTag : kIdTag;
}

void MakeWordIfBothBytes(Location& location) {
  if (location.SelectByte >= kBoth && location.StorageType != kSignedWord) {
    location.StorageType = kUnsignedWord;
  }
}

std::string WriteScreenFile(Colour form_colour, std::span<const ScreenRecord> records) {
  std::string file = std::to_string(form_colour).append(kLineEnd);
  for (const ScreenRecord& record : records) {
    if (const auto* location = std::get_if<LocationRecord>(&record)) {
      LocationLine(*location).EndIn(file);
    } else {
      LabelLine(std::get<LabelRecord>(record)).EndIn(file);
    }
  }
  return file;
}

}  // namespace tarnlink
