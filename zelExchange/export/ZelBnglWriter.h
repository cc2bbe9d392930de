#pragma once

#include "zelExchange/bngl/ZelBnglModel.h"

/// Writes what was read back as text, in one form whatever the file's was: long block names, no
/// comments, single blanks. The text reads back as the same model.
class ZELEXCHANGE_EXPORT ZelBnglWriter
{
public:
    static QByteArray write(const ZelBnglModel &model);
    static QByteArray pattern(const ZelBnglModel &model, const ZelBnglPattern &pattern);
    static QByteArray rule(const ZelBnglModel &model, const ZelBnglRule &rule);
};
