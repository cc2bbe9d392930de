#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

class RandomModel;
class Sdc;

/// What must hold of a model whatever has been saved to it: made before a save, asked after it.
class SaveCheck
{
public:
    /// The data component that is about to be saved.
    SaveCheck(RandomModel *model, Sdc *sdc);

    /// The first thing that is wrong; empty when all is well. Findings of the kinds named are the
    /// user's to mend.
    QString fault(const QStringList &tolerated) const;

private:
    QString overwritten() const;

    RandomModel *m_model;
    QSet<QString> m_read; // ids of what the drawing holds
    QMap<QString, QMap<QString, QString>> m_rows;
    QStringList m_findings;
};
