#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace spectrane {

/// The exit status of a start that was refused for its command line.
inline constexpr int kWrongUsage = 2;

/// Prints the usage (--help, -h) or the version (--version) on standard output when one of the words asks for
/// it. The result is the exit status then; without one the program is to start. Needs neither display nor
/// application.
std::optional<int> AnswerInWords(int argc, const char* const* argv);

/// The first word that begins like an option and is not the name of a file that is there; empty without one.
/// `arguments`: what the toolkit has left of the command line, with the program in front.
QString WrongOption(const QStringList& arguments);

/// The one data file that a command line may name, absolute; the quotation marks that a file association puts
/// around it are taken off. Empty without one.
QString FileOfCommandLine(const QStringList& arguments);

}  // namespace spectrane
