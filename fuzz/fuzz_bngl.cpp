// Files of the BioNetGen language: each text is read, or refused with a place; what was read is
// written in a form that reads back as the same.
#include "FuzzModel.h"

#include "zelExchange/bngl/ZelBnglParser.h"
#include "zelExchange/export/ZelBnglWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto *const bytes = reinterpret_cast<const char *>(data);
    const QByteArray text = QByteArray::fromRawData(bytes, static_cast<qsizetype>(size));
    const ZelBnglModel model = ZelBnglParser::parse(text, QStringLiteral("m.bngl"));
    const qsizetype lines = 1 + text.count('\n') + text.count('\r');
    for (const ZelBnglError &error : model.errors) {
        require(error.place.line > 0 && error.place.line <= lines && error.place.column > 0
                && error.place.column <= text.size() + 1,
            "a place", model.errorText(error));
        require(!error.message.isEmpty(), "a message");
    }
    const QByteArray written = ZelBnglWriter::write(model);
    if (written.isEmpty())
        return 0;
    const ZelBnglModel again = ZelBnglParser::parse(written, QStringLiteral("m.bngl"));
    require(again.isValid(), "what was written to be readable", again.errorTexts().join(u'\n'));
    const QByteArray rewritten = ZelBnglWriter::write(again);
    require(rewritten == written, "what was written to stay", QString::fromUtf8(rewritten),
        QString::fromUtf8(written));
    return 0;
}
