// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "convert/convert.h"

#include "convert/reportlabels.h"
#include "convert/reportlayout.h"
#include "convert/undrawable.h"
#include "files/regularfile.h"
#include "files/reportfile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QMutex>

#include <cstdlib>
#include <exception>
#include <new>

convert::convert(QObject* parent) : QObject(parent) {}

convert::~convert() {
    // Waits for a readJsonFile() still emitting its last signal on a worker.
    QMutexLocker wait(&running);
}

void convert::setReportPath(const QString& reportPath) {
    chosenReportPath = reportPath;
}

void convert::readJsonFile(QString jsonPath, QString pdfPath) {
    QMutexLocker stayAlive(&running);
    using Reason = ConversionOutcome::Reason;
    const auto convertFile = [&]() -> bool {
        if (!jsonPath.endsWith(QLatin1String(".json"))) {
            result.fail(Reason::NotJsonName);
            return false;
        }
        // Only a regular file is read, checked on the opened descriptor:
        // a FIFO would block the pool thread until some writer appears, and
        // a device may never end.
        QFile file;
        QString why;
        if (!openRegularFile(file, jsonPath, &why)) {
            result.fail(Reason::CannotOpen, why);
            return false;
        }
        sourcePath = jsonPath;
        const QByteArray content = file.readAll();
        const bool readFailed = file.error() != QFileDevice::NoError;
        why = file.errorString();
        file.close();
        if (content.isEmpty()) {
            if (readFailed)
                result.fail(Reason::CannotOpen, why);
            else
                result.fail(Reason::EmptyFile);
            return false;
        }
        // A syntax error is not a failure: the empty object it leaves behind
        // still gives a report, with every value empty.
        readMainConfiguration(parseConfiguration(content));
        checkRoomForText();
        printPdf(pdfPath);
        return true;
    };
    // Whoever started the job waits for exactly one of the two signals, so
    // one is sent whatever happens on the way, running out of memory on a
    // huge file included. A report begun by then has been cleaned up as the
    // exception passed.
    bool converted = false;
    try {
        converted = convertFile();
    } catch (const std::bad_alloc&) {
        result.fail(Reason::OutOfMemory);
    } catch (const std::exception& error) {
        result.fail(Reason::UnexpectedError, QString::fromLocal8Bit(error.what()));
    } catch (...) {
        result.fail(Reason::UnexpectedError);
    }
    if (converted)
        emit finished();
    else
        emit aborted();
}

const ConversionOutcome& convert::outcome() const {
    return result;
}

QJsonObject convert::parseConfiguration(const QByteArray& content) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        result.jsonInvalid = true;
        result.jsonError = error.errorString();
        result.jsonErrorOffset = error.offset;
    } else if (!document.isObject()) {
        result.topLevelNotObject = true;
    } else if (!document.object().value(QLatin1String("configuration")).isObject()) {
        result.noConfiguration = true;
    }
    return document.object();
}

namespace {

void appendStrings(const QVector<QVariant>& values, QString& text) {
    for (const QVariant& value : values)
        if (value.userType() == QMetaType::QString) {
            text += value.toString();
            text += QLatin1Char('\n');
        }
}

// With neither the bundled font nor any font of the machine usable, every
// line of a report is a black bar; the labels tell, since they are always
// printed. They are asked about as they are drawn: in the language
// installed and in the fonts that draw them.
bool labelsDrawable() {
    using namespace reportLabels;
    const QString headings = convert::tr(generalHeading) + convert::tr(modbusHeading);
    const QString lines = convert::tr(title) + convert::tr(name) + convert::tr(altitude);
    // The fonts are the same for every job of a process and so, nearly
    // always, are the labels: the answer is kept for the texts last asked
    // about. Jobs on other threads may ask at the same time.
    static QMutex guard;
    static QString checkedHeadings;
    static QString checkedLines;
    static bool drawable = false;
    const QMutexLocker lock(&guard);
    if (headings != checkedHeadings || lines != checkedLines) {
        drawable = undrawableCharacters(headings, reportLayout::headingFont()).isEmpty() &&
                   undrawableCharacters(lines, reportLayout::bodyFont()).isEmpty();
        checkedHeadings = headings;
        checkedLines = lines;
    }
    return drawable;
}

} // namespace

namespace {

// What laying out one character of a line takes at most, all of Qt's text
// engine's arrays together (a 40-million-character line peaks at about 40
// bytes a character), with room to spare.
constexpr size_t layoutBytesPerCharacter = 64;

int longestString(const QVector<QVariant>& values) {
    int longest = 0;
    for (const QVariant& value : values)
        if (value.userType() == QMetaType::QString)
            longest = qMax(longest, value.toString().size());
    return longest;
}

} // namespace

void convert::checkRoomForText() const {
    // Qt's text layout does not check its allocations: a line too long for
    // the memory that is left crashes it instead of throwing. Asking for
    // that memory first turns the shortage into a std::bad_alloc, which
    // ends the job as "out of memory"; the block is given back at once.
    int longest = sourcePath.size();
    for (const QVector<QVariant>* values :
         {&mainValues, &displayValues, &tlfValues, &modbusValues, &serviceValues})
        longest = qMax(longest, longestString(*values));
    for (const QVector<QVector<QVariant>>* rows : {&outputValues, &relaisValues, &offsetValues})
        for (const QVector<QVariant>& row : *rows)
            longest = qMax(longest, longestString(row));
    void* volatile room = std::malloc(size_t(longest) * layoutBytesPerCharacter + 1);
    if (room == nullptr)
        throw std::bad_alloc();
    std::free(room);
}

void convert::recordReport(const ReportFile& output, bool written) {
    using Reason = ConversionOutcome::Reason;
    if (written) {
        result.reason = Reason::Converted;
    } else {
        switch (output.failure()) {
        case ReportFile::Failure::NoFolder:
            result.fail(Reason::NoTemporaryFolder, output.errorString());
            break;
        case ReportFile::Failure::Incomplete:
            result.fail(Reason::ReportIncomplete, output.errorString());
            break;
        case ReportFile::Failure::FileSizeLimit:
            result.fail(Reason::FileSizeLimit, output.errorString());
            break;
        case ReportFile::Failure::NotSaved:
            result.fail(Reason::CommitFailed, output.errorString());
            break;
        case ReportFile::Failure::None:
            // The folder is there, so it was the printer that would not start.
            result.fail(Reason::PainterFailed);
            break;
        }
        // Nothing of this run reached the report's name, so a file there is
        // an earlier report.
        result.olderReportKept = output.reportNameHoldsFile();
    }
    checkDrawnText();
}

void convert::checkDrawnText() {
    // The texts a report draws from the file are its string values and the
    // path under the title; numbers and the report's own words are always
    // drawable when its labels are. Line breaks separate them and are never
    // drawn.
    QString text = sourcePath + QLatin1Char('\n');
    for (const QVector<QVariant>* values :
         {&mainValues, &displayValues, &tlfValues, &modbusValues, &serviceValues})
        appendStrings(*values, text);
    for (const QVector<QVector<QVariant>>* rows : {&outputValues, &relaisValues, &offsetValues})
        for (const QVector<QVariant>& row : *rows)
            appendStrings(row, text);
    result.undrawable = undrawableCharacters(text, reportLayout::bodyFont());
    if (result.converted() && !labelsDrawable())
        result.fail(ConversionOutcome::Reason::LabelsUndrawable);
}

void convert::readMainConfiguration(const QJsonObject& document) {
    const QJsonObject configuration = document.value(QLatin1String("configuration")).toObject();

    mainValues.clear();
    static const char* const generalKeys[] = {"name",    "date",          "location",  "altitude",
                                              "voltage", "measureSystem", "boardType", "version"};
    for (const char* key : generalKeys)
        mainValues.append(configuration.value(QLatin1String(key)).toVariant());
    emit newPbarValue(1);

    readOutputs(configuration.value(QLatin1String("outputs")).toArray());
    emit newPbarValue(2);
    readDisplay(configuration.value(QLatin1String("display")).toObject());
    emit newPbarValue(3);
    readTlf(configuration.value(QLatin1String("tlf")).toObject());
    emit newPbarValue(4);
    readRelais(configuration.value(QLatin1String("relais")).toArray());
    emit newPbarValue(5);
    readOffset(configuration.value(QLatin1String("offsets")).toArray());
    emit newPbarValue(6);
    readModbus(configuration.value(QLatin1String("modbus")).toObject());
    emit newPbarValue(7);
    readService(configuration.value(QLatin1String("service")).toObject());
    emit newPbarValue(8);
}

bool convert::newPage(int& y) {
    y += reportLayout::lineStep;
    if (y > reportLayout::pageLimit) {
        y = reportLayout::pageTop;
        return true;
    }
    return false;
}
