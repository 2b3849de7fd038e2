// Filters of file dialogs.
#pragma once

#include <QString>
#include <QStringList>
#include <string_view>

namespace tarnlink {

// "Map (*.map,*.lst)|*.map;*.lst|All|*.*" as Qt wants it: {"Map (*.map *.lst)", "All (*)"}. With
// `both_cases` each pattern stands there in capitals too, for dialogs that tell them apart.
QStringList ToNameFilters(std::string_view filter, bool both_cases);

}  // namespace tarnlink
