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
    explicit convert(QObject* parent = nullptr);
    ~convert() override;

    void readJsonFile(QString jsonPath, QString pdfPath);

    void readMainConfiguration(const QJsonObject& document);
    void readOutputs(const QJsonArray& outputs);
    void readDisplay(const QJsonObject& display);
    void readTlf(const QJsonObject& tlf);
    void readRelais(const QJsonArray& relais);
    void readOffset(const QJsonArray& offsets);
    void readModbus(const QJsonObject& modbus);
    void readService(const QJsonObject& service);

    void printPdf(QString pdfPath);
    void printGeneral(QPainter& painter, QPrinter& printer);
    void printOutput(QPainter& painter, QPrinter& printer);
    void printDisplay(QPainter& painter, QPrinter& printer);
    void printTlf(QPainter& painter, QPrinter& printer);
    void printRelais(QPainter& painter, QPrinter& printer);
    void printModbus(QPainter& painter, QPrinter& printer);
    void printService(QPainter& painter, QPrinter& printer);

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
    QFont headingFont;
    QFont bodyFont;
    QString sourcePath;

signals:
    void newPbarValue(int value);
    void finished();
    void aborted();

private:
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
};

#endif
