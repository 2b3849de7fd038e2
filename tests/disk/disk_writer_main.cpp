// Saves documents as it is told, for a test that kills it, fills its disk and makes its calls fail:
//
//   disk_writer KIND PATH SIZE
//
// Lines of standard input: "save A"; "loop A" (A, B, C, A... until the end); "limit BYTES"
// of a file, -1 for none; "mount FOLDER" (a small disk that nobody else sees); "room BYTES" on it,
// -1 for all. Each is answered: "saved A", "failed CODE REASON", "ok", "no". The answers go out by
// writev, so that a call of write is always one to a file.

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <unistd.h>

#include <QCoreApplication>
#include <csignal>
#include <fstream>
#include <iostream>
#include <sstream>

#include "common/run_time_error.h"
#include "disk/documents.h"
#include "platform/qt/qt_files.h"

namespace {

using tarnlink::disk::Document;

constexpr long long kDisk = 16 << 20;  // bytes

void Answer(std::string line) {
  line += '\n';
  const iovec part{line.data(), line.size()};
  if (writev(STDOUT_FILENO, &part, 1) < 0) _exit(1);
}

// Reasons may have several lines, an answer has one.
std::string OnOneLine(std::string text) {
  for (char& character : text) {
    if (character == '\n') character = ' ';
  }
  return text;
}

void Save(Document& document, char version) {
  try {
    document.Save(version);
    Answer(std::string("saved ") + version);
  } catch (const tarnlink::RunTimeError& error) {
    Answer("failed " + std::to_string(error.code()) + " " + OnOneLine(error.what()));
  } catch (const std::exception& error) {
    Answer(std::string("failed 0 ") + OnOneLine(error.what()));
  }
}

[[noreturn]] void Loop(Document& document, char version) {
  for (;; version = tarnlink::disk::VersionAfter(version)) Save(document, version);
}

bool Limit(long long bytes) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = bytes < 0 ? RLIM_INFINITY : static_cast<rlim_t>(bytes);
  return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

void WriteFile(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

// As root without more ado, as anybody else where the system lets users be root of their own.
bool Mount(const std::string& folder) {
  const uid_t user = getuid();
  const gid_t group = getgid();
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    WriteFile("/proc/self/setgroups", "deny");
    WriteFile("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
    WriteFile("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
  }
  if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
  const std::string size = "size=" + std::to_string(kDisk);
  return mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

bool LeaveRoom(const std::string& folder, long long bytes) {
  const std::string ballast = folder + "/ballast";
  unlink(ballast.c_str());
  if (bytes < 0) return true;
  struct statvfs disk {};
  if (statvfs(folder.c_str(), &disk) != 0) return false;
  const auto room = static_cast<long long>(disk.f_bavail * disk.f_frsize);
  if (room <= bytes) return room == bytes;
  const int file = open(ballast.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  const bool done = file >= 0 && posix_fallocate(file, 0, room - bytes) == 0;
  if (file >= 0) close(file);
  return done;
}

void Obey(const std::string& line, Document& document, std::string& disk) {
  std::istringstream words(line);
  std::string command;
  words >> command;
  char version = 'A';
  long long bytes = 0;
  if (command == "save") {
    words >> version;
    Save(document, version);
  } else if (command == "loop") {
    words >> version;
    Loop(document, version);
  } else if (command == "limit") {
    words >> bytes;
    Answer(Limit(bytes) ? "ok" : "no");
  } else if (command == "mount") {
    words >> disk;
    Answer(Mount(disk) ? "ok" : "no");
  } else if (command == "room") {
    words >> bytes;
    Answer(LeaveRoom(disk, bytes) ? "ok" : "no");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  // Whoever looks on is no parent.
  prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY);
  signal(SIGXFSZ, SIG_IGN);
  QCoreApplication application(argc, argv);
  tarnlink::QtFiles files(".");
  const auto document = tarnlink::disk::MakeDocument(argv[1], argv[2], std::atoi(argv[3]), files);
  Answer("ready");
  std::string disk;
  for (std::string line; std::getline(std::cin, line);) Obey(line, *document, disk);
  return 0;
}
