#include "form/write_fixture.h"

namespace tarnlink {
namespace {

constexpr const char* kProtocolNames[] = {"tarnlink", "zolt", "modbus"};
constexpr const char* kAddresses[] = {"", "0", "1"};
constexpr int k9600 = 3;  // index of opt_Baudrate

}  // namespace

Location WriteId(const std::string& address, int data_class, std::uint8_t select) {
  Location location;
  location.Address = address;
  location.Alias = "id " + address;
  location.Class = static_cast<std::uint8_t>(data_class);
  location.SelectByte = select;
  location.StorageType = select == kBoth ? kUnsignedWord : kUnsignedByte;
  return location;
}

Location WriteRegisterOf(const std::string& address, std::uint8_t select) {
  Location location = WriteId(address, 1, select);
  location.Alias = "at " + address;
  location.LocSlaveAddress = "1";
  location.FunctionCode = "&H03";
  return location;
}

Location BitAt(const std::string& address, int bit) {
  Location location = ByteAt(address);
  location.StorageType = kBit;
  location.BitAddress = static_cast<std::uint8_t>(bit);
  return location;
}

WriteTest::WriteTest(int protocol)
    : boiler(world, {.protocol = kProtocolNames[protocol],
                     .slave = {.addresses = kAddresses[protocol]},
                     .line = {.answer_delay_us = 5'000}}) {
  ChooseProtocol(protocol);
  monitor.options.opt_Baudrate.Select(k9600);
}

void WriteTest::Run(const std::vector<Location>& locations) {
  Screen(locations);
  Start();
  Advance(38);
  Sent();
}

void WriteTest::WriteAs(int index, int format, const std::string& text) {
  Ask(index);
  dialog().opt_WriteValueFormat.Choose(format);
  dialog().txt_WriteValue.Text = text;
  dialog().cmd_WriteOk.Press();
}

void WriteTest::WriteBit(int index, bool value) {
  Ask(index);
  bit_dialog().Choose(value);
  bit_dialog().cmd_Ok.Press();
}

}  // namespace tarnlink
