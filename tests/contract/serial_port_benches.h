// A serial port and its far end, once in memory and once over a pseudo terminal.
#pragma once

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "contract/loops.h"
#include "contract/machine.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_timer.h"
#include "support/fake_world.h"
#include "support/temporary_folder.h"

namespace tarnlink {

class FakePortBench : public VirtualLoop {
 public:
  std::unique_ptr<SerialPort> MakePort() { return world().CreatePort(); }
  std::unique_ptr<Timer> MakeTimer() { return world().CreateTimer(); }

  void FarEndSends(std::string_view bytes) { world().port(0).Receive(bytes); }
  std::string FarEndGot() {
    std::string all;
    for (int i = 0; i < world().port_count(); ++i) {
      for (const std::string& frame : world().port(i).TakeSent()) all += frame;
    }
    return all;
  }
  void PullOut() { world().port(0).Unplug(); }
  void PlugInAgain() { world().port(0).PlugIn(); }
  void HoldElsewhere(bool held) { world().port(0).MakeBusy(held); }
};

class QtPortBench : public QtLoop {
 public:
  QtPortBench() { PlugInAgain(); }
  ~QtPortBench() { HoldElsewhere(false); }

  // Every port number means the link, as it would a stable name of an adapter.
  std::unique_ptr<SerialPort> MakePort() {
    return std::make_unique<QtSerialPort>([this](int) { return link(); });
  }
  std::unique_ptr<Timer> MakeTimer() { return std::make_unique<QtTimer>(); }

  void FarEndSends(std::string_view bytes) { pty_->Send(bytes); }
  std::string FarEndGot() { return pty_->Take(); }
  void PullOut() {
    pty_.reset();
    std::filesystem::remove(link());
  }
  void PlugInAgain() {
    pty_ = std::make_unique<PtyPair>();
    std::filesystem::remove(link());
    std::filesystem::create_symlink(pty_->path(), link());
  }
  void HoldElsewhere(bool held) {
    if (holder_ >= 0) close(holder_);
    holder_ = -1;
    if (!held) return;
    holder_ = open(pty_->path().c_str(), O_RDWR | O_NOCTTY);
    flock(holder_, LOCK_EX | LOCK_NB);
  }

  std::string link() const { return folder_ / "adapter"; }
  PtyPair& pty() { return *pty_; }

 private:
  TemporaryFolder folder_;
  std::unique_ptr<PtyPair> pty_;
  int holder_ = -1;
};

}  // namespace tarnlink
