// Every window of the program, one after the other, with what could stand in it on a working day.
// What holds for all windows is tested over this list; a new window gets its place in it.
//
//   for (const Exhibit& exhibit : Gallery()) {
//     exhibit.Show([](QWidget& window, const std::string& name) { ... });
//   }
#pragma once

#include <QWidget>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace tarnlink {

// Sees a window while it is up, with a name of its own: that of its form and, where there are
// several, what it shows.
using Visitor = std::function<void(QWidget& window, const std::string& name)>;

struct Exhibit {
  const char* name;
  // Brings up one window or a few that belong together, and closes them.
  void (*Show)(const Visitor& visit);
};
inline void PrintTo(const Exhibit& exhibit, std::ostream* out) { *out << exhibit.name; }

std::vector<Exhibit> Gallery();

// Its parts.
std::vector<Exhibit> MonitorGallery();
std::vector<Exhibit> ToolGallery();
std::vector<Exhibit> GraphGallery();

}  // namespace tarnlink
