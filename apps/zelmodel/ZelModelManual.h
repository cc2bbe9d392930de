#pragma once

#include <QString>

/// The table of commands as manual pages and as completion files of shells.
namespace ZelModelManual {

/// Writes zelmodel.1, zelmodel-<command>.1, zelmodel.bash and _zelmodel into the folder. False,
/// with a message, when one cannot be written.
bool write(const QString &folder);

} // namespace ZelModelManual
