// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/commandline.h"

#include "convert/bootstrap.h"
#include "files/filepaths.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace commandLine {

namespace {

struct Parser {
    QCommandLineParser parser;
    QCommandLineOption help;
    QCommandLineOption version;
    QCommandLineOption jobs{{QStringLiteral("j"), QStringLiteral("jobs")},
                            QStringLiteral("Convert at most <N> files at the same time."),
                            QStringLiteral("N")};
    QCommandLineOption output{
        {QStringLiteral("o"), QStringLiteral("output-dir")},
        QStringLiteral("Write the reports into the folder <DIR>, each named after its file."),
        QStringLiteral("DIR")};
    QCommandLineOption json{
        QStringLiteral("json"),
        QStringLiteral("Print one JSON object per file on standard output: file, report, "
                       "converted, code, reason, warnings.")};
    QCommandLineOption language = bootstrap::languageOption();

    Parser() : help(parser.addHelpOption()), version(parser.addVersionOption()) {
        parser.setApplicationDescription(QStringLiteral(
            "Converts transmitter configuration files (.json) into PDF reports.\n"
            "Each report is written next to its file, with \".json\" replaced by \".pdf\",\n"
            "or into the folder given with --output-dir."));
        parser.addOption(jobs);
        parser.addOption(output);
        parser.addOption(json);
        parser.addOption(language);
        parser.addPositionalArgument(QStringLiteral("FILE"),
                                     QStringLiteral("Configuration files to convert."),
                                     QStringLiteral("FILE..."));
    }
};

Request usageError(const QString& message) {
    Request request;
    request.action = Request::Action::UsageError;
    request.error = message;
    return request;
}

// The option values, checked in the order the options are listed in the
// help; the first mistake is the one told.
Request readValues(const Parser& parser) {
    Request request;
    request.action = Request::Action::Convert;
    if (parser.parser.isSet(parser.jobs)) {
        bool ok = false;
        request.jobs = parser.parser.value(parser.jobs).toInt(&ok);
        if (!ok || request.jobs < 1)
            return usageError(
                QStringLiteral("--jobs needs a whole number of at least 1, not \"%1\"")
                    .arg(parser.parser.value(parser.jobs)));
    }
    request.language = parser.parser.value(parser.language);
    if (!bootstrap::isLanguage(request.language))
        return usageError(bootstrap::languageError(request.language));
    request.options.json = parser.parser.isSet(parser.json);
    if (parser.parser.isSet(parser.output)) {
        const QString given = parser.parser.value(parser.output);
        request.options.outputFolder = given.isEmpty() ? QString() : filePaths::absolute(given);
        if (request.options.outputFolder.isEmpty() ||
            !QFileInfo(request.options.outputFolder).isDir())
            return usageError(
                QStringLiteral("--output-dir needs an existing folder, not \"%1\"").arg(given));
    }
    request.files = parser.parser.positionalArguments();
    if (request.files.isEmpty())
        return usageError(QStringLiteral("no files given"));
    return request;
}

} // namespace

Request parse(const QStringList& arguments) {
    Parser parser;
    Request request;
    if (!parser.parser.parse(arguments)) {
        request = usageError(parser.parser.errorText());
    } else if (parser.parser.isSet(parser.help) ||
               parser.parser.isSet(QStringLiteral("help-all"))) {
        // --help-all would add the toolkit's own options, which this tool
        // does not take: the same help.
        request.action = Request::Action::ShowHelp;
    } else if (parser.parser.isSet(parser.version)) {
        request.action = Request::Action::ShowVersion;
    } else {
        request = readValues(parser);
    }
    request.helpText = parser.parser.helpText();
    return request;
}

} // namespace commandLine
