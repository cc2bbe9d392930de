#include "zelExchange/import/ZelBnglEntries.h"

#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/import/ZelBnglEntryParts.h"

#include <algorithm>

namespace {

ZelBnglModel parse(const QByteArray &text)
{
    return ZelBnglParser::parse(text, QString());
}

bool isOneLine(const QByteArray &text)
{
    // A comment or a continuation would reach into what stands behind it.
    return !text.trimmed().isEmpty() && !text.contains('\n') && !text.contains('\r')
        && !text.contains('#') && !text.contains('\\') && !text.contains('\0');
}

size_t entryCount(const ZelBnglModel &model)
{
    return model.parameters.size() + model.functions.size() + model.compartments.size()
        + model.moleculeTypes.size() + model.species.size() + model.observables.size()
        + model.rules.size() + model.energyPatterns.size() + model.populationMaps.size();
}

} // namespace

bool ZelBnglEntries::isExpression(const QByteArray &text)
{
    return !text.contains(';') && isEntry("parameters", "x " + text);
}

bool ZelBnglEntries::isEntry(const QByteArray &block, const QByteArray &text)
{
    if (!isOneLine(text))
        return false;
    const ZelBnglModel model = parse("begin " + block + '\n' + text + "\nend " + block + '\n');
    return model.isValid() && entryCount(model) == 1;
}

bool ZelBnglEntries::isCommand(const QByteArray &text)
{
    const ZelBnglModel model = parse(text + '\n');
    return model.isValid() && model.actions.size() == 1 && entryCount(model) == 0;
}

QByteArray ZelBnglEntries::label(const QString &text)
{
    QByteArray label;
    for (const QChar c : text) {
        const char sign = c.unicode() < 0x80 ? c.toLatin1() : '_';
        label += ZelBnglEntryParts::isInLabel(sign) ? sign : '_';
    }
    label = label.simplified();
    // What looks like the number of an entry, or like the bounds of a block, is not read as a
    // label.
    if (const qsizetype blank = label.indexOf(' '); blank > 0) {
        const QByteArray first = label.first(blank);
        const bool isNumber = std::all_of(first.begin(), first.end(), ZelBnglLexer::isDigit);
        if (isNumber || first == "begin" || first == "end")
            label[blank] = '_';
    }
    return label;
}
