#include "ui/project_window.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <map>

#include "platform/qt/qt_text.h"
#include "ui/binders.h"

namespace tarnlink {

namespace {

constexpr int kAir = 6;  // pixels between two lines of the tree
constexpr int kKeyRole = Qt::UserRole;

std::string KeyOf(const QTreeWidgetItem* item) {
  return item == nullptr ? std::string() : FromQt(item->data(0, kKeyRole).toString());
}

}  // namespace

ProjectWindow::ProjectWindow(frm_Main& main, QWidget* parent)
    : QTabWidget(parent), main_(main), tree_(new QTreeWidget(this)) {
  setObjectName(ToQt(main_.sstProject.name()));
  tree_->setObjectName("trvProject");
  tree_->setAccessibleName(tr("Project files"));
  tree_->setHeaderHidden(true);
  tree_->setRootIsDecorated(false);
  // The tree stays open: no node collapses.
  tree_->setItemsExpandable(false);
  tree_->setExpandsOnDoubleClick(false);
  tree_->viewport()->setAcceptDrops(true);
  tree_->installEventFilter(this);
  tree_->viewport()->installEventFilter(this);
  addTab(tree_, tr("Project"));
  connect(tree_, &QTreeWidget::itemDoubleClicked, this, [this](QTreeWidgetItem* item) {
    if (main_.trvProject_DblClick) main_.trvProject_DblClick(KeyOf(item));
  });
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
  const std::string current = CurrentKey();
  tree_->clear();
  std::map<std::string, QTreeWidgetItem*> items;
  for (const ProjectNode& node : main_.trvProject.Nodes()) {
    const auto parent = items.find(node.parent);
    auto* item =
        parent == items.end() ? new QTreeWidgetItem(tree_) : new QTreeWidgetItem(parent->second);
    item->setText(0, ToQt(node.text));
    item->setToolTip(0, PlainToolTip(node.key));
    item->setData(0, kKeyRole, ToQt(node.key));
    item->setSizeHint(0, QSize(0, tree_->fontMetrics().height() + kAir));
    items[node.key] = item;
  }
  tree_->expandAll();
  const auto same = items.find(current);
  // Without it none: Delete once more would ask about the first one, which is the project.
  tree_->setCurrentItem(same != items.end() ? same->second : nullptr);
}

// Of the node that is marked: the focus alone, which Tab brings to the first one, shows nothing.
std::string ProjectWindow::CurrentKey() const {
  const QTreeWidgetItem* item = tree_->currentItem();
  return item != nullptr && item->isSelected() ? KeyOf(item) : std::string();
}

bool ProjectWindow::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      if (KeyPressed(static_cast<QKeyEvent&>(*event))) return true;
      break;
    case QEvent::DragEnter:
    case QEvent::DragMove:
      if (watched == tree_->viewport()) return DragOver(static_cast<QDropEvent&>(*event));
      break;
    case QEvent::Drop:
      if (watched != tree_->viewport()) break;
      Dropped(static_cast<QDropEvent&>(*event));
      return true;
    default:
      break;
  }
  return QTabWidget::eventFilter(watched, event);
}

// Delete removes a node, Enter opens it as the double click does.
bool ProjectWindow::KeyPressed(QKeyEvent& event) {
  const std::string key = CurrentKey();
  if (key.empty()) return false;
  if (event.key() == Qt::Key_Delete) {
    if (main_.trvProject_DeleteKey) main_.trvProject_DeleteKey(key);
    return true;
  }
  if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
    if (main_.trvProject_DblClick) main_.trvProject_DblClick(key);
    return true;
  }
  return false;
}

// --- Files from the desktop ----------------------------------------------------------------------

// Never a move: whoever the files come from would delete them.
bool ProjectWindow::DragOver(QDropEvent& event) {
  const QList<QUrl> files = event.mimeData()->urls();
  const bool are_files =
      !files.empty() &&
      std::all_of(files.begin(), files.end(), [](const QUrl& file) { return file.isLocalFile(); });
  event.setDropAction(Qt::CopyAction);
  event.setAccepted(are_files);
  return true;
}

void ProjectWindow::Dropped(QDropEvent& event) {
  event.setDropAction(Qt::CopyAction);
  event.accept();
  std::vector<std::string> paths;
  for (const QUrl& file : event.mimeData()->urls()) paths.push_back(FromQt(file.toLocalFile()));
  // After the drop, so that a question does not hold the program that the files come from.
  QTimer::singleShot(0, this, [this, paths] {
    if (main_.trvProject_FilesDropped) main_.trvProject_FilesDropped(paths);
  });
}

}  // namespace tarnlink
