#include "zelExchange/bngl/ZelBnglRuleReader.h"

namespace {

using Context = ZelBnglPatternReader::Context;
using Lexer = ZelBnglLexer;
using Modifier = ZelBnglModifier::Kind;

constexpr char Trash[] = "Trash";

struct ModifierWord
{
    const char *word;
    Modifier kind;
};

constexpr ModifierWord modifierWords[] = {
    {"DeleteMolecules", Modifier::DeleteMolecules},
    {"MoveConnected", Modifier::MoveConnected},
    {"MatchOnce", Modifier::MatchOnce},
    {"TotalRate", Modifier::TotalRate},
    {"include_reactants", Modifier::IncludeReactants},
    {"exclude_reactants", Modifier::ExcludeReactants},
    {"include_products", Modifier::IncludeProducts},
    {"exclude_products", Modifier::ExcludeProducts},
    {"priority", Modifier::Priority},
};

const ModifierWord *findModifier(QByteArrayView word)
{
    for (const ModifierWord &known : modifierWords) {
        if (word == QByteArrayView(known.word))
            return &known;
    }
    return nullptr;
}

bool hasPatterns(Modifier kind)
{
    return kind == Modifier::IncludeReactants || kind == Modifier::ExcludeReactants
        || kind == Modifier::IncludeProducts || kind == Modifier::ExcludeProducts;
}

} // namespace

bool ZelBnglRuleReader::read()
{
    ZelBnglRule rule;
    rule.label = m_parts.readLabel(true);
    rule.text.offset = m_lexer.offset();
    if (!readSide(rule.reactants, false) || !m_parts.readArrow(rule.isReversible)
        || !readSide(rule.products, true) || !readRates(rule) || !readModifiers(rule))
        return false;
    rule.text = m_parts.textSince(rule.text.offset);
    if (!m_parts.readEnd())
        return false;
    m_model.rules.push_back(rule);
    return true;
}

bool ZelBnglRuleReader::readSide(ZelBnglRange &patterns, bool isProduct)
{
    patterns.first = static_cast<quint32>(m_model.patterns.size());
    do {
        m_lexer.skipBlanks();
        quint32 pattern = 0;
        if (isProduct && isAtTrash()) {
            ZelBnglPattern nothing;
            nothing.text = m_lexer.readWord();
            m_model.patterns.push_back(nothing);
        } else if (!m_parts.readPattern(Context::RuleSide, pattern)) {
            return false;
        }
        ++patterns.count;
        m_lexer.skipBlanks();
    } while (m_lexer.accept('+'));
    return true;
}

bool ZelBnglRuleReader::isAtTrash() const
{
    // A molecule type of that name would need its parentheses.
    return m_lexer.peek() == Trash[0] && m_lexer.isAtKeyword(Trash);
}

bool ZelBnglRuleReader::readRates(ZelBnglRule &rule)
{
    if (m_lexer.atLineEnd() || m_lexer.peek() == ';')
        return m_parts.fail(
            QStringLiteral("This rule has no rate. Write one behind the products."));
    const auto isModifier = [this](ZelBnglText text) { return findModifier(m_model.view(text)); };
    if (!m_parts.readExpression("rate", rule.rates[0]))
        return false;
    if (isModifier(rule.rates[0])) {
        return m_fault.set(rule.rates[0].offset,
            QStringLiteral("This rule has no rate. Write one between the products and %1.")
                .arg(Lexer::quoted(m_model.view(rule.rates[0]))));
    }
    m_lexer.skipBlanks();
    if (m_lexer.peek() != ',')
        return true;
    if (!rule.isReversible) {
        return m_parts.fail(
            QStringLiteral("A rule that goes one way has one rate, and a second one follows. "
                           "Remove it, or write \"<->\" for the arrow."));
    }
    m_lexer.advance();
    return m_parts.readExpression("rate", rule.rates[1]);
}

bool ZelBnglRuleReader::readModifiers(ZelBnglRule &rule)
{
    rule.modifiers.first = static_cast<quint32>(m_model.modifiers.size());
    for (;;) {
        m_lexer.skipBlanks();
        if (!Lexer::isNameStart(m_lexer.peek()))
            return true;
        ZelBnglModifier modifier;
        const ZelBnglText word = m_lexer.readWord();
        modifier.offset = word.offset;
        const ModifierWord *const known = findModifier(m_model.view(word));
        if (!known) {
            return m_fault.set(word.offset,
                QStringLiteral(
                    "%1 is nothing that can stand behind the rates of a rule. Write \",\" "
                    "before a second rate, an operator to continue the rate, or one of "
                    "DeleteMolecules, MoveConnected, MatchOnce, TotalRate, include_reactants, "
                    "exclude_reactants, include_products, exclude_products, priority.")
                    .arg(Lexer::quoted(m_model.view(word))));
        }
        modifier.kind = known->kind;
        if (hasPatterns(modifier.kind)) {
            if (!readModifierPatterns(modifier))
                return false;
        } else if (modifier.kind == Modifier::Priority) {
            m_lexer.skipBlanks();
            if (!m_lexer.accept('='))
                return m_parts.fail(
                    QStringLiteral("Behind \"priority\" a \"=\" is missing. Write it."));
            if (!m_parts.readExpression("priority", modifier.value))
                return false;
        }
        m_model.modifiers.push_back(modifier);
        ++rule.modifiers.count;
    }
}

bool ZelBnglRuleReader::readModifierPatterns(ZelBnglModifier &modifier)
{
    m_lexer.skipBlanks();
    if (!m_lexer.accept('(')) {
        return m_parts.fail(
            QStringLiteral("%1 stands where the patterns are missing. Write \"(\", the number of "
                           "the reactant or product, \",\", the patterns and \")\".")
                .arg(m_lexer.describe()));
    }
    m_lexer.skipBlanks();
    if (!m_parts.readNumber(modifier.side, "the reactant or product"))
        return false;
    modifier.patterns.first = static_cast<quint32>(m_model.patterns.size());
    for (;;) {
        m_lexer.skipBlanks();
        if (modifier.patterns.count > 0 && m_lexer.accept(')'))
            return true;
        if (!m_lexer.accept(',')) {
            return m_parts.fail(
                QStringLiteral("%1 stands where \",\" and a pattern are missing. Write them, or "
                               "\")\" behind the last pattern.")
                    .arg(m_lexer.describe()));
        }
        m_lexer.skipBlanks();
        quint32 pattern = 0;
        if (!m_parts.readPattern(Context::Species, pattern))
            return false;
        ++modifier.patterns.count;
    }
}
