#pragma once

#include <QString>

#include <span>

class ZelModelRun;

/// A flag of a command, or an option with a value.
struct ZelModelOption
{
    const char *name;
    const char *value; ///< what the value is called; null for a flag
    const char *text;
    char letter = '\0';
};

/// A line that can be typed as it stands, and what it does.
struct ZelModelExample
{
    const char *line;
    const char *text;
};

/// One command: all that help, manual, completion and the program's start know of it.
struct ZelModelCommand
{
    const char *name;
    const char *arguments; ///< for the usage line: "<model> <file>"
    int leastArguments;
    int mostArguments;
    const char *summary; ///< one line without a full stop
    const char *description; ///< paragraphs, parted by empty lines
    std::span<const ZelModelOption> options;
    std::span<const ZelModelExample> examples;
    bool draws; ///< needs a QApplication, which takes its time to start
    int (*run)(ZelModelRun &run); ///< answers the exit code
};

/// The table of commands and the texts that are made from it.
namespace ZelModelCommands {

std::span<const ZelModelCommand *const> all();
/// Null for an unknown name.
const ZelModelCommand *find(const QString &name);

/// What the program does and which commands it has.
QString overview();
QString usage(const ZelModelCommand &command);
QString help(const ZelModelCommand &command);

} // namespace ZelModelCommands

extern const ZelModelCommand checkCommand;
extern const ZelModelCommand createCommand;
extern const ZelModelCommand diffCommand;
extern const ZelModelCommand exportCommand;
extern const ZelModelCommand findCommand;
extern const ZelModelCommand importCommand;
extern const ZelModelCommand listCommand;
extern const ZelModelCommand renderCommand;
extern const ZelModelCommand reportCommand;
extern const ZelModelCommand showCommand;
