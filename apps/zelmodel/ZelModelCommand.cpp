#include "apps/zelmodel/ZelModelCommand.h"

#include "apps/zelmodel/ZelModelText.h"

namespace {

constexpr const ZelModelCommand *commands[] = {&createCommand, &importCommand, &listCommand,
    &showCommand, &findCommand, &renderCommand, &reportCommand, &checkCommand, &exportCommand,
    &diffCommand};

constexpr qsizetype CommandWidth = 12;
constexpr qsizetype OptionWidth = 26;
constexpr qsizetype LineWidth = 80;

/// Words of a paragraph in lines of the width of a terminal.
QString wrapped(const QString &paragraph, qsizetype indent)
{
    const QString margin(indent, u' ');
    QString text;
    QString line;
    const QStringList words = paragraph.split(u' ', Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > LineWidth) {
            text += (text.isEmpty() ? QString() : margin) + line + u'\n';
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    return text + (text.isEmpty() ? QString() : margin) + line + u'\n';
}

QString optionTitle(const ZelModelOption &option)
{
    QString title = option.letter ? QLatin1String("-%1, --").arg(QLatin1Char(option.letter))
                                  : QStringLiteral("--");
    title += QLatin1String(option.name);
    if (option.value)
        title += QLatin1String(" <%1>").arg(QLatin1String(option.value));
    return title;
}

QString optionLine(const QString &title, const QString &text)
{
    return QLatin1String("  ") + ZelModelText::padded(title, OptionWidth)
        + wrapped(text, OptionWidth + 2);
}

} // namespace

std::span<const ZelModelCommand *const> ZelModelCommands::all()
{
    return commands;
}

const ZelModelCommand *ZelModelCommands::find(const QString &name)
{
    for (const ZelModelCommand *const command : commands) {
        if (name == QLatin1String(command->name))
            return command;
    }
    return nullptr;
}

QString ZelModelCommands::overview()
{
    QString text =
        QStringLiteral("Usage: zelmodel <command> [options] [arguments]\n\n"
                       "Rule-based models in a file: made, filled, looked at, compared.\n"
                       "\nCommands:\n");
    for (const ZelModelCommand *const command : commands) {
        text += QLatin1String("  ")
            + ZelModelText::padded(QLatin1String(command->name), CommandWidth)
            + QLatin1String(command->summary) + u'\n';
    }
    return text
        + QStringLiteral("\n'zelmodel <command> --help' says more about one, with examples;\n"
                         "'zelmodel --version' says which version this is.\n\n"
                         "Exit codes: 0 all well, 1 an error, after which nothing has changed,\n"
                         "2 wrong usage, 3 something was found or could not be translated.\n");
}

QString ZelModelCommands::usage(const ZelModelCommand &command)
{
    return QLatin1String("zelmodel %1 [options] %2")
        .arg(QLatin1String(command.name), QLatin1String(command.arguments));
}

QString ZelModelCommands::help(const ZelModelCommand &command)
{
    QString text = QLatin1String("Usage: ") + usage(command) + QLatin1String("\n\n");
    const QStringList paragraphs =
        QString::fromUtf8(command.description).split(QLatin1String("\n\n"));
    for (const QString &paragraph : paragraphs)
        text += wrapped(paragraph, 0) + u'\n';
    text += QLatin1String("Options:\n");
    for (const ZelModelOption &option : command.options)
        text += optionLine(optionTitle(option), QString::fromUtf8(option.text));
    text += optionLine(QStringLiteral("-h, --help"), QStringLiteral("Say this."));
    text += QLatin1String("\nExamples:\n");
    for (const ZelModelExample &example : command.examples) {
        text += QLatin1String("  ") + QLatin1String(example.line) + QLatin1String("\n      ")
            + wrapped(QString::fromUtf8(example.text), 6);
    }
    return text;
}
