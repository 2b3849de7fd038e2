// Everything that the program saves, in three versions, each saved by what saves it in the program.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace tarnlink::disk {

struct Kind {
  std::string_view name;
  std::string_view file;  // below the folder of the test
};

inline constexpr std::string_view kLog = "log";
inline constexpr std::string_view kSettings = "settings";

// The row that is appended to a log as the `number`-th one, from 1 on.
std::string LogRow(int number);

// The folder in which the settings store makes its own.
inline constexpr std::string_view kConfigFolder = "config";

inline const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kKinds = {{"screen", "a.wcr"},
                                           {"project", "a.prj"},
                                           {"lines", "a.grp"},
                                           {"measurements", "a.mss"},
                                           {"table", "a.txt"},
                                           {"sheet", "a.xlsx"},
                                           {"workbook", "b.xlsx"},
                                           {"parameters", "a.par"},
                                           {"definition", "a.def"},
                                           {"image", "a.bin"},
                                           {"list", "sniffed.txt"},
                                           {"report", "a.doc"},
                                           {kSettings, "config/TarnLink2/TarnLink2.ini"},
                                           {kLog, "a.log"}};
  return kKinds;
}

// Three, so that a version that comes back is not taken for the one that comes next.
inline constexpr std::string_view kVersions = "ABC";

inline char VersionAfter(char version) {
  return version == 'C' ? 'A' : static_cast<char>(version + 1);
}

class Document {
 public:
  virtual ~Document() = default;

  // Of a log it is the next row, whichever version is asked for. Throws RunTimeError.
  virtual void Save(char version) = 0;
};

// `size` makes documents that grow by it longer, 1 to some 100. `files` outlives the document.
std::unique_ptr<Document> MakeDocument(std::string_view kind, const std::string& path, int size,
                                       Files& files);

}  // namespace tarnlink::disk
