// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_BOOTSTRAP_H
#define BREVIO_BOOTSTRAP_H

#include <QCommandLineOption>
#include <QString>

// The start-up both programs share, so that the window and brevio-convert
// draw the same reports from the same file names and speak of themselves
// the same way.
namespace bootstrap {

constexpr int exitUsage = 2;

// Call right after the application object exists and before the arguments
// are read: names the program and its version, installs the file-name codec
// that keeps names that are not UTF-8 byte for byte, and makes the bundled
// report font the default, so that every job draws in it.
void initApplication(const QString& programName);

// "PROGRAM VERSION" on standard output, for --version.
void printVersion(const QString& programName);

// "PROGRAM: message", a blank line and the help text on standard error;
// returns the exit status of a usage error.
int usageError(const QString& programName, const QString& message, const QString& helpText);

// --language LANGUAGE: the language of the reports and the window's texts,
// "de" (the default, whatever the system's locale) or "en".
QCommandLineOption languageOption();

// True for the languages useLanguage() takes.
bool isLanguage(const QString& language);

// The usage error for a --language value that is not a language, worded the
// same in both programs.
QString languageError(const QString& language);

// Installs the texts of language ("de" or "en") for the whole application;
// false for any other language, which then is a usage error. Call it before
// any text is drawn or any window is made.
bool useLanguage(const QString& language);

} // namespace bootstrap

#endif
