#pragma once

#include <QString>
#include <QStringList>

namespace quillomar {

// Starts a program and waits for its end while events go on. False when it could not be started.
[[nodiscard]] bool RunTool(const QString& program, const QStringList& arguments);

}  // namespace quillomar
