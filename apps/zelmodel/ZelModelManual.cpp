#include "apps/zelmodel/ZelModelManual.h"

#include "apps/zelmodel/ZelModelCommand.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

#include <cstdio>

namespace {

/// As it stands in a manual page.
QString roff(const QString &text)
{
    QString result = text;
    result.replace(u'\\', QLatin1String("\\e"));
    result.replace(u'-', QLatin1String("\\-"));
    result.replace(u'\'', QLatin1String("\\(aq"));
    // A point at the beginning of a line would be a request.
    return result.startsWith(u'.') ? QLatin1String("\\&") + result : result;
}

QString roff(const char *text)
{
    return roff(QString::fromUtf8(text));
}

/// Inside single quotes of a shell.
QString quoted(const QString &text)
{
    return u'\'' + QString(text).replace(u'\'', QLatin1String("'\\''")) + u'\'';
}

QString title(const QString &page)
{
    return QLatin1String(".TH %1 1 \"\" \"zelmodel %2\" \"User Commands\"\n")
        .arg(page.toUpper(), QCoreApplication::applicationVersion());
}

QString exitCodes()
{
    return QStringLiteral(".SH EXIT STATUS\n.TP\n0\nAll well.\n"
                          ".TP\n1\nAn error, after which nothing has changed.\n"
                          ".TP\n2\nWrong usage.\n"
                          ".TP\n3\nSomething was found, or could not be translated.\n");
}

QString commandPage(const ZelModelCommand &command)
{
    const QString name = QLatin1String("zelmodel-") + QLatin1String(command.name);
    QString text = title(name)
        + QLatin1String(".SH NAME\n%1 \\- %2\n.SH SYNOPSIS\n.B zelmodel %3\n[options] %4\n")
              .arg(roff(name), roff(command.summary), roff(command.name), roff(command.arguments));
    text += QLatin1String(".SH DESCRIPTION\n");
    QString description = roff(command.description);
    text += description.replace(QLatin1String("\n\n"), QLatin1String("\n.PP\n")) + u'\n';
    text += QLatin1String(".SH OPTIONS\n");
    for (const ZelModelOption &option : command.options) {
        text += QLatin1String(".TP\n.B ");
        if (option.letter)
            text += QLatin1String("\\-%1, ").arg(QLatin1Char(option.letter));
        text += QLatin1String("\\-\\-") + roff(option.name);
        if (option.value)
            text += QLatin1String(" <%1>").arg(roff(option.value));
        text += u'\n' + roff(option.text) + u'\n';
    }
    text += QLatin1String(".TP\n.B \\-h, \\-\\-help\nSay this in short.\n.SH EXAMPLES\n");
    for (const ZelModelExample &example : command.examples)
        text += QLatin1String(".TP\n.B %1\n%2\n").arg(roff(example.line), roff(example.text));
    return text + exitCodes() + QLatin1String(".SH SEE ALSO\n.BR zelmodel (1)\n");
}

QString overviewPage()
{
    QString text = title(QStringLiteral("zelmodel"))
        + QStringLiteral(".SH NAME\nzelmodel \\- rule\\-based models in a file: made, filled, "
                         "looked at, compared\n.SH SYNOPSIS\n.B zelmodel\n<command> [options] "
                         "[arguments]\n.SH COMMANDS\n");
    for (const ZelModelCommand *const command : ZelModelCommands::all()) {
        text += QLatin1String(".TP\n.BR zelmodel\\-%1 (1)\n%2.\n")
                    .arg(roff(command->name), roff(command->summary));
    }
    return text + exitCodes();
}

/// "-o --output" of each option.
QStringList optionWords(const ZelModelCommand &command)
{
    QStringList words{QStringLiteral("--help")};
    for (const ZelModelOption &option : command.options) {
        words.append(QLatin1String("--") + QLatin1String(option.name));
        if (option.letter)
            words.append(QLatin1String("-") + QLatin1Char(option.letter));
    }
    return words;
}

QString bashCompletion()
{
    QStringList names;
    QString cases;
    for (const ZelModelCommand *const command : ZelModelCommands::all()) {
        names.append(QLatin1String(command->name));
        cases += QLatin1String("        %1) options=%2 ;;\n")
                     .arg(QLatin1String(command->name), quoted(optionWords(*command).join(u' ')));
    }
    return QLatin1String("_zelmodel() {\n"
                         "    local word=${COMP_WORDS[COMP_CWORD]} options=\n"
                         "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
                         "        COMPREPLY=($(compgen -W %1 -- \"$word\"))\n"
                         "        return\n"
                         "    fi\n"
                         "    case ${COMP_WORDS[1]} in\n%2    esac\n"
                         "    if [[ $word == -* ]]; then\n"
                         "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
                         "    else\n"
                         "        COMPREPLY=($(compgen -f -- \"$word\"))\n"
                         "    fi\n"
                         "}\n"
                         "complete -o filenames -F _zelmodel zelmodel\n")
        .arg(quoted(names.join(u' ') + QLatin1String(" help --help --version")), cases);
}

/// A description inside of an option's entry.
QString zshText(const char *text)
{
    QString result = QString::fromUtf8(text);
    for (const char c : {'\\', '[', ']', ':'})
        result.replace(QLatin1Char(c), QLatin1String("\\") + QLatin1Char(c));
    return result;
}

QString zshCompletion()
{
    QString names;
    QString cases;
    for (const ZelModelCommand *const command : ZelModelCommands::all()) {
        names += QLatin1String("        %1\n")
                     .arg(quoted(QLatin1String(command->name) + u':' + zshText(command->summary)));
        cases += QLatin1String("        %1)\n            _arguments '--help[say how it is used]'")
                     .arg(QLatin1String(command->name));
        for (const ZelModelOption &option : command->options) {
            const QString rest = QLatin1String("[%1]").arg(zshText(option.text))
                + (option.value ? QLatin1String(":%1:_files").arg(zshText(option.value))
                                : QString());
            cases += u' ' + quoted(QLatin1String("--") + QLatin1String(option.name) + rest);
            if (option.letter)
                cases += u' ' + quoted(u'-' + QString(QLatin1Char(option.letter)) + rest);
        }
        cases += QLatin1String(" '*:file:_files'\n            ;;\n");
    }
    return QLatin1String("#compdef zelmodel\n_zelmodel() {\n"
                         "    local -a commands=(\n%1    )\n"
                         "    if (( CURRENT == 2 )); then\n"
                         "        _describe command commands\n"
                         "        return\n"
                         "    fi\n"
                         "    local command=$words[2]\n"
                         "    shift words\n"
                         "    (( CURRENT-- ))\n"
                         "    case $command in\n%2    esac\n"
                         "}\n"
                         "_zelmodel \"$@\"\n")
        .arg(names, cases);
}

} // namespace

bool ZelModelManual::write(const QString &folder)
{
    QList<QPair<QString, QString>> files{{QStringLiteral("zelmodel.1"), overviewPage()},
        {QStringLiteral("zelmodel.bash"), bashCompletion()},
        {QStringLiteral("_zelmodel"), zshCompletion()}};
    for (const ZelModelCommand *const command : ZelModelCommands::all())
        files.append({QLatin1String("zelmodel-%1.1").arg(QLatin1String(command->name)),
            commandPage(*command)});
    for (const auto &[name, text] : std::as_const(files)) {
        QSaveFile file(QDir(folder).filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0 || !file.flush()
            || !file.commit()) {
            std::fprintf(stderr, "zelmodel: '%s' cannot be written; make the folder first.\n",
                qUtf8Printable(file.fileName()));
            return false;
        }
    }
    return true;
}
