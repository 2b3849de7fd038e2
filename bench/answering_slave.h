// A slave on a pseudo terminal that answers each read request at once, under the TarnLink and the
// ZOLT protocol, in a thread of its own.
#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace bench {

class AnsweringSlave {
 public:
  AnsweringSlave();
  ~AnsweringSlave();
  AnsweringSlave(const AnsweringSlave&) = delete;
  AnsweringSlave& operator=(const AnsweringSlave&) = delete;

  const std::string& path() const { return path_; }
  long answered() const { return answered_; }

 private:
  void Run();

  int master_ = -1;
  int stop_read_ = -1;
  int stop_write_ = -1;
  std::string path_;
  std::atomic<long> answered_ = 0;
  std::thread thread_;
};

}  // namespace bench
