// A symbolic link that gives a port a name which stays while the device behind it changes.
#pragma once

#include <string>

namespace boiler {

class Link {
 public:
  // Makes nothing yet. Throws Problem when something other than a link stands at the path.
  explicit Link(std::string path);
  ~Link() { Remove(); }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  const std::string& path() const { return path_; }

  // Lets the link name `target`; whoever looks meanwhile sees the old one or the new one. Throws
  // Problem when the folder does not allow it.
  void Point(const std::string& target);
  // Does nothing when this object has made no link.
  void Remove();

 private:
  std::string path_;
  bool made_ = false;
};

}  // namespace boiler
