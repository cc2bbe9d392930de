#include "zelExchange/bngl/ZelBnglParser.h"

#include "zelExchange/bngl/ZelBnglActionReader.h"
#include "zelExchange/bngl/ZelBnglEntryReader.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace {

using Block = ZelBnglBlock;
using Lexer = ZelBnglLexer;

/// What of a long text is read before the size of the lists is foreseen.
constexpr quint32 SampleLength = 1 << 17;

constexpr char ModelBlock[] = "model";

struct BlockName
{
    const char *name;
    Block block;
};

/// With single blanks, as blockName() gives them.
constexpr BlockName blockNames[] = {
    {"parameters", Block::Parameters},
    {"compartments", Block::Compartments},
    {"molecule types", Block::MoleculeTypes},
    {"molecules", Block::MoleculeTypes},
    {"population types", Block::PopulationTypes},
    {"seed species", Block::Species},
    {"species", Block::Species},
    {"observables", Block::Observables},
    {"functions", Block::Functions},
    {"energy patterns", Block::EnergyPatterns},
    {"population maps", Block::PopulationMaps},
    {"reaction rules", Block::ReactionRules},
    {"rules", Block::ReactionRules},
    {"reactions", Block::Reactions},
    {"groups", Block::Groups},
    {"actions", Block::Actions},
    {"protocol", Block::Actions},
};

Block blockOf(const QByteArray &name)
{
    for (const BlockName &known : blockNames) {
        if (name == known.name)
            return known.block;
    }
    return Block::Unknown;
}

/// Follows the blocks of one text.
class Reader
{
public:
    explicit Reader(ZelBnglModel &model)
        : m_model(model), m_lexer(model.source()), m_parts(m_lexer, model, m_fault),
          m_entries(m_lexer, model, m_fault, m_parts), m_actions(m_lexer, model, m_fault, m_parts)
    {
    }

    void run();

private:
    bool readEntry();
    bool beginBlock();
    bool endBlock();
    QByteArray readBlockName();
    void reportOpenBlock(quint32 offset);
    bool fail(quint32 offset, const QString &text) { return m_fault.set(offset, text); }
    void report();
    void reserve();
    QString quotedName() const { return Lexer::quoted(m_name); }

    ZelBnglModel &m_model;
    Lexer m_lexer;
    ZelBnglFault m_fault;
    ZelBnglEntryParts m_parts;
    ZelBnglEntryReader m_entries;
    ZelBnglActionReader m_actions;
    Block m_block = Block::None;
    QByteArray m_name; ///< of the open block
    quint32 m_begin = 0;
    quint32 m_modelBegin = 0;
    bool m_isInModel = false;
    bool m_hasBlocks = false;
    bool m_isReserved = false;
};

void Reader::run()
{
    while (m_lexer.skipToEntry()) {
        if (!readEntry()) {
            report();
            m_lexer.skipLine();
        }
        if (!m_isReserved && m_lexer.offset() > SampleLength)
            reserve();
        if (m_model.errors.size() > ZelBnglParser::MaxErrors) {
            m_model.errors.resize(ZelBnglParser::MaxErrors + 1);
            m_model.errors.back().message = QStringLiteral(
                "There are more errors from here on, which are not listed. Mend the ones above "
                "first.");
            return;
        }
    }
    if (m_block != Block::None)
        reportOpenBlock(m_begin);
    if (m_isInModel) {
        fail(m_modelBegin,
            QStringLiteral(
                "The model is never closed. Add a line \"end model\" behind its last block."));
        report();
    }
    if (!m_hasBlocks && m_model.actions.empty() && m_model.isValid()) {
        fail(0,
            QStringLiteral("The file holds no block. A model needs at least one, such as \"begin "
                           "molecule types\" up to \"end molecule types\"."));
        report();
    }
}

bool Reader::readEntry()
{
    m_parts.begin();
    if (m_lexer.isAtKeyword("begin"))
        return beginBlock();
    if (m_lexer.isAtKeyword("end"))
        return endBlock();
    switch (m_block) {
    case Block::None:
    case Block::Actions:
        return m_actions.read(!m_hasBlocks);
    case Block::Unknown:
        m_lexer.skipLine();
        return true;
    default:
        return m_entries.readEntry(m_block);
    }
}

bool Reader::beginBlock()
{
    m_parts.begin();
    const quint32 start = m_lexer.offset();
    m_lexer.readWord();
    m_lexer.skipBlanks();
    const quint32 at = m_lexer.offset();
    const QByteArray name = readBlockName();
    if (m_block != Block::None)
        reportOpenBlock(start);
    m_hasBlocks = true;
    if (name == ModelBlock) {
        if (m_isInModel)
            return fail(
                start, QStringLiteral("A model begins inside of a model. Remove this line."));
        m_isInModel = true;
        m_modelBegin = start;
        return m_parts.readEnd();
    }
    m_block = blockOf(name);
    m_name = name;
    m_begin = start;
    if (m_block == Block::Unknown) {
        return fail(at,
            name.isEmpty()
                ? QStringLiteral("A block begins without a name. Write one behind \"begin\".")
                : QStringLiteral(
                    "There is no kind of block with the name %1. Use one of parameters, "
                    "compartments, molecule types, seed species, observables, functions, "
                    "energy patterns, population maps, reaction rules, actions.")
                      .arg(quotedName()));
    }
    return m_parts.readEnd();
}

bool Reader::endBlock()
{
    m_parts.begin();
    const quint32 start = m_lexer.offset();
    m_lexer.readWord();
    m_lexer.skipBlanks();
    const QByteArray name = readBlockName();
    if (name == ModelBlock) {
        if (m_block != Block::None)
            reportOpenBlock(start);
        if (!m_isInModel)
            return fail(start, QStringLiteral("No model is open here. Remove this line."));
        m_isInModel = false;
        return m_parts.readEnd();
    }
    if (m_block == Block::None) {
        return fail(start,
            QStringLiteral("No block is open here. Remove this line, or write its \"begin\"."));
    }
    // Other words for the same kind are one name.
    const bool isSame = m_block == Block::Unknown ? name == m_name : blockOf(name) == m_block;
    const QString opened = quotedName();
    const int line = m_model.place(m_begin).line;
    m_block = Block::None;
    if (!isSame) {
        return fail(start,
            QStringLiteral(
                "This ends %1, but the open block is %2 of line %3. Write \"end\" and that "
                "name.")
                .arg(name.isEmpty() ? QStringLiteral("no block") : Lexer::quoted(name), opened)
                .arg(line));
    }
    return m_parts.readEnd();
}

QByteArray Reader::readBlockName()
{
    QByteArray name;
    for (;;) {
        const ZelBnglText word = m_lexer.readWord();
        if (word.isEmpty())
            return name.replace('_', ' ').simplified().toLower();
        name +=
            ' ' + m_model.view(word).first(qMin(word.length, Lexer::MaxNameLength)).toByteArray();
        m_lexer.skipBlanks();
    }
}

void Reader::reportOpenBlock(quint32 offset)
{
    fail(offset,
        QStringLiteral(
            "The block %1, begun in line %2, is still open. Write \"end %3\" behind its last "
            "entry.")
            .arg(quotedName())
            .arg(m_model.place(m_begin).line)
            .arg(QString::fromLatin1(m_name)));
    report();
    m_block = Block::None;
}

void Reader::reserve()
{
    // The rest of a long text is mostly like its beginning; growing the lists step by step would
    // move them again and again.
    m_isReserved = true;
    const double factor = 1.05 * static_cast<double>(m_model.source().size()) / m_lexer.offset();
    const auto reserveList = [factor](auto &list) {
        list.reserve(static_cast<size_t>(static_cast<double>(list.size()) * factor));
    };
    reserveList(m_model.species);
    reserveList(m_model.rules);
    reserveList(m_model.patterns);
    reserveList(m_model.molecules);
    reserveList(m_model.components);
    reserveList(m_model.bonds);
    reserveList(m_model.states);
}

void Reader::report()
{
    QString message = std::exchange(m_fault.message, {});
    if (!message.isEmpty())
        message[0] = message.at(0).toUpper();
    m_model.errors.push_back({m_model.place(m_fault.offset), message});
}

ZelBnglModel refused(
    const QString &fileName, const QString &message, const ZelBnglPlace &place = {})
{
    ZelBnglModel model(QByteArray(), fileName);
    model.errors.push_back({place, message});
    return model;
}

QString tooLong()
{
    return QStringLiteral("The file is longer than %1 MB. Split it.")
        .arg(ZelBnglParser::MaxLength >> 20);
}

} // namespace

ZelBnglModel ZelBnglParser::parse(QByteArray text, const QString &fileName)
{
    if (text.size() > MaxLength)
        return refused(fileName, tooLong());
    if (text.startsWith("\xff\xfe") || text.startsWith("\xfe\xff")) {
        return refused(fileName,
            QStringLiteral("The file is written in UTF-16. Save it as UTF-8 and try again."),
            {1, 1});
    }
    if (text.startsWith("\xef\xbb\xbf"))
        text.remove(0, 3);
    // A text that does not own its bytes may lack the null character behind them.
    text.detach();
    ZelBnglModel model(text, fileName);
    Reader(model).run();
    return model;
}

ZelBnglModel ZelBnglParser::parseFile(const QString &path)
{
    if (!QFileInfo(path).isFile()) {
        return refused(path,
            QFileInfo::exists(path)
                ? QStringLiteral("This is no file. Choose a model file.")
                : QStringLiteral("There is no such file. Check the name and the folder."));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return refused(path,
            QStringLiteral("The file cannot be opened: %1. Check who may read it.")
                .arg(file.errorString()));
    }
    QByteArray text = file.read(MaxLength + 1);
    if (file.error() != QFileDevice::NoError)
        return refused(
            path, QStringLiteral("The file cannot be read: %1.").arg(file.errorString()));
    return parse(std::move(text), path);
}
