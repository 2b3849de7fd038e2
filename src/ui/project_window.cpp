#include "ui/project_window.h"

#include <map>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"

namespace tarnlink {

namespace {

constexpr int kAir = 6;  // pixels between two lines of the tree

}  // namespace

ProjectWindow::ProjectWindow(frm_Main& main, QWidget* parent)
    : QTabWidget(parent), main_(main), tree_(new QTreeWidget(this)) {
  setObjectName(ToQt(main_.sstProject.name()));
  tree_->setObjectName("trvProject");
  tree_->setAccessibleName(tr("Project files"));
  tree_->setHeaderHidden(true);
  addTab(tree_, tr("Project"));
  main_.trvProject.Changed = [this] { ShowTree(); };
  main_.sstProject.SetView([this] { ShowCommon(this, main_.sstProject); });
  ShowTree();
  ShowCommon(this, main_.sstProject);
}

ProjectWindow::~ProjectWindow() {
  main_.trvProject.Changed = {};
  main_.sstProject.SetView({});
}

void ProjectWindow::ShowTree() {
  tree_->clear();
  std::map<std::string, QTreeWidgetItem*> items;
  for (const ProjectNode& node : main_.trvProject.Nodes()) {
    const auto parent = items.find(node.parent);
    auto* item =
        parent == items.end() ? new QTreeWidgetItem(tree_) : new QTreeWidgetItem(parent->second);
    item->setText(0, ToQt(node.text));
    item->setToolTip(0, PlainToolTip(node.key));
    item->setSizeHint(0, QSize(0, tree_->fontMetrics().height() + kAir));
    items[node.key] = item;
  }
  tree_->expandAll();
}

}  // namespace tarnlink
