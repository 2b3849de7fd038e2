// A Modbus RTU slave on libmodbus: the far end of a line whose protocol is not ours.
//
//   modbus_slave DEVICE ADDRESS REGISTERS      numbers are hexadecimal
//
// It has so many holding and so many input registers, from 0 on. It prints "ready" and then obeys
// lines on standard input, each with one line of answer; a table is the function that reads it.
//
//   set 3 0010 12AB 12AC    puts values into registers of a table
//   get 3 0010 2            tells what they hold
//   refuse 0010 6           requests that begin at 0010 get exception 6; 0 ends that

#include <modbus/modbus.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

namespace {

class Slave {
 public:
  Slave(const char* device, int address, int registers)
      : line_(modbus_new_rtu(device, 19200, 'N', 8, 1), modbus_free),
        tables_(modbus_mapping_new(0, 0, registers, registers), modbus_mapping_free) {
    is_open_ = line_ && tables_ && modbus_set_slave(line_.get(), address) == 0 &&
               modbus_connect(line_.get()) == 0;
  }
  ~Slave() {
    if (is_open_) modbus_close(line_.get());
  }
  Slave(const Slave&) = delete;
  Slave& operator=(const Slave&) = delete;

  bool is_open() const { return is_open_; }

  // Until the line or standard input ends.
  void Serve() {
    pollfd sources[] = {{modbus_get_socket(line_.get()), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    while (poll(sources, 2, -1) > 0) {
      if (sources[0].revents != 0 && !Reply()) return;
      if (sources[1].revents == 0) continue;
      std::string command;
      if (!std::getline(std::cin, command)) return;
      std::cout << Obey(command) << std::endl;
    }
  }

 private:
  bool Reply() {
    std::uint8_t request[MODBUS_RTU_MAX_ADU_LENGTH];
    const int length = modbus_receive(line_.get(), request);
    if (length < 0) return errno == EMBBADCRC || errno == EMBBADDATA || errno == ETIMEDOUT;
    if (length == 0) return true;  // another slave's
    const int at = modbus_get_header_length(line_.get()) + 1;
    const auto refused = refusals_.find(request[at] << 8 | request[at + 1]);
    if (refused != refusals_.end()) {
      modbus_reply_exception(line_.get(), request, static_cast<unsigned>(refused->second));
    } else {
      modbus_reply(line_.get(), request, length, tables_.get());
    }
    return true;
  }

  std::string Obey(const std::string& command) {
    std::istringstream words(command);
    std::string verb;
    words >> verb >> std::hex;
    if (verb == "refuse") {
      int first = 0;
      int code = 0;
      words >> first >> code;
      refusals_.erase(first);
      if (code != 0) refusals_[first] = code;
      return "ok";
    }
    int function = 0;
    int first = 0;
    words >> function >> first;
    std::uint16_t* table = function == 3 ? tables_->tab_registers : tables_->tab_input_registers;
    if (verb == "set") {
      for (std::uint16_t value; words >> value; ++first) table[first] = value;
      return "ok";
    }
    if (verb != "get") return "unknown: " + command;
    int count = 0;
    words >> count;
    std::string values;
    for (int i = 0; i < count; ++i) {
      char digits[8];
      std::snprintf(digits, sizeof digits, i == 0 ? "%04X" : " %04X", table[first + i]);
      values += digits;
    }
    return values;
  }

  std::unique_ptr<modbus_t, decltype(&modbus_free)> line_;
  std::unique_ptr<modbus_mapping_t, decltype(&modbus_mapping_free)> tables_;
  bool is_open_ = false;
  std::map<int, int> refusals_;  // exception by first register
};

int Hexadecimal(const char* text) { return std::stoi(text, nullptr, 16); }

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  Slave slave(argv[1], Hexadecimal(argv[2]), Hexadecimal(argv[3]));
  if (!slave.is_open()) return 1;
  std::cout << "ready" << std::endl;
  slave.Serve();
}
