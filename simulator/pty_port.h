// A port that is a pseudo terminal, with a link as its lasting name where one is wanted.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "simulator/file_descriptor.h"
#include "simulator/link.h"
#include "simulator/port.h"

namespace boiler {

class PtyPort : public Port {
 public:
  // Unplugged at first. An empty `link` means none. Plugged under another name the port has the
  // link `link`-other instead. While it is unplugged there is no link.
  explicit PtyPort(const std::string& link);

  int File() const override { return master_.number(); }
  const std::string& Path() const override { return path_; }
  void Plug(bool under_other_name) override;
  void Unplug() override;
  void Block(FaultKind kind) override;
  void Unblock() override;

 private:
  void OpenPair();
  void LiftAccess();

  std::unique_ptr<Link> link_;
  std::unique_ptr<Link> other_link_;
  Link* active_link_ = nullptr;
  FileDescriptor master_;
  // Kept open, so that the terminal keeps its raw mode and the master sees no hang-up while nobody
  // else has it open.
  FileDescriptor terminal_;
  std::string path_;
  bool unplugged_by_block_ = false;
  std::optional<unsigned> mode_before_block_;
};

}  // namespace boiler
