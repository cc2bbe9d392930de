#pragma once

#include "zelExchange/bngl/ZelBnglModel.h"

/// Reads files of the BioNetGen language: models (".bngl") and generated networks (".net").
///
/// Nothing is thrown and nothing written to the debug output. What could not be read is listed in
/// the model's errors, and the rest of the file is in the model all the same.
class ZELEXCHANGE_EXPORT ZelBnglParser
{
public:
    /// Longest text that is read, in bytes.
    static constexpr qint64 MaxLength = qint64(64) << 20;
    /// Most errors that are listed; reading stops behind them.
    static constexpr int MaxErrors = 100;

    /// Reads a text; the file name only appears in errors.
    static ZelBnglModel parse(QByteArray text, const QString &fileName);
    static ZelBnglModel parseFile(const QString &path);
};
