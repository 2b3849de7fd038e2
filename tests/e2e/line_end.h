// The far end of a serial line on a pseudo terminal, played by the test byte by byte.
#pragma once

#include <string>

namespace e2e {

class LineEnd {
 public:
  LineEnd();
  ~LineEnd();
  LineEnd(const LineEnd&) = delete;
  LineEnd& operator=(const LineEnd&) = delete;

  // The device that the program opens.
  const std::string& path() const { return path_; }

  void Send(const std::string& bytes);
  // Waits for `count` bytes and returns what came in time.
  std::string Receive(std::size_t count, int milliseconds);
  // What has come, as soon as there is anything; empty if nothing came in time.
  std::string ReceiveSome(std::size_t most, int milliseconds);
  // What the program sent and nobody received yet is thrown away.
  void Drain();
  // The cable is pulled.
  void Unplug();

 private:
  int master_ = -1;
  std::string path_;
};

}  // namespace e2e
