// Pieces of the real machine that the contract tests need: pseudo terminals, folders, rights.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

class PtyPair {
 public:
  PtyPair();
  ~PtyPair() { Close(); }
  PtyPair(const PtyPair&) = delete;
  PtyPair& operator=(const PtyPair&) = delete;

  const std::string& path() const { return path_; }
  // Returns when the bytes wait at the near end.
  void Send(std::string_view bytes) const;
  // All that has come in by now; empty when there is nothing.
  std::string Take() const;
  // As pulling the plug.
  void Close();

 private:
  int Waiting() const;

  int handle_ = -1;
  int near_end_ = -1;  // kept open, to see what waits there
  std::string path_;
};

// While this lives, a test that runs as root has an ordinary user's rights.
class OrdinaryUser {
 public:
  OrdinaryUser();
  ~OrdinaryUser();
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  bool was_root_;
};

}  // namespace tarnlink
