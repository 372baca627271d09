#include "convert.h"

#include "regularfile.h"
#include "reportlayout.h"

#include <QFile>
#include <QJsonDocument>

convert::convert(QObject* parent) : QObject(parent) {}

convert::~convert() {
    // Waits for a readJsonFile() still emitting its last signal on a worker.
    QMutexLocker wait(&running);
}

void convert::readJsonFile(QString jsonPath, QString pdfPath) {
    QMutexLocker stayAlive(&running);
    const auto convertFile = [&]() -> bool {
        if (!jsonPath.endsWith(QLatin1String(".json")))
            return false;
        // Only a regular file is read, checked on the opened descriptor:
        // a FIFO would block the pool thread until some writer appears, and
        // a device may never end.
        QFile file;
        if (!openRegularFile(file, jsonPath))
            return false;
        sourcePath = jsonPath;
        const QByteArray content = file.readAll();
        file.close();
        if (content.isEmpty())
            return false;
        // A syntax error is not a failure: the empty object it leaves behind
        // still gives a report, with every value empty.
        readMainConfiguration(QJsonDocument::fromJson(content).object());
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
    } catch (...) {
        converted = false;
    }
    if (converted)
        emit finished();
    else
        emit aborted();
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
