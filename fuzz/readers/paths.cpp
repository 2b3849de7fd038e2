#include "common/paths.h"

#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/readers.h"
#include "platform/path_resolver.h"
#include "support/fake_files.h"

namespace tarnlink {
namespace {

const FakeFiles& Disk() {
  static const FakeFiles& disk = [] {
    static FakeFiles made;
    made.Put("/home/user/work/default.ids", "x");
    return made;
  }();
  return disk;
}

void ClaimResolved(const std::string& path) {
  const std::string folder = UsableFolder(path, Disk());
  Claim(!folder.empty() && folder.find('\\') == std::string::npos, "a folder can be looked for");
  Claim(UsableFolder(folder, Disk()) == folder || IsDrivePath(folder), "and is then what it is");
  Claim(FolderOf(path, Disk()).find('\\') == std::string::npos, "so can that of a file");
  const std::string file = UsableFile(path, Disk());
  Claim(file.empty() == path.empty(), "a file has a name if its setting has one");
  const std::string own = RelativeToProgram(path);
  Claim(own.empty() || file == own || file.ends_with("/" + own) || own.starts_with('/'),
        "a file of the program is here or was shipped with it");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::string folder(bytes.ShortText());
  const std::string path(bytes.Rest());
  const std::string name = StripFileFromPath(path);
  Claim(name.find_first_of("/\\") == std::string::npos, "a name has no separator");
  Claim(path.ends_with(name) && path.ends_with(StripExtFromPath(path)), "both are its end");
  Claim(StripExtFromPath(path).find('.') == std::string::npos, "an extension has no point");
  const std::string parent = FolderOfPath(path);
  Claim(path.starts_with(parent) && parent.size() + name.size() <= path.size(),
        "a folder is before");
  Claim(StripFileFromPath(JoinPath(folder, name)) == (folder.empty() || !name.empty() ? name : ""),
        "a name stays the same in another folder");
  Claim(parent.empty() || JoinPath(parent, name).size() <= path.size(), "nothing is doubled");
  Claim(!IsDrivePath(path) || path.find_first_not_of("/\\", 2) == std::string::npos,
        "a bare drive");
  ClaimResolved(path);
  ClaimResolved(folder);
}

std::vector<std::string> Seeds() {
  return {"\3C:\\D:\\jobs\\a.wcr",     "\1/.\\default.ids", "\2./../a/b.c/d", "\2C:C:\\\\",
          std::string("\0", 1) + "/a", "\4a//bx//y\\"};
}

}  // namespace

FuzzTarget PathsTarget() { return {"paths", Run, Seeds}; }

}  // namespace tarnlink
