// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_COMMANDLINE_H
#define BREVIO_COMMANDLINE_H

#include "cli/batchconverter.h"

#include <QString>
#include <QStringList>

// brevio-convert's arguments read into what they ask for, before anything is
// converted: main() only carries the request out, and the tests check every
// option without starting a process.
namespace commandLine {

struct Request {
    enum class Action {
        // Convert files with options, jobs and language.
        Convert,
        // Print helpText on standard output.
        ShowHelp,
        ShowVersion,
        // Print error and helpText on standard error, exit status 2.
        UsageError,
    };

    Action action = Action::UsageError;
    // The files as given, in their order.
    QStringList files;
    // The output folder, made absolute, and --json.
    BatchConverter::Options options;
    // At most this many files at the same time; 0 leaves it to the machine.
    int jobs = 0;
    // "de" or "en".
    QString language;
    QString error;
    QString helpText;
};

// Reads arguments (the program name first). An application object must
// exist: the help text names the program after it.
Request parse(const QStringList& arguments);

} // namespace commandLine

#endif
