// One request after the other to a slave's memory, each repeated until it is answered: what the
// EEPROM writer and the EEPROM downloader have in common.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/serial_port.h"
#include "platform/timer.h"
#include "tools/answer_frames.h"
#include "tools/quiet_watch.h"
#include "tools/tool_host.h"

namespace tarnlink {

class EepromLine {
 public:
  static constexpr int kAnswerTime = 1000;  // ms

  // Host, port and timer outlive it; the events of both are its own.
  EepromLine(ToolHost& host, SerialPort& port, Timer& timeout);

  // What the slave says to the request. True: the request is answered. False: it goes out again.
  // Which byte a write acknowledge is of, is not looked at before.
  std::function<bool(std::string_view frame)> Answered;
  // The request goes out once more: how often that was, and why, as a sentence.
  std::function<void(const std::string& trouble)> Repeated;
  // The port cannot be used; it is closed already.
  std::function<void(const std::string& reason)> Lost;

  // Throws RunTimeError.
  void Open();
  void Close();

  // `slave` answers under `id`.
  void Send(const std::string& message, const std::string& slave, const std::string& id);
  // The present request once more when the line has been quiet, for its answer was another one's.
  void AskAgain(const std::string& why);
  // From here on the line is watched until it is quiet, for so many ms more than an answer takes
  // that comes in time.
  void AwaitQuiet(int late = 0);

  // Nothing is awaited, neither an answer nor a quiet line.
  bool IsReady() const { return !is_out_ && !quiet_watch_.IsOn(); }
  // Something came with the answer or behind it.
  bool HeardMore() const { return heard_more_; }
  // How often the present request has been repeated.
  int Repeats() const { return repeats_; }

  std::string LastMessage;

 private:
  void ResendMsg();
  void Put();
  void CommEvent(int event);
  void Received();
  void Take(std::string_view frame);
  void HearMaster(std::string_view frame);
  bool IsForUs(std::string_view frame) const;
  bool BearsId(std::string_view frame) const;
  void TimeOut();
  void Quiet();
  void Lose(const std::string& reason);

  ToolHost& host_;
  SerialPort& port_;
  Timer& timeout_;
  AnswerFrames frames_;
  std::string slave_;
  std::string id_;
  bool is_open_ = false;      // and its loss has not been told
  bool is_out_ = false;       // an answer is awaited, or the request is to go out again
  bool is_doubtful_ = false;  // more than one answer may come
  bool heard_more_ = false;
  bool is_contested_ = false;  // another master has asked the slave since the request went out
  bool is_unsettled_ = false;  // it was closed while an answer could come
  int repeats_ = 0;
  std::string why_;  // the next repeat
  QuietWatch quiet_watch_;
};

}  // namespace tarnlink
