// The controller as a Modbus RTU slave, under one or several addresses. It knows the functions 3,
// 4, 6 and 16, whose frames end by their length; others end in silence. After bytes that are no
// frame it listens again only when the line has been silent.
#pragma once

#include <string>
#include <vector>

#include "simulator/modbus_frames.h"
#include "simulator/slave.h"

namespace boiler {

class ModbusSlave : public Slave {
 public:
  // `addresses` are kModbusFirstSlave to kModbusLastSlave.
  explicit ModbusSlave(std::vector<int> addresses = {kModbusFirstSlave});

  std::optional<Heard> Hear(char byte) override;
  std::optional<Heard> Silence() override;
  bool Waiting() const override { return !waiting_.empty() || !lost_.empty(); }
  bool EndsInSilence() const override;
  void Forget() override;

  std::string Answer(const Request& request, Controller& controller, WriteEffect effect) override;
  std::string WrongAnswer(const Fault& fault, const Request& request, const std::string& answer,
                          const Controller& controller, Random& random) override;
  // Only that of a write names a register.
  bool NamesId(const Request& request) const override { return request.write; }
  std::string BusyAnswer(const Request& request) override;
  std::string ForeignTraffic(Random& random) override;
  std::string WithWrongCheck(const std::string& answer, Random& random) override;
  bool CheckHolds(std::string_view frame) const override { return ModbusCheckHolds(frame); }
  std::string_view Misfit(FaultKind) const override { return ""; }

 private:
  Heard Complete();
  Ignored Ignore(std::string_view reason);
  bool IsOurs(int slave) const;

  std::vector<int> addresses_;
  std::string waiting_;
  std::string lost_;  // why all is ignored up to the next silence; empty while it is not
};

}  // namespace boiler
