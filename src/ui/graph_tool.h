// The graph as a tool: it begins anew each time that it is opened, and goes when it is left.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>

#include "graph/graph.h"
#include "ui/file_progress_dialog.h"
#include "ui/graph_settings_dialog.h"
#include "ui/graph_window.h"
#include "ui/test_mode_dialog.h"

namespace tarnlink {

class GraphTool {
 public:
  // `platform` and `parent`, the window that it opens over, outlive it.
  GraphTool(Platform& platform, ServiceLine port, GraphProject project, QWidget* parent);

  // With the properties of a file, if one is named. One that was left and still writes its files is
  // waited for.
  void Show(const std::string& properties = {});
  // Leaves it. False if there is one, which calls when it is gone with its files; never if it comes
  // back for a file that could not be written.
  bool Leave(std::function<void()> then);

  // How one that was waited for is opened, if there is more to it than `Show`.
  std::function<void(const std::string& properties)> ShowAgain;

  // Both null while it is not open.
  Graph* graph() const { return graph_.get(); }
  GraphWindow* window() const { return window_.get(); }

 private:
  void Open(const std::string& properties);
  void MakeWindow();
  void Gone();
  void Drop();

  Platform& platform_;
  ServiceLine port_;
  GraphProject project_;
  QWidget* parent_;
  std::function<void()> when_gone_;
  std::unique_ptr<Graph> graph_;
  std::unique_ptr<GraphWindow> window_;
  std::unique_ptr<TestModeDialog> test_mode_;
  std::unique_ptr<GraphSettingsDialog> settings_;
  std::unique_ptr<FileProgressDialog> progress_;
};

}  // namespace tarnlink
