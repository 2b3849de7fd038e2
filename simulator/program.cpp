#include "simulator/program.h"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <utility>

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "simulator/bytes.h"
#include "simulator/device_port.h"
#include "simulator/problem.h"
#include "simulator/pty_port.h"

namespace boiler {
namespace {

constexpr std::int64_t kRebootDeafUs = 3'000'000;
constexpr std::size_t kLongestCommand = 65'536;

std::int64_t MonotonicUs() {
  timespec now = {};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return std::int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1000;
}

std::unique_ptr<Port> MakePort(const ProgramOptions& options) {
  if (options.device.empty()) return std::make_unique<PtyPort>(options.link);
  return std::make_unique<DevicePort>(options.device, options.device_baud);
}

FileDescriptor EndSignals() {
  sigset_t set;
  ::sigemptyset(&set);
  ::sigaddset(&set, SIGTERM);
  ::sigaddset(&set, SIGINT);
  ::sigprocmask(SIG_BLOCK, &set, nullptr);
  return FileDescriptor(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
}

std::ofstream OpenLog(const std::string& path) {
  std::ofstream log;
  if (path.empty()) return log;
  log.open(path, std::ios::binary);
  if (!log) throw Problem("The log \"" + path + "\" cannot be written.");
  return log;
}

}  // namespace

Program::Program(const ProgramOptions& options)
    : options_(options),
      started_us_(MonotonicUs()),
      log_(OpenLog(options.log)),
      port_(MakePort(options)),
      boiler_(options.boiler, [this](const LogEntry& entry) {
        if (log_.is_open()) log_ << LogLine(entry) << '\n' << std::flush;
      }) {
  signals_ = EndSignals();
  ::signal(SIGPIPE, SIG_IGN);
  port_->Plug(false);
  Log(LogKind::kPort, "plugged, " + port_->Path());
  for (const std::string& text : options.faults) AddFault(text);
}

void Program::Run() {
  Print(port_->Path());
  while (running_) {
    Wait();
    CarryOutDue();
  }
  Log(LogKind::kNote, "end");
}

std::int64_t Program::Now() const { return MonotonicUs() - started_us_; }

std::optional<std::int64_t> Program::NextDue() const {
  std::optional<std::int64_t> next = boiler_.line().NextDue();
  if (replug_) next = next ? std::min(*next, replug_->at_us) : replug_->at_us;
  return next;
}

// Sleeps until something arrives or is due.
void Program::Wait() {
  pollfd files[] = {{signals_.number(), POLLIN, 0},
                    {input_open_ ? STDIN_FILENO : -1, POLLIN, 0},
                    {port_->File(), POLLIN, 0}};
  timespec time = {};
  const auto due = NextDue();
  if (due) {
    const std::int64_t left_us = std::max<std::int64_t>(0, *due - Now());
    time = {left_us / 1'000'000, left_us % 1'000'000 * 1000};
  }
  if (::ppoll(files, std::size(files), due ? &time : nullptr, nullptr) <= 0) return;
  if (files[0].revents != 0) running_ = false;
  if (files[2].revents != 0) HearPort();
  if (files[1].revents != 0) HearCommands();
}

void Program::HearPort() {
  const auto bytes = ReadWaiting(port_->File());
  if (bytes) {
    boiler_.line().Hear(Now(), *bytes);
  } else {
    Unplug("the device is gone");
  }
}

void Program::HearCommands() {
  const auto text = ReadWaiting(STDIN_FILENO);
  if (!text) {
    input_open_ = false;
    if (options_.until_eof) running_ = false;
    return;
  }
  input_ += *text;
  for (std::size_t end; running_ && (end = input_.find('\n')) != std::string::npos;) {
    const std::string line = input_.substr(0, end);
    input_.erase(0, end + 1);
    try {
      const std::string answer = CarryOut(ParseCommand(line));
      if (!answer.empty()) Print(answer);
    } catch (const Problem& problem) {
      Print(std::string("error: ") + problem.what());
    }
  }
  if (input_.size() > kLongestCommand) input_.clear();
}

void Program::CarryOutDue() {
  Deliver(boiler_.line().TakeDue(Now()));
  if (const auto action = boiler_.line().TakePortAction()) {
    Unplug("a fault");
    if (action->then != PortAction::Then::kStayOut) {
      replug_ = {Now() + action->after_us, action->then == PortAction::Then::kOtherName};
    }
  }
  if (!replug_ || replug_->at_us > Now()) return;
  try {
    Plug(replug_->under_other_name);
  } catch (const Problem& problem) {
    Log(LogKind::kPort, problem.what());
  }
}

void Program::Deliver(std::string_view bytes) {
  if (bytes.empty() || port_->File() < 0) return;
  const bool lost = WriteFitting(port_->File(), bytes) < bytes.size();
  if (lost && !losing_bytes_) Log(LogKind::kNote, "bytes are lost: nobody takes them");
  losing_bytes_ = lost;
}

std::string Program::CarryOut(const Command& command) {
  switch (command.kind) {
    case CommandKind::kNothing:
      return "";
    case CommandKind::kFault:
      AddFault(command.text);
      break;
    case CommandKind::kClear:
      Clear();
      break;
    case CommandKind::kSet:
      Set(command);
      break;
    case CommandKind::kGet:
      return Get(command);
    case CommandKind::kUnplug:
      replug_.reset();
      Unplug("a command");
      break;
    case CommandKind::kReplug:
    case CommandKind::kReplugOther:
      Unplug("to be plugged again");
      Plug(command.kind == CommandKind::kReplugOther);
      break;
    case CommandKind::kReboot:
      boiler_.line().Reboot(Now(), kRebootDeafUs);
      break;
    case CommandKind::kQuit:
      running_ = false;
      break;
  }
  return "ok";
}

std::string Program::Get(const Command& command) {
  Controller& controller = boiler_.controller();
  controller.AdvanceTo(Now());
  std::string bytes;
  for (int i = 0; i < command.count; ++i) {
    bytes += static_cast<char>(
        controller.memory().Byte(static_cast<std::uint16_t>(command.address + i)));
  }
  return HexDigits(command.address, 4) + ' ' + HexText(bytes);
}

void Program::Set(const Command& command) {
  Controller& controller = boiler_.controller();
  controller.AdvanceTo(Now());
  std::uint16_t address = command.address;
  for (const char byte : command.bytes) {
    controller.WriteByte(address++, static_cast<std::uint8_t>(byte));
  }
  Log(LogKind::kNote, "set " + HexDigits(command.address, 4) + ' ' + HexText(command.bytes));
}

void Program::AddFault(const std::string& text) {
  const Fault fault = ParseFaultPlan(text).fault;
  if (BlocksOpening(fault.kind)) {
    port_->Block(fault.kind);
    // A block may have pulled the cable.
    if (port_->File() < 0) boiler_.line().Cut(Now());
    Log(LogKind::kPort, FaultText(fault));
  } else {
    boiler_.line().AddFault(text);
    Log(LogKind::kNote, "fault " + text);
  }
}

void Program::Clear() {
  boiler_.line().ClearFaults();
  const bool plugged = port_->File() >= 0;
  port_->Unblock();
  Log(LogKind::kNote, "clear");
  if (!plugged && port_->File() >= 0) TellPlugged();
}

void Program::Plug(bool under_other_name) {
  replug_.reset();
  port_->Plug(under_other_name);
  TellPlugged();
}

void Program::TellPlugged() {
  Log(LogKind::kPort, "plugged, " + port_->Path());
  Print("port " + port_->Path());
}

void Program::Unplug(std::string_view why) {
  boiler_.line().Cut(Now());
  if (port_->File() < 0) return;
  port_->Unplug();
  Log(LogKind::kPort, "unplugged: " + std::string(why));
}

void Program::Log(LogKind kind, std::string meaning) {
  if (!log_.is_open()) return;
  log_ << LogLine({Now(), kind, 0, Check::kNone, "", std::move(meaning)}) << '\n' << std::flush;
}

void Program::Print(std::string_view line) { std::cout << line << '\n' << std::flush; }

}  // namespace boiler
