// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_CONVERT_H
#define BREVIO_CONVERT_H

#include "convert/conversionoutcome.h"

#include <QFont>
#include <QJsonArray>
#include <QJsonObject>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

class QPainter;
class QPrinter;
class QRect;
class ReportFile;

// One conversion: reads a device's JSON configuration into the record below
// and draws the PDF report from it. Created on the GUI thread, runs
// readJsonFile() once on a pool thread and is not reused; it ends by emitting
// exactly one of finished() and aborted(), which the owner connects to
// deleteLater(). Why it ended so is kept in outcome(), for whoever receives
// that last signal.
class convert : public QObject {
    Q_OBJECT

public:
    // Defined in convert.cpp, as are readJsonFile(), newPage(), outcome()
    // and setReportPath().

    // Makes an empty job; the record below is filled only once it runs.
    explicit convert(QObject* parent = nullptr);
    // Waits for a readJsonFile() that is still emitting its last signal on
    // a worker thread, or still running (see running below).
    ~convert() override;

    // The whole job, meant for a pool thread: reads the configuration at
    // jsonPath into the record and draws its report. The report goes to
    // filePaths::reportFor(pdfPath), unless setReportPath() chose its place;
    // runOnPool() passes the configuration's path for both, so the report
    // stands beside it with ".pdf" for ".json". Ends by emitting finished()
    // or aborted(), whatever happens on the way.
    void readJsonFile(QString jsonPath, QString pdfPath);

    // The readers. Each replaces its section of the record with the
    // members of the JSON it is given, one entry per member at a fixed
    // index: a missing member gives a null entry and a value of another
    // type than expected is kept as it is; neither is an error.

    // convert.cpp: the general settings from the document's "configuration"
    // object, then every section through the readers below, emitting
    // newPbarValue() 1 to 8 as it goes.
    void readMainConfiguration(const QJsonObject& document);
    // outputs.cpp: one entry per element of the array, whatever its type,
    // so that the channel numbers follow the array positions.
    void readOutputs(const QJsonArray& outputs);
    // display.cpp: the display's own members and its six "values".
    void readDisplay(const QJsonObject& display);
    // tlf.cpp: the traffic-light function and its measure.
    void readTlf(const QJsonObject& tlf);
    // relais.cpp: one entry per element of the array, as for the outputs.
    void readRelais(const QJsonArray& relais);
    // modbusservice.cpp: the offsets are not part of the report; this only
    // empties offsetValues.
    void readOffset(const QJsonArray& offsets);
    // modbusservice.cpp: the five Modbus settings.
    void readModbus(const QJsonObject& modbus);
    // modbusservice.cpp: the last service and calibration and the days to
    // the next ones.
    void readService(const QJsonObject& service);

    // reportframe.cpp: draws the report of the record into a temporary file
    // and puts it in place of the report only once it is complete; the
    // report's path follows pdfPath as in readJsonFile(). Records in
    // outcome() how that went and emits newPbarValue() 9 to 17, also when
    // nothing could be drawn. Throws when memory runs out or the job is
    // interrupted; readJsonFile() turns that into aborted().
    void printPdf(QString pdfPath);

    // The section printers that the report frame runs in this order after
    // the general block, each drawing its section from reportCursor on in
    // headingFont and bodyFont and leaving the cursor where the next one
    // expects it. They may start new printer pages. Public so that a
    // section can be drawn and checked alone.

    // outputs.cpp: one block per channel, moved to the next page as a
    // whole when it would cross the page limit; a channel with too few
    // entries is left out but keeps its number.
    void printOutput(QPainter& painter, QPrinter& printer);
    // display.cpp: the heading where the cursor stands, then four lines.
    void printDisplay(QPainter& painter, QPrinter& printer);
    // tlf.cpp: an empty line, the heading, then four lines in two columns.
    void printTlf(QPainter& painter, QPrinter& printer);
    // relais.cpp: one block per relay, its states kept together with it.
    void printRelais(QPainter& painter, QPrinter& printer);

    // The page rule of every line step: advances y by one step; when that
    // passes the page limit, y becomes the top of a new page and the
    // result is true, and the caller starts that page on the printer.
    // False when the line still fits on the current page.
    bool newPage(int& y);

    // What this job came to. Written only by readJsonFile() on its worker
    // thread, so read it only once finished() or aborted() has arrived: the
    // signal is the job's last act, and the owner's handler runs before the
    // deferred deletion it connected after that handler.
    const ConversionOutcome& outcome() const;
    // Writes the report to reportPath instead of beside the configuration
    // (the rule of filePaths::reportFor). Call it before the job runs; the
    // temporary report and the lock then live in that folder too, so a
    // configuration on a read-only medium can be converted.
    void setReportPath(const QString& reportPath);

    // The configuration record: every entry is QJsonValue::toVariant() of one
    // member, unconverted, at a fixed index per section.
    QVector<QVariant> mainValues;
    QVector<QVariant> displayValues;
    QVector<QVariant> tlfValues;
    QVector<QVariant> modbusValues;
    QVector<QVariant> serviceValues;
    QVector<QVector<QVariant>> outputValues;
    QVector<QVector<QVariant>> relaisValues;
    QVector<QVector<QVariant>> offsetValues;

    // Top of the next text line on the current page, in printer pixels.
    // Left uninitialised on purpose: printPdf() sets it before first use.
    int reportCursor;
    // The fonts of section headings and of every other line, set from
    // reportLayout's by printPdf() before it draws.
    QFont headingFont;
    QFont bodyFont;
    // The configuration's path as readJsonFile() was given it, set once
    // the file is open: drawn under the title, and its file name is the
    // report's title when the configuration names no plant.
    QString sourcePath;

signals:
    // The job's progress on its worker thread: 1 to 8 while reading, 9 to
    // 17 while drawing the report.
    void newPbarValue(int value);
    // The file was read and its report drawn, or tried: also sent when no
    // complete report was written (no temporary file beside it, a printer
    // that would not start, a full disk) and when the one written has
    // labels no font could draw. Only outcome().converted() tells a usable
    // report from these.
    void finished();
    // The file was not read (not a ".json" name, not openable, empty) or
    // the job could not go on (out of memory, interrupted); outcome() says
    // which.
    void aborted();

private:
    // The sections only the whole report draws: the general block before
    // the public section printers (reportframe.cpp), Modbus and service
    // after them (modbusservice.cpp).
    void printGeneral(QPainter& painter, QPrinter& printer);
    void printModbus(QPainter& painter, QPrinter& printer);
    void printService(QPainter& painter, QPrinter& printer);

    // Held by readJsonFile() for the whole run and taken by the destructor.
    // The owner deletes the job on the GUI thread as soon as finished() or
    // aborted() arrives there, which can be before the worker thread has
    // returned from emitting it; a QObject destroyed while another thread is
    // still inside one of its signals crashes that thread. Deleting a job
    // that is still running (on aboutToQuit) waits for it the same way.
    QMutex running;
    ConversionOutcome result;
    // Set by setReportPath(); empty for a report beside its configuration.
    QString chosenReportPath;

    // Parses the file's content, noting the parser's complaint as a warning.
    QJsonObject parseConfiguration(const QByteArray& content);
    // Records how the report at output came out: written, or why not.
    void recordReport(const ReportFile& output, bool written);
    // After drawing: the characters of the report's text no font can draw,
    // and whether the report is usable at all.
    void checkDrawnText();

    // Throws std::bad_alloc when the memory left is too little to lay out
    // the longest text the report draws.
    void checkRoomForText() const;

    // Draws the whole report, header and every section, on an active
    // painter.
    void drawReport(QPainter& painter, QPrinter& printer);

    // Draws one line of the report into box, left-aligned and centred
    // vertically; what does not fit is cut at the box's edge, and the job
    // notes the text so that nobody takes the cut value for the whole one.
    void drawLine(QPainter& painter, const QRect& box, const QString& text);

    // Advances reportCursor by one line step, starting a printer page when
    // the step crosses the page limit.
    void advanceLine(QPrinter& printer);

    // Before a block that is never split (an output channel, a relay):
    // starts a printer page, reportCursor at its top, when the block's
    // reserve below the cursor would reach the page limit.
    void keepBlockOnOnePage(QPrinter& printer, int reserve);
};

#endif
