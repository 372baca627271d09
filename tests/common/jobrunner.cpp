#include "jobrunner.h"

#include "convert.h"
#include "filepaths.h"
#include "reportfonts.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QThreadPool>
#include <QTimer>
#include <QtConcurrent>

namespace {

// Every test that runs jobs measures the report as the programs print it, in
// the bundled font: registered as soon as the test's application exists,
// before any test function runs.
void registerFontsLikeThePrograms() {
    registerReportFonts();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(registerFontsLikeThePrograms)

JobOutcome runJob(const QString& path, int timeoutMs) {
    JobOutcome outcome;
    auto* job = new convert(nullptr);
    QEventLoop loop;
    // Queued into this thread, as the window receives them.
    QObject::connect(job, &convert::newPbarValue, &loop,
                     [&outcome](int value) { outcome.progress.append(value); });
    QObject::connect(job, &convert::finished, &loop, [&] {
        ++outcome.finishedCount;
        loop.quit();
    });
    QObject::connect(job, &convert::aborted, &loop, [&] {
        ++outcome.abortedCount;
        loop.quit();
    });
    QObject::connect(job, &convert::finished, job, &QObject::deleteLater);
    QObject::connect(job, &convert::aborted, job, &QObject::deleteLater);
    QTimer::singleShot(timeoutMs, &loop, [&] {
        outcome.timedOut = true;
        loop.quit();
    });
    QtConcurrent::run(QThreadPool::globalInstance(), job, &convert::readJsonFile, path, path);
    loop.exec();
    // Let the deferred deletion and any late signal arrive.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    return outcome;
}

QString reportPathFor(const QString& jsonPath) {
    return filePaths::reportFor(jsonPath);
}

QStringList folderEntries(const QString& folder) {
    QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                               QDir::NoDotAndDotDot);
    names.sort();
    return names;
}

QString testData(const QString& name) {
    return QStringLiteral(BREVIO_SOURCE_DIR "/tests/data/") + name;
}

QString exampleFile(const QString& name) {
    return QStringLiteral(BREVIO_SOURCE_DIR "/examples/") + name;
}

QString copyTestData(const QString& name, const QString& dir, const QString& as) {
    const QString target = QDir(dir).filePath(as.isEmpty() ? QFileInfo(name).fileName() : as);
    QFile::remove(target);
    QFile::copy(testData(name), target);
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup |
                                      QFile::ReadOther);
    return target;
}

QString writeFile(const QString& dir, const QString& name, const QByteArray& bytes) {
    const QString target = QDir(dir).filePath(name);
    QFile file(target);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
    return target;
}
