#include "files/screen_file.h"

#include <cmath>

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

struct Screen {
  Colour colour = 0;
  std::vector<ScreenRecord> records;
  bool is_whole = false;
};

Screen ReadScreen(std::string_view text) {
  Screen screen;
  ScreenFileReader reader(text);
  screen.is_whole = Tried([&] {
                      screen.colour = reader.ReadColour();
                      while (auto record = reader.Next()) {
                        screen.records.push_back(std::move(*record));
                      }
                      return true;
                    }).has_value();
  return screen;
}

void ClaimLocation(const LocationRecord& record) {
  const Location& location = record.location;
  Claim(location.Address.size() == 4, "an address has four characters");
  for (const std::string* text : {&location.Alias, &location.ActualVariable, &location.ExcelColumn,
                                  &location.LocSlaveAddress, &location.FunctionCode}) {
    Claim(IsText(*text), "its texts are texts");
  }
  for (const float place :
       {record.value_top, record.value_left, record.name_top, record.name_left}) {
    Claim(std::isfinite(place), "a box has a place");
  }
  Location word = location;
  MakeWordIfBothBytes(word);
  Claim(word.SelectByte < kBoth || word.StorageType == kUnsignedWord ||
            word.StorageType == kSignedWord,
        "both bytes are a word");
}

void ClaimLabel(const LabelRecord& label) {
  Claim(IsText(label.caption) && IsText(label.font.name), "its texts are texts");
  Claim(std::isfinite(label.top) && std::isfinite(label.left) && std::isfinite(label.font.size),
        "a label has a place and a size");
}

// As a text is in a file, which has no place for a quote or a line end inside.
void Plain(std::string& text) {
  for (char& c : text) c = c == '"' || c == '\r' || c == '\n' ? ' ' : c;
}

ScreenRecord AsWritten(ScreenRecord record) {
  if (auto* written = std::get_if<LocationRecord>(&record)) {
    Location& location = written->location;
    for (std::string* text :
         {&location.Address, &location.Alias, &location.ActualVariable, &location.ExcelColumn,
          &location.LocSlaveAddress, &location.FunctionCode}) {
      Plain(*text);
    }
  } else {
    Plain(std::get<LabelRecord>(record).caption);
    Plain(std::get<LabelRecord>(record).font.name);
  }
  return record;
}

void Run(std::string_view input) {
  const std::string text = DecodeText(input);
  const int protocol = ScreenFileReader::InferProtocol(text);
  Claim(protocol >= 0 && protocol < kProtocolCount, "the protocol exists");
  const Screen screen = ReadScreen(text);
  int locations = 0;
  for (const ScreenRecord& record : screen.records) {
    if (const auto* location = std::get_if<LocationRecord>(&record)) {
      ++locations;
      ClaimLocation(*location);
    } else {
      ClaimLabel(std::get<LabelRecord>(record));
    }
  }
  Claim(locations <= kLastLocation, "no more Locations than the table has");
  const std::string written = WriteScreenFile(screen.colour, screen.records);
  Claim(IsText(written), "a screen file is a text");
  const Screen again = ReadScreen(written);
  Claim(again.is_whole && again.records.size() == screen.records.size(),
        "what is written can be read");
  Claim(again.colour == screen.colour, "its colour is the same");
  for (std::size_t i = 0; i < screen.records.size(); ++i) {
    Claim(again.records[i] == AsWritten(screen.records[i]), "and so is each object");
  }
}

std::vector<std::string> Seeds() {
  return {
      SampleText("boiler.wcr").substr(0, 500),
      SampleText("zolt.wcr").substr(0, 500),
      SampleText("modbus.wcr").substr(0, 500),
      "16744576\r\n\"T\",\"Boiler\",10,20.5,\"Sans\",8.25,#TRUE#,#FALSE#,255\r\n",
      "0\n\"L\",0,1,\"01A0\",0,\"a\",\"b\",0,1,0,0,\"1\",1,10,20,30,40,\"0\"\n",
      "0,\"I\",1,3,\"40A1\",0,\"a\",\"b\",0,0,0,0,\"1\",1,1E3,-.5,0,0,\"0\",4,2\n",
      "0,\"M\",1,3,\"0001\",0,\"a\",\"b\",0,0,0,0,\"1\",1,1,2,3,4,\"1\",4,2,\"&H03\",2,#TRUE#\n"};
}

}  // namespace

FuzzTarget ScreenFileTarget() { return {"screen_file", Run, Seeds}; }

}  // namespace tarnlink
