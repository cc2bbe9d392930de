#pragma once

#include <QStringList>

class ZelDbConnection;

/// Looks for damage and contradictions in stored data.
namespace ZelDbIntegrity {

/// One sentence for each problem, at most a hundred of each sort; empty when all is well.
QStringList problems(ZelDbConnection &connection);

} // namespace ZelDbIntegrity
