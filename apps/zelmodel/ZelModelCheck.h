#pragma once

#include <QList>
#include <QString>

#include <functional>

class ZelDbSqlite;
class ZelDbSqliteModel;

/// Something that is wrong with a model.
struct ZelModelFinding
{
    const char *check; ///< "names", "bonds" and so on, as the command lists them
    QString id; ///< of a record that it is about; may be empty
    QString text;
};

/// Is told from time to time how many species of all have been looked at.
using ZelModelCheckProgress = std::function<void(qint64 done, qint64 total)>;

/// Looks through a model, which must be open. False when the database refused: the findings are
/// then those up to there.
bool checkModel(ZelDbSqlite &file, ZelDbSqliteModel &db, QList<ZelModelFinding> *findings,
    const ZelModelCheckProgress &progress = {});
