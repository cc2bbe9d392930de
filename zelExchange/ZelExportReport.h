#pragma once

#include "zelExchange/ZelExchangeExport.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What an export wrote, and what the file's language could not say as the model has it.
struct ZELEXCHANGE_EXPORT ZelExportReport
{
    /// A part of the model that is not in the file, or not as it is in the model.
    struct Note
    {
        QString item; ///< kind and name of the record
        QString reason;
        bool isLeftOut = false;
    };

    QString fileName;
    QString error; ///< why nothing was written; empty after success
    int moleculeTypes = 0;
    int species = 0;
    int rules = 0; ///< a reversible one counts once
    int parameters = 0;
    int observables = 0;
    int compartments = 0;
    int untranslated = 0; ///< items that went out as they once came in
    QList<Note> notes;

    int leftOut() const;
    QString toText() const;
    QByteArray toJson() const;
};
