#include "platform/qt/qt_platform.h"

#include <QPageLayout>
#include <QPrinter>

#include "platform/qt/qt_serial_port.h"
#include "platform/qt/qt_surface.h"
#include "platform/qt/qt_timer.h"
#include "platform/qt/xlsx_workbook.h"

namespace tarnlink {

std::unique_ptr<SerialPort> QtPlatform::CreatePort() {
  return std::make_unique<QtSerialPort>(
      [this](int number) { return DevicePath(number, settings_, devices_); });
}

std::unique_ptr<Timer> QtPlatform::CreateTimer() { return std::make_unique<QtTimer>(); }

std::unique_ptr<DrawingSurface> QtPlatform::CreatePage(const PageSetup& setup) {
  QPrinter& printer = dialogs_.printer();
  printer.setPageOrientation(setup.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
  return std::make_unique<QtSurface>(printer);
}

std::unique_ptr<Workbook> QtPlatform::CreateWorkbook(const std::string& path) {
  return std::make_unique<XlsxWorkbook>(path);
}

}  // namespace tarnlink
