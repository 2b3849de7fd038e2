#include "ui/graph_tool.h"

#include <QThread>
#include <QTimer>
#include <utility>

#include "ui/on_demand.h"

namespace tarnlink {

namespace {

constexpr int kBoxInterval = 100;  // ms between looks whether a box still stands

}  // namespace

GraphTool::GraphTool(Platform& platform, ServiceLine port, GraphProject project, QWidget* parent)
    : platform_(platform), port_(std::move(port)), project_(std::move(project)), parent_(parent) {}

void GraphTool::Show(const std::string& properties) {
  if (!graph_) {
    Open(properties);
  } else if (!graph_->form.IsLoaded()) {
    graph_->files.AwaitEnd();
    when_gone_ = [this, properties] {
      if (ShowAgain) {
        ShowAgain(properties);
      } else {
        Open(properties);
      }
    };
  }
}

bool GraphTool::Leave(std::function<void()> then) {
  if (!graph_) return true;
  when_gone_ = std::move(then);
  graph_->files.AwaitEnd();
  graph_->form.Unload();
  return false;
}

void GraphTool::Open(const std::string& properties) {
  graph_ = std::make_unique<Graph>(platform_, port_, project_);
  MakeOnDemand(graph_->graph.form, [this] { MakeWindow(); });
  MakeOnDemand(graph_->test_mode.form, [this] {
    test_mode_ = std::make_unique<TestModeDialog>(graph_->test_mode, window_.get());
  });
  // One of its own handlers says so: it goes when that has ended.
  graph_->form.Unloaded = [this] { QTimer::singleShot(0, window_.get(), [this] { Gone(); }); };
  graph_->form.Returned = [this] { when_gone_ = {}; };
  MakeOnDemand(graph_->settings.form, [this] {
    settings_ = std::make_unique<GraphSettingsDialog>(graph_->settings, window_.get());
  });
  MakeOnDemand(graph_->files.progress.form, [this] {
    progress_ = std::make_unique<FileProgressDialog>(graph_->files.progress, window_.get());
  });
  graph_->form.Load();
  if (!properties.empty()) graph_->file_commands.OpenProperties(properties);
}

void GraphTool::MakeWindow() { window_ = std::make_unique<GraphWindow>(*graph_, parent_); }

// Below a box one of its handlers may stand still.
void GraphTool::Gone() {
  if (QThread::currentThread()->loopLevel() > 1) {
    QTimer::singleShot(kBoxInterval, window_.get(), [this] { Gone(); });
    return;
  }
  Drop();
  if (const auto call = std::exchange(when_gone_, {})) call();
}

void GraphTool::Drop() {
  progress_.reset();
  settings_.reset();
  test_mode_.reset();
  window_.reset();
  graph_.reset();
}

}  // namespace tarnlink
