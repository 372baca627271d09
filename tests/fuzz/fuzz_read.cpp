// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

// libFuzzer target for the reading side alone, without printing: arbitrary
// bytes are parsed as the job parses a file, every section reader fills the
// configuration record, and the page rule walks as many lines as the record
// would print. Many times faster than fuzz_convert, so it reaches deeper
// into the parser and the readers in the same time.
//
// Beyond crashes and sanitizer reports, every run checks what the readers
// promise whatever the input: the progress values 1 to 8 in order; eight
// general entries; one entry per element of the "outputs" and "relais"
// arrays, each of the same length whatever the element holds; the same
// number of entries for the display, traffic-light, Modbus and service
// sections on every input; "offsets" left empty; and newPage() keeps the
// cursor on the page, starting a new one exactly when a line would pass
// the page limit.

#include "convert/convert.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

// The page rule's figures: a new page starts at 500, lines are 330 apart
// and none may start below 13028.
constexpr int pageTop = 500;
constexpr int lineStep = 330;
constexpr int pageLimit = 13028;

void quietToolkit(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtFatalMsg)
        std::fprintf(stderr, "fatal: %s\n", qPrintable(message));
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "fuzz_read: broken promise: %s\n", what);
    std::abort();
}

// The length every record of one kind has, learnt from the first input
// that has one; -1 until then.
void sameLengthAsEver(int& known, int length, const char* what) {
    if (known < 0)
        known = length;
    else if (known != length)
        fail(what);
}

int displayLength = -1;
int tlfLength = -1;
int modbusLength = -1;
int serviceLength = -1;
int outputLength = -1;
int relaisLength = -1;

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char*** argv) {
    if (qEnvironmentVariableIsEmpty("BREVIO_DEBUG"))
        qInstallMessageHandler(quietToolkit);
    // The readers need no display and no fonts; an application object
    // gives the job its thread and event dispatcher all the same.
    static int qtArgc = 1;
    static char* qtArgv[] = {(*argv)[0], nullptr};
    static QCoreApplication* app = new QCoreApplication(qtArgc, qtArgv);
    (void)app;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray input(reinterpret_cast<const char*>(data), int(size));
    // Parsed as the job parses a file: a syntax error leaves the empty
    // object, which is read like any other.
    const QJsonObject document = QJsonDocument::fromJson(input).object();
    const QJsonObject configuration = document.value(QLatin1String("configuration")).toObject();

    QList<int> progress;
    convert job;
    QObject::connect(&job, &convert::newPbarValue, [&](int value) { progress.append(value); });
    job.readMainConfiguration(document);

    if (progress.size() != 8)
        fail("reading reports 8 progress values");
    for (int i = 0; i < progress.size(); ++i)
        if (progress[i] != i + 1)
            fail("progress values must run from 1 to 8 in order");
    if (job.mainValues.size() != 8)
        fail("the general settings are eight entries");
    sameLengthAsEver(displayLength, job.displayValues.size(), "display entries vary");
    sameLengthAsEver(tlfLength, job.tlfValues.size(), "traffic-light entries vary");
    sameLengthAsEver(modbusLength, job.modbusValues.size(), "Modbus entries vary");
    sameLengthAsEver(serviceLength, job.serviceValues.size(), "service entries vary");
    const QJsonValue outputs = configuration.value(QLatin1String("outputs"));
    if (job.outputValues.size() != (outputs.isArray() ? outputs.toArray().size() : 0))
        fail("one output entry per element of \"outputs\"");
    for (const QVector<QVariant>& row : job.outputValues)
        sameLengthAsEver(outputLength, row.size(), "output entries vary");
    const QJsonValue relais = configuration.value(QLatin1String("relais"));
    if (job.relaisValues.size() != (relais.isArray() ? relais.toArray().size() : 0))
        fail("one relay entry per element of \"relais\"");
    for (const QVector<QVariant>& row : job.relaisValues)
        sameLengthAsEver(relaisLength, row.size(), "relay entries vary");
    if (!job.offsetValues.isEmpty())
        fail("offsets are left empty");

    // The page rule over as many lines as the record prints, starting
    // anywhere on a page.
    const int lines = 8 + job.displayValues.size() + job.tlfValues.size() +
                      job.modbusValues.size() + job.serviceValues.size() +
                      int(job.outputValues.size()) * qMax(outputLength, 0) +
                      int(job.relaisValues.size()) * qMax(relaisLength, 0);
    int y = pageTop + int(qHash(input) % uint(pageLimit - pageTop + 1));
    for (int line = 0; line < lines && line < 100000; ++line) {
        const int before = y;
        const bool newPage = job.newPage(y);
        if (newPage != (before + lineStep > pageLimit))
            fail("a new page starts exactly when a line would pass the limit");
        if (y != (newPage ? pageTop : before + lineStep))
            fail("the cursor moves one line, or back to the top of a new page");
        if (y < pageTop || y > pageLimit)
            fail("the cursor stays on the page");
    }
    return 0;
}
